#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace zento::sim {

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
