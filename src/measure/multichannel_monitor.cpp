#include "measure/multichannel_monitor.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "core/track_file.h"
#include "core/track_store.h"
#include "host/path_text.h"
#include "text/number.h"

namespace zento {

void InputWiring::Connect(const std::array<std::uint8_t, kDisplayChannels>& input) {
  input_ = input;
  inputs_.assign(input.begin(), input.end());
  std::ranges::sort(inputs_);
  inputs_.erase(std::unique(inputs_.begin(), inputs_.end()), inputs_.end());
  for (std::size_t i = 0; i < kDisplayChannels; ++i) {
    place_[i] =
        static_cast<std::size_t>(std::ranges::lower_bound(inputs_, input[i]) - inputs_.begin());
  }
}

bool InputWiring::Read(AnalogInput& board, std::int32_t rounds, DisplayValues& volts) const {
  std::array<double, AnalogInput::kChannels> sums{};
  if (!board.ReadSum(inputs_, rounds, sums)) return false;
  for (std::size_t i = 0; i < kDisplayChannels; ++i) volts[i] = sums[place_[i]] / rounds;
  return true;
}

bool InputWiring::Scale(DisplayValues& values) const {
  for (std::size_t i = 0; i < kDisplayChannels; ++i) values[i] *= scale_[i];
  return std::ranges::all_of(values, [](double value) { return std::isfinite(value); });
}

Result<std::string> KeepOldTracks(Workstation& workstation, Files& files) {
  bool any = false;
  for (int track = 0; track < static_cast<int>(kElectrodes); ++track) {
    any = any || workstation.tracks.Record(track).Mode != kModeNone;
  }
  if (!any) return std::string();
  const auto rescued = RescueTracks(workstation, files);
  if (!rescued.ok()) {
    return Status::Failure("The unsaved tracks could not be kept before they are replaced: " +
                           rescued.why());
  }
  if (!rescued.value()) return std::string();
  return "Unsaved tracks were kept in " + TextFromPath(rescued.value()->filename());
}

MultichannelMonitor::MultichannelMonitor(Values values)
    : Technique("Multichannel monitor"), values_(std::move(values)) {
  values_.sampling_rate = Adjusted("Sampling rate", values_.sampling_rate,
                                   SomeRate(values_.sampling_rate), "points are taken in time");
  rounds_ = Rounds(values_.accumulation);
  planned_ = std::max(ToLong(values_.seconds * 1000), 0);
  const double height = 0.01 * values_.empty_scale;
  AddCurve({-2.0, -height, 10000.0, height});
}

std::int32_t MultichannelMonitor::Rounds(double accumulation) {
  return ToLong(accumulation) < 1 ? 0 : AccumulationRounds(accumulation);
}

Plan MultichannelMonitor::MakePlan(const RunChoices& choices, const Workstation&) const {
  Plan plan = PlanOf(values_.sampling_rate, PeriodRounded(values_.sampling_rate), rounds_, choices);
  if (choices.method == kByTime) EndByTime(plan, planned_, LastTick::kAfterEnd, 1);
  plan.last_target = static_cast<int>(kElectrodes) - 1;
  return plan;
}

std::vector<RunParameter> MultichannelMonitor::Parameters(const RunChoices& choices) const {
  const InputWiring& wiring = values_.wiring;
  const std::array<std::string, 3> methods = {"by time, " + FormatDuration(planned_),
                                              "until stopped", "points kept by button"};
  std::vector<RunParameter> parameters = {
      {"Target tracks", "0 to 9"},
      {"Method", methods[static_cast<std::size_t>(std::max(choices.method, 0))]},
      SamplingParameter(values_.sampling_rate, rounds_),
  };
  for (std::size_t i = 0; i < kElectrodes; ++i) {
    const auto channel = [&wiring](std::size_t c, const char* unit) {
      return "input " + PlainNumber(wiring.Input(c)) + " x " + PlainNumber(wiring.ScaleOf(c)) +
             unit;
    };
    const std::string& title = choices.titles.at(i);
    parameters.push_back({"Electrode " + PlainNumber(i),
                          (title.empty() ? "" : title + ", ") + "potential " +
                              channel(2 * i, " V/V") + ", current " + channel(2 * i + 1, " A/V")});
  }
  return parameters;
}

void MultichannelMonitor::Begin(Run& run) {
  if (!values_.notice.empty()) run.LogEvent(values_.notice);
  run.StartRecording();
}

void MultichannelMonitor::Tick(Run& run) {
  if (rounds_ == 0) return;
  elapsed_ = run.ReadTime();
  // A full store ends the run in every mode, also where only a person keeps points.
  const bool full = run.points().size() >= Plan::kPointRoom;
  if (Read(run) && (run.choices().method != kByHand || full)) run.Keep();
  if (run.choices().method == kByTime && elapsed_ > planned_) run.StopWithSound(EndReason::kTime);
}

bool MultichannelMonitor::Read(Run& run) {
  std::array<double, 1 + kDisplayChannels> point{static_cast<double>(elapsed_)};
  DisplayValues values{};
  if (!values_.wiring.Read(run.instruments().analog_input, rounds_, values)) {
    run.ReadingFailed();
    return false;
  }
  if (!values_.wiring.Scale(values)) {
    run.ReadingFailed("Overflow");
    return false;
  }
  run.ReadingSucceeded();
  std::ranges::copy(values, point.begin() + 1);
  run.Put(point);
  for (std::size_t i = 0; i < kElectrodes; ++i) Include(0, point[0], values[2 * i + 1]);
  return true;
}

void MultichannelMonitor::Describe(RunState& state, const RunChoices& choices) const {
  if (choices.method == kByTime) state.planned = planned_;
  state.sampling_rate = values_.sampling_rate;
  state.last_target = static_cast<int>(kElectrodes) - 1;
  state.notice = notice_;
}

void MultichannelMonitor::Store(Run& run) {
  const auto kept = KeepOldTracks(run.workstation(), run.host().files);
  if (!kept.ok()) run.Say(kept.why());
  if (kept.ok() && !kept.value().empty()) run.LogEvent(notice_ = kept.value());
  const PlotRange& range = Range();
  const bool by_time = run.choices().method == kByTime;
  for (std::size_t i = 0; i < kElectrodes; ++i) {
    const int track = static_cast<int>(i);
    // Track 0 holds the time for all; the others have it too, as after opening a file.
    TrackRecord& record =
        run.StoreTrack(track, kModeMulti, run.choices().titles.at(i), {2 * i + 1, 2 * i + 2, 0});
    for (double& time : run.workstation().tracks.Column(2, track)) time /= 1000;
    SetRange(record, {range.x1 / 1000, range.y1, range.x2 / 1000, range.y2});
    record.MaxTime = static_cast<double>(by_time ? planned_ : elapsed_);
    record.DiskYscale = values_.wiring.ScaleOf(2 * i + 1);
    // Nothing here sweeps, rotates or has a ring: what an earlier curve said of that is not true
    // of this one.
    record.Scanrate = record.RPM = record.RingXValue = record.RingYscale = 0;
    record.V = {};
  }
}

}  // namespace zento
