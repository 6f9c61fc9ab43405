#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "analysis/analysis_form.h"
#include "analysis/coulomb.h"
#include "analysis/track_selection.h"
#include "graph/preview_plot.h"

namespace zento {

// The charge between two points of a track, with a base line if wanted.
class frmCoulombCalculator : public AnalysisForm {
 public:
  static constexpr const char* kName = "frmCoulombCalculator";

  frmCoulombCalculator(Workstation& workstation, Host& host);

  Label lblMode{*this, "lblMode"};
  Label lblTitle{*this, "lblTitle"};
  PointRange range{*this, TypedEnd::kAsStart};
  OptionGroup opnMethod{*this, "opnMethod", {"Trapezoid Integration ", "Simpson Integration "}, 0};
  OptionGroup opnBaseLine{*this, "opnBaseLine", {"None", "Linear", "Value"}, 0};
  TextBox txtBaseValue{*this, "txtBaseValue", "0"};  // A
  Button cmdCalc{*this, "cmdCalc", "Go!"};
  Label lblNote{*this, "lblNote"};  // what the report does not say: why no base line was subtracted
  PreviewPlot PrevGraph{*this, "PrevGraph"};

  LayoutNode Layout() override;
  void Calculate() override;

 private:
  enum class Base { kNone = 0, kLinear = 1, kValue = 2 };
  // The chosen part of the track.
  struct Part {
    std::size_t first = 0;
    std::span<const double> x;  // V or s
    std::span<const double> i;  // A
  };

  void ShowTrack() override;
  void ShowTrackAgain() override;
  void ShowRecord();
  void DrawPreview();
  // Why the track as it is chosen has no charge; empty when it has one.
  std::string Refusal() const;
  Part ChosenPart() const;
  std::optional<BaseLine> ChosenBaseLine(const Part& part) const;
  void DrawBaseLine(const Part& part, const BaseLine& line);
  std::string NoteOn(const Part& part, bool base_line) const;
  std::string ReportText(const Part& part, const std::vector<double>& charge) const;
};

}  // namespace zento
