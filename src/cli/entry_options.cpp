#include "cli/entry_options.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

namespace zento {
namespace {

std::string HelpOf(const AnalysisEntry& entry) {
  std::string help(entry.help);
  for (const std::string_view word : entry.words) {
    help += (word == entry.words.front() ? ": " : ", ") + std::string(word);
  }
  if (entry.per_track) help += "; TRACK=" + std::string(entry.value) + " for one track only";
  return help;
}

}  // namespace

void EntryOptions::AddTo(CLI::App& command, std::span<const AnalysisEntry> entries) {
  entries_ = entries;
  values_.resize(entries.size());
  checked_.resize(entries.size());
  for (std::size_t i = 0; i < entries.size(); ++i) {
    const AnalysisEntry& entry = entries[i];
    const std::string name(entry.option);
    if (entry.kind == EntryKind::kCheck) {
      command.add_flag_callback(
          name, [this, i] { checked_[i] = 1; }, HelpOf(entry));
      continue;
    }
    auto* option = command.add_option(name, values_[i], HelpOf(entry));
    option->type_name(std::string(entry.value))->allow_extra_args(false);
    if (!entry.per_track) option->expected(1);
    if (entry.required) option->required();
  }
}

std::vector<GivenEntry> EntryOptions::Given() const {
  std::vector<GivenEntry> given;
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    if (checked_[i] != 0) given.push_back({&entries_[i], {}});
    for (const std::string& value : values_[i]) given.push_back({&entries_[i], value});
  }
  return given;
}

}  // namespace zento
