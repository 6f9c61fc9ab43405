#pragma once

// Short runs of the test rig that several tests start from.

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <vector>

#include "measure/test_rig.h"
#include "text/number.h"

namespace zento {

// What a box shows after a person typed `text` and left it.
inline std::string Typed(TextBox& box, const std::string& text) {
  EXPECT_TRUE(box.UserSet(text).ok()) << box.name();
  return box.text();
}

// The log as a person reads it, lines ended by LF.
inline std::string ReadLog(TestRig& rig) {
  rig.ws.run_log.Flush();
  std::string text = rig.machine.files.Read(RunLogPath("home")).value();
  std::erase(text, '\r');
  return text;
}

// What a stored track says of its run, numbers to nine digits: points and their time, sweep and
// rotation, scales of disk and ring, display range.
inline std::string Told(const TrackRecord& record) {
  const auto list = [](std::initializer_list<double> numbers, const char* unit) {
    std::string text;
    for (const double number : numbers) text += PlainNumber(number, 9) + " ";
    return text + unit;
  };
  const auto& [v0, v1, v2] = record.V;
  return std::to_string(record.Mode) + " " + record.Title + " " + record.MeasTime + "; " +
         list({static_cast<double>(record.pnum)}, "points, ") + list({record.MaxTime}, "ms; ") +
         list({v0, v1, v2}, "V, ") + list({record.Scanrate}, "mV/s, ") +
         list({record.RPM}, "rpm; ") + list({record.DiskYscale, record.RingYscale}, "A/V; x ") +
         list({record.Vxmin, record.Vxmax}, "y ") + list({record.Vymin, record.Vymax}, "A");
}

// 0 V, 0.5 V, -0.1 V once, at 100 mV/s and 10 Hz: 12 s after a retain time of 2 s, at 1000 rpm.
// The first point comes with the tick at 2.1 s.
template <typename Form>
Form& ShortSweep(Form& form) {
  form.SetVoltage(0, 0.5, -0.1);
  form.scanrate(100);
  form.Repeat(1);
  form.RetainTime(2);
  form.SamplingRate(10);
  form.Accumlation(3);
  form.rpm("1000");
  form.Title("Ferricyanide");
  form.SelTrack(3);
  return form;
}

// A cell that rests at `first` and steps to `second` `after` seconds from now; its current is
// 0.5 V on channel 1.
inline void StepAfter(TestRig& rig, double after, double first = 0.1, double second = 0.8) {
  rig.volts = [&rig, at = rig.Seconds() + after, first, second](int channel) {
    if (channel == 0) return rig.Seconds() < at ? first : second;
    return channel == 1 ? 0.5 : 0.0;
  };
}

// 2 s at 0.1 V, then 0.8 V for 10 s, at 10 Hz.
inline frmPotentialStep& ShortStep(TestRig& rig) {
  frmPotentialStep& step = rig.Step();
  step.SetVoltage(0.1, 0.8);
  step.RetainTime(2);
  step.MeasureTime(10);
  step.InitSamplingRate(10);
  step.Accumlation(3);
  step.rpm("1000");
  step.Title("Ferricyanide");
  step.SelTrack(3);
  StepAfter(rig, 2.05);
  return step;
}

// The rig's motor follows its voltage at once, 1000 rpm a volt, and its current is 0.1 V per
// 1000 rpm.
inline void FollowMotor(TestRig& rig) {
  rig.volts = [&rig](int channel) {
    const double rpm_volts = rig.MotorOn() ? rig.motor_volts : 0.0;
    return channel == 4 ? rpm_volts : channel == 1 ? rpm_volts / 10 : -0.1;
  };
}

// 3 s at 200 rpm, then up to 700 rpm in 5 s, at 10 Hz.
inline frmMeasureRPMvsj& ShortRamp(TestRig& rig) {
  FollowMotor(rig);
  frmMeasureRPMvsj& sweep = rig.Sweep();
  sweep.SelTrack(3);
  sweep.Title("Oxygen");
  sweep.Potential(-0.25);
  sweep.AppliedMeasuremode(2);
  sweep.SetRPMParameters(200, 700, 100);
  sweep.RetainTime(3);
  sweep.SamplingRate(10);
  sweep.Accumlation(4);
  return sweep;
}

}  // namespace zento
