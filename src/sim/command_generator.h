#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "text/status_fwd.h"

namespace zento::sim {

// A potential as a function of time: straight lines between corners, the last stretch of which may
// repeat for ever. Seconds from the start, and volts. Before the start it is at its first
// potential; after the last corner, without a loop, at its last.
class Programme {
 public:
  // Corners closer together than this are one.
  static constexpr double kInstant = 1e-9;  // s

  explicit Programme(double volts = 0.0) : corners_{{0.0, volts}} {}

  // Extend the programme at its end. A ramp at rate 0 never leaves its start; nothing can be added
  // behind it that would ever happen.
  void Hold(double seconds);
  void Jump(double volts);
  void Ramp(double volts, double volts_per_second);
  // What is added from here on repeats.
  void BeginLoop() { loop_ = corners_.size() - 1; }

  double At(double seconds) const;
  // The first corner later than `seconds`; infinity when there is none.
  double NextCorner(double seconds) const;
  // Of one pass of everything, in seconds; may be infinite.
  double Length() const { return corners_.back().seconds; }

 private:
  struct Corner {
    double seconds;
    double volts;
  };

  bool Loops() const;
  double Period() const { return corners_.back().seconds - corners_[*loop_].seconds; }
  double Interpolate(double seconds) const;

  std::vector<Corner> corners_;
  std::optional<std::size_t> loop_;
};

// A programme being played.
class Player {
 public:
  // `elapsed` seconds of it have passed already.
  void Start(Programme programme, double elapsed = 0.0) {
    programme_ = std::move(programme);
    elapsed_ = elapsed;
  }
  void Advance(double dt) { elapsed_ += dt; }
  double VoltsAfter(double dt) const { return programme_.At(elapsed_ + dt); }
  double UntilCorner() const { return programme_.NextCorner(elapsed_) - elapsed_; }

 private:
  Programme programme_;
  double elapsed_ = 0.0;
};

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

// The serial-to-bus converter: takes the bytes of a serial line as they come and passes texts on to
// the bus. "WRT #n,a" LF is followed by n bytes for the instrument at address a, of which the
// trailing CR and LF are the bus's own delimiter. The set-up lines "SIC .01", "sre 1" and "tmo 0",
// each ended by CR, are heard and need nothing here; any other line is ignored.
class SerialConverter {
 public:
  using Talk = std::function<void(int address, std::string_view text)>;

  explicit SerialConverter(Talk talk) : talk_(std::move(talk)) {}

  void Receive(std::string_view bytes);

 private:
  void EndLine();
  void EndText();

  Talk talk_;
  std::string pending_;
  std::size_t expected_ = 0;  // bytes of text still to come
  int address_ = 0;
};

}  // namespace zento::sim
