#pragma once

#include <array>
#include <map>
#include <string_view>

#include "sim/programme.h"
#include "text/status.h"

namespace zento::sim {

// The programmable function generator, as its bus hears it: a command is a mnemonic and a number,
// and one line may hold several without anything between them ("F1ED1").
//
//   SR0        stop: output off, editing ended
//   Fn         function n (0 to 9): the one that A1 starts
//   EDn        1 begins to edit the function, at its initial level, erasing it; 0 ends
//   Fnss       edits segment ss (01 to 99) of function n, erasing that segment
//   VFx        potential, mV
//   RTx        rate of change towards that potential, V/s
//   STEP       goes there at once instead
//   HTx        seconds to hold that potential, if ...
//   YFn        ... 1; 0 does not hold
//   ETn        the last segment is n
//   A1, A0     output on: starts the programme at its initial level; output off
//
// Played, a programme starts at its initial level and holds it; then each segment goes from where
// the last one ended to its own potential and holds that. After the last segment the first follows,
// until the output is switched off. (So a cyclic sweep that begins with a segment to the potential
// it ends at passes through that segment in no time.)
class CommandGenerator {
 public:
  // Failure: the line is not in the language or has no meaning now. The commands before the fault
  // have been carried out, the rest is lost, as on a real instrument. A programme that the line
  // starts began `late` seconds ago, so that its corners come when they are due.
  Status Send(std::string_view line, double late = 0.0);

  // Carries the output on by `dt` seconds.
  void Advance(double dt) { player_.Advance(dt); }

  bool output_on() const { return on_; }
  // Volts at the output `dt` seconds from now; 0 while it is off.
  double VoltsAfter(double dt) const { return on_ ? player_.VoltsAfter(dt) : 0.0; }
  // Seconds until the programme turns; infinite if it never does or the output is off.
  double UntilCorner() const;

 private:
  struct Stretch {
    double volts = 0.0;
    double rate = 0.0;  // V/s
    double hold = 0.0;  // s
    bool step = false;
    bool holds = false;
  };
  struct Function {
    Stretch initial;
    std::map<int, Stretch> segments;  // by their number, from 1
    int last = 0;
  };

  Status Command(std::string_view mnemonic, double value, double late);
  Status Select(int number, std::size_t digits);
  Status Edit(std::string_view mnemonic, double value);
  static void Append(Programme& programme, const Stretch& stretch);
  Programme Compile(const Function& function) const;

  std::array<Function, 10> functions_;
  int function_ = 0;
  int segment_ = 0;  // 0 is the initial level
  bool editing_ = false;
  bool on_ = false;
  Player player_;
};

}  // namespace zento::sim
