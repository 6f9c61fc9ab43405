#include "cli/verify_experiments.h"

#include <utility>

#include "cli/script.h"
#include "host/path_text.h"
#include "program/headless_program.h"

namespace zento {
namespace {

using Settings = std::vector<std::pair<const char*, const char*>>;

constexpr std::string_view kOxygen[] = {"cell=oxygen"};
// What a potentiostat's compensation leaves: the potential at the electrode is the one that is set,
// so the rate constant at it is known.
constexpr std::string_view kOxygenCompensated[] = {"cell=oxygen", "R_u=0"};
constexpr std::string_view kCouple[] = {"cell=couple"};
constexpr std::string_view kNoisyCouple[] = {"cell=couple", "noise=0.6"};
constexpr std::string_view kSlowCouple[] = {"cell=couple", "k0=1e-6", "alpha=0.4", "C_ox=5",
                                            "C_red=5"};
constexpr std::string_view kBlank[] = {"cell=blank"};
constexpr std::string_view kSlowBlank[] = {"cell=blank", "R_u=1e5"};

std::string Entries(const std::string& form, const Settings& settings) {
  std::string lines = "open " + form + "\n";
  for (const auto& [control, value] : settings) {
    lines += "set " + form + "." + control + " " + value + "\n";
  }
  return lines;
}

std::string Start(const std::string& form) {
  return "click " + form + ".cmdStart\nwait idle\n";
}

std::string FourRates(const Settings& sweep) {
  const std::string form = "frmMeasureRDE";
  std::string lines = Entries(form, sweep);
  const char* const rates[] = {"400", "900", "1600", "2400"};
  for (int track = 0; const char* rpm : rates) {
    const std::string number = std::to_string(track++);
    lines += Entries(form, {{"txtDataNum", number.c_str()}, {"txtRPM", rpm}}) + Start(form);
  }
  return lines;
}

Settings Sweep(const char* first, const char* second, const char* rate, const char* sampling) {
  return {{"txtVoltSetting(0)", first},  {"txtVoltSetting(1)", second},
          {"txtVoltSetting(2)", first},  {"txtScanrate", rate},
          {"txtCycleNum", "1"},          {"txtRetainTime", "10"},
          {"txtSamplingrate", sampling}, {"txtAccum", "20"}};
}

std::string Kinetics() {
  return FourRates(Sweep("0.90", "0.80", "2", "10"));
}

std::string Plateau() {
  return FourRates(Sweep("1", "0.1", "20", "10"));
}

std::string Shares() {
  return Entries("frmMeasureRDE", Sweep("1", "0.1", "5", "10")) +
         Entries("frmMeasureRDE", {{"txtDataNum", "0"}, {"txtRPM", "1600"}}) +
         Start("frmMeasureRDE");
}

std::string Rates() {
  const std::string form = "frmMeasureRPMvsj";
  return Entries(form, {{"txtDataNum", "0"},
                        {"txtDiskXValue", "0.3"},
                        {"opnRPMvsj", "2"},
                        {"txtStartRPM", "400"},
                        {"txtEndRPM", "1600"},
                        {"txtSpeed", "4"},
                        {"txtRetainTime", "10"},
                        {"txtSamplingrate", "2"},
                        {"txtAccum", "20"}}) +
         Start(form);
}

// 100 Hz with one reading a point: the step is seen at most 12 ms late.
std::string Step() {
  const std::string form = "frmPotentialStep";
  return Entries(form, {{"txtDataNum", "0"},
                        {"txtVoltSetting(0)", "-0.2"},
                        {"txtVoltSetting(1)", "0.7"},
                        {"txtRetainTime", "5"},
                        {"txtMaxTime", "20"},
                        {"txtInitSamplingRate", "100"},
                        {"opnSamplingMode", "0"},
                        {"txtAccum", "1"}}) +
         Start(form);
}

// Slow, so that the double layer takes next to nothing; turned, so that the solution at the
// electrode stays as it is.
std::string Slow() {
  const std::string form = "frmMeasureCV";
  std::string lines = Entries(form, {{"txtYScale", "0.001"}, {"txtRPM", "2400"}});
  for (const char* to : {"0.5", "0"}) {
    lines += Entries(form, Sweep("0.25", to, "1", "10"));
    lines += Entries(form, {{"txtDataNum", to[1] == 0 ? "1" : "0"}}) + Start(form);
  }
  return lines;
}

std::string Capacitor() {
  const std::string form = "frmMeasureCV";
  return Entries(form, {{"txtYScale", "1e-6"}, {"txtDataNum", "0"}}) +
         Entries(form, Sweep("0", "1", "50", "100")) + Start(form);
}

std::string Decay() {
  const std::string form = "frmPotentialStep";
  return Entries(form, {{"txtDataNum", "0"},
                        {"txtYScale", "1e-6"},
                        {"txtVoltSetting(0)", "0"},
                        {"txtVoltSetting(1)", "0.2"},
                        {"txtRetainTime", "5"},
                        {"txtMaxTime", "5"},
                        {"txtInitSamplingRate", "100"},
                        {"opnSamplingMode", "0"},
                        {"txtAccum", "1"}}) +
         Start(form);
}

}  // namespace

namespace experiments {
const Experiment kKinetics{"kinetics", kOxygenCompensated, Kinetics};
const Experiment kPlateau{"plateau", kOxygen, Plateau};
const Experiment kShares{"shares", kOxygen, Shares};
const Experiment kRates{"rates", kOxygen, Rates};
const Experiment kStep{"step", kCouple, Step};
const Experiment kNoisyStep{"step-with-noise", kNoisyCouple, Step};
const Experiment kSlow{"slow-couple", kSlowCouple, Slow};
const Experiment kCapacitor{"capacitor", kBlank, Capacitor};
const Experiment kDecay{"decay", kSlowBlank, Decay};
const Experiment kNoisy{"plateau-with-noise", kOxygen, Plateau, true};
}  // namespace experiments

sim::Parameters BenchOf(const Experiment& experiment) {
  sim::Parameters parameters;
  const auto set = [&](std::string_view text) {
    static_cast<void>(sim::SetFromText(parameters, text));
  };
  if (!experiment.noise) {
    for (const char* text : {"noise=0", "mains=0", "bits=0", "rotor_gain=1"}) set(text);
  }
  for (const std::string_view text : experiment.cell) set(text);
  return parameters;
}

std::filesystem::path TrackFileOf(const Experiment& experiment) {
  return PathFromText(std::string(experiment.name) + ".znt");
}

Status Measure(const Experiment& experiment, MemoryFiles& files) {
  HeadlessProgram program({.program = {.simulated = BenchOf(experiment),
                                       .home = "home-" + std::string(experiment.name)},
                           .files = &files});
  if (Status started = program.Start(); !started.ok()) return started;
  std::string said;
  const ScriptOutput output{[](std::string_view) {},
                            [&](std::string_view note) { said += std::string(note) + "; "; }};
  ScriptDriver driver(program, output);
  const ScriptEnd end =
      driver.Run(experiment.script() + "answer " + TextFromPath(TrackFileOf(experiment)) +
                 "\nclick frmControlPanel.mnuSaveAs\n");
  for (const std::string& message : program.dialogs().TakeMessages()) said += message + "; ";
  if (end == ScriptEnd::kCompleted && said.empty()) return Status::Ok();
  return Status::Failure("measuring " + std::string(experiment.name) + ": " +
                         (said.empty() ? "not completed" : said));
}

}  // namespace zento
