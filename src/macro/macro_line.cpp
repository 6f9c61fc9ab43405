#include "macro/macro_line.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>

#include "text/number.h"

namespace zento {
namespace {

constexpr int kSignificantDigits = 15;

std::string_view TrimBlanks(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == text.npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

template <typename Int>
bool InRange(double value) {
  return value >= std::numeric_limits<Int>::min() && value <= std::numeric_limits<Int>::max();
}

bool Whole(Conversion conversion, double value) {
  switch (conversion) {
    case Conversion::kLong:
      return InRange<std::int32_t>(value);
    case Conversion::kInteger:
      return InRange<std::int16_t>(value);
    default:
      return InRange<std::uint8_t>(value);
  }
}

// `rest` begins with the word. Nothing: the value does not fit.
std::optional<MacroArgument> Convert(Conversion conversion, std::string_view word,
                                     std::string_view rest) {
  switch (conversion) {
    case Conversion::kNumber:
      return MacroArgument{ParseLenient(word), {}};
    case Conversion::kNumberText: {
      const double value = ParseLenient(word);
      return MacroArgument{value, PlainNumber(value, kSignificantDigits)};
    }
    case Conversion::kWord:
      return MacroArgument{0, std::string(word)};
    case Conversion::kWords:
      return MacroArgument{0, std::string(rest)};
    default:
      break;
  }
  const double value = RoundHalfEven(ParseLenient(word));
  if (!Whole(conversion, value)) return std::nullopt;
  return MacroArgument{value, {}};
}

// Takes the next word and the blank behind it off the front; nothing at the end.
std::optional<std::string_view> TakeWord(std::optional<std::string_view>& rest) {
  if (!rest) return std::nullopt;
  const std::size_t blank = rest->find(' ');
  const std::string_view word = rest->substr(0, blank);
  if (blank == rest->npos) {
    rest.reset();
  } else {
    rest->remove_prefix(blank + 1);
  }
  return word;
}

bool IsText(Conversion conversion) {
  return conversion == Conversion::kWord || conversion == Conversion::kWords;
}

}  // namespace

MacroLine ReadMacroLine(std::string_view text) {
  MacroLine line;
  std::optional<std::string_view> rest = TrimBlanks(text);
  if (rest->empty() || rest->front() == '\'') return line;
  line.name = *TakeWord(rest);
  line.command = FindMacroCommand(line.name);
  line.kind = line.command == nullptr ? MacroLine::Kind::kUnknown : MacroLine::Kind::kCommand;
  if (line.command == nullptr) return line;

  const Conversions& conversions = line.command->arguments;
  line.arguments.reserve(conversions.size());
  for (std::size_t i = 0; i < conversions.size(); ++i) {
    const std::string_view from_here = rest.value_or(std::string_view());
    const auto word = TakeWord(rest);
    auto argument = word ? Convert(conversions[i], *word, from_here) : std::nullopt;
    if (!argument) {
      line.kind = MacroLine::Kind::kRefused;
      line.arguments.clear();
      return line;
    }
    argument->word = *word;
    line.arguments.push_back(std::move(*argument));
  }
  return line;
}

std::string MacroLineMessage(const MacroLine& line, int number) {
  switch (line.kind) {
    case MacroLine::Kind::kUnknown:
      return SignedNumber(number) + "line Syntax Error";
    case MacroLine::Kind::kRefused:
      return SignedNumber(number) + "line Syntax error:" + std::string(line.command->usage);
    default:
      return {};
  }
}

std::string MissingWindowMessage(std::string_view command, int number) {
  return SignedNumber(number) + "line Window is missing:" + std::string(command);
}

LineLook LookOfMacroLine(std::string_view line, int number) {
  LineLook look;
  const std::size_t first = line.find_first_not_of(' ');
  if (first == line.npos) return look;
  if (line[first] == '\'') {
    look.spans.push_back({first, line.size(), TextRole::kComment});
    return look;
  }
  const MacroLine read = ReadMacroLine(line);
  look.fault = MacroLineMessage(read, number);
  if (read.command == nullptr) return look;
  std::size_t end = first + read.name.size();
  look.spans.push_back({first, end, TextRole::kKeyword});
  for (std::size_t i = 0; i < read.command->arguments.size() && end < line.size(); ++i) {
    const std::size_t begin = end + 1;
    end = std::min(line.find(' ', begin), line.size());
    if (IsText(read.command->arguments[i]) || begin >= end) continue;
    look.spans.push_back({begin, end, TextRole::kNumber});
  }
  return look;
}

std::string HelpForMacroLine(std::string_view line, int number) {
  const MacroLine read = ReadMacroLine(line);
  std::string message = MacroLineMessage(read, number);
  if (message.empty() && read.command != nullptr) message = read.command->usage;
  return message;
}

}  // namespace zento
