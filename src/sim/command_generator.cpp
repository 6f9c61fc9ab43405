#include "sim/command_generator.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <string>
#include <utility>

#include "text/number.h"
#include "text/status.h"

namespace zento::sim {
namespace {

constexpr double kForever = std::numeric_limits<double>::infinity();
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

constexpr std::size_t kLongest = 4096;  // bytes of a line or a text; a real one has less memory

// The whole of `text` as a number, or -1.
int WholeNumber(std::string_view text) {
  int value = -1;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  return error == std::errc() && stop == end ? value : -1;
}

}  // namespace

void Programme::Hold(double seconds) {
  if (seconds > 0.0) corners_.push_back({Length() + seconds, corners_.back().volts});
}

void Programme::Jump(double volts) {
  if (volts != corners_.back().volts) corners_.push_back({Length(), volts});
}

void Programme::Ramp(double volts, double volts_per_second) {
  const double distance = std::abs(volts - corners_.back().volts);
  if (distance == 0.0) return;
  if (!(volts_per_second > 0.0)) {
    Hold(kForever);
  } else {
    corners_.push_back({Length() + distance / volts_per_second, volts});
  }
}

bool Programme::Loops() const {
  return loop_ && std::isfinite(Length()) && Period() > kInstant;
}

double Programme::At(double seconds) const {
  if (Loops() && seconds >= Length()) {
    const double begin = corners_[*loop_].seconds;
    return Interpolate(begin + std::fmod(seconds - begin, Period()));
  }
  return Interpolate(seconds);
}

double Programme::Interpolate(double seconds) const {
  const auto next = std::ranges::upper_bound(corners_, seconds, {}, &Corner::seconds);
  if (next == corners_.begin()) return next->volts;
  const Corner& from = *(next - 1);
  if (next == corners_.end() || next->volts == from.volts) return from.volts;
  const double share = (seconds - from.seconds) / (next->seconds - from.seconds);
  return from.volts + share * (next->volts - from.volts);
}

double Programme::NextCorner(double seconds) const {
  const double after = seconds + kInstant;
  const auto next = std::ranges::upper_bound(corners_, after, {}, &Corner::seconds);
  if (next != corners_.end()) return next->seconds;
  if (!Loops()) return kForever;
  // In the pass of the loop that is running then; where rounding puts all of its corners behind,
  // the next pass's first.
  const double begin = corners_[*loop_].seconds;
  const double turn = begin + std::floor((after - begin) / Period()) * Period();
  for (std::size_t i = *loop_ + 1; i < corners_.size(); ++i) {
    const double corner = turn + (corners_[i].seconds - begin);
    if (corner > after) return corner;
  }
  return turn + Period() + (corners_[*loop_ + 1].seconds - begin);
}

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
  return on_ ? player_.UntilCorner() : kForever;
}

void SerialConverter::Receive(std::string_view bytes) {
  while (!bytes.empty()) {
    if (expected_ > 0) {
      const std::size_t taken = std::min(expected_, bytes.size());
      pending_ += bytes.substr(0, taken);
      bytes.remove_prefix(taken);
      expected_ -= taken;
      if (expected_ == 0) EndText();
      continue;
    }
    const char byte = bytes.front();
    bytes.remove_prefix(1);
    if (byte == '\r' || byte == '\n') {
      EndLine();
    } else if (pending_.size() < kLongest) {
      pending_ += byte;
    }
  }
}

void SerialConverter::EndLine() {
  const std::string line = std::exchange(pending_, {});
  constexpr std::string_view kWrite = "WRT #";
  const std::size_t comma = line.find(',');
  if (!line.starts_with(kWrite) || comma == std::string::npos || comma < kWrite.size()) return;
  const std::string_view view = line;
  const int count = WholeNumber(view.substr(kWrite.size(), comma - kWrite.size()));
  address_ = WholeNumber(view.substr(comma + 1));
  if (count > 0 && static_cast<std::size_t>(count) <= kLongest && address_ >= 0) {
    expected_ = static_cast<std::size_t>(count);
  }
}

void SerialConverter::EndText() {
  const std::string text = std::exchange(pending_, {});
  std::string_view view = text;
  while (view.ends_with('\r') || view.ends_with('\n')) view.remove_suffix(1);
  if (!view.empty()) talk_(address_, view);
}

}  // namespace zento::sim
