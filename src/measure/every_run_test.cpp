// What holds for every measurement with a generator and a motor, whichever window runs it.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "core/track_file.h"
#include "measure/test_runs.h"

namespace zento {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::Pointwise;
using testing::StartsWith;

// A short run into track 3 of one window.
struct Window {
  const char* name;
  const char* board_message;
  const char* bus_message;
  int columns;     // of a stored track
  double seconds;  // after which it has recorded `points`
  int points;
  double max_time;  // ms, of the track then
  void (*fill_in)(TestRig&);
  void (*start)(TestRig&);
  void (*quit)(TestRig&);
  // So that only a full buffer ends it, within 60 s.
  void (*make_endless)(TestRig&);

  zento::Form& Form(TestRig& rig) const { return *rig.machine.desktop.Find(name); }
};

const Window kWindows[] = {
    {"frmMeasureCV", "AD Board Trouble!", "GPIB Trouble!", 2, 5, 30, 12'000,
     [](TestRig& rig) { ShortSweep(rig.CV()); }, [](TestRig& rig) { rig.CV().StartMeasurement(); },
     [](TestRig& rig) { rig.CV().QuitCVMeasurement(); },
     [](TestRig& rig) {
       rig.CV().SamplingRate(1000);
       rig.CV().Accumlation(1);
       EXPECT_TRUE(rig.CV().OpnCVMeas.UserChoose(1).ok());
     }},
    {"frmMeasureRDE", "AD Board不良です", "GPIB不良", 3, 5, 30, 12'000,
     [](TestRig& rig) { ShortSweep(rig.RDE()); },
     [](TestRig& rig) { rig.RDE().StartMeasurement(); },
     [](TestRig& rig) { rig.RDE().QuitRDEMeasurement(); },
     [](TestRig& rig) {
       rig.RDE().SamplingRate(1000);
       rig.RDE().Accumlation(1);
       EXPECT_TRUE(rig.RDE().opnRDEMeas.UserChoose(1).ok());
     }},
    {"frmPotentialStep", "AD Board不良です", "GPIB不良", 2, 2.1 + 3, 31, 3000,
     [](TestRig& rig) { ShortStep(rig); }, [](TestRig& rig) { rig.Step().StartMeasurement(); },
     [](TestRig& rig) { rig.Step().QuitPSMeasurement(); },
     [](TestRig& rig) {
       rig.Step().InitSamplingRate(1000);
       rig.Step().Accumlation(1);
       rig.Step().MeasMode(1);
     }},
    {"frmMeasureRPMvsj", "AD Board不良です", "GPIB Trouble!", 3, 3.1 + 1.05, 11, 1000,
     [](TestRig& rig) { EXPECT_TRUE(ShortRamp(rig).chkRecordTime.UserSet("1").ok()); },
     [](TestRig& rig) { rig.Sweep().StartMeasurement(); },
     [](TestRig& rig) { rig.Sweep().QuitRPMvsjMeasurement(); },
     [](TestRig& rig) {
       rig.Sweep().SetRPMParameters(300, 700, 0);  // stands still
       rig.Sweep().SamplingRate(1000);
       rig.Sweep().Accumlation(1);
     }},
};

void ExpectAllOff(const TestRig& rig) {
  EXPECT_EQ(rig.ws.running_flag, 0);
  EXPECT_EQ(rig.ws.end_active_run, nullptr);
  EXPECT_EQ(rig.sent.back(), "A0");
  EXPECT_FALSE(rig.MotorOn());
}

TEST(EveryRun, ItsWindowSaysWhichDeviceKeepsItFromLoading) {
  for (const Window& window : kWindows) {
    SCOPED_TRACE(window.name);
    const auto message_when = [&](auto fault) {
      TestRig rig;
      fault(rig);
      EXPECT_EQ(rig.machine.desktop.Show(window.name), nullptr);
      EXPECT_EQ(rig.machine.desktop.Find(window.name), nullptr);
      return rig.machine.dialogs.messages;
    };
    EXPECT_THAT(message_when([](TestRig& rig) { rig.card_status = -1; }),
                ElementsAre(window.board_message));
    EXPECT_THAT(message_when([](TestRig& rig) { rig.bus_status = 80; }),
                ElementsAre(window.bus_message));
    EXPECT_THAT(message_when([](TestRig& rig) { rig.output_status = -1; }),
                ElementsAre("DA Board Trouble!"));
  }
}

TEST(EveryRun, EndsByItselfAndIsReadBackFromItsFile) {
  for (const Window& window : kWindows) {
    SCOPED_TRACE(window.name);
    TestRig rig;
    window.fill_in(rig);
    Control& start = *window.Form(rig).Find("cmdStart");
    ASSERT_TRUE(start.UserClick().ok());
    EXPECT_EQ(rig.ws.running_flag, -1);
    EXPECT_FALSE(start.enabled());
    EXPECT_EQ(rig.sent.back(), "A1");
    EXPECT_TRUE(rig.MotorOn());
    ASSERT_TRUE(rig.RunUntilIdle(60));
    ExpectAllOff(rig);
    EXPECT_TRUE(start.enabled());
    EXPECT_THAT(rig.machine.sound.played, ElementsAre(rig.ws.settings.SoundFileName));
    EXPECT_THAT(rig.shown_tracks, ElementsAre(3));
    EXPECT_GT(rig.Record(3).pnum, 50);
    EXPECT_EQ(rig.ws.tracks.kl.KLNStart[3], 0);
    EXPECT_EQ(rig.ws.tracks.kl.KLNEnd[3], rig.Record(3).pnum - 1);

    ASSERT_TRUE(SaveTracksAs(rig.ws, rig.machine.files, "run").ok());
    Workstation another_day;
    ASSERT_TRUE(OpenTracks(another_day, rig.machine.files, "run.znt").complete());
    EXPECT_EQ(Told(another_day.tracks.Record(3)), Told(rig.Record(3)));
    for (int column = 0; column < window.columns; ++column) {
      EXPECT_THAT(another_day.tracks.Points(column, 3),
                  Pointwise(testing::DoubleNear(1e-9), rig.ws.tracks.Points(column, 3)));
    }
  }
}

// Whether the window goes, the program ends or the board falls silent: generator and motor are off
// and the points are kept, though nobody answers a message.
TEST(EveryRun, EndsSafelyHoweverItEnds) {
  for (const Window& window : kWindows) {
    const auto reads_after = [&](const char* how, auto end) {
      SCOPED_TRACE(std::string(window.name) + ", " + how);
      TestRig rig;
      rig.machine.dialogs.HoldMessages(true);
      window.fill_in(rig);
      window.start(rig);
      rig.RunFor(window.seconds);
      end(rig);
      ExpectAllOff(rig);
      EXPECT_EQ(rig.Record(3).pnum, window.points);
      EXPECT_EQ(rig.Record(3).MaxTime, window.max_time);
      for (int column = 0; column < window.columns; ++column) {
        EXPECT_EQ(rig.ws.tracks.Points(column, 3).size(), static_cast<std::size_t>(window.points));
      }
      const long reads = rig.reads;
      rig.machine.Settle();
      rig.RunFor(10);
      ExpectAllOff(rig);
      return rig.reads - reads;
    };
    const auto close = [&](TestRig& rig) { rig.machine.desktop.RequestClose(window.name); };
    EXPECT_EQ(reads_after("closed", close), 0);
    EXPECT_EQ(reads_after("quit", window.quit), 0);
    EXPECT_GT(reads_after("ended", [](TestRig& rig) { rig.ws.end_active_run(); }), 0)
        << "the monitor goes on";
    EXPECT_GT(reads_after("silent board",
                          [&](TestRig& rig) {
                            rig.instruments.analog_input.Close();
                            rig.RunFor(3);
                            EXPECT_THAT(rig.machine.dialogs.messages,
                                        ElementsAre(StartsWith(window.board_message)));
                            EXPECT_EQ(rig.instruments.analog_input.Open(), 0);
                          }),
              0);
  }
}

TEST(EveryRun, AFullBufferEndsItThoughNobodyAnswers) {
  for (const Window& window : kWindows) {
    SCOPED_TRACE(window.name);
    TestRig rig;
    rig.machine.dialogs.HoldMessages(true);
    window.fill_in(rig);
    window.make_endless(rig);
    window.start(rig);
    ASSERT_TRUE(rig.RunUntilIdle(60));
    EXPECT_THAT(rig.machine.dialogs.messages, ElementsAre("Buffer overflow!"));
    EXPECT_EQ(rig.Record(3).pnum, 20001);
    EXPECT_EQ(rig.ws.tracks.Column(1, 3).size(), 20001u);
    ExpectAllOff(rig);
  }
}

TEST(EveryRun, AStopBeforeItRecordsLeavesTheTrackAsItWas) {
  for (const Window& window : kWindows) {
    SCOPED_TRACE(window.name);
    TestRig rig;
    rig.ws.run_log.Attach(rig.machine.host, "home");
    window.fill_in(rig);
    rig.ws.tracks.Record(3).Title = "last week's";
    rig.ws.tracks.Record(3).pnum = 1;
    rig.ws.tracks.SetValue(0, 3, 0, 0.7);
    window.start(rig);
    rig.RunFor(1.5);
    ASSERT_TRUE(window.Form(rig).Find("cmdStop")->UserClick().ok());
    EXPECT_EQ(rig.ws.running_flag, -1) << "the next tick ends the run";
    rig.RunFor(0.1);
    ExpectAllOff(rig);
    EXPECT_EQ(rig.Record(3).Title, "last week's");
    EXPECT_EQ(rig.ws.tracks.Value(0, 3, 0), 0.7);
    EXPECT_EQ(dynamic_cast<TextBox*>(window.Form(rig).Find("txtDataNum"))->text(), "3");
    EXPECT_THAT(rig.shown_tracks, IsEmpty());
    EXPECT_THAT(rig.machine.sound.played, IsEmpty());
    EXPECT_THAT(ReadLog(rig), Not(testing::HasSubstr("Rotation measured")));
  }
}

TEST(EveryRun, RefusesASecondMeasurementAndChangesNothing) {
  for (const Window& window : kWindows) {
    SCOPED_TRACE(window.name);
    TestRig rig;
    window.fill_in(rig);
    const Settings settings = rig.ws.settings;
    rig.ws.running_flag = -1;  // a macro waits
    window.start(rig);
    EXPECT_THAT(rig.machine.dialogs.TakeMessages(),
                ElementsAre("Please terminate other mesurement!"));
    EXPECT_TRUE(window.Form(rig).Find("cmdStart")->enabled());
    EXPECT_THAT(rig.sent, IsEmpty());
    EXPECT_FALSE(rig.MotorOn());
    EXPECT_EQ(rig.ws.settings, settings) << "the entries are not stored either";
    rig.ws.running_flag = 0;
    window.start(rig);
    window.start(rig);
    EXPECT_EQ(rig.machine.dialogs.messages.size(), 1u);
    EXPECT_TRUE(rig.RunUntilIdle(60));
  }
}

TEST(EveryRun, StopStoresTheTimeThatWasMeasuredByTheButton) {
  const auto check = [](TestRig& rig, Button& stop, double elapsed) {
    rig.RunFor(2.1 + elapsed);
    ASSERT_TRUE(stop.UserClick().ok());
    rig.RunFor(0.1);
    EXPECT_EQ(rig.ws.running_flag, 0);
    EXPECT_EQ(rig.Record(3).MaxTime, elapsed * 1000);
    EXPECT_EQ(rig.Record(3).pnum, elapsed * 10 + 1);
    EXPECT_THAT(rig.machine.sound.played, IsEmpty());
  };
  TestRig rig;
  frmMeasureCV& cv = ShortSweep(rig.CV());
  ASSERT_TRUE(cv.OpnCVMeas.UserChoose(1).ok());
  cv.StartMeasurement();
  check(rig, cv.cmdStop, 30);
  frmMeasureRDE& rde = ShortSweep(rig.RDE());
  ASSERT_TRUE(rde.opnRDEMeas.UserChoose(1).ok());
  rde.StartMeasurement();
  check(rig, rde.cmdStop, 25);
  EXPECT_EQ(rig.Record(3).Vxmin, -0.1);
  EXPECT_EQ(rde.lblTimeRemain.text(), "");
  for (const int mode : {0, 1, 2}) {  // a step's time always
    frmPotentialStep& step = ShortStep(rig);
    step.MeasureTime(100);
    step.MeasMode(static_cast<std::int16_t>(mode));
    step.StartMeasurement();
    check(rig, step.cmdStop, 7 + mode);
  }
}

// The potential is compared in steps of 2.5 mV by one window, of 2 mV by the other.
TEST(EveryRun, ASweepWithoutAGeneratorWaitsUntilThePotentialLeavesItsStep) {
  const auto check = [](auto& form, TestRig& rig, double& potential, double same, double left) {
    SCOPED_TRACE(form.name());
    ShortSweep(form).StartMeasurement();
    rig.RunFor(60);
    potential = same;
    rig.RunFor(60);
    EXPECT_EQ(form.lblMode.text(), "Waiting for the sweep");
    potential = left;
    rig.RunFor(0.1);
    ASSERT_EQ(form.lblMode.text(), "Recording");
    ASSERT_TRUE(rig.RunUntilIdle());
    EXPECT_EQ(rig.Record(3).pnum, 122);
    EXPECT_NEAR(rig.ws.tracks.Value(0, 3, 0), left, 1e-12);
    EXPECT_THAT(rig.sent, IsEmpty());
  };
  TestRig rig;
  rig.ws.settings.GPIBControl = 0;
  double potential = 0.1001;
  rig.volts = [&](int channel) { return channel == 0 ? potential : 0.0; };
  for (const double left : {0.1026, 0.0999}) {  // either way
    potential = 0.1001;
    check(rig.CV(), rig, potential, 0.1024, left);
  }
  for (const double left : {0.1021, 0.0999}) {
    potential = 0.1001;
    check(rig.RDE(), rig, potential, 0.1019, left);
  }
}

// A reading that takes longer than the interval costs the points of the ticks it overran; the next
// ones stand at their old multiples.
TEST(EveryRun, KeepsItsCadenceThroughTicksThatComeLate) {
  const auto intervals = [](double slow) {
    TestRig rig;
    frmPotentialStep& step = ShortStep(rig);
    step.Accumlation(1);
    step.MeasureTime(2);
    rig.volts = [&rig, slow, volts = rig.volts](int channel) {
      const double now = rig.Seconds();
      if (channel == 1 && now > 3.05 && now < 3.15) {
        rig.machine.clock.Spend(static_cast<std::int64_t>(slow * 1e6));
      }
      return volts(channel);
    };
    step.StartMeasurement();
    EXPECT_TRUE(rig.RunUntilIdle(60));
    const auto times = rig.ws.tracks.Points(0, 3);
    std::vector<double> between;
    for (std::size_t i = 9; i < 13; ++i) {
      between.push_back(std::round((times[i + 1] - times[i]) * 1000));
    }
    return between;
  };
  EXPECT_THAT(intervals(0), ElementsAre(100, 100, 100, 100));
  EXPECT_THAT(intervals(0.15), ElementsAre(100, 150, 50, 100));
  EXPECT_THAT(intervals(0.25), ElementsAre(100, 250, 50, 100));
}

// The highest rates (Hz) at which each window still draws while it records.
TEST(EveryRun, DrawsItsPointsBelowARateOfItsOwn) {
  const auto drawn = [](const char* name, double rate) {
    TestRig rig;
    auto& form = *dynamic_cast<MeasureForm*>(rig.machine.desktop.Show(name));
    const auto* window = std::ranges::find(kWindows, std::string(name), &Window::name);
    if (window != std::end(kWindows)) window->fill_in(rig);
    const bool step = form.Find("txtInitSamplingRate") != nullptr;
    auto* box = dynamic_cast<TextBox*>(form.Find(step ? "txtInitSamplingRate" : "txtSamplingrate"));
    Typed(*box, PlainNumber(rate));
    form.StartMeasurement();
    rig.RunFor(4);
    EXPECT_EQ(rig.ws.running_flag, -1);
    return rig.Picture("Graph1").ItemCount() > 0;
  };
  const std::pair<const char*, double> limits[] = {{"frmMeasureCV", 20},
                                                   {"frmMeasureRDE", 50},
                                                   {"frmPotentialStep", 50},
                                                   {"frmMeasureRPMvsj", 20},
                                                   {"frmMultipotentiostat", 20}};
  for (const auto& [name, limit] : limits) {
    EXPECT_TRUE(drawn(name, limit - 1)) << name;
    EXPECT_FALSE(drawn(name, limit)) << name;
  }
}

TEST(EveryRun, GoesIntoTheTrackAndUnderTheTitleOfTheMoment) {
  for (const Window& window : kWindows) {
    SCOPED_TRACE(window.name);
    TestRig rig;
    window.fill_in(rig);
    rig.ws.tracks.Record(3).Title = "last week's";
    window.start(rig);
    rig.RunFor(window.seconds);
    zento::Form& form = window.Form(rig);
    Typed(*dynamic_cast<TextBox*>(form.Find("txtDataNum")), "8");
    Typed(*dynamic_cast<TextBox*>(form.Find("txtTitle")), "Pt");
    ASSERT_TRUE(rig.RunUntilIdle(60));
    EXPECT_GT(rig.Record(8).pnum, 50);
    EXPECT_EQ(rig.Record(8).Title, "Pt");
    EXPECT_EQ(rig.Record(3).Title, "last week's");
    EXPECT_EQ(rig.Record(3).pnum, 0);
    EXPECT_THAT(rig.shown_tracks, ElementsAre(8));
  }
}

TEST(EveryRun, IsPlannedAsItThenIs) {
  for (const Window& window : kWindows) {
    SCOPED_TRACE(window.name);
    TestRig rig;
    window.fill_in(rig);
    auto& form = dynamic_cast<MeasureForm&>(window.Form(rig));
    const Plan plan = form.CurrentPlan();
    EXPECT_EQ(plan.end, PlannedEnd::kTime);
    EXPECT_EQ(plan.first_target, 3);
    EXPECT_TRUE(plan.generator);
    EXPECT_THAT(plan.adjusted, IsEmpty());
    const double began = rig.Seconds();
    window.start(rig);
    EXPECT_EQ(form.CurrentPlan().points, plan.points);
    ASSERT_TRUE(rig.RunUntilIdle(60));
    EXPECT_EQ(plan.points, rig.Record(3).pnum);
    EXPECT_EQ(plan.duration, rig.Record(3).MaxTime);
    // A tick until the start is seen, and one each for the last point and the end.
    EXPECT_NEAR(plan.retain_seconds + static_cast<double>(*plan.duration) / 1000,
                rig.Seconds() - began, 0.3 + 1e-9);
  }
}

TEST(Plan, SaysWhatBecomesOfWhatWasTyped) {
  TestRig rig;
  frmMeasureCV& cv = ShortSweep(rig.CV());
  cv.SetVoltage(0, 12, 0.0004);
  cv.RetainTime(5000);
  cv.rpm("5000");
  ASSERT_TRUE(cv.txtAccum.UserType("0").ok());  // not left yet
  Plan plan = cv.CurrentPlan();
  EXPECT_TRUE(plan.potentials[1].sent.lost);
  EXPECT_EQ(plan.potentials[2].sent.value, 0);
  EXPECT_EQ(plan.scan_rate->sent.value, 100);
  EXPECT_EQ(plan.rotation[0].applied, 3000);
  EXPECT_EQ(plan.retain_seconds, 999);
  EXPECT_EQ(plan.rounds, 1);
  ASSERT_EQ(plan.adjusted.size(), 2u);
  EXPECT_EQ(plan.adjusted[0].entry, "Accumulation");
  EXPECT_EQ(plan.adjusted[1].asked, 5000);
  EXPECT_EQ(cv.txtAccum.text(), "0") << "looking changes nothing";
  ASSERT_TRUE(cv.OpnCVMeas.UserChoose(1).ok());
  plan = cv.CurrentPlan();
  EXPECT_EQ(plan.end, PlannedEnd::kPerson);
  EXPECT_FALSE(plan.duration || plan.points);

  frmPotentialStep& step = ShortStep(rig);
  step.MeasMode(2);
  EXPECT_EQ(step.CurrentPlan().end, PlannedEnd::kCharge);
  frmMeasureRPMvsj& sweep = ShortRamp(rig);
  EXPECT_EQ(sweep.CurrentPlan().rotation.size(), 2u);
  EXPECT_EQ(sweep.CurrentPlan().ramp_speed, 100);
  sweep.AppliedMeasuremode(0);
  EXPECT_EQ(sweep.CurrentPlan().end, PlannedEnd::kRate);
  EXPECT_EQ(sweep.CurrentPlan().rotation.size(), 1u);
  rig.ws.settings.DABoard = 0;
  EXPECT_FALSE(sweep.CurrentPlan().rotation[0].applied);
}

TEST(RunFeed, TellsWhoeverListensWhereARunStands) {
  for (const Window& window : kWindows) {
    SCOPED_TRACE(window.name);
    TestRig rig;
    window.fill_in(rig);
    std::vector<RunState> heard;
    auto subscription =
        rig.ws.runs.Subscribe([&heard](const RunState& state) { heard.push_back(state); });
    window.start(rig);
    EXPECT_FALSE(heard.empty()) << "at once";
    ASSERT_TRUE(rig.RunUntilIdle(60));
    std::vector<RunPhase> phases;
    for (const RunState& state : heard) phases.push_back(state.phase);
    phases.erase(std::unique(phases.begin(), phases.end()), phases.end());
    const bool step = window.name == std::string("frmPotentialStep");
    EXPECT_THAT(phases, ElementsAre(step ? RunPhase::kWaiting : RunPhase::kResting,
                                    RunPhase::kRecording, RunPhase::kEnding, RunPhase::kOver));
    const RunState& last_tick = heard[heard.size() - 2];
    EXPECT_EQ(last_tick.points, rig.Record(3).pnum);
    EXPECT_EQ(last_tick.planned, rig.Record(3).MaxTime);
    EXPECT_EQ(last_tick.last.current, rig.ws.tracks.Points(1, 3).back());
    EXPECT_EQ(last_tick.first_target, 3);
    ASSERT_TRUE(heard.back().report);
    EXPECT_EQ(heard.back().report->first_track, 3);
    EXPECT_EQ(heard.back().report->reason, EndReason::kTime);
    const std::size_t count = heard.size();
    subscription.reset();
    window.start(rig);
    rig.ws.end_active_run();
    EXPECT_EQ(heard.size(), count);
  }
}

TEST(RunFeed, TellsASweepsCycleAndTheRateThatItIsMeasuredAt) {
  TestRig rig;
  rig.volts = [&rig](int channel) { return channel == 0 ? rig.Seconds() / 10 : 0.5; };
  frmMeasureCV& cv = ShortSweep(rig.CV());
  cv.Repeat(3);  // 1.1 V first, then twice 1.2 V and 0.1 V back, at 100 mV/s
  RunState now;
  const auto subscription = rig.ws.runs.Subscribe([&now](const RunState& state) { now = state; });
  cv.StartMeasurement();
  const double recording = rig.Seconds() + 2.15;
  const auto cycle_at = [&](double seconds) {
    rig.RunFor(recording + seconds - rig.Seconds());
    return now.cycle;
  };
  EXPECT_EQ(cycle_at(10.9), 1);
  EXPECT_NEAR(*now.scan_rate, 100, 1e-6);
  EXPECT_EQ(cycle_at(11.2), 2);
  EXPECT_EQ(cycle_at(22.9), 2);
  EXPECT_EQ(cycle_at(23.2), 3);
  EXPECT_EQ(cycle_at(35.4), 3) << "on the way back";
}

}  // namespace
}  // namespace zento
