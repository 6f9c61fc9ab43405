#pragma once

#include <cstdint>
#include <string>

#include "analysis/analysis_form.h"
#include "analysis/oxygen.h"
#include "graph/preview_plot.h"

namespace zento {

// How much of the oxygen becomes water along a ring-disk sweep: %H2O against the disk's potential.
//
// The evaluation runs when a track is chosen, when a box is left that was changed, and by the
// button. Tracks without a ring leave plot and report as they were; the line below the button then
// says whose they are. Settings that cannot be used are refused in a message box only where the
// person chose a track or pressed the button.
class frmO2Reduction : public AnalysisForm {
 public:
  static constexpr const char* kName = "frmO2Reduction";

  frmO2Reduction(Workstation& workstation, Host& host);

  Label lblMode{*this, "lblMode"};
  TextBox txtTitle{*this, "txtTitle"};
  TextBox txtRPM{*this, "txtRPM"};
  TextBox txtCE{*this, "txtCE", "0.39"};
  TextBox txtVstep{*this, "txtVstep", "0.05"};
  TextBox txtVrange{*this, "txtVrange", "0.01"};
  Button cmdCalc{*this, "cmdCalc", "Calculation"};
  Label lblNote{
      *this, "lblNote"};  // what the report does not say: why there is none, what is missing in it
  PreviewPlot H2OGraph{*this, "H2OGraph"};

  LayoutNode Layout() override;
  void Calculate() override;

 private:
  // How loudly a track that cannot be evaluated is refused.
  enum class Asked {
    kNot,        // nobody asked: in the line below the button
    kForTrack,   // a track was chosen: wrong settings in a message box
    kForResult,  // by the button: everything in a message box
  };

  int FirstTrack() const override { return 0; }
  void ShowTrack() override { ShowHeader(Asked::kForTrack); }
  void ShowTrackAgain() override { ShowHeader(Asked::kNot); }
  // And evaluates the track.
  void ShowHeader(Asked asked);
  void ShowSettings() override;
  void StoreSettings();
  void LeaveBox();
  void Evaluate(Asked asked);
  void Decline(const std::string& why, bool loudly);
  void ShowShares(const OxygenShares& shares);
  void DrawShares(const OxygenShares& shares);
  std::string NoteOn(const OxygenShares& shares) const;

  bool settings_changed_ = false;  // since the last evaluation
  int evaluated_track_ = -1;       // whose report and plot are shown
};

}  // namespace zento
