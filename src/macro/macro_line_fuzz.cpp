// Any bytes as a macro: reading, marking, and the way through a file.

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "macro/macro_file.h"
#include "macro/macro_line.h"
#include "text/lines.h"

namespace {

using namespace zento;

void Require(bool condition) {
  if (!condition) std::abort();
}

void CheckLine(std::string_view text) {
  const MacroLine line = ReadMacroLine(text);
  const bool command = line.kind == MacroLine::Kind::kCommand;
  if (command) Require(line.arguments.size() == line.command->arguments.size());
  const bool silent = command || line.kind == MacroLine::Kind::kNothing;
  Require(MacroLineMessage(line, 1).empty() == silent);

  const LineLook look = LookOfMacroLine(text, 1);
  Require(look.fault == MacroLineMessage(line, 1));
  std::size_t end = 0;
  for (const TextSpan& span : look.spans) {
    Require(span.begin >= end && span.begin < span.end && span.end <= text.size());
    end = span.end;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  std::string_view line;
  for (LineReader reader(bytes); reader.Next(line);) CheckLine(line);

  // Saving and opening adds one empty line and changes nothing else.
  const std::string text = MacroTextFromFile(bytes);
  Require(MacroTextFromFile(MacroFileFromText(text)) == text + "\n");
  return 0;
}
