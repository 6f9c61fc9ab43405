#include "program/main_program.h"

#include <utility>

#include "analysis/analysis_forms.h"
#include "devices/vendor/loader.h"
#include "graph/graph_form.h"
#include "macro/macro_form.h"
#include "measure/measure_forms.h"
#include "program/furnish.h"
#include "ui/main/main_forms.h"

namespace zento {
namespace {

constexpr char kSimulatedBanner[] =
    "SIMULATED BENCH - no instrument is connected, all readings are computed";

// The live plot opens beside the other windows.
constexpr std::int16_t kGraphLeft = 1000;
constexpr std::int16_t kGraphTop = 0;

std::unique_ptr<sim::Bench> MakeBench(const Host& host, const MainOptions& options) {
  if (!options.simulated) return nullptr;
  return std::make_unique<sim::Bench>(host.clock, *options.simulated);
}

}  // namespace

MainProgram::MainProgram(Host& host, MainOptions options)
    : host_(host),
      options_(std::move(options)),
      bench_(MakeBench(host, options_)),
      instruments_(workstation_, host, bench_ ? bench_->Libraries() : vendor::LoadLibraries()) {
  workstation_.home = options_.home;
  workstation_.run_log.Attach(host, options_.home);
}

MainProgram::~MainProgram() {
  End();
  host_.desktop.Clear();
}

void MainProgram::RegisterForms() {
  Desktop& desktop = host_.desktop;
  for (const char* name : {"Graph1", "Graph2"}) {
    desktop.Register(name, [this, name] { return std::make_unique<Graph>(host_, name); });
  }
  RegisterDeviceForms(desktop, workstation_, host_, instruments_);
  RegisterMeasureForms(desktop, workstation_, host_, instruments_);
  RegisterMacroForms(desktop, workstation_, host_, instruments_);
  RegisterAnalysisForms(desktop, workstation_, host_, options_.data_folders);
  RegisterMainForms(desktop, workstation_, host_, instruments_);
}

Status MainProgram::Start() {
  if (options_.simulated) {
    const Status furnished = FurnishBench(host_.files, options_.home, *options_.simulated);
    if (!furnished.ok()) return furnished.Within("furnish the simulated bench's home");
    host_.desktop.SetBanner(kSimulatedBanner);
  }
  RegisterForms();
  if (host_.desktop.Show(kMainForm) == nullptr) {
    return Status::Failure("the main window did not open");
  }
  host_.desktop.Load("Graph2");
  if (auto* graph = host_.desktop.LoadAs<Graph>("Graph1")) {
    graph->SetPosition(kGraphLeft, kGraphTop);
  }
  workstation_.DataGeneration = 0;
  return Status::Ok();
}

void MainProgram::End() {
  // Copies: what ends takes its function away. The macro goes first, or it would take its next
  // line.
  const auto end_macro = workstation_.end_active_macro;
  if (end_macro) end_macro();
  const auto end_run = workstation_.end_active_run;
  if (end_run) end_run();
  host_.desktop.RequestClose(kMainForm);
  // What the closing windows still sent on the bus; then, with everything switched off, what
  // becomes of the mails.
  workstation_.run_log.Flush();
  host_.mail.Finish();
  workstation_.run_log.Flush();
}

bool MainProgram::Ended() const {
  return host_.desktop.Find(kMainForm) == nullptr;
}

}  // namespace zento
