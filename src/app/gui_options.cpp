#include "app/gui_options.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <sstream>

#include "app/bench_options.h"
#include "host/path_text.h"

namespace zento {
namespace {

struct Request {
  std::string bench;
  std::string home;
  BenchOptions bench_parameters;
};

void AddOptions(CLI::App& app, Request& request) {
  app.add_option("--bench", request.bench,
                 "sim: the simulated bench; hardware: the instruments on this machine. Without it "
                 "the program asks")
      ->check(CLI::IsMember({"sim", "hardware"}));
  app.add_option("--home", request.home,
                 "folder of settings, calibration and logs; without it the program's own folder "
                 "when it holds a Parameters.txt, else the user's data folder");
  request.bench_parameters.AddTo(app);
}

GuiOptions Refuse(const std::string& why) {
  GuiOptions options;
  options.answer = "zento: " + why + "\n";
  options.exit_status = 1;
  return options;
}

}  // namespace

GuiOptions ParseGuiOptions(const std::vector<std::string>& arguments) {
  Request request;
  CLI::App app("Zento, a workstation for electrochemical measurements.", "zento");
  app.set_version_flag("--version", std::string("zento ") + ZENTO_VERSION);
  app.allow_windows_style_options(false);  // a path may begin with a slash
  AddOptions(app, request);
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
  options.home = PathFromText(request.home);
  if (!request.bench.empty()) options.simulated = request.bench == "sim";
  if (options.simulated != true && request.bench_parameters.given()) {
    return Refuse("--bench-set and --seed are for --bench sim");
  }
  const auto bench = request.bench_parameters.Parameters();
  if (!bench.ok()) return Refuse(bench.why());
  options.bench = bench.value();
  return options;
}

}  // namespace zento
