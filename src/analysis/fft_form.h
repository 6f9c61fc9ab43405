#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "analysis/fft.h"
#include "analysis/track_points.h"
#include "analysis/transform_form.h"
#include "core/workstation.h"
#include "graph/preview_plot.h"
#include "host/controls.h"
#include "host/form.h"

namespace zento {

// Takes high frequencies out of a track: shows the spectra of its columns, removes what lies at or
// above a cut-off, and writes the filtered points into the same track or into another one.
class frmFFTFilter : public TransformForm {
 public:
  static constexpr const char* kName = "frmFFTFilter";

  frmFFTFilter(Workstation& workstation, Host& host);

  OptionGroup opnXFilter{
      *this, "opnXFilter", {"None", "Low-pass Filter"}, 0};  // 0 none, 1 low-pass
  TextBox txtXMaxFrequency{*this, "txtXMaxFrequency"};       // cut-offs in Hz
  OptionGroup opnYFilter{
      *this, "opnYFilter", {"Low pass filter"}, 0};  // one option: the currents are always filtered
  TextBox txtYMaxFrequency{*this, "txtYMaxFrequency"};
  // Whether the x column's lines are in the frequency graph. They are far higher than a current's:
  // without them the graph is scaled for the currents.
  CheckBox chkXSpectrum{*this, "chkXSpectrum", "x column"};
  UpDown updGraphScale{
      *this, "updGraphScale"};  // up: half the frequency graph's y maximum, so higher lines
  PreviewPlot PrevGraph{*this, "PrevGraph", {540, 240}};
  PreviewPlot FrequencyGraph{*this, "FrequencyGraph", {540, 240}};

  LayoutNode Layout() override;

  // Filters the source track. A track without a spectrum is left alone; why there is none is shown.
  void Calculate() override;
  // Write what Calculate() found for the source track, its filters and its points as they still
  // are; otherwise nothing.
  void UpdateData() override;
  void RecordAnotherTrack() override;

 private:
  void WireControls();
  void ShowSettings() override;
  void TakeSource() override;
  void Transform();
  // Why the source has no spectrum of so many columns; empty when it has one.
  std::string Refusal(int columns) const;
  bool SourceChanged() const override;
  void ForgetFiltered();
  void LeaveFrequency(TextBox& box, double& setting);
  void DrawPreview();
  int FirstShown() const;
  void FitSpectra();
  void DrawSpectra();
  void DrawSpectrum(int column);
  void ScaleGraph(double factor);
  void WriteFiltered(int track);

  // Of the source track; without points when it has no spectrum.
  KeptPoints points_;  // as they were transformed
  double time_ = 0;    // ms, likewise
  std::array<Spectrum, kTrackColumns> spectra_;
  int columns_ = 0;       // that are transformed: x and the currents
  double df_ = 0;         // Hz
  double y_maximum_ = 0;  // of the frequency graph, before the margin
  bool filtered_ready_ = false;
  std::array<std::vector<double>, kTrackColumns> filtered_;
};

}  // namespace zento
