#include "analysis/kl_form.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <span>
#include <utility>

#include "analysis/track_points.h"
#include "core/palette.h"
#include "core/settings.h"
#include "core/tables.h"
#include "core/track_store.h"
#include "text/format.h"
#include "text/number.h"

namespace zento {
namespace {

constexpr double kPointRadius = 2;
constexpr int kFontSize = 10;
// The origin stays in view.
constexpr PlotRange kInitialRange{-0.2, -0.2, 1, 1};

constexpr int kGreyed = 2;
constexpr int kSubtractValue = 1;
constexpr int kUseBaseTrack = 2;

constexpr char kNotProper[] = "Parameters are not proper!";

// A box that writes its setting at every change.
void Bind(TextBox& box, double& setting) {
  box.on_change = [&box, &setting] { setting = ParseLenient(box.text()); };
}

}  // namespace

frmKoutecky_Levich::frmKoutecky_Levich(Workstation& workstation, Host& host)
    : AnalysisForm(workstation, host, kName, "Koutecky-Levich Analysis"),
      start_(txtStart, updStart, lblStartPoint),
      end_(txtEnd, updEnd, lblEndPoint),
      base_end_(txtBaseEnd, updBaseEnd, lblBaseEndPoint),
      graph_(host, kGraphName) {
  for (TextBox* box : {&txtTitle, &txtRPM, &txtBaseTitle, &txtBaseRPM, &txtBaseTrack}) {
    box->read_only = true;
  }
  WireBoxes();
  WireTrack();
  cmdKLCalc.on_click = [this] { Calculate(); };
}

void frmKoutecky_Levich::WireBoxes() {
  txtUseVoltage.on_commit = [this] { LeaveWindow(); };
  txtKLVrange.on_commit = [this] { LeaveWindow(); };
  Settings& s = settings();
  txtArea.on_change = [this, &s] { s.KLElectrodeArea = std::abs(ParseLenient(txtArea.text())); };
  Bind(txtKLViscosity, s.KLViscosity);
  Bind(txtDm, s.KLDm);
  Bind(txtConc, s.KLConc);
  Bind(txtne, s.KLne);
  opnMethod.on_select = [&s](int method) { s.KLMethod = static_cast<std::int16_t>(method); };
  opnVariable.on_select = [&s](int unknown) { s.KLVariable = static_cast<std::int16_t>(unknown); };
  txtKLVrange.SetTip("Half the width of the potential window, V");
  txtArea.SetTip("cm2");
  cmdKLCalc.SetTip(
      "Plots the used tracks, or the points of a rotation-rate sweep, and fits a line");
}

void frmKoutecky_Levich::WireTrack() {
  chkUse.on_click = [this](int value) {
    tracks().kl.KLUseFlag[Current()] = static_cast<std::int16_t>(value == 1 ? 1 : 0);
  };
  const auto count = [this] { return tracks().PointCount(Track()); };
  start_.limits = [count] { return PointIndex::Limits{0, count() - 2, 0, count() - 2}; };
  end_.limits = [count] { return PointIndex::Limits{1, count() - 1, 1, count() - 1}; };
  base_end_.limits = [this] {
    const std::int32_t last = tracks().PointCount(BaseTrack()) - 1;
    return PointIndex::Limits{1, last, 0, last};
  };
  start_.on_change = [this] {
    tracks().kl.KLNStart[Current()] = start_.index();
    Redraw();
  };
  end_.on_change = [this] {
    tracks().kl.KLNEnd[Current()] = end_.index();
    Redraw();
  };
  base_end_.on_change = [this] {
    tracks().kl.KLBaseNEnd[Current()] = base_end_.index();
    Redraw();
  };
  txtSubVal.on_commit = [this] {
    tracks().kl.KLSubVal[Current()] = ParseLenient(txtSubVal.text());
  };
  opnBaseLine.on_select = [this](int mode) { ChooseBaseLine(mode); };
  updBase.on_up = [this] { ChooseBaseTrack((BaseTrack() + 1) % kTracks); };
  updBase.on_down = [this] { ChooseBaseTrack((BaseTrack() + kTracks - 1) % kTracks); };
}

void frmKoutecky_Levich::Activate() {
  AnalysisForm::Activate();
  if (Outdated()) ShowTrackAgain();
}

bool frmKoutecky_Levich::Outdated() const {
  if (Record() != shown_record_ || tracks().Record(BaseTrack()) != shown_base_) return true;
  const Ends ends = EndsOf(Track());
  return !start_.empty() && (start_.index() != ends.first || end_.index() != ends.last);
}

void frmKoutecky_Levich::ShowSettings() {
  InitializeParameters();
  const Settings& s = settings();
  txtUseVoltage.SetText(PlainNumber(s.KLVuse));
  txtKLVrange.SetText(PlainNumber(std::abs(s.KLVrange)));
  txtArea.SetText(PlainNumber(std::abs(s.KLElectrodeArea)));
  ShowQuantities();
  opnMethod.Select(s.KLMethod == 1 ? 1 : 0);
  opnVariable.Select(s.KLVariable >= 0 && s.KLVariable <= 3 ? s.KLVariable : 0);
}

void frmKoutecky_Levich::ShowQuantities() {
  const Settings& s = settings();
  txtKLViscosity.SetText(PlainNumber(s.KLViscosity));
  txtDm.SetText(PlainNumber(s.KLDm));
  txtConc.SetText(PlainNumber(s.KLConc));
  txtne.SetText(PlainNumber(s.KLne));
}

bool frmKoutecky_Levich::Usable(int track) const {
  return HoldsTrack(tracks(), track) && !XIsTime(tracks().Record(track).Mode);
}

int frmKoutecky_Levich::BaseTrack() const {
  return std::clamp<int>(tracks().kl.KLBaseTrack[Current()], 0, kTracks - 1);
}

frmKoutecky_Levich::Ends frmKoutecky_Levich::EndsOf(int track) const {
  const auto at = static_cast<std::size_t>(track);
  const std::int32_t last = std::max(tracks().PointCount(track) - 1, 0);
  const std::int32_t end = tracks().kl.KLNEnd[at];
  return {std::clamp(tracks().kl.KLNStart[at], 0, last),
          end == 0 ? last : std::clamp(end, 0, last)};
}

PotentialWindow frmKoutecky_Levich::Window() const {
  const double half = std::abs(settings().KLVrange);
  return {settings().KLVuse - half, settings().KLVuse + half};
}

void frmKoutecky_Levich::ShowTrack() {
  const int track = Track();
  const KouteckyLevichLists& kl = tracks().kl;
  shown_record_ = tracks().Record(track);
  txtTitle.SetText(tracks().Record(track).Title);
  const bool usable = Usable(track);
  chkUse.SetEnabled(usable);
  if (usable) {
    txtRPM.SetText(PlainNumber(tracks().Record(track).RPM));
    lblpnum.SetText("Data Num: " + PlainNumber(tracks().PointCount(track)));
    const Ends ends = EndsOf(track);
    start_.Show(ends.first);
    end_.Show(ends.last);
    chkUse.SetValue(kl.KLUseFlag[Current()] == 1 ? 1 : 0);
  } else {
    txtRPM.SetText({});
    lblpnum.SetText("None");
    start_.Empty();
    end_.Empty();
    chkUse.SetValue(kGreyed);
  }
  txtSubVal.SetText(PlainNumber(kl.KLSubVal[Current()]));
  opnBaseLine.Select(kl.KLBaseMode[Current()]);
  ShowBaseTrack();
}

void frmKoutecky_Levich::ShowBaseTrack() {
  const int base = BaseTrack();
  shown_base_ = tracks().Record(base);
  txtBaseTrack.SetText(PlainNumber(base));
  txtBaseTitle.SetText(tracks().Record(base).Title);
  if (Usable(base)) {
    txtBaseRPM.SetText(PlainNumber(tracks().Record(base).RPM));
    lblbasepnum.SetText("Data Num: " + PlainNumber(tracks().PointCount(base)));
    const std::int32_t last = std::max(tracks().PointCount(base) - 1, 0);
    base_end_.Show(std::clamp(tracks().kl.KLBaseNEnd[Current()], 0, last));
  } else {
    txtBaseRPM.SetText({});
    lblbasepnum.SetText("None");
    base_end_.Empty();
  }
  Redraw();
}

void frmKoutecky_Levich::Redraw() {
  if (!start_.empty()) {
    start_.SetLabel(PointText(tracks(), Track(), start_.index()));
    end_.SetLabel(PointText(tracks(), Track(), end_.index()));
  }
  if (!base_end_.empty()) {
    base_end_.SetLabel(PointText(tracks(), BaseTrack(), base_end_.index()));
  }
  DrawPreview();
}

void frmKoutecky_Levich::DrawPreview() {
  const int track = Track();
  if (!Usable(track)) return PrevGraph.Clear();
  PrepareTrackPlot(PrevGraph, tracks(), track);
  const bool sweep = OneTrack();
  DrawChosenPoints(PrevGraph, tracks(), track, start_.index(), end_.index(),
                   [window = Window(), sweep](std::int32_t, double x) {
                     return !sweep && window.Holds(x) ? kLightRed : kLightBlue;
                   });
  if (tracks().kl.KLBaseMode[Current()] != kUseBaseTrack || !Usable(BaseTrack())) return;
  DrawChosenPoints(PrevGraph, tracks(), BaseTrack(), 0, base_end_.index(),
                   [](std::int32_t, double) { return kLightGreen; });
}

void frmKoutecky_Levich::LeaveWindow() {
  settings().KLVuse = ParseLenient(txtUseVoltage.text());
  settings().KLVrange = std::abs(ParseLenient(txtKLVrange.text()));
  DrawPreview();
}

void frmKoutecky_Levich::ChooseBaseLine(int mode) {
  tracks().kl.KLBaseMode[Current()] = static_cast<std::int16_t>(mode);
  UseWholeBaseTrack();
  ShowBaseTrack();
}

void frmKoutecky_Levich::ChooseBaseTrack(int track) {
  std::int32_t& end = tracks().kl.KLBaseNEnd[Current()];
  // Tracks differ in length: all of one is not all of the next.
  if (end == tracks().PointCount(BaseTrack()) - 1) end = 0;
  tracks().kl.KLBaseTrack[Current()] = static_cast<std::int16_t>(track);
  UseWholeBaseTrack();
  ShowBaseTrack();
}

void frmKoutecky_Levich::UseWholeBaseTrack() {
  if (tracks().kl.KLBaseMode[Current()] != kUseBaseTrack) return;
  std::int32_t& end = tracks().kl.KLBaseNEnd[Current()];
  if (end == 0) end = std::max(tracks().PointCount(BaseTrack()) - 1, 0);
}

void frmKoutecky_Levich::Points::Add(const std::optional<Point>& point, double rate) {
  if (!point) return;
  x.push_back(point->x);
  y.push_back(point->y);
  rpm.push_back(rate);
}

bool frmKoutecky_Levich::OneTrack() const {
  return XIsRotationRate(Record().Mode);
}

bool frmKoutecky_Levich::HasPotentials(int track) const {
  return XIsPotential(tracks().Record(track).Mode);
}

LevichMethod frmKoutecky_Levich::Method() const {
  return settings().KLMethod == 1 ? LevichMethod::kLevich : LevichMethod::kKouteckyLevich;
}

LevichUnknown frmKoutecky_Levich::Unknown() const {
  const int variable = settings().KLVariable;
  return variable >= 0 && variable <= 3 ? static_cast<LevichUnknown>(variable)
                                        : LevichUnknown::kElectrons;
}

LevichQuantities frmKoutecky_Levich::Quantities() const {
  const Settings& s = settings();
  return {s.KLne, s.KLViscosity, s.KLDm, s.KLConc};
}

std::optional<double> frmKoutecky_Levich::MeanCurrent(int track, const PotentialWindow& window,
                                                      Ends ends) {
  const std::span<const double> x = tracks().Points(0, track);
  if (!HasPotentials(track) || x.empty() || ends.first > ends.last) return std::nullopt;
  const auto first = static_cast<std::size_t>(ends.first);
  const auto count = static_cast<std::size_t>(ends.last - ends.first) + 1;
  return WindowMean(x.subspan(first, count), tracks().Points(1, track).subspan(first, count),
                    window);
}

double frmKoutecky_Levich::BaseCurrent(int track) {
  const auto at = static_cast<std::size_t>(track);
  const KouteckyLevichLists& kl = tracks().kl;
  if (kl.KLBaseMode[at] == kSubtractValue) return kl.KLSubVal[at];
  if (kl.KLBaseMode[at] != kUseBaseTrack) return 0;
  const int base = std::clamp<int>(kl.KLBaseTrack[at], 0, kTracks - 1);
  const std::int32_t last = tracks().PointCount(base) - 1;
  return MeanCurrent(base, Window(), {0, std::min(kl.KLBaseNEnd[at], last)}).value_or(0);
}

frmKoutecky_Levich::Points frmKoutecky_Levich::TrackPoints() {
  Points points;
  for (int track = 0; track < kTracks; ++track) {
    if (tracks().kl.KLUseFlag[static_cast<std::size_t>(track)] != 1) continue;
    const double rpm = tracks().Record(track).RPM;
    const auto current = MeanCurrent(track, Window(), EndsOf(track));
    std::optional<Point> point;
    if (current && rpm > 0) {
      point = LevichPoint(Method(), rpm, *current - BaseCurrent(track),
                          std::abs(settings().KLElectrodeArea));
    }
    points.Add(point, rpm);
    if (!point) points.left_out.push_back(track);
  }
  return points;
}

frmKoutecky_Levich::Points frmKoutecky_Levich::SweepPoints() {
  Points points;
  const int track = Track();
  const Ends ends = EndsOf(track);
  for (std::int32_t i = ends.first; i <= ends.last && i < tracks().PointCount(track); ++i) {
    const double rpm = tracks().Value(0, track, i);
    points.Add(LevichPoint(Method(), rpm, tracks().Value(1, track, i),
                           std::abs(settings().KLElectrodeArea)),
               rpm);
  }
  return points;
}

void frmKoutecky_Levich::Calculate() {
  const bool sweep = OneTrack();
  const Points points = sweep ? SweepPoints() : TrackPoints();
  if (points.x.empty()) {
    if (sweep) return Refuse("No valid Data");
    return Refuse(Method() == LevichMethod::kLevich ? "Please Check at least one 'Use' Check Box"
                                                    : "Please check at least one 'Use' Check Box");
  }
  DrawPlot(points);
  const std::size_t count = points.x.size();
  if (Method() == LevichMethod::kLevich) {
    const auto slope = FitThroughOrigin(points.x, points.y, count);
    if (!slope) return ReportFailure(points, {});
    DrawLine({*slope, 0});
    Report(points, QualityThroughOrigin(points.x, points.y, *slope));
  } else {
    const auto line = FitLine(points.x, points.y, count);
    if (!line) return ReportFailure(points, {});
    DrawLine(*line);
    Report(points, QualityOf(points.x, points.y, *line));
  }
}

void frmKoutecky_Levich::DrawPlot(const Points& points) {
  plot_range_ = kInitialRange;
  for (std::size_t i = 0; i < points.x.size(); ++i) {
    Extend(plot_range_, points.x[i], points.y[i]);
  }
  plot_range_ = WithMargin(plot_range_);
  const PlotRange& r = plot_range_;
  Graph& graph = graph_.Show();
  graph.SetYFormat("#.##e+#");
  graph.View(r.x1, r.y2, r.x2, r.y1);
  graph.Axis(TickStep(r.x1, r.x2), TickStep(r.y1, r.y2), kFontSize, "/Hz");
  graph.SetTitle("Koutecky-Levich Plot");
  for (std::size_t i = 0; i < points.x.size(); ++i) {
    graph.VCircle(points.x[i], points.y[i], kPointRadius, kLightBlue);
  }
}

void frmKoutecky_Levich::DrawLine(const StraightLine& line) {
  const double end = plot_range_.x2;
  graph_.Show().VLine(0, line.intercept, end, line.slope * end + line.intercept, kLightGreen);
}

void frmKoutecky_Levich::ReportFailure(const Points& points,
                                       const std::optional<LineQuality>& fit) {
  AnalysisResult result;
  result.refusal = kNotProper;
  result.fit = fit;
  ShowReport(std::string(kNotProper) + "\r\n", std::move(result));
  AddLeftOutTracks(points);
}

void frmKoutecky_Levich::AddLeftOutTracks(const Points& points) {
  if (points.left_out.empty()) return;
  std::string text = lblFit.text();
  if (!text.empty()) text += "\n";
  text += "used tracks without a point: ";
  for (std::size_t i = 0; i < points.left_out.size(); ++i) {
    text += (i > 0 ? ", " : "") + PlainNumber(points.left_out[i]);
  }
  lblFit.SetText(text);
}

double frmKoutecky_Levich::ReportedPotential() const {
  return OneTrack() ? tracks().Record(Track()).V[0] : settings().KLVuse;
}

void frmKoutecky_Levich::Store(LevichUnknown unknown, double value) {
  Settings& s = settings();
  if (unknown == LevichUnknown::kViscosity) s.KLViscosity = value;
  if (unknown == LevichUnknown::kDiffusion) s.KLDm = value;
  if (unknown == LevichUnknown::kConcentration) s.KLConc = value;
  if (unknown != LevichUnknown::kElectrons) ShowQuantities();
}

void frmKoutecky_Levich::Report(const Points& points, const LineQuality& fit) {
  LevichQuantities quantities = Quantities();
  const auto solved = SolveLevich(Method(), Unknown(), quantities, fit.line.slope);
  if (!solved) return ReportFailure(points, fit);
  quantities.Of(Unknown()) = *solved;
  Store(Unknown(), *solved);

  const double b = fit.line.intercept;
  const double jk = Method() == LevichMethod::kKouteckyLevich && b != 0 ? 1 / b : 0;
  AnalysisResult result;
  result.fit = fit;
  result.quantities = {{"n", "", quantities.electrons, {}},
                       {"viscosity", "cm2/s", quantities.viscosity, {}},
                       {"D", "cm2/s", quantities.diffusion, {}},
                       {"C", "mol/cm3", quantities.concentration, {}}};
  if (fit.slope_error) {
    result.quantities[static_cast<std::size_t>(Unknown())].error =
        *solved * LevichErrorFactor(Unknown()) * *fit.slope_error / fit.line.slope;
  }
  if (Method() == LevichMethod::kKouteckyLevich) {
    result.quantities.push_back({"jk", "A/cm2", jk, {}});
    if (fit.intercept_error && b != 0) {
      result.quantities.back().error = *fit.intercept_error / (b * b);
    }
  }
  result.quantities.push_back({"area", "cm2", std::abs(settings().KLElectrodeArea), {}});
  result.quantities.push_back({"potential", "V", ReportedPotential(), {}});
  const bool levich = Method() == LevichMethod::kLevich;
  result.columns = {{"rotation_rate", "rpm", points.rpm},
                    {"x", levich ? "Hz^(1/2)" : "Hz^(-1/2)", points.x},
                    {"y", levich ? "A/cm2" : "cm2/A", points.y}};
  ShowReport(ReportText(points, quantities, jk), std::move(result));
  AddLeftOutTracks(points);
}

std::string frmKoutecky_Levich::ReportText(const Points& points, const LevichQuantities& quantities,
                                           double jk) const {
  std::string report;
  const auto line = [&](const char* label, const std::string& value) {
    report += ReportLine({label, value});
  };
  const auto quantity = [&](LevichUnknown which, const char* label, const std::string& value) {
    if (which == Unknown()) report += "*";
    line(label, value);
  };
  const bool levich = Method() == LevichMethod::kLevich;
  line("File", workstation().FileTitle);
  if (OneTrack()) line("Title:", tracks().Record(Track()).Title);
  line("Area /cm2", Format(std::abs(settings().KLElectrodeArea), "0.0###"));
  quantity(LevichUnknown::kViscosity, "ν /cm2s-1", Format(quantities.viscosity, "0.0###"));
  quantity(LevichUnknown::kDiffusion, "Dm /cm2s-1", Format(quantities.diffusion, "0.00e+00"));
  quantity(LevichUnknown::kConcentration, "Conc /molcm-3",
           Format(quantities.concentration, "0.00e+00"));
  line("Potential/V", Format(ReportedPotential(), "0.000"));
  quantity(LevichUnknown::kElectrons, "n", Format(quantities.electrons, "#0.00"));
  if (!levich) line("jk /Acm-2", Format(jk, "0.000e+00"));
  line(levich ? "sqr(Hz)" : "1/sqr(Hz)", levich ? "j /cm2A-1 " : "j-1 /cm2A-1 ");
  for (std::size_t i = 0; i < points.x.size(); ++i) {
    report += ReportLine(
        {Format(points.x[i], "0.0000"), Format(points.y[i], levich ? "0.000e+0" : "0.0000e+0")});
  }
  return report;
}

LayoutNode frmKoutecky_Levich::Layout() {
  using namespace layout;
  return Columns({
      Rows(
          {
              Group("Track",
                    {Columns({Fields({Field("Track", txtDataNum, &UpDown1), Field("RPM", txtRPM),
                                      Field("Start", txtStart, &updStart),
                                      Field("End", txtEnd, &updEnd)}),
                              Rows({Columns({Item(chkUse), Item(lblpnum)}), Item(txtTitle),
                                    Item(lblStartPoint), Item(lblEndPoint)},
                                   1)})}),
              Item(PrevGraph, 1),
              Group("Base Line",
                    {Columns({Rows({Item(opnBaseLine), Fields({Field("Value /A", txtSubVal)})}),
                              Rows({Fields({Field("Base track", txtBaseTrack, &updBase),
                                            Field("Title", txtBaseTitle), Field("RPM", txtBaseRPM),
                                            Field("End", txtBaseEnd, &updBaseEnd)}),
                                    Columns({Item(lblbasepnum), Item(lblBaseEndPoint)})},
                                   1)})}),
          },
          1),
      Rows(
          {
              Columns(
                  {Group("Analysis",
                         {Fields({Field("Use Voltage", txtUseVoltage), Field("±", txtKLVrange),
                                  Field("Electrode Area /cm2", txtArea),
                                  Field("ν /cm2s-1", txtKLViscosity), Field("Dm /cm2s-1", txtDm),
                                  Field("Conc /molcm-3", txtConc), Field("n", txtne)})}),
                   Rows({Group("Method", {Item(opnMethod)}),
                         Group("Calculate", {Item(opnVariable)}), Item(cmdKLCalc)})}),
              ReportPanel(),
          },
          1),
  });
}

}  // namespace zento
