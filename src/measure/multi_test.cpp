#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/track_file.h"
#include "measure/multi_form.h"
#include "measure/test_rig.h"

namespace zento {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

constexpr char kWarning[] = "Once you push 'Start' button, Track 0 to 11's data will be lost!";

struct MultiRig : TestRig {
  MultiRig() {
    ws.home = "home";
    ws.run_log.Attach(machine.host, "home");
    // Input c carries c hundredths of a volt.
    volts = [](int channel) { return 0.01 * channel; };
  }
  frmMultipotentiostat& Form() {
    auto& form = *dynamic_cast<frmMultipotentiostat*>(machine.desktop.Show("frmMultipotentiostat"));
    machine.dialogs.TakeMessages();
    return form;
  }
  // A record of an earlier day, in no file yet.
  void FillTrack(int track) {
    ws.tracks.Record(track).Mode = kModeCV;
    ws.tracks.Record(track).Title = "last week's";
    ws.tracks.Record(track).Scanrate = 50;
    ws.tracks.Record(track).pnum = 1;
    ws.tracks.SetValue(1, track, 0, 7e-6);
  }
  Graph& Plot() { return *dynamic_cast<Graph*>(machine.desktop.Find("Graph1")); }
};

void Enter(TextBox& box, const char* text) {
  ASSERT_TRUE(box.UserSet(text).ok());
}

TEST(MultiForm, WarnsAndRestoresItsEntriesWhenItOpens) {
  MultiRig rig;
  rig.machine.desktop.Show("frmMultipotentiostat");
  EXPECT_THAT(rig.machine.dialogs.messages, ElementsAre(kWarning));
  frmMultipotentiostat& form = rig.Form();
  EXPECT_EQ(form.txtSamplingrate.text(), "1");
  EXPECT_EQ(form.txtAccum.text(), "20");
  EXPECT_EQ(form.txtMaxTime.text(), "600");
  EXPECT_EQ(form.txtScale[0].text(), "1");
  EXPECT_EQ(form.txtScale[19].text(), "0.005");
  EXPECT_EQ(form.cbxADCh[19].selected(), 19);

  ASSERT_TRUE(form.cbxADCh[3].UserChoose(63).ok());
  Enter(form.txtScale[3], "2e-6");
  Enter(form.txtSamplingrate, "-1");
  Enter(form.txtMaxTime, "3600");
  EXPECT_EQ(form.timer.Interval(), 10'000);
  form.QuitMMMeasurement();
  frmMultipotentiostat& again = rig.Form();
  EXPECT_EQ(again.cbxADCh[3].selected(), 63);
  EXPECT_EQ(again.txtScale[3].text(), "2E-06");
  EXPECT_EQ(again.txtSamplingrate.text(), "0.1");
  EXPECT_EQ(again.txtMaxTime.text(), "3600");
}

TEST(MultiForm, MakesGoodListsThatAFileCutShort) {
  MultiRig rig;
  rig.ws.settings.MMAdch = {5, -3, 64};
  rig.ws.settings.MMScale = {};
  frmMultipotentiostat& form = rig.Form();
  EXPECT_EQ(form.cbxADCh[0].selected(), 5);
  EXPECT_EQ(form.cbxADCh[1].selected(), 1);
  EXPECT_EQ(form.cbxADCh[2].selected(), 2);
  EXPECT_EQ(form.cbxADCh[19].selected(), 19);
  EXPECT_EQ(form.txtScale[1].text(), "0.005");
  rig.RunFor(2.5);
  EXPECT_EQ(form.lblMode.text(), "Voltage Monitor");
}

TEST(MultiForm, GoesWhenTheBoardDoesNotOpen) {
  MultiRig rig;
  rig.card_status = -1;
  EXPECT_EQ(rig.machine.desktop.Show("frmMultipotentiostat"), nullptr);
  EXPECT_THAT(rig.machine.dialogs.messages, ElementsAre(kWarning, "AD Board不良です"));
}

TEST(MultiForm, RecordsTenElectrodesUntilTheTimeIsOver) {
  MultiRig rig;
  frmMultipotentiostat& form = rig.Form();
  Enter(form.txtMaxTime, "60");
  Enter(form.txtScale[9], "1e-3");
  form.txtTitle[4].SetText("Pt 4");
  ASSERT_TRUE(form.chkiMon.UserClick().ok());
  rig.ws.tracks.Record(9).pH = 6.8;
  rig.FillTrack(3);
  ASSERT_TRUE(form.cmdStart.UserClick().ok());
  EXPECT_EQ(rig.ws.running_flag, -1);
  EXPECT_EQ(rig.Plot().caption(), "I-t Graph");
  const long before = rig.reads;
  rig.RunFor(10);
  EXPECT_EQ(rig.reads - before, 10 * 20 * 20);
  EXPECT_EQ(form.lblCurrent[4].text(), "9.00e-5");
  EXPECT_EQ(form.lblMode.text(), "Recording: 10 points, 10.0 s");
  EXPECT_EQ(rig.Plot().Picture1.ItemCount(), 100u);
  EXPECT_EQ(rig.Record(3).Title, "last week's") << "tracks are whole until the run ends";
  ASSERT_TRUE(rig.RunUntilIdle(60));

  for (int i = 0; i < 10; ++i) {
    const TrackRecord& record = rig.Record(i);
    EXPECT_EQ(record.Mode, kModeMulti);
    EXPECT_EQ(record.pnum, 61);
    EXPECT_EQ(record.MeasTime, rig.Record(0).MeasTime);
    EXPECT_EQ(record.MaxTime, 60'000);
    EXPECT_EQ(record.Vxmin, -0.002);
    EXPECT_EQ(record.Vxmax, 61);
    EXPECT_EQ(record.Vymin, -1e-5);
    EXPECT_DOUBLE_EQ(record.Vymax, 0.19 * 0.005);
    EXPECT_EQ(record.Scanrate, 0);
    EXPECT_EQ(rig.ws.tracks.Column(1, i).size(), 61u);
    EXPECT_NEAR(rig.ws.tracks.Value(0, i, 60), 0.02 * i, 1e-12);
    EXPECT_EQ(rig.ws.tracks.kl.KLNEnd[static_cast<std::size_t>(i)], 60);
  }
  EXPECT_NEAR(rig.ws.tracks.Value(1, 4, 0), 0.09 * 1e-3, 1e-12);
  EXPECT_EQ(rig.ws.tracks.Value(2, 0, 0), 1);
  EXPECT_EQ(rig.ws.tracks.Value(2, 0, 60), 61);
  EXPECT_EQ(rig.Record(4).DiskYscale, 1e-3);
  EXPECT_EQ(rig.Record(4).Title, "Pt 4");
  EXPECT_EQ(rig.Record(9).pH, 6.8);
  EXPECT_EQ(rig.Record(10).Mode, kModeNone);
  EXPECT_THAT(rig.machine.sound.played, ElementsAre(rig.ws.settings.SoundFileName));
  EXPECT_THAT(rig.shown_tracks, ElementsAre(0));
  EXPECT_THAT(rig.sent, IsEmpty());
  EXPECT_EQ(rig.motor_volts, -1) << "no motor, no generator";

  TrackStore read;
  ASSERT_TRUE(ReadTracks(FormatTracks(rig.ws.tracks), read).complete());
  EXPECT_EQ(read.Record(4).Mode, kModeMulti);
  for (int i = 0; i < 10; ++i) {
    EXPECT_EQ(read.Value(2, i, 60), 61);
    EXPECT_NEAR(read.Value(0, i, 60), 0.02 * i, 1e-4);
  }
}

TEST(MultiForm, ReadsAnInputOnceForAllChannelsItFeeds) {
  MultiRig rig;
  frmMultipotentiostat& form = rig.Form();
  for (std::size_t i = 0; i < 20; ++i) {
    ASSERT_TRUE(form.cbxADCh[i].UserChoose(i % 2 == 0 ? 40 : 7).ok());
  }
  Enter(form.txtMaxTime, "2");
  const long before = rig.reads;
  form.StartMeasurement();
  ASSERT_TRUE(rig.RunUntilIdle(60));
  EXPECT_EQ(rig.reads - before, 3 * 2 * 20);
  for (int track : {0, 9}) {
    EXPECT_NEAR(rig.ws.tracks.Value(0, track, 1), 0.40, 1e-12);
    EXPECT_NEAR(rig.ws.tracks.Value(1, track, 1), 0.07 * 0.005, 1e-12);
  }
}

TEST(MultiForm, KeepsPointsByButton) {
  MultiRig rig;
  rig.FillTrack(0);
  MarkTracksKept(rig.ws);
  frmMultipotentiostat& form = rig.Form();
  ASSERT_TRUE(form.opnMMMeas.UserChoose(2).ok());
  form.StartMeasurement();
  ASSERT_TRUE(form.cmdSampling.UserClick().ok());  // nothing was read yet
  rig.RunFor(1000);
  EXPECT_EQ(rig.ws.running_flag, -1) << "no time limit";
  ASSERT_TRUE(form.cmdStop.UserClick().ok());
  ASSERT_TRUE(rig.RunUntilIdle(60));
  EXPECT_EQ(rig.Record(0).Title, "last week's");
  EXPECT_EQ(rig.ws.tracks.Value(1, 0, 0), 7e-6);
  EXPECT_THAT(rig.shown_tracks, IsEmpty());

  form.StartMeasurement();
  rig.RunFor(5);
  ASSERT_TRUE(form.cmdSampling.UserClick().ok());
  ASSERT_TRUE(form.cmdSampling.UserClick().ok());  // the same reading
  rig.RunFor(3);
  ASSERT_TRUE(form.cmdSampling.UserClick().ok());
  rig.RunFor(3);
  ASSERT_TRUE(form.cmdStop.UserClick().ok());
  ASSERT_TRUE(rig.RunUntilIdle(60));
  EXPECT_EQ(rig.Record(0).pnum, 2);
  EXPECT_THAT(rig.ws.tracks.Column(2, 0), ElementsAre(5, 8));
  EXPECT_EQ(rig.ws.tracks.Column(1, 7).size(), 2u);
  EXPECT_EQ(rig.Record(0).MaxTime, 11'000);
}

TEST(MultiForm, AFullStoreEndsTheRunInEveryMode) {
  for (const int method : {1, 2}) {
    MultiRig rig;
    rig.machine.dialogs.HoldMessages(true);
    frmMultipotentiostat& form = rig.Form();
    rig.machine.dialogs.messages.clear();
    Enter(form.txtSamplingrate, "1000");
    Enter(form.txtAccum, "1");
    ASSERT_TRUE(form.opnMMMeas.UserChoose(method).ok());
    form.StartMeasurement();
    for (int i = 0; method == 2 && i < 20001; ++i) {
      rig.RunFor(0.001);
      ASSERT_TRUE(form.cmdSampling.UserClick().ok());
    }
    ASSERT_TRUE(rig.RunUntilIdle(60));
    EXPECT_THAT(rig.machine.dialogs.messages, ElementsAre("Buffer overflow!"));
    EXPECT_EQ(rig.Record(9).pnum, 20001);
    EXPECT_EQ(rig.ws.tracks.Column(1, 9).size(), 20001u);
    EXPECT_NEAR(rig.ws.tracks.Value(1, 9, 20000), 0.19 * 0.005, 1e-12);
    EXPECT_NEAR(rig.ws.tracks.Value(2, 0, 20000), 20.001, 0.01);
  }
}

TEST(MultiForm, AccumulationZeroReadsNothingAndCanStillBeStopped) {
  MultiRig rig;
  frmMultipotentiostat& form = rig.Form();
  Enter(form.txtAccum, "0");
  form.StartMeasurement();
  rig.RunFor(10'000);
  EXPECT_EQ(rig.reads, 0);
  EXPECT_EQ(rig.ws.running_flag, -1);
  EXPECT_EQ(form.lblMode.text(), "Accumulation 0: nothing is read");
  ASSERT_TRUE(form.cmdStop.UserClick().ok());
  EXPECT_EQ(rig.ws.running_flag, 0);
  rig.RunFor(100);
  EXPECT_EQ(rig.reads, 0);
  EXPECT_EQ(rig.Record(0).Mode, kModeNone);
}

TEST(MultiForm, NeverReplacesTracksThatStandInNoFile) {
  MultiRig rig;
  frmMultipotentiostat& form = rig.Form();
  rig.FillTrack(3);
  form.StartMeasurement();
  EXPECT_EQ(form.lblNotice.text(), "Unsaved tracks were kept in Rescued tracks 1.znt");
  rig.RunFor(5);
  rig.ws.tracks.Record(3).Title = "edited while the run went on";
  rig.machine.desktop.RequestClose("frmMultipotentiostat");
  EXPECT_EQ(rig.Record(3).Mode, kModeMulti);
  EXPECT_EQ(rig.Record(3).pnum, 5);
  EXPECT_EQ(rig.Record(3).MaxTime, 600'000);
  EXPECT_EQ(rig.ws.running_flag, 0);
  EXPECT_THAT(rig.machine.files.Read("home/Rescued tracks 1.znt").value(),
              HasSubstr("Title=last week's"));
  EXPECT_THAT(rig.machine.files.Read("home/Rescued tracks 2.znt").value(),
              HasSubstr("Title=edited while the run went on"));
  EXPECT_FALSE(rig.machine.files.Exists("home/Rescued tracks 3.znt"));
  const std::string log = rig.machine.files.Read(RunLogPath("home")).value();
  EXPECT_THAT(log, HasSubstr("Unsaved tracks were kept in Rescued tracks 2.znt"));
  EXPECT_THAT(log, HasSubstr("5 points in tracks 0 to 9; took"));
  EXPECT_THAT(log, HasSubstr("Electrode 9: potential input 18 x 1 V/V, current input 19 x 0.005"));
}

TEST(MultiForm, DoesNotStartOverTracksThatCannotBeKept) {
  MultiRig rig;
  frmMultipotentiostat& form = rig.Form();
  rig.FillTrack(3);
  rig.machine.files.SetCapacity(0);
  form.StartMeasurement();
  EXPECT_EQ(rig.ws.running_flag, 0);
  EXPECT_TRUE(form.cmdStart.enabled());
  EXPECT_THAT(rig.machine.dialogs.TakeMessages(),
              ElementsAre(StartsWith("The unsaved tracks could not be kept before they")));
  // Tracks that no run writes need no rescue.
  rig.ws.tracks.ClearTrack(3);
  rig.FillTrack(12);
  form.StartMeasurement();
  EXPECT_EQ(rig.ws.running_flag, -1);
  form.StartMeasurement();
  EXPECT_THAT(rig.machine.dialogs.messages,
              testing::Contains("Please terminate other mesurement!"));
}

TEST(MultiForm, WorksWithTheValuesItWasStartedWith) {
  MultiRig rig;
  frmMultipotentiostat& form = rig.Form();
  Enter(form.txtMaxTime, "20");
  form.StartMeasurement();
  rig.RunFor(5);
  Enter(form.txtScale[3], "1");
  Enter(form.txtMaxTime, "1");
  Enter(form.txtAccum, "0");
  Enter(form.txtSamplingrate, "10");
  ASSERT_TRUE(form.cbxADCh[3].UserChoose(60).ok());
  ASSERT_TRUE(rig.RunUntilIdle(60));
  EXPECT_EQ(rig.Record(1).pnum, 21);
  EXPECT_NEAR(rig.ws.tracks.Value(1, 1, 20), 0.03 * 0.005, 1e-12);
  EXPECT_EQ(rig.ws.settings.MMAdch[3], 60);
}

TEST(MultiForm, SilentOrOverflowingReadingsEndTheRunAndKeepWhatWasRead) {
  MultiRig rig;
  frmMultipotentiostat& form = rig.Form();
  ASSERT_TRUE(form.opnMMMeas.UserChoose(1).ok());
  form.StartMeasurement();
  rig.RunFor(5);
  rig.instruments.analog_input.Close();
  ASSERT_TRUE(rig.RunUntilIdle(60));
  EXPECT_THAT(rig.machine.dialogs.TakeMessages(), ElementsAre(StartsWith("AD Board不良です")));
  EXPECT_EQ(rig.Record(0).pnum, 5);
  ASSERT_EQ(rig.instruments.analog_input.Open(), 0);
  Enter(form.txtScale[19], "1e308");
  rig.volts = [](int) { return 2.5; };
  form.StartMeasurement();
  ASSERT_TRUE(rig.RunUntilIdle(60));
  EXPECT_THAT(rig.machine.dialogs.TakeMessages(), ElementsAre("Overflow"));
  EXPECT_EQ(rig.Record(0).pnum, 5);
}

TEST(MultiForm, MonitorsAllElectrodesWhileIdle) {
  MultiRig rig;
  frmMultipotentiostat& form = rig.Form();
  rig.RunFor(3);
  EXPECT_EQ(form.picVMon.ItemCount(), 30u);
  EXPECT_EQ(form.lblCurrent[9].text(), "") << "only when asked for";
  ASSERT_TRUE(form.chkiMon.UserClick().ok());
  rig.RunFor(1);
  EXPECT_EQ(form.lblCurrent[9].text(), "9.50e-4");
  ASSERT_TRUE(form.cmdClearVMon.UserClick().ok());
  EXPECT_EQ(form.picVMon.ItemCount(), 0u);
  form.StartMeasurement();
  rig.RunFor(3);
  EXPECT_EQ(form.picVMon.ItemCount(), 0u);
  EXPECT_EQ(rig.Record(0).Mode, kModeNone);
}

}  // namespace
}  // namespace zento
