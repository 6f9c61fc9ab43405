#pragma once

// For the tests of the cells: what flows in them while the generator plays.

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <string>
#include <vector>

#include "sim/plant.h"
#include "text/status.h"

namespace zento::sim {

struct Point {
  double seconds, volts, amperes;
  double ring = 0.0;  // A
};

// What flows while the generator plays `lines`, every `interval` seconds.
inline std::vector<Point> Record(const Parameters& parameters,
                                 const std::vector<std::string>& lines, double seconds,
                                 double interval, double rpm = 0) {
  Random random(1);
  Plant plant(parameters, random);
  if (rpm > 0) {
    plant.SetMotorVolts(rpm / parameters.motor_scale);
    plant.SetMotorPower(true);
  }
  for (const std::string& line : lines) {
    EXPECT_TRUE(plant.potentiostat().generator().Send(line).ok()) << line;
  }
  EXPECT_TRUE(plant.potentiostat().generator().Send("A1").ok());
  std::vector<Point> points;
  for (int i = 1; i <= std::lround(seconds / interval); ++i) {
    const double t = i * interval;
    plant.AdvanceTo(t);
    points.push_back({t, plant.VoltsAt(Plant::kPotential, t),
                      plant.VoltsAt(Plant::kDiskCurrent, t) * parameters.disk_range,
                      plant.VoltsAt(Plant::kRingCurrent, t) * parameters.ring_range});
  }
  return points;
}

// Moles per second and unit of concentration that reach a disk of 1 cm2 turning at `rpm`: cm/s
// (Levich 1962, with the constant 0.62045 of the velocity's first term).
inline double LevichRate(double diffusion, double viscosity, double rpm) {
  const double omega = rpm * 2 * std::numbers::pi / 60;
  return 0.62045 * std::pow(diffusion, 2.0 / 3) * std::pow(viscosity, -1.0 / 6) * std::sqrt(omega);
}

}  // namespace zento::sim
