#pragma once

#include <string>

#include "analysis/outcome.h"
#include "core/workstation.h"
#include "host/controls.h"
#include "host/form.h"

namespace zento {

// What the analysis windows share: a report with the buttons that copy and save it, and a line
// with the fit's quality.
class AnalysisForm : public Form {
 public:
  AnalysisForm(Workstation& workstation, Host& host, std::string name, std::string caption);

  TextBox txtResult;  // the report and nothing else; read only
  Button cmdCopyResult;
  Button cmdSaveResult;
  Label lblFit;  // points, R², standard errors of the last fit; empty without one

  // What the window's own button does. A refusal is shown as a message and stands in outcome().
  virtual void Calculate() = 0;

  // The report byte for byte, lines ending in CR LF; UTF-8.
  const std::string& report() const { return report_; }
  const Outcome& outcome() const { return outcome_; }

 protected:
  Workstation& workstation() const { return workstation_; }
  TrackStore& tracks() const { return workstation_.tracks; }
  Settings& settings() const { return workstation_.settings; }

  void ShowReport(std::string report, Outcome outcome);
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
  std::string report_;
  Outcome outcome_;
};

}  // namespace zento
