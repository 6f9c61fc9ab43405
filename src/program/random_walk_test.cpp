#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "core/track_file.h"
#include "core/track_store.h"
#include "host/controls.h"
#include "host/desktop.h"
#include "host/virtual/memory_services.h"
#include "measure/measure_form.h"
#include "program/headless_program.h"
#include "sim/random.h"
#include "ui/main/control_panel.h"

// Somebody presses anything at any moment, for a hundred thousand times, and the program is ended
// and started again in between. Whatever they do, the running flag stands for something that runs,
// motor and generator are off once a run has ended, and no track changes but the one that was
// meant.

namespace zento {
namespace {

constexpr const char* kMeasurements[] = {"frmMeasureCV", "frmMeasureRDE", "frmPotentialStep",
                                         "frmMeasureRPMvsj", "frmMultipotentiostat"};
constexpr const char* kMulti = "frmMultipotentiostat";
constexpr const char* kWindows[] = {"frmPower", "frmAdjustRPM", "frmMacro", "frmSettings"};
constexpr const char* kTrackFile = "/home/walk.znt";

// What macros of the walk measure goes into these tracks.
constexpr int kMacroTrack = 18;
constexpr const char* kMacros[] = {
    "CVMeasureMode\r\nCV.RecordTrack 18\r\nCV.Setting 1\r\nCV.SamplingRate 4\r\nCV.Accumlation "
    "5\r\n"
    "CV.RetainTime 1\r\nCV.Scanrate 500\r\nCV.Start\r\nCV.END",
    "RDE.RecordTrack 19\r\nRDE.RPM 900\r\nRDE.Accumlation 3\r\nRDE.Voltage 0.1 0.3 0.1\r\n"
    "RDE.Scanrate 400\r\nRDE.RetainTime 1\r\nRDE.Start\r\nWait 700\r\nRDE.END",
    "PS.RecordTrack 20\r\nPS.Voltage 0 0.4\r\nPS.RetainTime 1\r\nPS.MeasureTime 2\r\nPS.Start",
    "RPMvsi.RecordTrack 18\r\nRPMvsi.mode 2\r\nRPMvsi.RPM 200 800 300\r\nRPMvsi.RetainTime 1\r\n"
    "RPMvsi.SamplingRate 5\r\nRPMvsi.Start\r\nMail.Send",
    "Motor.On 500\r\nWait 1500\r\nMotor.Off\r\nPower 2 1\r\nSetPotential 0.1\r\nno.such 1\r\nWait "
    "900",
    "Motor.On 500\r\nWait 800\r\nCV.Title",
};

constexpr const char* kEntries[] = {"",    "0",   "-1",   "1",   "2",   "3",    "abc", "0.5",
                                    "0.1", "0.3", "1e-3", "5",   "7",   "20",   "100", "450",
                                    "900", "-5",  "0.05", "4.2", "1.1", "1200", "18"};

// Rounds and rates as above would fill the walk with conversions.
constexpr const char* kFewRounds[] = {"1", "2", "0", "abc", "3"};
constexpr const char* kLowRates[] = {"-1", "0", "2", "5", "10", "20", "50"};
// Not used: without their boards the motor is out of the program's hands; the templates ask for so
// many readings a point that the walk would be nothing but conversions.
constexpr const char* kLeftAlone[] = {"opnMotor",   "opnPowerControl", "CV_Acc",    "RRDE_Acc",
                                      "PSTime_Acc", "PSCoulomb_Acc",   "RPMvsi_Acc"};

// What changes tracks by hand besides measurements: the track that a box of the same window names,
// the one that the main window shows (an empty name), or any ("*").
struct ByHand {
  const char* control;
  const char* track;
};
constexpr ByHand kByHand[] = {{"frmCottrellEquation.txtTitle", "txtDataNum"},
                              {"frmCottrellEquation.txtne", "txtDataNum"},
                              {"frmCottrellEquation.txtConc", "txtDataNum"},
                              {"frmCottrellEquation.txtArea", "txtDataNum"},
                              {"frmTafelAnalyzer.cmdCalc", "txtDataNum"},
                              {"frmFFTFilter.cmdUpdate", "txtDataNum"},
                              {"frmFFTFilter.cmdRecordAnotherTrack", "txtDesNum"},
                              {"frmSmoothing.cmdUpdate", "*"},
                              {"frmSmoothing.cmdRecordAnotherTrack", "txtDesNum"},
                              {"frmCalculation.cmdCalc", "txtOpeA"},
                              {"frmCalculation.cmdUpdate", "txtOpeC"},
                              {"frmImportTrack.cmdImport", ""},
                              {"frmSearchTrack.cmdImport", "txtTrack"},
                              {"frmEditTracks.cmdCopy", "*"},
                              {"frmEditTracks.cmdMove", "*"},
                              {"frmEditTracks.cmdSwap", "*"},
                              {"frmReplaceTitle.cmdGo", "*"},
                              {"frmEditATrack.txtEdit", "*"},
                              {"frmEditATrack.DataGrid", "*"},
                              {"frmEditATrack.mnuDelete", "*"},
                              {"frmBasicOperations.cmdUpdate", "*"}};

// Enough of a track to notice that it became another one. (Not its potentials: those of a step are
// noted when it is seen, and given back when the target is changed after that.)
using TrackPrint = std::tuple<std::int32_t, std::string, std::string, std::int32_t, std::size_t,
                              double, double, double>;

class RandomWalk : public testing::Test {
 protected:
  // What the state before a step leaves possible.
  struct Before {
    std::array<TrackPrint, kTracks> tracks;
    std::set<int> targets;   // tracks that a run now active may store into
    bool measuring = false;  // a run that has generator and motor
    bool macro = false;
    int shown = 0;  // the main window's track
  };

  void StartSession() {
    program_.reset();
    files_ = MemoryFiles();
    sim::Parameters bench;
    ASSERT_TRUE(sim::SetFromText(bench, "noise=0").ok());
    program_ = std::make_unique<HeadlessProgram>(
        HeadlessOptions{.program = {.simulated = bench, .home = "/home"}, .files = &files_});
    ASSERT_TRUE(program_->Start().ok());
    Settings& settings = workstation().settings;
    for (CVPreset& preset : settings.CV) preset.CVAccum = 3;
    settings.RDEAccum = settings.PSAccum = settings.RPjAccum = settings.MMAccum = 3;
    Workstation other;
    other.tracks.Record(3).Title = "from a file";
    other.tracks.Record(3).Mode = kModeCV;
    other.tracks.Record(3).pnum = 2;
    ASSERT_TRUE(SaveTracksAs(other, files_, kTrackFile).ok());
  }

  std::uint64_t Below(std::uint64_t limit) { return random_.Bits() % limit; }
  template <typename T, std::size_t N>
  const T& Any(const T (&choices)[N]) {
    return choices[Below(N)];
  }

  Desktop& desktop() { return program_->desktop(); }
  Workstation& workstation() { return program_->workstation(); }
  MainProgram& program() { return program_->program(); }
  MeasureForm* Measurement(const std::string& name) { return desktop().FindAs<MeasureForm>(name); }

  void AddTargets(const std::string& name, std::set<int>& targets) {
    if (name == kMulti) {
      for (int track = 0; track < 10; ++track) targets.insert(track);
    } else {
      targets.insert(std::stoi(desktop().Find(name)->Find("txtDataNum")->Value()));
    }
  }

  Before Look() {
    Before before;
    before.tracks = Tracks();
    before.macro = workstation().macro_active;
    for (const char* name : kMeasurements) {
      const MeasureForm* form = Measurement(name);
      if (form == nullptr) continue;
      if (form->Measuring() && name != std::string(kMulti)) before.measuring = true;
      if (form->Measuring() || before.macro) AddTargets(name, before.targets);
    }
    if (before.macro) before.targets.insert({kMacroTrack, kMacroTrack + 1, kMacroTrack + 2});
    if (const auto* main = desktop().FindAs<frmControlPanel>(kMainForm)) {
      before.shown = main->current_track();
    }
    return before;
  }

  std::array<TrackPrint, kTracks> Tracks() {
    std::array<TrackPrint, kTracks> prints;
    TrackStore& store = workstation().tracks;
    for (int track = 0; track < kTracks; ++track) {
      const TrackRecord& record = store.Record(track);
      const std::int32_t last = std::max(0, record.pnum - 1);
      prints[static_cast<std::size_t>(track)] = {record.Mode,
                                                 record.Title,
                                                 record.MeasTime,
                                                 record.pnum,
                                                 store.Column(0, track).size(),
                                                 store.Value(0, track, 0),
                                                 store.Value(1, track, last / 2),
                                                 store.Value(1, track, last)};
    }
    return prints;
  }

  // A person's step; says what it was, and which tracks it may change besides those of runs.
  struct Step {
    std::string what;
    std::set<int> may_change;
    bool may_change_all = false;
  };

  Step TakeStep(const Before& before) {
    const std::uint64_t kind = Below(100);
    if (kind < 40) return LetTimePass();
    if (kind < 44) return OpenSomething();
    if (kind < 46) return CloseSomething();
    return UseSomething(before);
  }

  Step LetTimePass() {
    // Mostly a blink, now and then long enough for a run to come to its end.
    const std::int64_t micros =
        Below(60) == 0 ? static_cast<std::int64_t>(Below(8'000'000)) : Below(60'000);
    program_->loop().RunFor(micros);
    return {"wait " + std::to_string(micros) + " us", {}};
  }

  Step OpenSomething() {
    const std::string name = Below(3) == 0 ? Any(kWindows) : Any(kMeasurements);
    if (desktop().Knows(name)) desktop().Show(name);
    return {"open " + name, {}};
  }

  Step CloseSomething() {
    const std::vector<Form*> loaded = desktop().Loaded();
    Form* form = loaded[Below(loaded.size())];
    // The main window's closing ends the program: seldom.
    if (form->name() == kMainForm && Below(20) != 0) return {"look around", {}};
    Step step{"close " + form->name(), {}};
    desktop().RequestClose(form->name());
    return step;
  }

  Step UseSomething(const Before& before) {
    const std::vector<Form*> loaded = desktop().Loaded();
    Form* form = loaded[Below(loaded.size())];
    if (form->controls().empty()) return {"nothing to use in " + form->name(), {}};
    Control* control = form->controls()[Below(form->controls().size())];
    // Start, Stop and Run are what people press most.
    if (Below(4) == 0) control = Favourite(*form, control);
    Step step{form->name() + "." + control->Address(), {}};
    if (!control->Usable() || std::ranges::count(kLeftAlone, control->name()) > 0) return step;
    if (form->name() == kMainForm) {
      step.may_change.insert(before.shown);
      const std::string& name = control->name();
      step.may_change_all = name == "mnuOpen" || name == "mnuUndo" || name == "mnuRedo" ||
                            name.starts_with("mnuRecent");
    }
    AddByHand(*form, before, step);
    // What cannot last long may be over at once.
    if (control->name() == "cmdStart") AddTargets(form->name(), step.may_change);
    Use(*control);
    return step;
  }

  static void AddByHand(const Form& form, const Before& before, Step& step) {
    for (const auto& [control, track] : kByHand) {
      if (step.what != control) continue;
      const std::string box = track;
      if (box == "*") {
        step.may_change_all = true;
      } else if (box.empty()) {
        step.may_change.insert(before.shown);
      } else {
        step.may_change.insert(std::stoi(form.Find(box)->Value()));
      }
    }
  }

  Control* Favourite(const Form& form, Control* otherwise) {
    static constexpr const char* kFavourites[] = {"cmdStart", "cmdStart", "cmdStop", "cmdRun",
                                                  "txtMacro"};
    Control* favourite = form.Find(Any(kFavourites));
    return favourite != nullptr ? favourite : otherwise;
  }

  const char* Entry(const std::string& box) {
    if (box == "txtMacro") return Any(kMacros);
    if (box == "txtAccum") return Any(kFewRounds);
    if (box.find("amplingRate") != std::string::npos || box == "txtSamplingrate") {
      return Any(kLowRates);
    }
    return Any(kEntries);
  }

  void Use(Control& control) {
    switch (control.Kind()) {
      case ControlKind::kTextBox:
        static_cast<void>(control.UserSet(Entry(control.name())));
        break;
      case ControlKind::kUpDown:
        static_cast<void>(control.UserStep(Below(2) == 0 ? 1 : -1));
        break;
      case ControlKind::kOptionGroup:
      case ControlKind::kComboBox:
      case ControlKind::kListBox:
        static_cast<void>(control.UserSet(std::to_string(Below(4))));
        break;
      case ControlKind::kGrid:
        static_cast<void>(
            control.UserClickCell(static_cast<int>(Below(12)), static_cast<int>(Below(2))));
        break;
      default:
        UseButton(control);
        break;
    }
  }

  void UseButton(Control& control) {
    static constexpr const char* kAnswers[] = {"yes", "no", "ok", "cancel", "7", kTrackFile};
    if (control.name() == "mnuQuit" && Below(20) != 0) return;
    if (program_->dialogs().queued_answers() < 2) {
      program_->dialogs().Answer(Any(kAnswers));
    }
    static_cast<void>(control.UserClick());
  }

  void Check(const Before& before, const Step& step) {
    bool measuring = false;
    for (const char* name : kMeasurements) {
      const MeasureForm* form = Measurement(name);
      const bool now = form != nullptr && form->Measuring();
      measuring |= now;
      if (now && !was_measuring_[name]) ++runs_[name];
      was_measuring_[name] = now;
    }
    const bool macro = workstation().macro_active;
    if (macro && !before.macro) ++macros_;
    EXPECT_TRUE(workstation().running_flag == 0 || measuring || macro)
        << "the flag is stuck after: " << step.what;
    EXPECT_TRUE(workstation().running_flag != 0 || !measuring)
        << "a run without the flag after: " << step.what;
    if (before.measuring && !measuring && !macro && !before.macro) CheckAtRest(step);
    CheckTracks(before, step, measuring);
  }

  void CheckAtRest(const Step& step) {
    EXPECT_FALSE(program().bench()->plant().potentiostat().generator().output_on())
        << "the generator is on after: " << step.what;
    // The adjusting window has a motor of its own to switch off.
    if (desktop().Find("frmAdjustRPM") == nullptr) {
      EXPECT_FALSE(MotorTurns()) << "the motor turns after: " << step.what;
    }
  }

  bool MotorTurns() {
    return program().bench()->plant().rotor().powered() && workstation().motor_voltage != 0;
  }

  void CheckTracks(const Before& before, const Step& step, bool measuring) {
    if (step.may_change_all) return;
    const auto after = Tracks();
    for (int track = 0; track < kTracks; ++track) {
      const auto at = static_cast<std::size_t>(track);
      if (after[at] == before.tracks[at]) continue;
      // The multichannel monitor's run may have begun in this very step.
      const bool begun = measuring && was_measuring_[kMulti] && track < 10;
      EXPECT_TRUE(before.targets.contains(track) || step.may_change.contains(track) || begun)
          << "track " << track << " changed by: " << step.what;
      if (before.targets.contains(track)) ++stored_;
    }
  }

  MemoryFiles files_;
  std::unique_ptr<HeadlessProgram> program_;  // one from its start to its end
  sim::Random random_{20261123};
  std::map<std::string, bool> was_measuring_;
  std::map<std::string, int> runs_;
  int macros_ = 0;
  int stored_ = 0;
  int sessions_ = 0;
};

TEST_F(RandomWalk, LeavesNoStuckFlagNoTurningMotorAndNoWrongTrack) {
  StartSession();
  for (int step_number = 0; step_number < 100'000 && !HasFailure(); ++step_number) {
    SCOPED_TRACE("step " + std::to_string(step_number));
    const Before before = Look();
    const Step step = TakeStep(before);
    program_->loop().Settle();
    Check(before, step);
    if (program().Ended()) {
      EXPECT_EQ(workstation().running_flag, 0);
      EXPECT_FALSE(MotorTurns()) << step.what;
      ++sessions_;
      was_measuring_.clear();
      StartSession();
    }
  }
  program().EndSafely();
  EXPECT_EQ(workstation().running_flag, 0);
  EXPECT_FALSE(MotorTurns());
  EXPECT_FALSE(program().bench()->plant().potentiostat().generator().output_on());

  // The walk went everywhere.
  for (const char* name : kMeasurements) EXPECT_GT(runs_[name], 50) << name;
  EXPECT_GT(macros_, 100);
  EXPECT_GT(stored_, 300);
  EXPECT_GT(sessions_, 5);
}

}  // namespace
}  // namespace zento
