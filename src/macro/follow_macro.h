#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "core/run_log.h"
#include "core/run_state.h"
#include "core/workstation.h"
#include "devices/instruments.h"
#include "host/event_loop.h"
#include "host/host.h"
#include "macro/interpreter.h"

namespace zento {

// A started program on which nobody closes message boxes.
struct UnattendedProgram {
  Workstation& workstation;
  Host& host;
  Instruments& instruments;
  EventLoop& loop;
  // The texts of the message boxes shown since the last call, oldest first.
  std::function<std::vector<std::string>()> take_messages;
};

// Hears what a macro does while it does it, the measurements and windows it works with included.
class MacroFollower : public MacroObserver {
 public:
  virtual void MeasurementBegun(int /*line*/, const std::string& /*what*/) {}
  virtual void MeasurementEnded(int /*line*/, const RunReport& /*report*/) {}
  // By whichever window.
  virtual void MessageShown(int /*line*/, const std::string& /*text*/) {}
};

// How all of it came out.
struct MacroVerdict {
  MacroOutcome outcome;
  int messages = 0;  // shown by whichever window
  int failed_mails = 0;
  bool interrupted = false;  // the program was asked to end
  bool endless = false;      // a measurement does not end, see FollowMacro
  // Every line was carried out, every mail sent, and nothing had to be said about it.
  bool Clean() const {
    return outcome.Clean() && messages == 0 && failed_mails == 0 && !interrupted && !endless;
  }
};

// "Finished; 2 messages, 1 mail not sent": for the last line of a report.
std::string VerdictText(const MacroVerdict& verdict);

// Carries out a macro without a person: to its last line, to the end of the measurement that this
// line may have begun, and until all mails are through. When it was interrupted, or is endless, the
// macro is stopped; a measurement is left running for whoever ends the program.
//
// A measurement that lasts longer than `longest_measurement_micros` is endless: in virtual time it
// would hold the machine for ever. `title` names the macro in the run log.
MacroVerdict FollowMacro(const UnattendedProgram& program, std::string_view text,
                         const std::string& title, std::int64_t longest_measurement_micros,
                         MacroFollower& follower);

}  // namespace zento
