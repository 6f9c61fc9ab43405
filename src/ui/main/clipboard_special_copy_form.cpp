#include "ui/main/clipboard_special_copy_form.h"

#include <algorithm>
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

namespace zento {
namespace {

enum Cycles { kAllCycles = 0, kOneCycle = 1 };

std::vector<std::string> Units() {
  return {UnitName.begin() + 1, UnitName.end()};
}

// A box where 0 means off, and so does anything that is no number above it.
double Above0(const TextBox& box) {
  return std::max(ParseLenient(box.text()), 0.0);
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
  const bool filled = !Record().IsEmpty();
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

int frmSpecialCopy::Cycles() const {
  return static_cast<int>(CycleEnds(workstation_.tracks, track_).size()) - 1;
}

int frmSpecialCopy::ChosenCycle() const {
  return std::clamp(ToLong(ParseLenient(txtCycle.text())), 1, Cycles());
}

void frmSpecialCopy::StepCycle(int direction) {
  txtCycle.SetText(std::to_string(std::clamp(ChosenCycle() + direction, 1, Cycles())));
  opnCycles.Select(kOneCycle);
}

ExportOptions frmSpecialCopy::Options() const {
  ExportOptions options;
  options.header_block = chkHeader.value() == 1;
  TableOptions& table = options.table;
  table.disk_unit = opnDiskUnit.selected() + 1;
  table.ring_unit = opnRingUnit.selected() + 1;
  table.normalisation = static_cast<Normalisation>(opnNormalisation.selected());
  table.water_fraction = chkH2O.value() == 1;
  table.collection_efficiency = ParseLenient(txtCE.text());
  table.logarithm = chkLog.value() == 1;
  table.absolute = table.absolute_last = chkAbsolute.value() == 1;
  table.filter = static_cast<PointFilter>(opnPolarity.selected());
  if (opnCycles.selected() == kOneCycle) options.cycle = ChosenCycle();
  options.thinning = {Above0(txtAngle), Above0(txtDistance), ToLong(Above0(txtOrder))};
  return options;
}

void frmSpecialCopy::Copy() {
  ShowTrack();
  if (Record().IsEmpty()) return;
  const ExportOptions options = Options();
  auto table = StartExport(*FindExporter("special"),
                           {workstation_.tracks, track_, workstation_.FileTitle, options});
  if (!table.ok()) return host().dialogs.Message(table.why());
  if (options.table.water_fraction && HasWaterFraction(Record().Mode)) {
    workstation_.settings.O2CE = options.table.collection_efficiency;
  }
  copy_.Start(std::move(table.value()), [this, track = track_](bool copied) {
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
