#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <vector>

#include "analysis/smoothing.h"
#include "analysis/track_points.h"
#include "analysis/transform_form.h"
#include "core/workstation.h"
#include "graph/preview_plot.h"
#include "host/controls.h"
#include "host/form.h"

namespace zento {

// Smooths the currents of a track or of all tracks, sweep by sweep, and writes the result into the
// same tracks or into another one.
class frmSmoothing : public TransformForm {
 public:
  static constexpr const char* kName = "frmSmoothing";

  // `data_folders`: where the coefficient file is looked for when the home has none.
  frmSmoothing(Workstation& workstation, Host& host,
               std::vector<std::filesystem::path> data_folders);

  OptionGroup opnYFilter{*this,
                         "opnYFilter",
                         {"単純移動平均", "Savitzky-Golay法", "間欠型ノイズ除去"},
                         0};                  // the method, as in SmoothingMethod
  TextBox txtPointNum{*this, "txtPointNum"};  // window length
  UpDown UpDown3{*this, "UpDown3"};
  CheckBox chkXAxis{*this, "chkXAxis", "Apply X-axis"};
  CheckBox chkSkipatEdge{*this, "chkSkipatEdge", "Skip at the Edge of Data"};
  TextBox txtSkipNum{*this, "txtSkipNum", "1"};
  CheckBox chkApplyAllTrack{*this, "chkApplyAllTrack", "Apply All Track"};
  PreviewPlot PrevGraph{*this, "PrevGraph", {520, 400}};

  LayoutNode Layout() override;

  // Smooths what the boxes say, for the preview. Nothing for an empty track.
  void Calculate() override;
  // Write what Calculate() has shown; nothing when the track or a setting is another one since.
  void UpdateData() override;
  void RecordAnotherTrack() override;

 private:
  struct Curve {
    std::vector<double> x, y;
  };

  void WireControls();
  void ShowSettings() override;
  void TakeSource() override;
  void ShowPoints(std::int32_t points);
  std::int32_t LeastPoints() const;
  std::int32_t TypedPoints() const;
  std::int32_t TypedSkip() const;
  void Forget();
  bool SourceChanged() const override;
  Result<Smoothing> Settings() const;
  std::vector<int> ChosenTracks() const;
  void Preview(int track);
  void NoteWhatWasDone();
  void DrawPreview();

  std::vector<std::filesystem::path> data_folders_;

  // Of the last calculation, while it fits what is chosen.
  bool ready_ = false;
  Smoothing smoothing_;
  bool x_axis_ = false;
  std::vector<int> chosen_;
  KeptPoints points_;      // of the source as it was
  std::int32_t mode_ = 0;  // and what its header said
  std::array<double, 3> vertices_{};
  double scale_ = 0;  // DiskYscale
  std::vector<Curve> curves_;
};

}  // namespace zento
