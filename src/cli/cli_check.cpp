#include "cli/cli_check.h"

#include "cli/console_text.h"
#include "cli/exit_status.h"
#include "core/home.h"
#include "host/native/native_files.h"
#include "host/path_text.h"
#include "macro/macro_file.h"
#include "program/dry_run.h"
#include "program/home.h"

namespace zento {
namespace {

// The home that a run would use. Where nobody says which, that of the instruments if it has
// settings.
Result<std::filesystem::path> HomeFor(const ProgramOptions& options, Files& files) {
  if (const auto simulated = options.simulated()) return FindHome(options.home(), *simulated);
  const auto instruments = FindHome(options.home(), false);
  if (instruments.ok() && files.Exists(SettingsPath(instruments.value()))) return instruments;
  return FindHome(options.home(), true);
}

}  // namespace

int CheckMacroFile(const ProgramOptions& options, const std::filesystem::path& macro) {
  NativeFiles files;
  const auto bytes = files.Read(macro);
  if (!bytes.ok()) return FailWith(bytes.status());
  const auto home = HomeFor(options, files);
  if (!home.ok()) return FailWith(home.status());
  const auto cell = options.CellParameters();
  if (!cell.ok()) return FailWith(cell.status());

  const bool has_settings = files.Exists(SettingsPath(home.value()));
  WriteOut("Checked with the settings of " +
           (has_settings ? TextFromPath(home.value()) : "a fresh simulated bench") +
           ", on simulated instruments and a simulated cell\n");
  const auto check = CheckMacro({MacroTextFromFile(bytes.value()), TextFromPath(macro.filename()),
                                 home.value(), cell.value()},
                                files);
  if (!check.ok()) return FailWith(check.status());
  WriteOut(FormatCheck(check.value()));
  return check->Clean() ? kExitOk : kExitScriptLine;
}

}  // namespace zento
