#include "program/gui_options.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <sstream>

#include "program/program_options.h"

namespace zento {
namespace {

GuiOptions Refuse(const std::string& why) {
  GuiOptions options;
  options.answer = "zento: " + why + "\n";
  options.exit_status = 1;
  return options;
}

}  // namespace

GuiOptions ParseGuiOptions(const std::vector<std::string>& arguments) {
  ProgramOptions given;
  CLI::App app("Zento, a workstation for electrochemical measurements.", "zento");
  app.set_version_flag("--version", std::string("zento ") + ZENTO_VERSION);
  app.allow_windows_style_options(false);  // a path may begin with a slash
  given.AddTo(app, "Without it the program asks");
  try {
    std::vector<std::string> reversed(arguments.rbegin(), arguments.rend());
    if (!reversed.empty()) reversed.pop_back();
    app.parse(std::move(reversed));
  } catch (const CLI::ParseError& error) {
    std::ostringstream out;
    std::ostringstream err;
    if (app.exit(error, out, err) != 0) return Refuse(error.what());
    GuiOptions options;
    options.answer = out.str();
    return options;
  }
  GuiOptions options;
  options.home = given.home();
  options.simulated = given.simulated();
  const auto bench = given.BenchParameters();
  if (!bench.ok()) return Refuse(bench.why());
  options.bench = bench.value();
  return options;
}

}  // namespace zento
