#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "devices/analog_input.h"
#include "host/services.h"
#include "measure/run.h"
#include "measure/technique.h"
#include "text/status.h"

namespace zento {

inline constexpr std::size_t kElectrodes = 10;
// Of the display: 2i the potential, 2i + 1 the current of electrode i.
inline constexpr std::size_t kDisplayChannels = 2 * kElectrodes;
using DisplayValues = std::array<double, kDisplayChannels>;

// Which inputs of the board are read, and what each display channel makes of them. Inputs that
// several channels show are read once.
class InputWiring {
 public:
  // Inputs are 0 to AnalogInput::kChannels - 1.
  void Connect(const std::array<std::uint8_t, kDisplayChannels>& input);
  void SetScale(std::size_t channel, double scale) { scale_[channel] = scale; }

  // One round of readings averaged over the accumulation, in V; false when a reading failed.
  bool Read(AnalogInput& board, std::int32_t rounds, DisplayValues& volts) const;
  // V to V and A. False where that is no number.
  bool Scale(DisplayValues& values) const;

  std::uint8_t Input(std::size_t channel) const { return input_[channel]; }
  double ScaleOf(std::size_t channel) const { return scale_[channel]; }

 private:
  std::vector<std::uint8_t> inputs_;  // in use, each once, rising
  std::array<std::uint8_t, kDisplayChannels> input_{};
  std::array<std::size_t, kDisplayChannels> place_{};  // of the channel's input in `inputs_`
  DisplayValues scale_{};
};

// The tracks that a run is about to replace are written to a file in the home where they stand in
// none. Returns what to tell the person, nothing when nothing had to be kept.
Result<std::string> KeepOldTracks(Workstation& workstation, Files& files);

// Up to ten electrodes against time, each a pair of display channels that any analog input can
// feed. For long, slow runs of several cells or of a multi-electrode potentiostat; no generator, no
// motor.
//
// A run keeps its points to itself and puts them into tracks 0 to 9 when it ends, so that what the
// tracks held is whole until then.
class MultichannelMonitor : public Technique {
 public:
  enum Method { kByTime, kUntilStopped, kByHand };  // by hand: Run::KeepReading keeps points

  struct Values {
    InputWiring wiring;
    double sampling_rate = 1;  // Hz
    double accumulation = 1;   // readings averaged a point; below 1 nothing is read
    double seconds = 0;        // of recording, by time
    double empty_scale = 0;    // A/V that the empty graph is made for
    std::string notice;        // for the log
  };
  explicit MultichannelMonitor(Values values);

  // 0 when nothing is to be read.
  static std::int32_t Rounds(double accumulation);

  Plan MakePlan(const RunChoices& choices, const Workstation& workstation) const override;
  std::vector<RunParameter> Parameters(const RunChoices& choices) const override;
  // Time in ms, then the display channels.
  std::size_t Columns() const override { return 1 + kDisplayChannels; }
  void Begin(Run& run) override;
  void Tick(Run& run) override;
  void Store(Run& run) override;
  void Describe(RunState& state, const RunChoices& choices) const override;
  bool ReadsNothing() const { return rounds_ == 0; }

 private:
  bool Read(Run& run);

  Values values_;
  std::int32_t rounds_ = 0;
  std::int64_t planned_ = 0;  // ms, by time
  std::int64_t elapsed_ = 0;  // ms, of the last tick
  std::string notice_;
};

}  // namespace zento
