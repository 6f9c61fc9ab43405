#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "text/status_fwd.h"

namespace zento {

class Files;
struct Workstation;

inline constexpr std::string_view kMacroExtension = ".zmc";

// A macro file is plain text, lines ended by CR LF, and holds one line end more than the text that
// was saved: opening and saving a macro again adds one empty line at its end. Files are read as
// UTF-8 or code page 932 and written as UTF-8.

// The text of a macro file for the editor: its lines, each ended by "\n", also the last one.
std::string MacroTextFromFile(std::string_view bytes);
// The file for a text whose lines end in any way.
std::string MacroFileFromText(std::string_view text);

// With ".zmc" added unless the name ends in exactly that; "x.ZMC" becomes "x.ZMC.zmc".
std::filesystem::path MacroFileName(std::filesystem::path path);

// A text in the editor that stands in no file yet, kept in the home from one window to the next.
// It comes back as it was, byte for byte but for line ends.
Result<std::string> ReadMacroDraft(const Workstation& workstation, Files& files);
// An empty text says that there is none.
Status KeepMacroDraft(const Workstation& workstation, Files& files, std::string_view text);

// Writes a text that is about to be replaced to "Rescued macro 1.zmc" in the home, or the next free
// number.
Result<std::filesystem::path> RescueMacro(const Workstation& workstation, Files& files,
                                          std::string_view text);

}  // namespace zento
