#include "analysis/calculation_form.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <span>

#include "analysis/track_points.h"
#include "core/palette.h"
#include "core/sweeps.h"
#include "core/tables.h"
#include "core/track_history.h"
#include "core/track_store.h"
#include "graph/track_preview.h"
#include "host/dialogs.h"
#include "host/host.h"
#include "text/number.h"

namespace zento {
namespace {

constexpr int kSumSlot = kScratchSlot;
constexpr int kShiftedSlot = kScratchSlot + 1;
constexpr double kLargeCurrent = 5e-5;  // A, marked in the list of matches
constexpr double kMostMagnification = 64;

TrackCurves CurvesOf(TrackStore& tracks, int slot) {
  TrackCurves curves{tracks.Points(0, slot), tracks.Points(1, slot), {}};
  if (HasRing(tracks.Record(slot).Mode)) curves.ring = tracks.Points(2, slot);
  return curves;
}

}  // namespace

frmCalculation::frmCalculation(Workstation& workstation, Host& host)
    : Form(host, kName, "aA(x)+c ? bB(x) = C"),
      workstation_(workstation),
      a_(txtOpeA, updOpeA),
      b_(txtOpeB, updOpeB),
      c_(txtOpeC, updOpeC) {
  for (TextBox* box : {&txtOpeATitle, &txtOpeARPM, &txtOpeAScanrate, &txtOpeBTitle, &txtOpeBRPM,
                       &txtOpeBScanrate, &txtDebug}) {
    box->read_only = true;
  }
  txtDebug.multiline = true;
  txtXBShift.SetTip("Added to every x of B, in the unit of its x axis");
  txtc.SetTip("Added to the first current column of A times a, in A");
  PrevGraph.SetTip("Light blue: A; light green: B, shifted; light cyan: C");
  txtGraphSize.SetTip("Magnification of the picture, 1 to 64");
  HScroll1.SetTip("Moves the magnified part to the right and back");
  VScroll1.SetTip("Moves the magnified part up and down");
  txtDebug.SetTip("x of A, the matched x of B, and both indexes; * marks currents above 5e-5 A");
  WireControls();
}

void frmCalculation::WireControls() {
  a_.on_change = b_.on_change = [this] { ShowTracks(); };
  c_.on_change = [this] { ShowC(); };
  opnOperator.on_select = [this](int) { Forget(); };
  for (TextBox* box : {&txta, &txtb, &txtc}) {
    box->on_change = [this] { Forget(); };
  }
  txtXBShift.on_change = [this] {
    Forget();
    PrepareB();
    DrawTracks();
  };
  cmdCalc.on_click = [this] { Calculate(); };
  cmdUpdate.on_click = [this] { UpdateTrack(); };
  const auto typed_size = [this] { Magnify(ParseLenient(txtGraphSize.text())); };
  txtGraphSize.on_commit = typed_size;
  updGraphSize.on_up = [this] { Magnify(magnification_ * 2); };
  updGraphSize.on_down = [this] { Magnify(magnification_ / 2); };
  HScroll1.on_up = [this] { Scroll(1, 0); };
  HScroll1.on_down = [this] { Scroll(-1, 0); };
  VScroll1.on_up = [this] { Scroll(0, 1); };
  VScroll1.on_down = [this] { Scroll(0, -1); };
}

bool frmCalculation::Load() {
  generation_ = workstation_.DataGeneration;
  ShowTracks();
  return true;
}

void frmCalculation::Activate() {
  if (generation_ == workstation_.DataGeneration && !OperandsChanged()) return;
  generation_ = workstation_.DataGeneration;
  ShowTracks();
}

frmCalculation::Operand frmCalculation::Take(int track) const {
  Operand operand{tracks().Record(track), {}};
  operand.points.Keep(tracks(), track);
  return operand;
}

bool frmCalculation::IsStill(const Operand& operand, int track) const {
  return operand.record == tracks().Record(track) && operand.points.AreStill(tracks(), track);
}

bool frmCalculation::OperandsChanged() const {
  return !IsStill(seen_a_, a_.track()) || !IsStill(seen_b_, b_.track());
}

void frmCalculation::RememberOperands() {
  seen_a_ = Take(a_.track());
  seen_b_ = Take(b_.track());
}

TrackSumTerms frmCalculation::Terms() const {
  return {ParseLenient(txta.text()), ParseLenient(txtb.text()), ParseLenient(txtc.text()),
          opnOperator.selected() == 1, ParseLenient(txtXBShift.text())};
}

void frmCalculation::ShowTracks() {
  const auto show = [this](int track, Label& mode, TextBox& title, TextBox& rpm, TextBox& rate) {
    ShowTrackHeader(tracks(), track, mode, title, rpm);
    rate.SetText(HoldsTrack(tracks(), track) ? PlainNumber(tracks().Record(track).Scanrate) : "");
  };
  show(a_.track(), lblAmode, txtOpeATitle, txtOpeARPM, txtOpeAScanrate);
  show(b_.track(), lblBmode, txtOpeBTitle, txtOpeBRPM, txtOpeBScanrate);
  Forget();
  RememberOperands();
  ShowC();
  PrepareB();
  DrawTracks();
}

void frmCalculation::ShowC() {
  // The title that a result will be given stays while another place for it is chosen.
  if (!ready_) txtOpeCTitle.SetText(tracks().Record(c_.track()).Title);
}

void frmCalculation::PrepareB() {
  const double shift = Terms().x_shift;
  tracks().CopyTrackHeader(b_.track(), kShiftedSlot);
  tracks().CopyTrackData(b_.track(), kShiftedSlot);
  // Its turning points move along, or they would not be found where they are.
  for (double& vertex : tracks().Record(kShiftedSlot).V) vertex += shift;
  for (std::int32_t p = 0; p < tracks().PointCount(kShiftedSlot); ++p) {
    tracks().SetValue(0, kShiftedSlot, p, tracks().Value(0, kShiftedSlot, p) + shift);
  }
}

void frmCalculation::Forget() {
  const bool drawn = ready_;
  ready_ = false;
  if (drawn) DrawTracks();
  sum_ = {};
  cmdUpdate.SetEnabled(false);
  txtDebug.SetText({});
  lblNote.SetText({});
}

std::string frmCalculation::Refusal() const {
  const std::int32_t a = tracks().Record(a_.track()).Mode;
  const std::int32_t b = tracks().Record(b_.track()).Mode;
  for (const int track : {a_.track(), b_.track()}) {
    if (!HoldsTrack(tracks(), track)) return "Track " + PlainNumber(track) + " is empty.";
  }
  // Of the tracks with potentials, sweeps alone: the others have no turning points to cut A at.
  const bool same_axis = TraitsOf(a).x == TraitsOf(b).x && (IsSweep(a) || !XIsPotential(a));
  if (!same_axis) {
    return "Nothing computed: a " + std::string(AtOrNone(ModeName, a)) + " track and a " +
           std::string(AtOrNone(ModeName, b)) + " track cannot be combined.";
  }
  if (tracks().PointCount(a_.track()) == 0) return "Track A has no points.";
  if (DistinctAbscissae(tracks().Points(0, kShiftedSlot)).size() < 2) {
    return "Track B has no two points at different x, so nothing can be interpolated.";
  }
  return {};
}

bool frmCalculation::ScanRatesDiffer() const {
  const TrackRecord& a = tracks().Record(a_.track());
  return IsSweep(a.Mode) && a.Scanrate != tracks().Record(b_.track()).Scanrate;
}

void frmCalculation::Calculate() {
  Forget();
  const TrackSumTerms terms = Terms();
  txtOpeCTitle.SetText(TrackSumTitle(terms, a_.track(), b_.track()));
  PrepareB();
  if (const std::string why = Refusal(); !why.empty()) return lblNote.SetText(why);
  if (ScanRatesDiffer()) {
    return host().dialogs.Message("The scanrate of Track A is different from that of Track B!");
  }
  std::int32_t removed_a = 0;
  {
    const TrackChange change(workstation_, "Calculation", {a_.track()});
    removed_a = RemoveEqualAbscissae(tracks(), a_.track());
  }
  const std::int32_t removed_b = RemoveEqualAbscissae(tracks(), kShiftedSlot);
  RememberOperands();
  sum_ = Compute(terms);
  KeepResult();
  ready_ = true;
  cmdUpdate.SetEnabled(true);
  DrawTracks();
  ShowMatches();
  if (removed_a > 0 && workstation_.shown_track == a_.track()) {
    workstation_.ShowTrack(a_.track());
  }

  std::string note = PlainNumber(sum_.x.size()) + " points.";
  if (removed_a > 0) {
    note += " Removed from track " + PlainNumber(a_.track()) +
            ", x as in the point before: " + PlainNumber(removed_a) + " (Undo gives them back).";
  }
  if (removed_b > 0) {
    note += " Likewise left out of B, which stays as it is: " + PlainNumber(removed_b) + ".";
  }
  const auto left_out = static_cast<std::size_t>(tracks().PointCount(a_.track())) - sum_.x.size();
  if (left_out > 0) {
    note += " Left out, as B has no such sweep: the last " + PlainNumber(left_out) + " of A.";
  }
  lblNote.SetText(note);
}

TrackSum frmCalculation::Compute(const TrackSumTerms& terms) {
  const TrackCurves a = CurvesOf(tracks(), a_.track());
  const TrackCurves b = CurvesOf(tracks(), kShiftedSlot);
  TrackSum sum;
  if (!IsSweep(tracks().Record(a_.track()).Mode)) {
    AppendSum(a, {0, a.x.size() - 1}, b, 0, terms, sum);
    return sum;
  }
  const std::vector<SweepRange> of_a = SweepRanges(tracks(), a_.track());
  const std::vector<SweepRange> of_b = SweepRanges(tracks(), kShiftedSlot);
  for (std::size_t s = 0; s < std::min(of_a.size(), of_b.size()); ++s) {
    AppendSum(a, of_a[s], b, of_b[s].first, terms, sum);
  }
  return sum;
}

// Into scratch slot 21 too.
void frmCalculation::KeepResult() {
  tracks().CopyTrackHeader(a_.track(), kSumSlot);
  CopyTimeColumn(tracks(), a_.track(), kSumSlot);
  tracks().Record(kSumSlot).pnum = static_cast<std::int32_t>(sum_.x.size());
  PutPoints(tracks(), 0, kSumSlot, sum_.x);
  PutPoints(tracks(), 1, kSumSlot, sum_.current);
  if (!sum_.ring.empty()) PutPoints(tracks(), 2, kSumSlot, sum_.ring);
}

void frmCalculation::ShowMatches() {
  const std::span<const double> b = tracks().Points(0, kShiftedSlot);
  std::string text = "xTrackA\txTrackB\ti\tSB\n";
  for (std::size_t p = 0; p < sum_.x.size(); ++p) {
    text += PlainNumber(sum_.x[p]) + "\t" + PlainNumber(b[sum_.matched[p]]) + "\t" +
            PlainNumber(p) + "\t" + PlainNumber(sum_.matched[p]);
    text += sum_.current[p] > kLargeCurrent ? "*\n" : "\n";
  }
  txtDebug.SetText(text);
}

void frmCalculation::UpdateTrack() {
  if (!ready_) return;
  if (OperandsChanged()) {
    ShowTracks();
    return lblNote.SetText("Track A or B was changed meanwhile; nothing was written.");
  }
  const int target = c_.track();
  {
    const TrackChange change(workstation_, "Calculation into track " + PlainNumber(target),
                             {target});
    KeepResult();
    tracks().Record(kSumSlot).Title = txtOpeCTitle.text();
    tracks().CopyTrackHeader(kSumSlot, target);
    tracks().CopyTrackData(kSumSlot, target);
    CopyTimeColumn(tracks(), kSumSlot, target);
  }
  if (target == workstation_.shown_track) workstation_.ShowTrack(target);
  if (target == a_.track() || target == b_.track()) ShowTracks();
}

void frmCalculation::DrawSlot(int slot, Colour colour) {
  PrevGraph.Polyline(tracks().Points(0, slot), tracks().Points(1, slot), colour);
}

void frmCalculation::DrawTracks() {
  PrevGraph.Clear();
  const int a = a_.track();
  if (!HoldsTrack(tracks(), a)) return;
  const DisplayRange of_a = RangeOf(tracks(), a);
  PlotRange range{std::min(of_a.x_min, of_a.x_max), std::min(of_a.y_min, of_a.y_max),
                  std::max(of_a.x_min, of_a.x_max), std::max(of_a.y_min, of_a.y_max)};
  const bool has_b = HoldsTrack(tracks(), b_.track());
  for (const int slot : {kShiftedSlot, kSumSlot}) {
    if (slot == kSumSlot ? !ready_ : !has_b) continue;
    const TrackCurves curves = CurvesOf(tracks(), slot);
    for (std::size_t p = 0; p < curves.x.size(); ++p) Extend(range, curves.x[p], curves.current[p]);
  }
  PrevGraph.SetFormats(PreviewXFormat(tracks().Record(a).Mode), "0.0e+0");
  PrevGraph.SetRange(range.x1, range.y1, range.x2, range.y2);
  PrevGraph.SetSteps(TickStep(range.x1, range.x2), TickStep(range.y1, range.y2));
  PrevGraph.SetAxisTitles("Potential /V", "Current /A");
  if (!PrevGraph.Zoomed()) {
    whole_ = PrevGraph.shown();
    magnification_ = 1;
    txtGraphSize.SetText("1");
  }
  DrawSlot(a, kLightBlue);
  if (has_b) DrawSlot(kShiftedSlot, kLightGreen);
  if (ready_) DrawSlot(kSumSlot, kLightCyan);
}

void frmCalculation::Magnify(double magnification) {
  magnification_ = std::clamp(magnification, 1.0, kMostMagnification);
  txtGraphSize.SetText(PlainNumber(magnification_));
  if (magnification_ == 1) return PrevGraph.ResetZoom();
  // About the middle of what is seen; Scroll keeps it inside.
  const WorldWindow seen = PrevGraph.shown();
  const double width = (whole_.x2 - whole_.x1) / magnification_;
  const double height = (whole_.y2 - whole_.y1) / magnification_;
  const double x = (seen.x1 + seen.x2) / 2, y = (seen.y1 + seen.y2) / 2;
  PrevGraph.ShowWindow({x - width / 2, y - height / 2, x + width / 2, y + height / 2});
  Scroll(0, 0);
}

void frmCalculation::Scroll(double right, double up) {
  constexpr double kStep = 0.25;
  const WorldWindow seen = PrevGraph.shown();
  if (!PrevGraph.Zoomed()) return;
  const auto moved = [](double from, double to, double part, double low, double high) {
    // Lengths may be negative: y falls from the top edge to the bottom one.
    const double sign = high < low ? -1 : 1;
    const double room = std::max((high - low) * sign - (to - from) * sign, 0.0);
    const double place = ((from - low) + part * (to - from)) * sign;
    return low + sign * std::clamp(place, 0.0, room);
  };
  const double x = moved(seen.x1, seen.x2, kStep * right, whole_.x1, whole_.x2);
  const double y = moved(seen.y1, seen.y2, -kStep * up, whole_.y1, whole_.y2);
  PrevGraph.ShowWindow({x, y, x + (seen.x2 - seen.x1), y + (seen.y2 - seen.y1)});
}

LayoutNode frmCalculation::Layout() {
  using namespace layout;
  const auto operand = [](const char* name, TextBox& number, UpDown& arrows, Label& mode,
                          TextBox& title, TextBox& rpm, TextBox& rate) {
    return Group(
        name, {Fields({Field("Track", number, &arrows), Field("Mode", mode), Field("Title", title),
                       Field("RPM", rpm), Field("Scan rate /mV", rate)})});
  };
  return Rows({
      Columns(
          {
              Rows({
                  operand("Track A", txtOpeA, updOpeA, lblAmode, txtOpeATitle, txtOpeARPM,
                          txtOpeAScanrate),
                  operand("Track B", txtOpeB, updOpeB, lblBmode, txtOpeBTitle, txtOpeBRPM,
                          txtOpeBScanrate),
                  Group("aA(x)+c ? bB(x) = C",
                        {Fields({Field("a", txta), Field("c", txtc)}), Item(opnOperator),
                         Fields({Field("b", txtb), Field("X-shift:", txtXBShift)}), Item(cmdCalc)}),
                  Stretch(),
              }),
              Rows({Item(PrevGraph, 1),
                    Columns({Fields({Field("Graph size", txtGraphSize, &updGraphSize)}),
                             Text("Across"), Item(HScroll1), Text("Up"), Item(VScroll1),
                             Stretch()})},
                   3),
              Rows({Group("Track C", {Fields({Field("Track", txtOpeC, &updOpeC),
                                              Field("Title", txtOpeCTitle)}),
                                      Item(cmdUpdate)}),
                    Group("Matched points", {Item(txtDebug, 1)}, 1)},
                   1),
          },
          1),
      Item(lblNote),
  });
}

}  // namespace zento
