#include "analysis/coulomb_form.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

#include "analysis/track_points.h"
#include "core/palette.h"
#include "core/tables.h"
#include "core/track_store.h"
#include "text/format.h"
#include "text/number.h"

namespace zento {
namespace {}  // namespace

frmCoulombCalculator::frmCoulombCalculator(Workstation& workstation, Host& host)
    : AnalysisForm(workstation, host, kName, "Coulomb Number Calculation") {
  txtBaseValue.SetTip("A");
  range.describe = [this](std::int32_t point) { return PointText(tracks(), Track(), point); };
  range.on_change = [this] { DrawPreview(); };
  cmdCalc.on_click = [this] { Calculate(); };
}

void frmCoulombCalculator::ShowTrack() {
  range.Empty();
  ShowRecord();
}

void frmCoulombCalculator::ShowTrackAgain() {
  ShowRecord();
}

void frmCoulombCalculator::ShowRecord() {
  const bool holds = HoldsTrack(tracks(), Track());
  lblMode.SetText(holds ? std::string(AtOrNone(ModeName, Record().Mode)) : std::string());
  lblTitle.SetText(holds ? Record().Title : std::string());
  if (holds) {
    range.ShowAgain(tracks().PointCount(Track()));
  } else {
    range.Empty();
  }
  DrawPreview();
}

void frmCoulombCalculator::DrawPreview() {
  DrawSelection(PrevGraph, tracks(), Track(), range.start(), range.end());
}

std::string frmCoulombCalculator::Refusal() const {
  if (!HasCharge(Record().Mode)) {
    return std::string(AtOrNone(ModeName, Record().Mode)) + " tracks cannot be integrated.";
  }
  if (!XIsTime(Record().Mode) && !(Record().Scanrate > 0)) {
    return "The track has no scan rate, so its points have no times.";
  }
  if (range.start() > range.end()) return "The range ends before it starts.";
  return {};
}

frmCoulombCalculator::Part frmCoulombCalculator::ChosenPart() const {
  const auto [first, count] = range.Within(tracks().PointCount(Track()));
  return {first, tracks().Points(0, Track()).subspan(first, count),
          tracks().Points(1, Track()).subspan(first, count)};
}

std::optional<BaseLine> frmCoulombCalculator::ChosenBaseLine(const Part& part) const {
  if (XIsTime(Record().Mode)) return std::nullopt;
  switch (static_cast<Base>(opnBaseLine.selected())) {
    case Base::kLinear:
      return LineBetweenEnds(part.x, part.i);
    case Base::kValue:
      return BaseLine{0, ParseLenient(txtBaseValue.text()), 0};
    default:
      return std::nullopt;
  }
}

void frmCoulombCalculator::Calculate() {
  if (!HoldsTrack(tracks(), Track())) return;
  if (range.empty()) ShowTrack();  // the slot was empty when it was shown
  if (const std::string why = Refusal(); !why.empty()) return Refuse(why);
  const Part part = ChosenPart();
  if (part.x.empty()) return Refuse("The track has no points in this range.");

  const std::vector<double> steps = StepTimes(Record().Mode, part.x, Record().Scanrate);
  const auto rule =
      opnMethod.selected() == 1 ? IntegrationRule::kSimpson : IntegrationRule::kTrapezoid;
  std::vector<double> charge = RunningIntegral(rule, steps, part.i);
  std::vector<double> base_charge(charge.size());
  DrawPreview();
  const auto line = ChosenBaseLine(part);
  if (line) {
    DrawBaseLine(part, *line);
    std::vector<double> base(part.x.size());
    std::transform(part.x.begin(), part.x.end(), base.begin(),
                   [&](double x) { return line->At(x); });
    // Straight between the points, so that the trapezoids are exact, at a turning point too.
    base_charge = RunningIntegral(IntegrationRule::kTrapezoid, steps, base);
    for (std::size_t p = 0; p < charge.size(); ++p) charge[p] -= base_charge[p];
  }
  if (!std::isfinite(charge.back())) return Refuse("The charge is too large for a number.");
  lblNote.SetText(NoteOn(part, line.has_value()));

  AnalysisResult result;
  result.quantities = {{"charge", "C", charge.back(), {}},
                       {"base_charge", "C", base_charge.back(), {}}};
  const bool step = XIsTime(Record().Mode);
  result.columns = {{step ? "t" : "E", step ? "s" : "V", {part.x.begin(), part.x.end()}},
                    {"i", "A", {part.i.begin(), part.i.end()}},
                    {"charge", "C", charge}};
  ShowReport(ReportText(part, charge), std::move(result));
}

void frmCoulombCalculator::DrawBaseLine(const Part& part, const BaseLine& line) {
  PrevGraph.Line(part.x.front(), line.At(part.x.front()), part.x.back(), line.At(part.x.back()),
                 kLightGreen);
}

std::string frmCoulombCalculator::NoteOn(const Part& part, bool base_line) const {
  if (part.x.size() == 1) return "A single point has no charge.";
  if (base_line || static_cast<Base>(opnBaseLine.selected()) == Base::kNone) return {};
  return XIsTime(Record().Mode) ? "No base line:\npotential steps have none."
                                : "No base line: both ends\nhave the same potential.";
}

std::string frmCoulombCalculator::ReportText(const Part& part,
                                             const std::vector<double>& charge) const {
  std::string report;
  const auto line = [&](const char* label, const std::string& value) {
    report += ReportLine({label, value});
  };
  line("FileName:", workstation().FileTitle);
  line("Track:", SignedNumber(Track()));
  line("Title:", Record().Title);
  line("Nstart:", PlainNumber(part.first));
  line("Nend:", PlainNumber(part.first + part.x.size() - 1));
  if (static_cast<Base>(opnBaseLine.selected()) == Base::kValue) {
    line("BaseValue", SignedNumber(ParseLenient(txtBaseValue.text())));
  } else {
    report += "\r\n";
  }
  line("Coulomb:", Format(charge.back(), "0.000e+0"));
  line(XIsTime(Record().Mode) ? "t /s" : "E /V", "i /A\tCoulomb");
  for (std::size_t p = 0; p < charge.size(); ++p) {
    report += ReportLine({Format(part.x[p], "0.0000"), Format(part.i[p], "0.000e+0"),
                          Format(charge[p], "0.000e+0")});
  }
  return report;
}

LayoutNode frmCoulombCalculator::Layout() {
  using namespace layout;
  return Rows({
      Columns(
          {
              Rows({
                  Group("Track", {Fields({Field("Track", txtDataNum, &UpDown1),
                                          Field("Mode", lblMode), Field("Title", lblTitle)})}),
                  range.Panel(),
                  Group("Method", {Item(opnMethod)}),
                  Group("Base Line",
                        {Item(opnBaseLine), Fields({Field("Value /A", txtBaseValue)})}),
                  Item(cmdCalc),
                  Item(lblNote),
                  Stretch(),
              }),
              Rows({Item(PrevGraph, 1)}, 3),
              Rows({ReportPanel()}, 2),
          },
          1),
  });
}

}  // namespace zento
