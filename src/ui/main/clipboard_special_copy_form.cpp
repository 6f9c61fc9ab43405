#include "ui/main/clipboard_special_copy_form.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>

#include "core/settings.h"
#include "core/sweeps.h"
#include "core/tables.h"
#include "core/track_store.h"
#include "core/track_table.h"
#include "graph/track_preview.h"
#include "host/dialogs.h"
#include "host/host.h"
#include "text/number.h"
#include "ui/main/track_text.h"

namespace zento {
namespace {

enum Cycles { kAllCycles = 0, kOneCycle = 1 };

std::vector<std::string> Units() {
  return {UnitName.begin() + 1, UnitName.end()};
}

bool HasWaterFraction(std::int32_t mode) {
  return HasRing(mode) || mode == kModeSSVAll;
}

// A box where 0 means off, and so does anything that is no number above it.
double Above0(const TextBox& box) {
  return std::max(ParseLenient(box.text()), 0.0);
}

// A curve without extent has no directions to be seen either.
double ExtentOf(double from, double to) {
  const double extent = std::fabs(to - from);
  return extent > 0 && std::isfinite(extent) ? extent : 1;
}

}  // namespace

frmSpecialCopy::frmSpecialCopy(Workstation& workstation, Host& host)
    : Form(host, kName, "Special Copy"),
      opnDiskUnit(*this, "opnDiskUnit", Units(), 0),
      opnRingUnit(*this, "opnRingUnit", Units(), 0),
      opnCycles(*this, "opnCycles", {"All cycles", "One cycle"}, kAllCycles),
      workstation_(workstation),
      copy_(host) {
  chkHeader.SetValue(1);
  cmdCopy.is_default = true;
  cmdClose.is_cancel = true;
  updCycle.on_up = [this] { StepCycle(+1); };
  updCycle.on_down = [this] { StepCycle(-1); };
  cmdCopy.on_click = [this] { Copy(); };
  cmdClose.on_click = [this] { CloseRequested(); };
  SetTips();
}

void frmSpecialCopy::SetTips() {
  opnNormalisation.SetTip("Currents divided by the track's area (cm2) or weight (mg)");
  chkLog.SetTip("log10 of the absolute current in A, per area or weight if chosen; 0 is 1e-9");
  chkAbsolute.SetTip("Disk currents without their sign");
  chkH2O.SetTip("100 (Id - Ir/N) / (Id + Ir/N), a column of its own");
  txtCE.SetTip("Collection efficiency N of the ring, above 0");
  opnPolarity.SetTip("Which points by the sign of the disk current; those of 0 have none");
  txtCycle.SetTip("The cycle to be copied, from 1 on");
  txtAngle.SetTip(
      "Degrees. A point stays where the curve goes on in a direction that differs by more than "
      "this from the one in which it left the point kept before. 0: off");
  txtDistance.SetTip(
      "Fraction of the display range. A point stays when it lies farther than this from the point "
      "kept before. 0: off");
  txtOrder.SetTip(
      "Points. The n-th point after the one kept before stays. 0: off. First and last points and "
      "the ends of cycles always stay");
}

bool frmSpecialCopy::Load() {
  txtCE.SetText(PlainNumber(workstation_.settings.O2CE));
  ShowTrack();
  return true;
}

void frmSpecialCopy::Unload() {
  copy_.GiveUp();
}

void frmSpecialCopy::Activate() {
  ShowTrack();
}

void frmSpecialCopy::ShowTrack() {
  track_ = workstation_.shown_track;
  const bool filled = Record().Mode != kModeNone;
  std::string what = "Track " + std::to_string(track_);
  if (filled) {
    what.append(": ").append(AtOrNone(ModeName, Record().Mode)).append(" ").append(Record().Title);
  } else {
    what += " is empty";
  }
  lblTrack.SetText(std::move(what));
  opnRingUnit.SetEnabled(HasRing(Record().Mode));
  chkH2O.SetEnabled(HasWaterFraction(Record().Mode));
  txtCE.SetEnabled(HasWaterFraction(Record().Mode));
  cmdCopy.SetEnabled(filled);
  lblCycles.SetText(filled ? "of " + std::to_string(Cycles()) : std::string());
}

const TrackRecord& frmSpecialCopy::Record() const {
  return workstation_.tracks.Record(track_);
}

std::vector<std::int32_t> frmSpecialCopy::CycleEnds() const {
  const std::int32_t last = workstation_.tracks.PointCount(track_) - 1;
  if (Record().Mode == kModeMulti || last < 1) return {0, std::max(last, 0)};
  return CycleBoundaries(workstation_.tracks, track_);
}

int frmSpecialCopy::Cycles() const {
  return static_cast<int>(CycleEnds().size()) - 1;
}

int frmSpecialCopy::ChosenCycle() const {
  return std::clamp(ToLong(ParseLenient(txtCycle.text())), 1, Cycles());
}

void frmSpecialCopy::StepCycle(int direction) {
  txtCycle.SetText(std::to_string(std::clamp(ChosenCycle() + direction, 1, Cycles())));
  opnCycles.Select(kOneCycle);
}

std::string frmSpecialCopy::Hindrance() const {
  const auto normalisation = static_cast<Normalisation>(opnNormalisation.selected());
  if (normalisation == Normalisation::kPerArea && !(Record().Area > 0)) {
    return "The track's electrode area is not above 0, so there is no current per area.";
  }
  if (normalisation == Normalisation::kPerWeight && !(Record().Weight > 0)) {
    return "The track's weight is not above 0, so there is no current per weight.";
  }
  const bool water = chkH2O.value() == 1 && HasWaterFraction(Record().Mode);
  if (water && !(ParseLenient(txtCE.text()) > 0)) {
    return "The collection efficiency N must be above 0 for %H2O.";
  }
  return {};
}

Thinning frmSpecialCopy::ChosenThinning() const {
  return {Above0(txtAngle), Above0(txtDistance), ToLong(Above0(txtOrder))};
}

std::vector<std::int32_t> frmSpecialCopy::ChosenPoints() {
  TrackStore& tracks = workstation_.tracks;
  std::vector<std::int32_t> ends = CycleEnds();
  if (opnCycles.selected() == kOneCycle) {
    const auto cycle = static_cast<std::size_t>(ChosenCycle());
    ends = {ends[cycle - 1], ends[cycle]};
  }
  const PreviewRange range = RangeOf(tracks, track_);
  const PlottedCurve curve{tracks.Points(0, track_), tracks.Points(1, track_),
                           ExtentOf(range.x_min, range.x_max), ExtentOf(range.y_min, range.y_max)};
  return ThinnedPoints(curve, ends, ChosenThinning());
}

TableOptions frmSpecialCopy::Options() {
  TableOptions options;
  options.disk_unit = opnDiskUnit.selected() + 1;
  // A time in the third column is no current.
  if (HasRing(Record().Mode)) options.ring_unit = opnRingUnit.selected() + 1;
  options.normalisation = static_cast<Normalisation>(opnNormalisation.selected());
  options.water_fraction = chkH2O.value() == 1;
  options.collection_efficiency = ParseLenient(txtCE.text());
  options.logarithm = chkLog.value() == 1;
  options.absolute = options.absolute_last = chkAbsolute.value() == 1;
  options.filter = static_cast<PointFilter>(opnPolarity.selected());
  options.points = ChosenPoints();
  return options;
}

void frmSpecialCopy::Copy() {
  ShowTrack();
  if (Record().Mode == kModeNone) return;
  if (const std::string hindrance = Hindrance(); !hindrance.empty()) {
    host().dialogs.Message(hindrance);
    return;
  }
  const TableOptions options = Options();
  if (options.water_fraction && HasWaterFraction(Record().Mode)) {
    workstation_.settings.O2CE = options.collection_efficiency;
  }
  auto table = std::make_unique<DataTable>(workstation_.tracks, track_, options);
  if (chkHeader.value() == 1) {
    table->text.insert(0,
                       TrackInfoText(workstation_.tracks, track_, workstation_.FileTitle) + "\r\n");
  }
  copy_.Start(std::move(table), [this, track = track_](bool copied) {
    lblNotice.SetText(copied ? "Copied track " + std::to_string(track) + " to the clipboard"
                             : "Copying was ended; the clipboard is as it was");
  });
}

LayoutNode frmSpecialCopy::Layout() {
  using namespace layout;
  return Rows({
      Item(lblTrack),
      Columns({
          Rows({Group("Disk current", {Item(opnDiskUnit)}),
                Group("Ring current", {Item(opnRingUnit)}), Stretch()}),
          Rows({Group("Currents", {Item(opnNormalisation), Item(chkLog), Item(chkAbsolute)}),
                Group("Water", {Item(chkH2O), Fields({Field("N", txtCE)})}), Stretch()}),
          Rows({Group("Points", {Item(opnPolarity)}),
                Group("Cycles", {Item(opnCycles), Fields({Field("Cycle", txtCycle, &updCycle)}),
                                 Item(lblCycles)}),
                Group("Thinning",
                      {Fields({Field("Angle /deg", txtAngle), Field("Distance", txtDistance),
                               Field("Order", txtOrder)})}),
                Stretch()}),
      }),
      Item(chkHeader),
      Columns({Item(lblNotice), Stretch(), Item(cmdCopy), Item(cmdClose)}),
  });
}

}  // namespace zento
