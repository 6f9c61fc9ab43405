#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "core/run_report.h"
#include "macro/interpreter.h"
#include "program/headless_program.h"

namespace zento {

// Told what a macro does while it does it. Lines count from 1.
class MacroFollower {
 public:
  virtual ~MacroFollower() = default;
  // Before and after the line has taken effect.
  virtual void LineBegun(int /*line*/, const MacroLine& /*what*/) {}
  virtual void LineDone(int /*line*/, const MacroLine& /*what*/, MacroLineResult /*result*/) {}
  virtual void MeasurementBegun(int /*line*/, const std::string& /*what*/) {}
  virtual void MeasurementEnded(int /*line*/, const RunReport& /*report*/) {}
  virtual void MessageShown(int /*line*/, const std::string& /*text*/) {}
  virtual void MailEnded(int /*line*/, const Status& /*how*/) {}
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

// Carries out a macro on a started program without a person: to its last line, to the end of the
// measurement that this line may have begun, and until all mails are through. Message boxes are
// taken off the program and told instead. When it was interrupted, or is endless, the macro is
// stopped; a measurement is left running for whoever ends the program.
//
// A measurement that lasts longer than `longest_measurement_micros` is endless: in virtual time it
// would hold the machine for ever.
MacroVerdict FollowMacro(HeadlessProgram& program, std::string_view text, const std::string& title,
                         std::int64_t longest_measurement_micros, MacroFollower& follower);

}  // namespace zento
