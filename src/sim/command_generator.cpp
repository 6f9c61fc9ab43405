#include "sim/command_generator.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <string>

#include "text/number.h"

namespace zento::sim {
namespace {

constexpr double kGreatestVolts = 10.0;
constexpr std::string_view kMnemonics[] = {"STEP", "SR", "ED", "VF", "RT",
                                           "HT",   "YF", "ET", "F",  "A"};

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// Takes a decimal number off the front of `text`. False when there is none.
bool TakeNumber(std::string_view& text, double& value) {
  const char* begin = text.data();
  const char* end = ParseNumber(begin, begin + text.size(), value);
  text.remove_prefix(static_cast<std::size_t>(end - begin));
  return end != begin;
}

Status Refuse(std::string_view what, std::string_view text) {
  return Status::Failure(std::string(what) + " '" + std::string(text.substr(0, 40)) + "'");
}

}  // namespace

Status CommandGenerator::Send(std::string_view line, double late) {
  while (!line.empty() && (line.back() == '\r' || line.back() == '\n')) line.remove_suffix(1);
  while (!line.empty()) {
    const std::string_view rest = line;
    const auto* mnemonic =
        std::ranges::find_if(kMnemonics, [&](auto name) { return rest.starts_with(name); });
    if (mnemonic == std::end(kMnemonics)) return Refuse("unknown command", rest);
    line.remove_prefix(mnemonic->size());
    Status status;
    double value = 0.0;
    if (*mnemonic == "F") {
      // Digits only: the number may be followed by the E of another command.
      const auto digits =
          static_cast<std::size_t>(std::ranges::find_if_not(line, IsDigit) - line.begin());
      if (digits != 1 && digits != 3) return Refuse("no such function", rest);
      int number = 0;
      std::from_chars(line.data(), line.data() + digits, number);
      line.remove_prefix(digits);
      status = Select(number, digits);
    } else if (*mnemonic == "STEP") {
      status = Edit(*mnemonic, 0.0);
    } else {
      if (!TakeNumber(line, value)) return Refuse("no number in", rest);
      status = Command(*mnemonic, value, late);
    }
    if (!status.ok()) return status.Within(std::string(rest.substr(0, 40)));
  }
  return Status::Ok();
}

Status CommandGenerator::Select(int number, std::size_t digits) {
  if (digits == 1) {
    function_ = number;
    return Status::Ok();
  }
  if (!editing_) return Status::Failure("no function is being edited");
  if (number / 100 != function_ || number % 100 == 0) return Status::Failure("no such segment");
  segment_ = number % 100;
  functions_[function_].segments[segment_] = Stretch();
  return Status::Ok();
}

Status CommandGenerator::Command(std::string_view mnemonic, double value, double late) {
  if (mnemonic == "A") {
    if (value != 0.0 && value != 1.0) return Status::Failure("neither 0 nor 1");
    on_ = value == 1.0;
    if (on_) player_.Start(Compile(functions_[function_]), late);
  } else if (mnemonic == "SR") {
    if (value != 0.0) return Status::Failure("only 0 is known");
    on_ = editing_ = false;
  } else if (mnemonic == "ED") {
    if (value != 0.0 && value != 1.0) return Status::Failure("neither 0 nor 1");
    editing_ = value == 1.0;
    segment_ = 0;
    if (editing_) functions_[function_] = Function();
  } else {
    return Edit(mnemonic, value);
  }
  return Status::Ok();
}

Status CommandGenerator::Edit(std::string_view mnemonic, double value) {
  if (!editing_) return Status::Failure("no function is being edited");
  Function& function = functions_[function_];
  Stretch& stretch = segment_ == 0 ? function.initial : function.segments[segment_];
  if (mnemonic == "STEP") {
    stretch.step = true;
  } else if (mnemonic == "VF") {
    if (std::abs(value) > kGreatestVolts * 1000) return Status::Failure("beyond 10 V");
    stretch.volts = value / 1000;
  } else if (value < 0.0) {
    return Status::Failure("negative");
  } else if (mnemonic == "RT") {
    stretch.rate = value;
  } else if (mnemonic == "HT") {
    stretch.hold = value;
  } else if (mnemonic == "YF") {
    stretch.holds = value != 0.0;
  } else {
    if (value < 1.0 || value > 99.0) return Status::Failure("no such segment");
    function.last = static_cast<int>(value);
  }
  return Status::Ok();
}

void CommandGenerator::Append(Programme& programme, const Stretch& stretch) {
  if (stretch.step) {
    programme.Jump(stretch.volts);
  } else {
    programme.Ramp(stretch.volts, stretch.rate);
  }
  if (stretch.holds) programme.Hold(stretch.hold);
}

// The first pass is written out on its own: it comes from the initial level, the others from where
// the last segment ended.
Programme CommandGenerator::Compile(const Function& function) const {
  Programme programme(function.initial.volts);
  if (function.initial.holds) programme.Hold(function.initial.hold);
  const auto end = function.segments.upper_bound(function.last);
  for (int pass = 0; pass < 2; ++pass) {
    if (pass == 1) programme.BeginLoop();
    for (auto segment = function.segments.begin(); segment != end; ++segment) {
      Append(programme, segment->second);
    }
  }
  return programme;
}

double CommandGenerator::UntilCorner() const {
  return on_ ? player_.UntilCorner() : std::numeric_limits<double>::infinity();
}

}  // namespace zento::sim
