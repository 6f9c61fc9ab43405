#include "analysis/tafel_form.h"

#include <algorithm>
#include <cstddef>
#include <span>

#include "analysis/track_points.h"
#include "core/palette.h"
#include "core/settings.h"
#include "core/tables.h"
#include "core/track_history.h"
#include "core/track_store.h"
#include "text/format.h"
#include "text/number.h"
#include "text/status.h"

namespace zento {
namespace {

constexpr double kPointRadius = 2;
constexpr int kFontSize = 10;
constexpr int kLabelLeft = 6, kLabelTop = 4;  // of the y axis' label, in pixels
constexpr PlotRange kInitialRange{-0.1, -4, 0.1, -3};

const char* NameOf(TafelBranch branch) {
  return branch == TafelBranch::kAnodic ? "anodic" : "cathodic";
}

std::string NoteOn(const TafelFit& fit) {
  std::string note = fit.branch == TafelBranch::kAnodic
                         ? "Anodic branch: α*ne stands for (1 - α) times n."
                         : "Cathodic branch: α*ne is α times n.";
  if (fit.left_out > 0) {
    note += " Points without current, left out: " + PlainNumber(fit.left_out) + ".";
  }
  if (fit.unusual_sign) {
    note += fit.branch == TafelBranch::kAnodic
                ? " The currents are negative: do they fall again, as behind a peak?"
                : " The currents are positive: do they fall again, as behind a peak?";
  }
  return note;
}

AnalysisResult ResultOf(const TafelFit& fit) {
  AnalysisResult result;
  result.fit = fit.quality;
  // Of the anodic branch, +1, alpha_n is (1 - alpha) n.
  const double branch = fit.branch == TafelBranch::kAnodic ? 1 : -1;
  result.quantities = {{"alpha_n", "", fit.alpha_n, fit.alpha_n_error},
                       {"log_i0", "", fit.log_i0, {}},  // its error is the intercept's
                       {"i0", "A/cm2", fit.i0_density, fit.i0_density_error},
                       {"branch", "", branch, {}}};
  result.columns = {
      {"eta", "V", fit.overpotential}, {"i", "A", fit.current}, {"log_i", "", fit.log_current}};
  return result;
}

}  // namespace

frmTafelAnalyzer::frmTafelAnalyzer(Workstation& workstation, Host& host)
    : AnalysisForm(workstation, host, kName, "Tafel Analysis"), graph_(host, kGraphName) {
  txtTitle.read_only = true;
  txtRPM.read_only = true;
  txtRedoxPotential.SetTip(
      "Redox potential of the couple in V, against the reference electrode of the track");
  txtArea.SetTip("Electrode area in cm2; Calculation also stores it with the track");
  cmdCalc.SetTip(
      "Fits log10|i| against the overpotential. Choose points of one branch at least 0.12 V / n "
      "from the redox potential, where the reaction back is below 1 %, and with currents below a "
      "hundredth of the limiting or peak current.");
  range.describe = [this](std::int32_t point) { return PointText(tracks(), Track(), point); };
  range.on_change = [this] { DrawPreview(); };
  txtRedoxPotential.on_commit = [this] { LeaveRedoxPotential(); };
  txtArea.on_commit = [this] { LeaveArea(); };
  cmdCalc.on_click = [this] { Calculate(); };
}

void frmTafelAnalyzer::ShowSettings() {
  txtRedoxPotential.SetText(PlainNumber(settings().TaEred));
  // A settings file may hold anything.
  txtArea.SetText(PlainNumber(settings().TaArea));
  LeaveArea();
}

void frmTafelAnalyzer::ShowTrack() {
  const int track = Track();
  const bool holds = HoldsTrack(tracks(), track);
  ShowTrackHeader(tracks(), track, lblMode, txtTitle, txtRPM);
  lblpnum.SetText(PlainNumber(holds ? tracks().PointCount(track) : 0));
  if (holds) {
    range.ShowWhole(tracks().PointCount(track));
  } else {
    range.Empty();
  }
  DrawPreview();
}

void frmTafelAnalyzer::DrawPreview() {
  DrawSelection(PrevGraph, tracks(), Track(), range.start(), range.end());
}

void frmTafelAnalyzer::LeaveRedoxPotential() {
  settings().TaEred = ParseLenient(txtRedoxPotential.text());
  txtRedoxPotential.SetText(PlainNumber(settings().TaEred));
}

void frmTafelAnalyzer::LeaveArea() {
  const double typed = ParseLenient(txtArea.text());
  settings().TaArea = typed > 0 ? typed : 1;
  txtArea.SetText(PlainNumber(settings().TaArea));
}

void frmTafelAnalyzer::Calculate() {
  plot_range_ = kInitialRange;
  ShowReport({}, {});
  lblNote.SetText({});
  {
    const TrackChange change(workstation(), "Edit of the Tafel area", {Track()});
    tracks().Record(Track()).Area = settings().TaArea;
  }

  const Result<TafelFit> fit = Fit();
  if (!fit.ok()) return Refuse(fit.why());
  DrawFit(fit.value());
  ShowReport(ReportOf(fit.value()), ResultOf(fit.value()));
  lblNote.SetText(NoteOn(fit.value()));
}

Result<TafelFit> frmTafelAnalyzer::Fit() const {
  const int track = Track();
  const std::int32_t mode = tracks().Record(track).Mode;
  if (!HoldsTrack(tracks(), track)) {
    return Status::Failure("Track " + PlainNumber(track) + " is empty.");
  }
  if (!XIsPotential(mode)) {
    return Status::Failure("A Tafel plot needs currents at different potentials; a " +
                           std::string(AtOrNone(ModeName, mode)) + " track has none.");
  }
  const auto [first, count] = range.Within(tracks().PointCount(track));
  if (range.empty() || count == 0) {
    return Status::Failure("No point is chosen: the range ends before it starts.");
  }
  return FitTafel(tracks().Points(0, track).subspan(first, count),
                  tracks().Points(1, track).subspan(first, count), settings().TaEred,
                  settings().TaArea);
}

void frmTafelAnalyzer::DrawFit(const TafelFit& fit) {
  const auto [least, most] =
      std::minmax_element(fit.overpotential.begin(), fit.overpotential.end());
  // The line begins at eta = 0, where i0 is read off.
  const double from = std::min(*least, 0.0);
  const double to = std::max(*most, 0.0);
  const StraightLine& line = fit.quality.line;
  const auto at = [&](double eta) { return line.slope * eta + line.intercept; };
  for (std::size_t i = 0; i < fit.current.size(); ++i) {
    Extend(plot_range_, fit.overpotential[i], fit.log_current[i]);
  }
  Extend(plot_range_, from, at(from));
  Extend(plot_range_, to, at(to));
  plot_range_ = WithMargin(plot_range_);

  Graph& graph = graph_.Show();
  const PlotRange& r = plot_range_;
  graph.View(r.x1, r.y2, r.x2, r.y1);
  graph.SetXFormat("0.0");
  graph.SetYFormat("0.0");
  graph.Axis(TickStep(r.x1, r.x2), TickStep(r.y1, r.y2), kFontSize, "η/ V");
  graph.CurPrn(kLabelLeft, kLabelTop, kFontSize, "log|i /A|");
  graph.SetTitle("Tafel Plot");
  for (std::size_t i = 0; i < fit.current.size(); ++i) {
    graph.VCircle(fit.overpotential[i], fit.log_current[i], kPointRadius, kLightBlue);
  }
  graph.VLine(from, at(from), to, at(to), kLightGreen);
}

std::string frmTafelAnalyzer::ReportOf(const TafelFit& fit) const {
  std::string report;
  const auto line = [&](const char* label, const std::string& value) {
    report += ReportLine({label, value});
  };
  const int track = Track();
  line("File", workstation().FileTitle);
  line("Track", PlainNumber(track));
  line("Title", tracks().Record(track).Title);
  line("Ered/V", Format(settings().TaEred, "0.0###"));
  line("Area /cm2", Format(settings().TaArea, "0.0###"));
  line("Nstart", PlainNumber(range.start()));
  line("Nend", PlainNumber(std::min(range.end(), tracks().PointCount(track) - 1)));
  line("Branch", NameOf(fit.branch));
  line("logi0", Format(fit.log_i0, "0.0000"));
  line("α*ne:", Format(fit.alpha_n, "0.0000"));
  line("i0 /Acm-2", Format(fit.i0_density, "0.000e+0"));
  report += "η/V\ti /A\tlog|i|\r\n";
  for (std::size_t i = 0; i < fit.current.size(); ++i) {
    report +=
        ReportLine({Format(fit.overpotential[i], "0.0000"), Format(fit.current[i], "0.0000e+0"),
                    Format(fit.log_current[i], "0.0000")});
  }
  return report;
}

LayoutNode frmTafelAnalyzer::Layout() {
  using namespace layout;
  return Rows({
      Columns(
          {
              Rows({
                  Group("Track", {Fields({Field("Track", txtDataNum, &UpDown1),
                                          Field("Mode", lblMode), Field("Title", txtTitle),
                                          Field("RPM", txtRPM), Field("Data Num:", lblpnum)})}),
                  Group("Electrode", {Fields({Field("Redox Potential/V", txtRedoxPotential),
                                              Field("A/cm2", txtArea)})}),
                  range.Panel(),
                  Item(cmdCalc),
                  Stretch(),
              }),
              Rows({Item(PrevGraph, 1)}, 3),
              Rows({ReportPanel()}, 2),
          },
          1),
      Item(lblNote),
  });
}

}  // namespace zento
