#pragma once

#include <cstddef>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cli/macro_check.h"
#include "cli/macro_entries.h"
#include "cli/macro_job.h"
#include "host/control.h"

namespace zento {

// Follows a dry run and notes, line by line, what a person would want to know before the night.
class MacroInspector : public MacroFollower {
 public:
  // `check` is filled in. `mail_problem` is what stands in the way of any mail, or empty.
  MacroInspector(MainProgram& program, Host& host, std::string_view text, std::string mail_problem,
                 MacroCheck& check);

  void LineBegun(int line, const MacroLine& what) override;
  void LineDone(int line, const MacroLine& what, MacroLineResult result) override;
  void MeasurementBegun(int line, const std::string& what) override;
  void MeasurementEnded(int line, const RunReport& report) override;
  void MessageShown(int line, const std::string& text) override;

  // The run is over: closes what is still open.
  void Finish();

 private:
  // A value that a line put into a control, and what stood there afterwards.
  struct Asked {
    int line;
    std::string command;
    std::string became;
  };
  using Place = std::pair<std::string, std::string>;  // form, control

  std::int64_t Now() const;
  void Problem(int line, std::string text);
  void Note(int line, std::string text);
  Control* ControlFor(const MacroEntry& entry, std::size_t argument) const;
  double NumberIn(const char* form, const char* control, int index = -1) const;

  void CloseWait();
  void CheckWords(int line, const MacroLine& what);
  void CheckEntry(int line, const MacroLine& what, const MacroEntry& entry);
  void CheckAction(int line, const MacroLine& what);
  void CheckOverwritten(int line, const std::string& form);
  void CheckProgramme(int line, const std::string& form);
  void CheckPotential(int line, double volts);
  void CheckRotation(int line, double rpm);
  void CheckMail(int line);
  void CheckMethod(int line, const std::string& form);

  Workstation& workstation_;
  Host& host_;
  MacroCheck& check_;
  std::vector<std::string> lines_;
  std::string mail_problem_;
  std::int64_t began_;
  std::string form_;  // that the lines are about
  std::map<Place, Asked> asked_;
  MailMessage mail_;
  bool waiting_ = false;
  bool measuring_ = false;
};

}  // namespace zento
