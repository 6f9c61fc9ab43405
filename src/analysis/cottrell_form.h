#pragma once

#include <cstdint>
#include <string>

#include "analysis/analysis_form.h"
#include "analysis/cottrell.h"
#include "analysis/point_range.h"
#include "graph/plot_range.h"
#include "graph/preview_plot.h"

namespace zento {

// Fits the current of a potential-step track against 1/sqrt(t). Electrons, concentration, area and
// title are those of the track and are changed in place.
class frmCottrellEquation : public AnalysisForm {
 public:
  static constexpr const char* kName = "frmCottrellEquation";

  frmCottrellEquation(Workstation& workstation, Host& host);

  Label lblMode;
  TextBox txtTitle;
  TextBox txtRPM;
  TextBox txtne;
  TextBox txtConc;  // mol/cm3
  TextBox txtArea;  // cm2
  TextBox txtStart;
  UpDown updStart;
  Label lblStartPoint;
  TextBox txtEnd;
  UpDown updEnd;
  Label lblEndPoint;
  OptionGroup opnCalcMode;
  Button cmdCalc;
  PreviewPlot CottrellGraph;

  LayoutNode Layout() override;
  void Calculate() override;

 private:
  void WireBoxes();
  bool IsStep() { return Record().Mode == kModePS; }
  void ShowTrack() override;
  void ShowTrackAgain() override;
  void ShowRecord();
  // Makes the points anew and draws them.
  void MakePoints();
  void DrawPoints();
  void DrawLine(const StraightLine& line);
  std::string ReportText(double electrons, double area, double concentration, double diffusion);

  PointRange range_;
  CottrellPoints points_;
  PlotRange plot_range_;
};

}  // namespace zento
