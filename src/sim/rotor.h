#pragma once

#include <vector>

#include "sim/parameters.h"
#include "sim/random.h"

namespace zento::sim {

// The rotating electrode's motor. Its law is linear: `motor_scale` rpm per volt, which the rotor
// reaches times `rotor_gain`, with a first-order lag; it runs only while it has power, and wanders
// a little (an Ornstein-Uhlenbeck process with the rotor's own time constant).
class Rotor {
 public:
  explicit Rotor(const Parameters& parameters);

  void SetVolts(double volts) { volts_ = volts; }
  void SetPower(bool on) { power_ = on; }
  void Advance(double dt, Random& random);

  double rpm() const { return rpm_ + wander_; }
  double omega() const;  // rad/s
  bool powered() const { return power_; }

 private:
  double scale_, gain_, lag_, noise_;
  double volts_ = 0.0;
  bool power_ = false;
  double rpm_ = 0.0;
  double wander_ = 0.0;
  // Of the last step, which is mostly the next one's too.
  double dt_ = 0.0;
  double kept_ = 1.0;
};

// A point of the rotation-rate calibration that belongs to this bench.
struct CalibrationPoint {
  double rpm;
  double volts;
};

// From 100 rpm (less switches a motor off) to the rate at 5 V, ascending in both columns.
std::vector<CalibrationPoint> RotorCalibration(const Parameters& parameters);

}  // namespace zento::sim
