#pragma once

#include <cstdint>
#include <string>

#include "analysis/analysis_form.h"
#include "analysis/cottrell.h"
#include "analysis/track_selection.h"
#include "graph/plot_range.h"
#include "graph/preview_plot.h"

namespace zento {

// Fits the current of a potential-step track against 1/sqrt(t). Electrons, concentration, area and
// title are those of the track and are changed in place.
class frmCottrellEquation : public AnalysisForm {
 public:
  static constexpr const char* kName = "frmCottrellEquation";

  frmCottrellEquation(Workstation& workstation, Host& host);

  Label lblMode{*this, "lblMode"};
  TextBox txtTitle{*this, "txtTitle"};
  TextBox txtRPM{*this, "txtRPM"};
  TextBox txtne{*this, "txtne"};
  TextBox txtConc{*this, "txtConc"};            // mol/cm3
  TextBox txtArea{*this, "txtArea", "0.2827"};  // cm2
  PointRange range{*this, TypedEnd::kNotRead};
  OptionGroup opnCalcMode{*this, "opnCalcMode", {"y = a * x", "y = a * x + b"}, 0};
  Button cmdCalc{*this, "cmdCalc", "Calculation"};
  PreviewPlot CottrellGraph{*this, "CottrellGraph"};

  LayoutNode Layout() override;
  void Calculate() override;

 private:
  void WireBoxes();
  bool IsStep() { return XIsTime(Record().Mode); }
  void ShowTrack() override;
  void ShowTrackAgain() override;
  void ShowRecord();
  // Makes the points anew and draws them.
  void MakePoints();
  void DrawPoints();
  void DrawLine(const StraightLine& line);
  std::string ReportText(double electrons, double area, double concentration, double diffusion);

  CottrellPoints points_;
  PlotRange plot_range_;
};

}  // namespace zento
