#include "program/main_program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <string>

#include "core/rescue.h"
#include "core/settings_file.h"
#include "core/track_file.h"
#include "graph/graph_form.h"
#include "host/virtual/virtual_host.h"
#include "measure/cv_form.h"

namespace zento {
namespace {

using testing::HasSubstr;

class MainProgramTest : public testing::Test {
 protected:
  MainOptions Simulated() { return {sim::Parameters(), "/home"}; }
  void Click(const char* form, const char* control) {
    ASSERT_TRUE(machine_.desktop.Find(form)->Find(control)->UserClick().ok());
  }

  VirtualHost machine_;
};

TEST_F(MainProgramTest, FurnishesAFreshHomeSoThatEveryDeviceOfTheBenchWorks) {
  MainProgram program(machine_.host, Simulated());
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
    EXPECT_NE(machine_.desktop.Show(form), nullptr) << form;
  }
  EXPECT_TRUE(machine_.dialogs.messages.empty());
}

// Macros, scripts and accessibility tools know nothing of a control but its name.
TEST_F(MainProgramTest, EveryControlOfEveryWindowIsFoundByItsName) {
  MainProgram program(machine_.host, Simulated());
  ASSERT_TRUE(program.Start().ok());
  for (const char* name : {"frmControlPanel",
                           "frmImportTrack",
                           "frmSearchTrack",
                           "frmReplaceTitle",
                           "frmSpecialCopy",
                           "frmEditTracks",
                           "frmEditATrack",
                           "frmBasicOperations",
                           "frmMeasureCV",
                           "frmMeasureRDE",
                           "frmPotentialStep",
                           "frmMeasureRPMvsj",
                           "frmFFTFilter",
                           "frmSmoothing",
                           "frmCalculation",
                           "frmKoutecky_Levich",
                           "frmO2Reduction",
                           "frmCottrellEquation",
                           "frmCoulombCalculator",
                           "frmTafelAnalyzer",
                           "frmPower",
                           "frmMacro",
                           "frmAdjustRPM",
                           "frmSettings",
                           "frmMultipotentiostat"}) {
    const Form* const form = machine_.desktop.Show(name);
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

TEST_F(MainProgramTest, LeavesAFurnishedHomeAsItIs) {
  ASSERT_TRUE(machine_.files.Replace("/home/Parameters.txt", "CVNum= 3\r\n").ok());
  MainProgram program(machine_.host, Simulated());
  ASSERT_TRUE(program.Start().ok());
  EXPECT_EQ(program.workstation().settings.CVNum, 3);
  EXPECT_EQ(program.workstation().settings.ADBoard, 0);
}

TEST_F(MainProgramTest, ShowsWhichBenchIsInUse) {
  {
    MainProgram program(machine_.host, Simulated());
    ASSERT_TRUE(program.Start().ok());
    EXPECT_THAT(machine_.desktop.banner(), HasSubstr("SIMULATED"));
    EXPECT_TRUE(machine_.desktop.Shown("frmControlPanel"));
    const auto& place = machine_.desktop.Find("Graph1")->geometry();
    EXPECT_TRUE(place.placed);
    EXPECT_EQ(place.left, 1000);
    EXPECT_EQ(place.top, 0);
  }
  VirtualHost other;
  MainProgram program(other.host, {std::nullopt, "/home"});
  ASSERT_TRUE(program.Start().ok());
  EXPECT_EQ(other.desktop.banner(), "");
  EXPECT_FALSE(other.files.Exists("/home/Parameters.txt")) << "nothing is made up for a laboratory";
}

TEST_F(MainProgramTest, WithoutItsInstrumentsALaboratorysWindowSaysSoAndDoesNotOpen) {
  MainProgram program(machine_.host, {std::nullopt, "/home"});
  ASSERT_TRUE(machine_.files.Replace("/home/Parameters.txt", "ADBoard= 2\r\n").ok());
  ASSERT_TRUE(program.Start().ok());
  EXPECT_EQ(machine_.desktop.Show("frmMeasureCV"), nullptr);
  ASSERT_EQ(machine_.dialogs.messages.size(), 1U);
  EXPECT_THAT(machine_.dialogs.messages[0], HasSubstr("AD Board Trouble!"));
}

TEST_F(MainProgramTest, EndingDuringARunStoresItAndLeavesTheBenchAtRest) {
  MainProgram program(machine_.host, Simulated());
  ASSERT_TRUE(program.Start().ok());
  auto* form = dynamic_cast<frmMeasureCV*>(machine_.desktop.Show("frmMeasureCV"));
  ASSERT_NE(form, nullptr);
  form->rpm("1000");
  form->RetainTime(1);
  form->StartMeasurement();
  machine_.RunFor(10'000'000);
  ASSERT_TRUE(program.bench()->plant().rotor().powered());
  ASSERT_EQ(program.workstation().running_flag, -1);

  program.EndSafely();
  EXPECT_TRUE(program.Ended());
  EXPECT_EQ(program.workstation().running_flag, 0);
  EXPECT_GT(program.workstation().tracks.Record(0).pnum, 800);
  EXPECT_FALSE(program.bench()->plant().rotor().powered());
  EXPECT_TRUE(machine_.desktop.Loaded().empty());
  EXPECT_THAT(machine_.files.Read("/home/Parameters.txt").value(), HasSubstr("CVRPM= 1000"));
  program.EndSafely();
  machine_.RunFor(1'000'000);
}

TEST_F(MainProgramTest, EndingSwitchesAMotorOffThatWasOnForAdjusting) {
  MainProgram program(machine_.host, Simulated());
  ASSERT_TRUE(program.Start().ok());
  ASSERT_NE(machine_.desktop.Show("frmAdjustRPM"), nullptr);
  Click("frmAdjustRPM", "cmdMotorOn");
  ASSERT_TRUE(program.bench()->plant().rotor().powered());
  program.EndSafely();
  EXPECT_FALSE(program.bench()->plant().rotor().powered());
}

TEST_F(MainProgramTest, AHomeThatCannotBeFurnishedIsAFailure) {
  machine_.files.FailNext(MemoryFiles::Operation::kReplace, "read-only file system");
  MainProgram program(machine_.host, Simulated());
  const Status started = program.Start();
  EXPECT_THAT(started.why(), HasSubstr("read-only file system"));
  EXPECT_FALSE(machine_.files.Exists("/home/Parameters.txt"));
}

TEST_F(MainProgramTest, RescuesTracksNextToEarlierOnes) {
  Workstation workstation;
  workstation.home = "/home";
  EXPECT_EQ(RescueTracks(workstation, machine_.files).value(), std::nullopt);
  workstation.tracks.Record(4).Mode = kModeCV;
  workstation.tracks.Record(4).pnum = 1;
  workstation.tracks.SetValue(1, 4, 0, 2.5e-5);
  EXPECT_EQ(RescueTracks(workstation, machine_.files).value(), "/home/Rescued tracks 1.znt");
  EXPECT_EQ(RescueTracks(workstation, machine_.files).value(), std::nullopt) << "nothing is new";
  workstation.tracks.Record(4).Title = "changed";
  EXPECT_EQ(RescueTracks(workstation, machine_.files).value(), "/home/Rescued tracks 2.znt");
  TrackStore read;
  ASSERT_TRUE(
      ReadTracks(machine_.files.Read("/home/Rescued tracks 2.znt").value(), read).complete());
  EXPECT_EQ(read.Value(1, 4, 0), 2.5e-5);
}

}  // namespace
}  // namespace zento
