#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "analysis/analysis_result.h"
#include "analysis/track_selection.h"
#include "core/workstation.h"
#include "graph/graph_form.h"
#include "host/controls.h"
#include "host/form.h"

namespace zento {

class TrackStore;
struct Settings;
struct TrackRecord;

// What the analysis windows share: the choice of a track, a report with the buttons that copy and
// save it, and a line with the fit's quality.
class AnalysisForm : public Form {
 public:
  AnalysisForm(Workstation& workstation, Host& host, std::string name, std::string caption);

  TextBox txtDataNum{*this, "txtDataNum"};
  UpDown UpDown1{*this, "UpDown1"};
  TextBox txtResult{*this, "txtResult"};  // the report and nothing else; read only
  Button cmdCopyResult{*this, "cmdCopyResult", "Copy report"};
  Button cmdSaveResult{*this, "cmdSaveResult", "Save report..."};
  Label lblFit{*this, "lblFit"};  // points, R², standard errors of the last fit; empty without one

  // Shows the settings and the first track.
  bool Load() override;
  // Shows the track anew when another track file was opened or a change was taken back.
  void Activate() override;

  // What the window's own button does. A refusal is shown as a message and stands in result().
  virtual void Calculate() = 0;

  // The report byte for byte, lines ending in CR LF; UTF-8.
  const std::string& report() const { return report_; }
  const AnalysisResult& result() const { return result_; }

 protected:
  virtual void ShowSettings() {}
  // The number of the track that the window opens on: the one that the main window shows.
  virtual int FirstTrack() const { return workstation_.shown_track; }
  // Shows the chosen track and its preview.
  virtual void ShowTrack() = 0;
  // The same where nobody chose it just now.
  virtual void ShowTrackAgain() { ShowTrack(); }
  int Track() const { return selector_.track(); }
  TrackRecord& Record() const;

  Workstation& workstation() const { return workstation_; }
  TrackStore& tracks() const { return workstation_.tracks; }
  Settings& settings() const { return workstation_.settings; }

  void ShowReport(std::string report, AnalysisResult result);
  // The last report stays; `message` is shown in a message box.
  void Refuse(const std::string& message);
  // The same without a message box, for calculations that nobody asked for just now.
  void RefuseQuietly(const std::string& message);
  // The whole panel: report, fit line, buttons.
  LayoutNode ReportPanel(const std::string& caption = "Result");

 private:
  void CopyReport();
  void AskToSaveReport();
  void SaveReport(const std::filesystem::path& path);

  Workstation& workstation_;
  TrackSelector selector_;
  std::int32_t generation_ = 0;  // of the track files
  std::string report_;
  AnalysisResult result_;
};

// A graph window that belongs to one analysis window: made with it, gone with it. A person may
// close and reopen it in between; its picture is then empty until the next one is drawn.
class OwnGraph {
 public:
  OwnGraph(Host& host, std::string name);
  ~OwnGraph();
  OwnGraph(const OwnGraph&) = delete;
  OwnGraph& operator=(const OwnGraph&) = delete;

  // The graph, on the screen: where it was, or at the size that analysis plots have.
  Graph& Show();

 private:
  Host& host_;
  std::string name_;
};

}  // namespace zento
