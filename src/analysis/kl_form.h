#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "analysis/analysis_form.h"
#include "analysis/koutecky_levich.h"
#include "analysis/track_selection.h"
#include "core/track_store.h"
#include "graph/plot_range.h"
#include "graph/preview_plot.h"

namespace zento {

// Koutecky-Levich and Levich analysis: one current for each rotation rate, from several tracks or
// from the points of one rotation-rate sweep, in a plot of its own with the fitted line, solved for
// one of n, viscosity, D and C.
class frmKoutecky_Levich : public AnalysisForm {
 public:
  static constexpr const char* kName = "frmKoutecky_Levich";
  static constexpr const char* kGraphName = "KLGraph";

  frmKoutecky_Levich(Workstation& workstation, Host& host);

  TextBox txtTitle{*this, "txtTitle"};
  TextBox txtRPM{*this, "txtRPM"};
  Label lblpnum{*this, "lblpnum"};
  CheckBox chkUse{*this, "chkUse", "Use"};
  TextBox txtStart{*this, "txtStart"};
  UpDown updStart{*this, "updStart"};
  Label lblStartPoint{*this, "lblStartPoint"};
  TextBox txtEnd{*this, "txtEnd"};
  UpDown updEnd{*this, "updEnd"};
  Label lblEndPoint{*this, "lblEndPoint"};
  OptionGroup opnBaseLine{
      *this, "opnBaseLine", {"Not Use Base Line", "Subtract following value", "Use Base Line"}};
  TextBox txtSubVal{*this, "txtSubVal"};  // A
  TextBox txtBaseTrack{*this, "txtBaseTrack"};
  UpDown updBase{*this, "updBase"};
  TextBox txtBaseTitle{*this, "txtBaseTitle"};
  TextBox txtBaseRPM{*this, "txtBaseRPM"};
  Label lblbasepnum{*this, "lblbasepnum"};
  TextBox txtBaseEnd{*this, "txtBaseEnd"};
  UpDown updBaseEnd{*this, "updBaseEnd"};
  Label lblBaseEndPoint{*this, "lblBaseEndPoint"};
  PreviewPlot PrevGraph{*this, "PrevGraph", {420, 260}};
  TextBox txtUseVoltage{*this, "txtUseVoltage", "-0.1"};    // V
  TextBox txtKLVrange{*this, "txtKLVrange", "0.02"};        // V
  TextBox txtArea{*this, "txtArea", "0.2827"};              // cm2
  TextBox txtKLViscosity{*this, "txtKLViscosity", "0.01"};  // cm2/s
  TextBox txtDm{*this, "txtDm", "2e-5"};                    // cm2/s
  TextBox txtConc{*this, "txtConc", "1.5e-6"};              // mol/cm3
  TextBox txtne{*this, "txtne"};
  OptionGroup opnMethod{*this, "opnMethod", {"Koutecky-Levich", "Levich"}, 0};
  OptionGroup opnVariable{*this,
                          "opnVariable",
                          {"the number of electrons", "Solution Viscosity /cm2s-1",
                           "Diffusion Coefficient /cm2s-1", "Concentration /molcm-3"},
                          0};
  Button cmdKLCalc{*this, "cmdKLCalc", "Calculation"};

  void Activate() override;
  LayoutNode Layout() override;
  void Calculate() override;

  // See TrackStore.
  void InitializeParameters() { tracks().InitializeParameters(); }

 private:
  // The points of the plot, with where they come from.
  struct Points {
    std::vector<double> x;
    std::vector<double> y;
    std::vector<double> rpm;
    std::vector<int> left_out;  // used tracks that give no point
    void Add(const std::optional<Point>& point, double rate);
  };
  // The first and last point of a track that are used.
  struct Ends {
    std::int32_t first = 0;
    std::int32_t last = 0;
  };

  void WireBoxes();
  void WireTrack();
  void ShowSettings() override;
  void ShowQuantities();
  void ShowTrack() override;
  void ShowBaseTrack();
  void DrawPreview();
  void Redraw();
  void LeaveWindow();
  void ChooseBaseLine(int mode);
  void ChooseBaseTrack(int track);
  // The base line's track is used whole until a person says otherwise.
  void UseWholeBaseTrack();
  // Whether the tracks are no longer what the window shows of them: a measurement stores its points
  // and their range without asking this window.
  bool Outdated() const;

  // Whether the track has points that this window can work on.
  bool Usable(int track) const;
  bool OneTrack() const;
  std::size_t Current() const { return static_cast<std::size_t>(Track()); }
  // Whether a track's x can lie in the potential window: it is neither a time nor a rotation rate.
  bool HasPotentials(int track) const;
  int BaseTrack() const;
  // As they are stored, held within the track; an end of 0, which nobody can choose, stands for a
  // track that was never given a range, and means its last point.
  Ends EndsOf(int track) const;
  PotentialWindow Window() const;
  double BaseCurrent(int track);
  std::optional<double> MeanCurrent(int track, const PotentialWindow& window, Ends ends);
  Points TrackPoints();
  Points SweepPoints();

  void DrawPlot(const Points& points);
  void DrawLine(const StraightLine& line);
  void Report(const Points& points, const LineQuality& fit);
  // The line stays with the numbers below the report: they say what is wrong with the slope.
  void ReportFailure(const Points& points, const std::optional<LineQuality>& fit);
  void AddLeftOutTracks(const Points& points);
  LevichMethod Method() const;
  LevichUnknown Unknown() const;
  LevichQuantities Quantities() const;
  void Store(LevichUnknown unknown, double value);
  std::string ReportText(const Points& points, const LevichQuantities& quantities, double jk) const;
  double ReportedPotential() const;

  PointIndex start_;
  PointIndex end_;
  PointIndex base_end_;
  TrackRecord shown_record_;
  TrackRecord shown_base_;
  PlotRange plot_range_;
  OwnGraph graph_;
};

}  // namespace zento
