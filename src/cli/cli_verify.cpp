#include "cli/cli_verify.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <algorithm>
#include <filesystem>
#include <memory>
#include <string>

#include "cli/console_text.h"
#include "cli/exit_status.h"
#include "cli/verify.h"
#include "host/native/native_files.h"
#include "host/path_text.h"

namespace zento {
namespace {

constexpr char kFooter[] =
    "Measures cells whose properties are known on the simulated bench, in virtual time, through "
    "the measurement windows; opens the saved tracks in the analysis windows; compares what they "
    "find with theory. Nothing is written unless --keep says where. Exit status 0: every quantity "
    "was found within its tolerance; 2: one was not.";

struct Call {
  bool noise = false;
  bool json = false;
  std::string keep;
};

// Files of the folder are never replaced: they might be somebody's measurements.
Status Keep(const std::filesystem::path& folder, const std::filesystem::path& name,
            const std::string& bytes) {
  NativeFiles files;
  if (Status made = files.CreateFolder(folder); !made.ok()) return made;
  if (files.Exists(folder / name)) {
    return Status::Failure(TextFromPath(folder / name) + " exists already");
  }
  return files.Replace(folder / name, bytes);
}

int Run(const Call& call) {
  VerifyOptions options;
  options.noise = call.noise;
  if (!call.keep.empty()) {
    options.keep = [&](const std::filesystem::path& name, const std::string& bytes) {
      return Keep(PathFromText(call.keep), name, bytes);
    };
  }
  const auto quantities = Verify(options);
  if (!quantities.ok()) return FailWith(quantities.status());
  WriteOut(call.json ? VerifyJson(quantities.value()) : VerifyTable(quantities.value()));
  for (const VerifiedQuantity& quantity : quantities.value()) {
    if (!quantity.problem.empty()) WriteError(quantity.quantity + ": " + quantity.problem);
  }
  const bool passed = std::ranges::all_of(quantities.value(), &VerifiedQuantity::Passed);
  return passed ? kExitOk : kExitScriptLine;
}

}  // namespace

void AddVerifyCommand(CLI::App& app, int& exit_status) {
  auto call = std::make_shared<Call>();
  auto* sub =
      app.add_subcommand("verify", "measure known cells, analyse them, compare with theory");
  sub->add_flag("--noise", call->noise, "also with the bench's default noise and motor");
  sub->add_flag("--json", call->json, "print an object instead of the table");
  sub->add_option("--keep", call->keep,
                  "a folder that gets the measured track files, to look at them in the windows");
  sub->footer(kFooter);
  sub->callback([call, &exit_status] { exit_status = Run(*call); });
}

}  // namespace zento
