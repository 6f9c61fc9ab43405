#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/workstation.h"
#include "devices/instruments.h"
#include "host/control.h"
#include "host/desktop.h"
#include "host/host.h"
#include "host/mail.h"

namespace zento {

// How a command reads one argument. Numbers follow the lenient rule (0 when there is none); the
// whole ones are rounded to nearest, halves to even, and must then lie within their type's range.
enum class Conversion : std::uint8_t {
  kNumber,
  kLong,        // 32-bit signed
  kInteger,     // 16-bit signed
  kByte,        // 8-bit unsigned
  kNumberText,  // a number as text again, at most 15 significant digits
  kWord,        // as it stands
  kWords,       // this word and all behind it, joined by single blanks
};

// One argument after its conversion: numbers in `number`, the text conversions in `text`.
struct MacroArgument {
  double number = 0;
  std::string text;
  std::string_view word = {};  // as it stands in the line
};
using MacroArguments = std::span<const MacroArgument>;

// What commands act on, for one run.
struct MacroContext {
  Workstation& workstation;
  Host& host;
  Instruments& instruments;

  // The mail being composed; its fields keep their values from one mail to the next.
  MailMessage mail;

  // Set by an action that asks the interpreter for something; taken back by the interpreter.
  std::optional<std::int32_t> wait_millis;
  bool send_mail = false;
};

// How an action came out.
enum class ActionResult : std::uint8_t {
  kDone,
  kWindowRefused,  // the window did not open; it has said why
  kWindowMissing,  // this program has no such window
};

enum class CommandKind : std::uint8_t {
  kShow,       // shows a measurement window
  kParameter,  // sets one parameter of a measurement
  kStart,      // begins a measurement
  kEnd,        // closes a measurement window
  kHardware,   // acts on potential, motor or outlets
  kSound,
  kWait,
  kMail,
};

// Whether a command is carried out in debug mode. Its arguments are checked in any case.
enum class DryRule : std::uint8_t { kRun, kSkip };

// At most three conversions; their number is the least number of arguments.
class Conversions {
 public:
  constexpr Conversions(std::initializer_list<Conversion> list) : size_(list.size()) {
    std::size_t i = 0;
    for (const Conversion conversion : list) list_[i++] = conversion;
  }
  constexpr std::size_t size() const { return size_; }
  constexpr Conversion operator[](std::size_t i) const { return list_[i]; }

 private:
  std::array<Conversion, 3> list_{};
  std::size_t size_;
};

using MacroAction = ActionResult (*)(MacroContext&, MacroArguments);
// The controls that hold the command's numbers, in the order of its arguments; empty while the
// window is not loaded.
using ControlsOfCommand = std::vector<const Control*> (*)(const Desktop&);

// One command of the macro language. The row is all there is to it: parsing, checking, marking and
// carrying out go by the table.
struct MacroCommand {
  std::string_view name;
  Conversions arguments;
  MacroAction action;
  CommandKind kind;
  DryRule dry;
  // How the command is written, said when it is written wrongly; empty when it cannot be.
  std::string_view usage;
  // The measurement window that the command is about, null when none.
  const char* window = nullptr;
  // Null when the command sets no number of its window.
  ControlsOfCommand controls = nullptr;
  // The window goes on with another value of its own after each run.
  bool moves_on = false;
};

// All commands, in the order of the documentation.
std::span<const MacroCommand> MacroCommands();

// Null when there is no such command; upper and lower case count.
const MacroCommand* FindMacroCommand(std::string_view name);

}  // namespace zento
