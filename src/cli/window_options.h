#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/track_store.h"
#include "host/form.h"
#include "text/status_fwd.h"

namespace CLI {
class App;
}

// Commands that work in a window: their options, from the command line into its controls.

namespace zento {

// What an option of an analysis command does to its window.
enum class OptionKind {
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
struct WindowOption {
  std::string_view name;  // "--area"
  OptionKind kind;
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
struct WindowCommand {
  std::string_view name;
  std::string_view form;
  std::string_view help;
  std::span<const WindowOption> options;
  // What the command's name already says: an option group of the window and its index.
  std::string_view fixed_control = {};
  int fixed_index = 0;
};

// An option with its value, as typed.
struct GivenOption {
  const WindowOption* option;
  std::string value;
};

// Options and values as words: "--potential", "0.4", .... Fails on one that the command does not
// have, or that lacks its value.
Result<std::vector<GivenOption>> ParseOptions(const WindowCommand& command,
                                              const std::vector<std::string>& words);

// Enters the options into the command's window, as a person would. Values that are none, and tracks
// that are not there, are refused; what the window made something else of, its limits say, goes to
// `notes`.
Status EnterOptions(Form& form, const TrackStore& tracks, const WindowCommand& command,
                    const std::vector<GivenOption>& given, std::vector<std::string>& notes);

// The options of a command that works in a window, as command-line options.
class OptionValues {
 public:
  // Once; this must stay where it is until the command line was parsed, and `options` must outlive
  // it.
  void AddTo(CLI::App& command, std::span<const WindowOption> options);
  // Those that were given.
  std::vector<GivenOption> Given() const;

 private:
  std::span<const WindowOption> options_;
  std::vector<std::vector<std::string>> values_;  // as options_
  std::vector<char> checked_;                     // likewise; char, for bits have no address
};

}  // namespace zento
