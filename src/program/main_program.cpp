#include "program/main_program.h"

#include <utility>

#include "analysis/analysis_forms.h"
#include "core/settings_file.h"
#include "core/track_file.h"
#include "core/track_store.h"
#include "devices/vendor/loader.h"
#include "graph/graph_form.h"
#include "macro/macro_form.h"
#include "measure/measure_form.h"
#include "program/home.h"
#include "ui/main/device_forms.h"
#include "ui/main/device_forms.h"
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

vendor::Libraries LibrariesFor(const MainOptions& options, sim::Bench* bench) {
  if (options.windows != Windows::kAll) return {};
  return bench != nullptr ? bench->Libraries() : vendor::LoadLibraries();
}

}  // namespace

MainProgram::MainProgram(Host& host, MainOptions options)
    : host_(host),
      options_(std::move(options)),
      bench_(MakeBench(host, options_)),
      instruments_(workstation_, host, LibrariesFor(options_, bench_.get())) {
  workstation_.home = options_.home;
  if (options_.windows == Windows::kAll) workstation_.run_log.Attach(host, options_.home);
}

MainProgram::~MainProgram() {
  CloseMainWindow();
  // With everything switched off: what becomes of the mails.
  host_.mail.Finish();
  workstation_.run_log.Flush();
  host_.desktop.Clear();
}

void MainProgram::RegisterForms() {
  Desktop& desktop = host_.desktop;
  const bool all = options_.windows == Windows::kAll;
  if (all) {
    for (const char* name : {"Graph1", "Graph2"}) {
      desktop.Register(name, [this, name] { return std::make_unique<Graph>(host_, name); });
    }
    RegisterDeviceForms(desktop, workstation_, host_, instruments_);
    RegisterMeasureForms(desktop, workstation_, host_, instruments_);
    RegisterMacroForms(desktop, workstation_, host_, instruments_);
  }
  RegisterAnalysisForms(desktop, workstation_, host_, options_.data_folders);
  if (options_.windows != Windows::kAnalyses) {
    RegisterMainForms(desktop, workstation_, host_, instruments_);
  }
}

Status MainProgram::Start() {
  if (options_.simulated) {
    const Status prepared = PrepareBenchHome(host_.files, options_.home, *options_.simulated);
    if (!prepared.ok()) return prepared.Within("furnish the simulated bench's home");
    host_.desktop.SetBanner(kSimulatedBanner);
  }
  RegisterForms();
  if (options_.windows == Windows::kAnalyses) {
    // What the main window does when it loads.
    ApplyDefaultSettings(workstation_);
    for (int track = 0; track < kTracks; ++track) workstation_.tracks.ClearTrack(track);
    return Status::Ok();
  }
  if (host_.desktop.Show(kMainForm) == nullptr) {
    return Status::Failure("the main window did not open");
  }
  if (options_.windows != Windows::kAll) return Status::Ok();
  host_.desktop.Load("Graph2");
  if (auto* graph = host_.desktop.LoadAs<Graph>("Graph1")) {
    graph->SetPosition(kGraphLeft, kGraphTop);
  }
  workstation_.DataGeneration = 0;
  return Status::Ok();
}

void MainProgram::CloseMainWindow() {
  host_.desktop.RequestClose(kMainForm);
  // What the closing windows still sent on the bus.
  workstation_.run_log.Flush();
}

SafeEnd MainProgram::EndSafely(const TracksAtEnd& tracks) {
  SafeEnd end;
  end.run_was_active = workstation_.running_flag != 0;
  CloseMainWindow();
  if (tracks.save) end.saved = tracks.save();
  if (tracks.rescue) end.rescued = RescueTracks(workstation_, host_.files);
  return end;
}

bool MainProgram::Ended() const {
  return host_.desktop.Find(kMainForm) == nullptr;
}

}  // namespace zento
