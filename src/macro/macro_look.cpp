#include "macro/macro_look.h"

#include <algorithm>
#include <cstddef>

#include "macro/macro_line.h"

namespace zento {
namespace {

bool IsText(Conversion conversion) {
  return conversion == Conversion::kWord || conversion == Conversion::kWords;
}

}  // namespace

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
