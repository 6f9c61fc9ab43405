#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "analysis/track_points.h"
#include "analysis/track_selection.h"
#include "analysis/track_sum.h"
#include "core/workstation.h"
#include "graph/plot_range.h"
#include "graph/preview_plot.h"
#include "host/controls.h"
#include "host/form.h"

namespace zento {

// Adds or subtracts two tracks point by point: C = aA(x) + c +- bB(x), B read at A's abscissae by
// linear interpolation and moved along x if asked for.
class frmCalculation : public Form {
 public:
  static constexpr const char* kName = "frmCalculation";

  frmCalculation(Workstation& workstation, Host& host);

  TextBox txta{*this, "txta", "1"};
  TextBox txtb{*this, "txtb", "1"};
  TextBox txtc{*this, "txtc", "0"};
  TextBox txtXBShift{*this, "txtXBShift", "0"};
  TextBox txtOpeA{*this, "txtOpeA", "0"};
  UpDown updOpeA{*this, "updOpeA"};
  TextBox txtOpeATitle{*this, "txtOpeATitle"};
  TextBox txtOpeARPM{*this, "txtOpeARPM"};
  TextBox txtOpeAScanrate{*this, "txtOpeAScanrate"};
  Label lblAmode{*this, "lblAmode"};
  TextBox txtOpeB{*this, "txtOpeB", "1"};
  UpDown updOpeB{*this, "updOpeB"};
  TextBox txtOpeBTitle{*this, "txtOpeBTitle"};
  TextBox txtOpeBRPM{*this, "txtOpeBRPM"};
  TextBox txtOpeBScanrate{*this, "txtOpeBScanrate"};
  Label lblBmode{*this, "lblBmode"};
  TextBox txtOpeC{*this, "txtOpeC", "20"};
  UpDown updOpeC{*this, "updOpeC"};
  // Of track C; once there is a result, the title it will be given.
  TextBox txtOpeCTitle{*this, "txtOpeCTitle"};
  OptionGroup opnOperator{*this, "opnOperator", {"+", "-"}, 0};  // 0 plus, 1 minus
  Button cmdCalc{*this, "cmdCalc", "Calculation"};
  Button cmdUpdate{*this, "cmdUpdate", "UpDate"};
  PreviewPlot PrevGraph{*this, "PrevGraph"};
  TextBox txtGraphSize{*this, "txtGraphSize", "1"};  // magnification of the preview
  UpDown updGraphSize{*this, "updGraphSize"};
  // Move the magnified part by a quarter of itself.
  UpDown HScroll1{*this, "HScroll1"};
  UpDown VScroll1{*this, "VScroll1"};
  TextBox txtDebug{*this, "txtDebug"};  // the matched points, for inspection
  Label lblNote{*this, "lblNote"};      // what was removed or left out, or why nothing was computed

  bool Load() override;
  void Activate() override;
  LayoutNode Layout() override;

  // Computes C into scratch slot 21; equal abscissae disappear from track A, as a step that can be
  // undone.
  void Calculate();
  // Writes what Calculate() found for the tracks and terms that are chosen into track C; otherwise
  // nothing.
  void UpdateTrack();

 private:
  struct Operand {
    TrackRecord record;
    KeptPoints points;
  };

  void WireControls();
  Operand Take(int track) const;
  bool IsStill(const Operand& operand, int track) const;
  // A or B is no longer what it was when it was shown or computed with.
  bool OperandsChanged() const;
  void RememberOperands();
  TrackSumTerms Terms() const;
  void ShowTracks();
  void ShowC();
  // B with the shift, in scratch slot 22.
  void PrepareB();
  void Forget();
  // Why the chosen tracks cannot be combined; empty when they can.
  std::string Refusal() const;
  // Both tracks are sweeps whose scan rates differ.
  bool ScanRatesDiffer() const;
  TrackSum Compute(const TrackSumTerms& terms);
  void KeepResult();
  void DrawTracks();
  void DrawSlot(int slot, Colour colour);
  void ShowMatches();
  void Magnify(double magnification);
  void Scroll(double right, double up);
  TrackStore& tracks() const { return workstation_.tracks; }

  Workstation& workstation_;
  TrackSelector a_, b_, c_;
  std::int32_t generation_ = 0;  // of the track files
  bool ready_ = false;           // there is a result that fits what is chosen
  TrackSum sum_;                 // the result; the scratch slots are other windows' too
  Operand seen_a_, seen_b_;      // what it was computed from
  WorldWindow whole_;            // of the preview
  double magnification_ = 1;
};

}  // namespace zento
