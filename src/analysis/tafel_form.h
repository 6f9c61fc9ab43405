#pragma once

#include <cstdint>
#include <string>

#include "analysis/analysis_form.h"
#include "analysis/tafel.h"
#include "analysis/track_selection.h"
#include "graph/plot_range.h"
#include "graph/preview_plot.h"

namespace zento {

// Tafel analysis of a part of one track: the line of log10|i| against the overpotential, alpha
// times n and the exchange current from it, drawn in a graph window of its own.
class frmTafelAnalyzer : public AnalysisForm {
 public:
  static constexpr const char* kName = "frmTafelAnalyzer";
  static constexpr const char* kGraphName = "TafelGraph";

  frmTafelAnalyzer(Workstation& workstation, Host& host);

  Label lblMode{*this, "lblMode"};
  TextBox txtTitle{*this, "txtTitle"};
  TextBox txtRPM{*this, "txtRPM"};
  Label lblpnum{*this, "lblpnum"};
  TextBox txtRedoxPotential{*this, "txtRedoxPotential"};
  TextBox txtArea{*this, "txtArea"};
  PointRange range{*this, TypedEnd::kAsStart};
  Button cmdCalc{*this, "cmdCalc", "Calculation"};
  Label lblNote{*this, "lblNote"};  // the branch, and what speaks against the result
  PreviewPlot PrevGraph{*this, "PrevGraph"};

  LayoutNode Layout() override;
  // Empties the report and writes the area into the track's record even when no line can be fitted.
  void Calculate() override;

 private:
  void ShowSettings() override;
  void ShowTrack() override;
  void DrawPreview();
  void LeaveRedoxPotential();
  void LeaveArea();
  Result<TafelFit> Fit() const;
  void DrawFit(const TafelFit& fit);
  std::string ReportOf(const TafelFit& fit) const;

  PlotRange plot_range_;  // eta in V, log10 of the current in A
  OwnGraph graph_;
};

}  // namespace zento
