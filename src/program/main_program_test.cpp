#include "program/headless_program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <sstream>
#include <string>

#include "core/track_file.h"
#include "core/track_store.h"
#include "graph/graph_form.h"
#include "host/virtual/memory_services.h"
#include "macro/interpreter.h"
#include "measure/cv_form.h"

namespace zento {
namespace {

using testing::HasSubstr;

class MainProgramTest : public testing::Test {
 protected:
  HeadlessOptions OnBench() {
    return {.program = {.simulated = sim::Parameters(), .home = "/home"}, .files = &files_};
  }
  HeadlessOptions OnInstruments() { return {.program = {.home = "/home"}, .files = &files_}; }

  MemoryFiles files_;
};

TEST_F(MainProgramTest, PreparesAFreshHomeSoThatEveryDeviceOfTheBenchWorks) {
  HeadlessProgram program(OnBench());
  ASSERT_TRUE(program.Start().ok());
  const Settings& settings = program.workstation().settings;
  EXPECT_EQ(settings.ADBoard, 2);
  EXPECT_EQ(settings.DABoard, 1) << "the calibration file was found and good";
  EXPECT_EQ(settings.GPIBControl, 2);
  EXPECT_EQ(settings.PowerControl, 2);
  EXPECT_EQ(settings.CV[0].CVTitle, "Initial Setting");
  EXPECT_EQ(settings.CV[1].CVV0, -0.1);
  EXPECT_EQ(settings.CV[1].CVV1, 0.6);
  EXPECT_GE(program.workstation().rpm_calibration.size(), 2U);
  for (const char* form : {"frmMeasureCV", "frmAdjustRPM", "frmPower", "frmSettings"}) {
    EXPECT_NE(program.desktop().Show(form), nullptr) << form;
  }
  EXPECT_TRUE(program.dialogs().messages.empty());
}

// Macros, scripts and accessibility tools know nothing of a control but its name.
TEST_F(MainProgramTest, EveryControlOfEveryWindowIsFoundByItsName) {
  HeadlessProgram program(OnBench());
  ASSERT_TRUE(program.Start().ok());
  std::istringstream names(
      "frmControlPanel frmImportTrack frmSearchTrack frmReplaceTitle frmSpecialCopy frmEditTracks "
      "frmEditATrack frmBasicOperations frmMeasureCV frmMeasureRDE frmPotentialStep "
      "frmMeasureRPMvsj frmFFTFilter frmSmoothing frmCalculation frmKoutecky_Levich "
      "frmO2Reduction frmCottrellEquation frmCoulombCalculator frmTafelAnalyzer frmPower frmMacro "
      "frmAdjustRPM frmSettings frmMultipotentiostat");
  for (std::string name; names >> name;) {
    const Form* const form = program.desktop().Show(name);
    ASSERT_NE(form, nullptr) << name;
    std::map<std::string, int> of_name;
    for (const Control* control : form->controls()) ++of_name[control->name()];
    for (const Control* control : form->controls()) {
      EXPECT_EQ(form->Find(control->name(), control->index()), control)
          << name << "." << control->Address() << " twice";
      EXPECT_TRUE(of_name[control->name()] > 1 || control->index() < 0)
          << name << "." << control->Address();
    }
  }
}

TEST_F(MainProgramTest, LeavesAHomeWithSettingsAsItIs) {
  ASSERT_TRUE(files_.Replace("/home/Parameters.txt", "CVNum= 3\r\n").ok());
  HeadlessProgram program(OnBench());
  ASSERT_TRUE(program.Start().ok());
  EXPECT_EQ(program.workstation().settings.CVNum, 3);
  EXPECT_EQ(program.workstation().settings.ADBoard, 0);
}

TEST_F(MainProgramTest, ShowsWhichBenchIsInUse) {
  {
    HeadlessProgram program(OnBench());
    ASSERT_TRUE(program.Start().ok());
    EXPECT_THAT(program.desktop().banner(), HasSubstr("SIMULATED"));
    EXPECT_TRUE(program.desktop().Shown("frmControlPanel"));
    const auto& place = program.desktop().Find("Graph1")->geometry();
    EXPECT_TRUE(place.placed);
    EXPECT_EQ(place.left, 1000);
    EXPECT_EQ(place.top, 0);
  }
  files_ = MemoryFiles();
  HeadlessProgram program(OnInstruments());
  ASSERT_TRUE(program.Start().ok());
  EXPECT_EQ(program.desktop().banner(), "");
  EXPECT_FALSE(files_.Exists("/home/Parameters.txt")) << "nothing is made up for a laboratory";
}

TEST_F(MainProgramTest, WithoutItsInstrumentsALaboratorysWindowSaysSoAndDoesNotOpen) {
  HeadlessProgram program(OnInstruments());
  ASSERT_TRUE(files_.Replace("/home/Parameters.txt", "ADBoard= 2\r\n").ok());
  ASSERT_TRUE(program.Start().ok());
  EXPECT_EQ(program.desktop().Show("frmMeasureCV"), nullptr);
  ASSERT_EQ(program.dialogs().messages.size(), 1U);
  EXPECT_THAT(program.dialogs().messages[0], HasSubstr("AD Board Trouble!"));
}

TEST_F(MainProgramTest, EndingDuringARunStoresItAndLeavesTheBenchAtRest) {
  HeadlessProgram program(OnBench());
  ASSERT_TRUE(program.Start().ok());
  auto* form = dynamic_cast<frmMeasureCV*>(program.desktop().Show("frmMeasureCV"));
  ASSERT_NE(form, nullptr);
  form->rpm("1000");
  form->RetainTime(1);
  form->StartMeasurement();
  program.loop().RunFor(10'000'000);
  ASSERT_TRUE(program.program().bench()->plant().rotor().powered());
  ASSERT_EQ(program.workstation().running_flag, -1);

  const SafeEnd end = program.program().EndSafely();
  EXPECT_TRUE(program.program().Ended());
  EXPECT_TRUE(end.run_was_active);
  EXPECT_EQ(end.rescued.value(), "/home/Rescued tracks 1.znt");
  EXPECT_EQ(program.workstation().running_flag, 0);
  EXPECT_GT(program.workstation().tracks.Record(0).pnum, 800);
  EXPECT_FALSE(program.program().bench()->plant().rotor().powered());
  EXPECT_TRUE(program.desktop().Loaded().empty());
  EXPECT_THAT(files_.Read("/home/Parameters.txt").value(), HasSubstr("CVRPM= 1000"));
  EXPECT_EQ(program.program().EndSafely().rescued.value(), std::nullopt) << "nothing is new";
  program.loop().RunFor(1'000'000);
}

TEST_F(MainProgramTest, EndingSwitchesAMotorOffWhoeverSwitchedItOn) {
  for (const bool by_macro : {false, true}) {
    HeadlessProgram program(OnBench());
    ASSERT_TRUE(program.Start().ok());
    MacroInterpreter macro(program.workstation(), program.host(), program.program().instruments());
    if (by_macro) {
      macro.Start("Motor.On 400", "m.zmc");
      program.loop().RunFor(5'000'000);
      ASSERT_FALSE(macro.Active());
    } else {
      const Form* const form = program.desktop().Show("frmAdjustRPM");
      ASSERT_TRUE(form->Find("cmdMotorOn")->UserClick().ok());
    }
    const sim::Rotor& rotor = program.program().bench()->plant().rotor();
    ASSERT_TRUE(rotor.powered());
    EXPECT_FALSE(program.program().EndSafely().run_was_active);
    EXPECT_FALSE(rotor.powered()) << (by_macro ? "by the macro" : "by the window");
  }
}

// The tracks are saved where somebody asked for it; else rescued, beside earlier ones, unless they
// may be lost.
TEST_F(MainProgramTest, EndingSeesToTheTracks) {
  HeadlessProgram program(OnBench());
  ASSERT_TRUE(program.Start().ok());
  TrackStore& tracks = program.workstation().tracks;
  const auto end = [&](const TracksAtEnd& what) { return program.program().EndSafely(what); };
  EXPECT_EQ(end({}).rescued.value(), std::nullopt) << "they are empty";
  tracks.Record(4).Mode = kModeCV;
  tracks.Record(4).pnum = 1;
  tracks.SetValue(1, 4, 0, 2.5e-5);
  EXPECT_EQ(end({.rescue = false}).rescued.value(), std::nullopt);
  const SafeEnd unsaved = end({.save = [] { return Status::Failure("disk full"); }});
  EXPECT_EQ(unsaved.saved.why(), "disk full");
  EXPECT_EQ(unsaved.rescued.value(), "/home/Rescued tracks 1.znt");
  EXPECT_EQ(end({}).rescued.value(), std::nullopt) << "nothing is new";
  tracks.Record(4).Title = "changed";
  EXPECT_EQ(end({}).rescued.value(), "/home/Rescued tracks 2.znt");
  TrackStore read;
  ASSERT_TRUE(ReadTracks(files_.Read("/home/Rescued tracks 2.znt").value(), read).complete());
  EXPECT_EQ(read.Value(1, 4, 0), 2.5e-5);
  tracks.Record(4).Title = "again";
  files_.FailNext(MemoryFiles::Operation::kReplace, "read-only");
  EXPECT_THAT(end({}).rescued.why(), HasSubstr("read-only"));
  EXPECT_EQ(end({.save = [&] { return SaveTracksAs(program.workstation(), files_, "/kept.znt"); }})
                .rescued.value(),
            std::nullopt);
}

TEST_F(MainProgramTest, AHomeThatCannotBePreparedIsAFailure) {
  files_.FailNext(MemoryFiles::Operation::kReplace, "read-only file system");
  HeadlessProgram program(OnBench());
  const Status started = program.Start();
  EXPECT_THAT(started.why(), HasSubstr("read-only file system"));
  EXPECT_FALSE(files_.Exists("/home/Parameters.txt"));
}

}  // namespace
}  // namespace zento
