#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "devices/function_generator.h"

namespace zento {

// How a run comes to its end. A person may stop every run, and a full buffer ends it too.
enum class PlannedEnd {
  kTime,    // once `duration` is over
  kPerson,  // by nothing but Stop or a full buffer
  kCharge,  // once the charge that has flowed exceeds a limit: the sample decides when
  kRate,    // once the measured rotation rate exceeds a limit: whoever turns the motor decides when
};

// A number on its way to the function generator.
struct PlannedNumber {
  double asked = 0;  // as it was typed
  SentValue sent;    // as it gets there; without a generator it is never sent
};

// A rotation rate on its way to the motor.
struct PlannedRate {
  double asked = 0;  // rpm, as it was typed
  // rpm, after the calibration's limits; 0 = the motor stays off; nothing = there is no rotation
  // control.
  std::optional<double> applied;
};

// An entry that the run does not take as it was typed.
struct Adjustment {
  std::string entry;  // what it is ("Accumulation")
  double asked = 0;
  double used = 0;
  std::string why;  // a half sentence
};

// What a run is going to do, known before it begins: the values that it was, or would be, started
// with, what becomes of them on their way to the instruments, how long it takes and how it ends.
struct Plan {
  std::string technique;   // as a person calls it ("Cyclic voltammetry")
  bool generator = false;  // the function generator makes the programme, not the potentiostat

  // V, in the order of the programme. Empty when the run commands none.
  std::vector<PlannedNumber> potentials;
  std::optional<PlannedNumber> scan_rate;  // mV/s
  // What the motor is told: one rate, or both ends of a ramp. Empty when the run leaves the motor
  // alone.
  std::vector<PlannedRate> rotation;
  std::optional<double> ramp_speed;  // rpm/s, between the two rates
  // s at the first potential, or rate, before the sweep, the step or the ramp begins. Without a
  // generator only a ramp waits so long; other runs wait until the potential or the rate changes.
  double retain_seconds = 0;

  PlannedEnd end = PlannedEnd::kTime;
  std::optional<std::int64_t>
      duration;  // ms of recording; where the run does not end by time, none

  double sampling_rate = 1;   // Hz; with variable sampling that of the first points
  std::int64_t interval = 1;  // ms, the timer's: whole, so that not every rate can be had
  std::int32_t rounds = 1;    // readings averaged a point
  // Points that `duration` brings, nothing where it is not known; the buffer ends the run after
  // kPointRoom.
  std::optional<std::int64_t> points;
  static constexpr std::int64_t kPointRoom = 20001;

  int first_target = 0;  // tracks that receive the points
  int last_target = 0;

  std::vector<Adjustment> adjusted;
};

}  // namespace zento
