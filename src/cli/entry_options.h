#pragma once

#include <span>
#include <string>
#include <vector>

#include "cli/analysis_command.h"

namespace CLI {
class App;
}

namespace zento {

// The options of a command that works in a window, as command-line options.
class EntryOptions {
 public:
  // Once; this must stay where it is until the command line was parsed, and `entries` must outlive
  // it.
  void AddTo(CLI::App& command, std::span<const AnalysisEntry> entries);
  // Those that were given.
  std::vector<GivenEntry> Given() const;

 private:
  std::span<const AnalysisEntry> entries_;
  std::vector<std::vector<std::string>> values_;  // as entries_
  std::vector<char> checked_;                     // likewise; char, for bits have no address
};

}  // namespace zento
