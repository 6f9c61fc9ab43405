#include "analysis/cottrell_form.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

#include "analysis/track_points.h"
#include "core/palette.h"
#include "core/tables.h"
#include "core/track_history.h"
#include "core/track_store.h"
#include "text/format.h"
#include "text/number.h"

namespace zento {
namespace {

constexpr PlotRange kInitialRange{-0.2, -1e-6, 0.5, 1e-6};

}  // namespace

frmCottrellEquation::frmCottrellEquation(Workstation& workstation, Host& host)
    : AnalysisForm(workstation, host, kName, "Cottrell Equation Analysis") {
  txtRPM.read_only = true;
  CottrellGraph.SetTip("Current in A against 1/sqrt(t) in s^-1/2");
  cmdCalc.SetTip(
      "Fits a line to the points. Leave out the first ones, which the double layer and the delay "
      "with which the step was seen falsify.");
  WireBoxes();
  range.describe = [this](std::int32_t point) { return PointText(tracks(), Track(), point); };
  range.on_change = [this] { MakePoints(); };
  cmdCalc.on_click = [this] { Calculate(); };
}

void frmCottrellEquation::WireBoxes() {
  const auto bind = [this](TextBox& box, const std::function<void()>& store) {
    box.on_change = [this, store] {
      if (!HoldsTrack(tracks(), Track())) return;
      const TrackChange change(this->workstation(), "Edit of the Cottrell parameters", {Track()},
                               TrackChange::Kind::kMerge);
      store();
    };
    // The main window shows the same header.
    box.on_lost_focus = [this] {
      if (workstation().shown_track == Track()) workstation().ShowTrack(Track());
    };
  };
  bind(txtne, [this] { Record().ne = ParseLenient(txtne.text()); });
  bind(txtConc, [this] { Record().Conc = ParseLenient(txtConc.text()); });
  bind(txtArea, [this] { Record().Area = ParseLenient(txtArea.text()); });
  bind(txtTitle, [this] { Record().Title = txtTitle.text(); });
}

void frmCottrellEquation::ShowTrack() {
  range.Empty();
  ShowRecord();
}

void frmCottrellEquation::ShowTrackAgain() {
  // An entry may have been taken back.
  txtne.SetText({});
  ShowRecord();
}

void frmCottrellEquation::ShowRecord() {
  if (!HoldsTrack(tracks(), Track())) {
    lblMode.SetText({});
    for (TextBox* box : {&txtTitle, &txtRPM, &txtConc, &txtArea, &txtne}) box->SetText({});
    range.Empty();
    return MakePoints();
  }
  const TrackRecord& record = Record();
  ShowTrackHeader(tracks(), Track(), lblMode, txtTitle, txtRPM);
  txtConc.SetText(PlainNumber(record.Conc));
  txtArea.SetText(PlainNumber(record.Area));
  // What was typed for one track goes on for the next.
  if (txtne.text().empty()) txtne.SetText(PlainNumber(record.ne));
  range.ShowAgain(tracks().PointCount(Track()));
  MakePoints();
}

void frmCottrellEquation::MakePoints() {
  points_ = {};
  if (IsStep() && !range.empty()) {
    const auto [first, count] = range.Within(tracks().PointCount(Track()));
    points_ = MakeCottrellPoints(tracks().Points(0, Track()).subspan(first, count),
                                 tracks().Points(1, Track()).subspan(first, count));
  }
  plot_range_ = kInitialRange;
  for (std::size_t i = 0; i < points_.x.size(); ++i) {
    Extend(plot_range_, points_.x[i], points_.y[i]);
  }
  plot_range_ = WithMargin(plot_range_);
  DrawPoints();
}

void frmCottrellEquation::DrawPoints() {
  CottrellGraph.Clear();
  if (points_.x.empty()) return;
  const PlotRange& r = plot_range_;
  CottrellGraph.SetRange(r.x1, r.y1, r.x2, r.y2);
  CottrellGraph.SetSteps(TickStep(r.x1, r.x2), TickStep(r.y1, r.y2));
  CottrellGraph.SetAxisTitles("Potential /V", "Current /A");
  for (std::size_t i = 0; i < points_.x.size(); ++i) {
    CottrellGraph.Mark(points_.x[i], points_.y[i], kLightRed);
  }
}

void frmCottrellEquation::Calculate() {
  if (!IsStep()) return;
  if (range.empty()) ShowTrack();  // the slot was empty when it was shown
  const double electrons = ParseLenient(txtne.text());
  const double concentration = ParseLenient(txtConc.text());
  const double area = ParseLenient(txtArea.text());
  if (!(electrons > 0 && concentration > 0 && area > 0)) {
    return Refuse("The parameters (ne, Conc., and Area) must be above zero.");
  }
  // Of the track as it is now: a measurement may have ended in it since it was shown.
  MakePoints();
  const auto line = static_cast<CottrellLine>(std::max(opnCalcMode.selected(), 0));
  const auto fit = FitCottrell(points_, line);
  if (!fit) {
    return Refuse("The points give no line: choose at least two, at different times.");
  }
  const double diffusion = ApparentDiffusion(fit->line.slope, electrons, area, concentration);
  if (!std::isfinite(diffusion)) {
    return Refuse("The parameters (ne, Conc., and Area) are too small for a result.");
  }
  DrawLine(fit->line);
  AnalysisResult result;
  result.fit = *fit;
  result.quantities = {{"Dapp", "cm2/s", diffusion, {}},
                       {"n", "", electrons, {}},
                       {"area", "cm2", area, {}},
                       {"C", "mol/cm3", concentration, {}}};
  if (fit->slope_error && fit->line.slope != 0) {
    result.quantities.front().error = diffusion * 2 * std::abs(*fit->slope_error / fit->line.slope);
  }
  result.columns = {{"x", "s^(-1/2)", points_.x}, {"i", "A", points_.y}};
  ShowReport(ReportText(electrons, area, concentration, diffusion), std::move(result));
}

void frmCottrellEquation::DrawLine(const StraightLine& line) {
  const double end = plot_range_.x2;
  CottrellGraph.Line(0, line.intercept, end, line.slope * end + line.intercept, kLightBlue);
}

std::string frmCottrellEquation::ReportText(double electrons, double area, double concentration,
                                            double diffusion) {
  std::string report;
  const auto line = [&](const char* label, const std::string& value) {
    report += ReportLine({label, value});
  };
  line("title:", Record().Title);
  line("time:", Record().MeasTime);
  line("ne ", SignedNumber(electrons));
  line("Area /cm2", Format(area, "#0.0####"));
  line("C /molcm-3", Format(concentration, "0.0##e+0#"));
  line("Dapp /cm2s-1", Format(diffusion, "0.0##e+0#"));
  line("1/sqrt(t)", "i/A");
  for (std::size_t i = 0; i < points_.x.size(); ++i) {
    report += ReportLine({Format(points_.x[i], "0.0000"), Format(points_.y[i], "0.000e+0")});
  }
  return report;
}

LayoutNode frmCottrellEquation::Layout() {
  using namespace layout;
  return Rows({
      Columns(
          {
              Rows({
                  Group("Track",
                        {Fields({Field("Track", txtDataNum, &UpDown1), Field("Mode", lblMode),
                                 Field("Title", txtTitle), Field("RPM", txtRPM)})}),
                  Group("Parameters", {Fields({Field("ne", txtne), Field("Conc. /molcm-3", txtConc),
                                               Field("Area /cm2", txtArea)})}),
                  range.Panel(),
                  Group("Line", {Item(opnCalcMode)}),
                  Item(cmdCalc),
                  Stretch(),
              }),
              Rows({Item(CottrellGraph, 1)}, 3),
              Rows({ReportPanel()}, 2),
          },
          1),
  });
}

}  // namespace zento
