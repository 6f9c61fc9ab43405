#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zento {

// What an option of an analysis command does to its window.
enum class EntryKind {
  kNumber,      // replaces a box's text
  kChoice,      // chooses an option by one of `words`
  kShownTrack,  // the track that the window shows
  kUsedTracks,  // "0,2-5" or "all": checks the control for these tracks and clears it for the
                // others
  kPoints,      // "FIRST:LAST", either may be left out: the boxes txtStart and txtEnd
  kIndex,       // a whole number in a box that has arrows, for what cannot be typed
  kText,        // replaces a box's text, whatever it is
  kCheck,       // checks a box, if there is one; an option without a value
};

// One option of a command that works in a window. Adding a row to a table of commands is the whole
// change.
struct AnalysisEntry {
  std::string_view option;  // "--area"
  EntryKind kind;
  std::string_view control;  // of the window
  std::string_view value;    // what stands for the value in the help: "CM2"
  std::string_view help;
  std::span<const std::string_view> words = {};  // of a choice, by index
  std::string_view arrows = {};                  // of an index
  // The window keeps one value for each track: the option may be repeated, and "TRACK=VALUE" is
  // meant for one track instead of all that are used.
  bool per_track = false;
  bool required = false;
  // The option group or check box that has to stand at `switch_index` for the value to count.
  int switch_index = 0;
  std::string_view switch_control = {};
};

// A window as a command.
struct AnalysisCommand {
  std::string_view name;
  std::string_view form;
  std::string_view help;
  std::span<const AnalysisEntry> entries;
  // What the command's name already says: an option group of the window and its index.
  std::string_view fixed_control = {};
  int fixed_index = 0;
};

std::span<const AnalysisCommand> AnalysisCommands();
// Null when there is none of that name.
const AnalysisCommand* FindAnalysisCommand(std::string_view name);

// An option with its value, as typed.
struct GivenEntry {
  const AnalysisEntry* entry;
  std::string value;
};

}  // namespace zento
