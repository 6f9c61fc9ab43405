#include <gmock/gmock.h>

#include <algorithm>
#include <set>
#include <string>

#include "core/settings_file.h"
#include "core/settings_table.h"
#include "core/track_store.h"
#include "core/workstation.h"
#include "host/virtual/memory_services.h"

namespace zento {
namespace {

using ::testing::HasSubstr;

bool NoCalibration(const std::filesystem::path&) {
  return false;
}

// Another value in every row, so that a row that is read into the wrong member is noticed.
template <typename Owner>
void SetAllDifferent(std::span<const SettingRowOf<Owner>> rows, Owner& owner, int& next) {
  for (const SettingRowOf<Owner>& row : rows) {
    SetSettingFromText(row, owner, std::to_string(next++));
  }
}

Settings AllDifferent() {
  Settings settings;
  int next = 100;
  SetSettingFromText(CVNumRow(), settings, "5");
  for (CVPreset& preset : settings.CV) SetAllDifferent(PresetRows(), preset, next);
  SetAllDifferent(SettingRows(), settings, next);
  settings.KLDm = 2.3456789012345678e-5;
  settings.PSV1 = -0.05;
  settings.MMAdch = {1, -2, 3};
  settings.MMScale = {-0.005, 1e-12};
  settings.SoundFileName = "C:\\音\\a=b.wav";
  settings.MMAdch.resize(21);
  settings.MMScale.resize(21);
  return settings;
}

TEST(SettingsTable, NamesEverySettingOnce) {
  std::set<std::string_view> keys = {kPresetNumberKey, CVNumRow().key};
  std::size_t rows = 2;
  for (const PresetRow& row : PresetRows()) ++rows, keys.insert(row.key);
  for (const SettingRow& row : SettingRows()) ++rows, keys.insert(row.key);
  EXPECT_EQ(keys.size(), rows);
  // Every member of Settings has a row: after filling all rows nothing is left as it was.
  Settings settings = AllDifferent();
  SetAllToDefaults(settings);
  Settings expected;
  SetAllToDefaults(expected);
  expected.RPMvsVoltageFile = settings.RPMvsVoltageFile;
  expected.CardNumber = settings.CardNumber;
  expected.DABoard = settings.DABoard;
  expected.RDERef = settings.RDERef;
  expected.RDERPM = settings.RDERPM;
  expected.PSRPM = settings.PSRPM;
  expected.SSVRef = settings.SSVRef;
  expected.SSVRPM = settings.SSVRPM;
  for (std::size_t i = 0; i < expected.CV.size(); ++i) {
    expected.CV[i].CVRef = settings.CV[i].CVRef;
    expected.CV[i].CVRPM = settings.CV[i].CVRPM;
  }
  EXPECT_EQ(settings, expected);
}

TEST(SettingsFile, ReadsBackWhatWasWritten) {
  const Settings written = AllDifferent();
  Settings read;
  ASSERT_TRUE(ParseSettings(FormatSettings(written), read).ok());
  EXPECT_EQ(read, written);
}

TEST(SettingsFile, HasTheFormOfItsKind) {
  Settings settings;
  SetAllToDefaults(settings);
  const std::string text = FormatSettings(settings);
  EXPECT_EQ(text.substr(0, 92),
            "CVNum= 0\r\nCVSetNum= 0\r\nCVTitle=Initial Setting\r\nCVXScale= 1\r\n"
            "CVYScale= .001\r\nCVV0= .6\r\nCVV1=");
  EXPECT_THAT(text, HasSubstr("\r\nCVRPM= 0\r\nCVSetNum= 1\r\nCVTitle="));
  EXPECT_THAT(text, HasSubstr("\r\nCVRPM= 0\r\nDiskXScale= 1\r\n"));
  EXPECT_THAT(text, HasSubstr("\r\nRDEV1=-.2\r\n"));
  EXPECT_THAT(text, HasSubstr("\r\nKLDm= 2E-05\r\n"));
  EXPECT_THAT(text, HasSubstr("\r\nMMAdch= 0 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19\r\n"));
  EXPECT_THAT(text, HasSubstr("\r\nMMScale= 1 .005 1 .005 "));
  EXPECT_THAT(text, HasSubstr("\r\nSoundFileName=A:\\Windows\\MEDIA\\The Microsoft Sound.wav\r\n"));
  EXPECT_TRUE(text.ends_with("\r\nRPMvsVoltageFile=\r\nPowerControl= 0\r\n"));

  settings.CV[0].CVTitle = "two\r\nlines=";
  Settings read;
  ASSERT_TRUE(ParseSettings(FormatSettings(settings), read).ok());
  EXPECT_EQ(read.CV[0].CVTitle, "two  lines=");
}

TEST(SettingsFile, TakesLinesOneByOne) {
  Settings settings;
  settings.KLne = 3;
  ASSERT_TRUE(ParseSettings("CVTitle=first\r\nGPIBAddress= 7.5\r\nCardNumber= 6.5\n"
                            "no key\r\n=5\r\nFGKind\r\nUnknown=1\r\ncvnum=9\r\nCVNum=3x\r\n"
                            "PSGraphOn=99999\r\nCVSetNum=2\r\nCVTitle= second=2\r\n"
                            "CVSetNum=-1\r\nCVTitle=nowhere\r\nCVSetNum=6\r\nCVRPM=1\r\n"
                            "MMAdch= 3 -1 2\r\nO2CE=.39\r\nTable\r\nO2CE=.5\r\n",
                            settings)
                  .ok());
  EXPECT_EQ(settings.CV[0].CVTitle, "first");
  EXPECT_EQ(settings.CV[2].CVTitle, " second=2");
  EXPECT_EQ(settings.GPIBAddress, 8);
  EXPECT_EQ(settings.CardNumber, 6);
  EXPECT_EQ(settings.CVNum, 3);
  EXPECT_EQ(settings.PSGraphOn, 32767);
  EXPECT_EQ(settings.O2CE, 0.39);
  EXPECT_EQ(settings.KLne, 3);
  ASSERT_EQ(settings.MMAdch.size(), 21u);
  EXPECT_EQ(settings.MMAdch[1], -1);
  EXPECT_EQ(settings.MMAdch[3], 0);
}

class SettingsOnDisk : public ::testing::Test {
 protected:
  SettingsOnDisk() { ws.home = "home"; }
  SettingsLoad Load(const CalibrationLoader& loader = NoCalibration) {
    return LoadSettings(ws, files, loader);
  }
  void Write(std::string_view bytes) { ASSERT_TRUE(files.Replace(path, bytes).ok()); }

  Workstation ws;
  MemoryFiles files;
  const std::filesystem::path path = SettingsPath("home");
};

TEST_F(SettingsOnDisk, LoadsOnlyWhatTheFileNames) {
  Write("CVNum=3");
  ws.settings.RPMvsVoltageFile = "old";
  EXPECT_TRUE(Load().read.ok());
  EXPECT_TRUE(ws.SettingsLoaded);
  Settings expected;
  expected.CVNum = 3;
  expected.MMAdch.resize(21);
  expected.MMScale.resize(21);
  EXPECT_EQ(ws.settings, expected);
}

TEST_F(SettingsOnDisk, RotationControlNeedsItsCalibration) {
  Write("DABoard=1\r\nRPMvsVoltageFile=rpm.txt\r\n");
  std::filesystem::path asked;
  EXPECT_FALSE(Load([&](const std::filesystem::path& file) {
                 asked = file;
                 return true;
               }).calibration_invalid);
  EXPECT_EQ(asked, std::filesystem::path("home") / "rpm.txt");
  EXPECT_EQ(ws.settings.DABoard, 1);

  EXPECT_TRUE(Load().calibration_invalid);
  EXPECT_EQ(ws.settings.DABoard, 0);
  EXPECT_TRUE(ws.SettingsLoaded);
  Write("DABoard=0\r\nRPMvsVoltageFile=rpm.txt\r\n");
  EXPECT_FALSE(Load().calibration_invalid);
}

TEST_F(SettingsOnDisk, WhatCouldNotBeReadIsKept) {
  const std::string damaged = std::string("CVNum=3\r\n\0\0\0", 12);
  for (const std::string_view kept : {"Parameters (unread 1).txt", "Parameters (unread 2).txt"}) {
    Write(damaged);
    EXPECT_FALSE(Load().read.ok());
    EXPECT_FALSE(ws.SettingsLoaded);
    EXPECT_EQ(ws.settings.CVNum, 0);
    ApplyDefaultSettings(ws);
    ASSERT_TRUE(SaveSettings(ws, files).ok());
    EXPECT_EQ(files.Read(std::filesystem::path("home") / kept).value(), damaged);
    EXPECT_EQ(files.Read(path).value(), FormatSettings(ws.settings));
  }
  Write("CVNum=3");
  files.FailNext(MemoryFiles::Operation::kRead);
  EXPECT_FALSE(Load().read.ok());
  files.FailNext(MemoryFiles::Operation::kRename);
  EXPECT_FALSE(SaveSettings(ws, files).ok());
  EXPECT_EQ(files.Read(path).value(), "CVNum=3");

  EXPECT_TRUE(Load().read.ok());
  ASSERT_TRUE(SaveSettings(ws, files).ok());
  EXPECT_EQ(files.List().size(), 3u);
}

TEST_F(SettingsOnDisk, DefaultsFillWhatAMissingFileLeaves) {
  EXPECT_FALSE(Load().read.ok());
  ws.settings.RDERPM = 400;
  ws.tracks.kl.KLUseFlag = {1};
  ws.tracks.kl.KLNStart = {17};
  ApplyDefaultSettings(ws);
  EXPECT_EQ(ws.settings.RDERPM, 400);
  EXPECT_EQ(ws.settings.CV[5].CVSamplingRate, 100);
  EXPECT_EQ(ws.settings.MMAdch[19], 19);
  EXPECT_EQ(ws.settings.MMScale[3], 0.005);
  EXPECT_EQ(ws.tracks.kl.KLUseFlag, std::vector<std::int16_t>(kTracks));
  EXPECT_EQ(ws.tracks.kl.KLNStart[0], 17);
}

}  // namespace
}  // namespace zento
