#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "devices/device_table.h"

namespace zento {

// The five switched outlets of the laboratory, and which of them are on. All are taken to be off
// when the program starts. Outlet 0 feeds the motor of the rotating electrode.
//
// Settings::PowerControl chooses the output that switches them. It is opened when an outlet is
// switched for the first time and stays in use to the end, so that an outlet is switched off by the
// output that switched it on.
class Outlets {
 public:
  static constexpr int kCount = 5;
  static constexpr int kMotor = 0;

  explicit Outlets(const DeviceParts& parts)
      : port_(parts.libraries.port_io), output_(kOutletOutputs, &Settings::PowerControl, parts) {}
  Outlets(const Outlets&) = delete;
  Outlets& operator=(const Outlets&) = delete;

  // Opens the output unless that was done. True also when the settings name no output; false when
  // it fails, and on_refused is told.
  bool Open();
  // Whether anything opened the outlets since the program's start.
  bool InUse() const { return output_.Kept(); }

  // Opens the outlets and switches outlet `ch`, 0 to 4, on when `sw` is odd, off when it is even.
  // Any other outlet does nothing. False when the outlets cannot be opened. A failing write is told
  // by LastProblem only.
  bool Power(int ch, std::uint8_t sw);
  // All outlets off.
  bool PowerOff();
  // Sends `b` straight to the outlet port, whichever output is in use; nothing when none is. The
  // state kept here does not change.
  bool Powerb(std::uint8_t b);

  // Bit i = outlet i, 1 = on.
  std::uint8_t state() const { return state_; }
  bool IsOn(int ch) const { return ((state_ >> ch) & 1) != 0; }

  // Lets go of the output, at the program's end; the outlets stay as they are.
  void Release();

  // Of the output in use, else Settings::PowerControl; 0 = none.
  std::int32_t Control() const { return output_.Number(); }
  // What went wrong last, for a person; empty when nothing did since the last open.
  const std::string& LastProblem() const { return problem_; }

  // Told before a new state is sent. May be empty.
  std::function<void()> on_change;
  // Told each time that the output could not be opened. May be empty.
  std::function<void()> on_refused;

 private:
  bool Send(std::uint8_t state);

  vendor::PortIo& port_;
  ChosenDevice<OutletOutput> output_;
  std::uint8_t state_ = 0;
  std::string problem_;
};

}  // namespace zento
