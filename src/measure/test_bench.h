#pragma once

// A workstation on the simulated bench, for tests that hold what the windows measure against
// theory.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <numbers>
#include <string>
#include <string_view>
#include <vector>

#include "core/settings.h"
#include "core/settings_file.h"
#include "core/track_file.h"
#include "core/track_store.h"
#include "graph/graph_form.h"
#include "host/virtual/virtual_host.h"
#include "measure/measure_form.h"
#include "sim/bench.h"
#include "sim/test_support.h"

namespace zento {

inline constexpr double kFaraday = 96485.33212;

// i = 0.62045 n F A C D^(2/3) nu^(-1/6) omega^(1/2) (Levich 1962, with the coefficient's digits).
// `electrons_per_volume` is n C in mol/m^3, `diffusion` in cm^2/s.
inline double Levich(const sim::Parameters& p, double electrons_per_volume, double diffusion,
                     double rpm) {
  return 0.62045 * kFaraday * p.area * electrons_per_volume * 1e-6 * std::pow(diffusion, 2.0 / 3) *
         std::pow(p.viscosity, -1.0 / 6) * std::sqrt(rpm * 2 * std::numbers::pi / 60);
}

struct Laboratory {
  explicit Laboratory(const sim::Parameters& parameters) : bench(machine.clock, parameters) {
    for (const char* graph : {"Graph1", "Graph2"}) {
      machine.desktop.Register(
          graph, [this, graph] { return std::make_unique<Graph>(machine.host, graph); });
    }
    RegisterMeasureForms(machine.desktop, ws, machine.host, instruments);
    ApplyDefaultSettings(ws);
    ws.settings.ADBoard = 2;
    ws.settings.GPIBControl = 2;
    ws.settings.DABoard = 1;
    ws.settings.PowerControl = 2;
    ws.rpm_calibration = {{100, 0.1}, {5000, 5.0}};
  }

  // The bench's tables, with a note of when the PCI-9112 read the current.
  vendor::Libraries Tables() {
    vendor::Libraries tables = bench.Libraries();
    tables.dask.AI_VReadChannel = [this, read = tables.dask.AI_VReadChannel](
                                      std::uint16_t card, std::uint16_t channel,
                                      std::uint16_t range, double* volts) {
      if (channel == 1) current_read.push_back(Now());
      return read(card, channel, range, volts);
    };
    return tables;
  }

  // Seconds since the bench was switched on.
  double Now() const { return static_cast<double>(machine.clock.Micros() - began) * 1e-6; }
  bool RunUntilIdle() {
    return machine.RunUntil([this] { return ws.running_flag == 0; }, 3'600'000'000);
  }
  template <typename Form>
  Form& Open(const char* name) {
    return *dynamic_cast<Form*>(machine.desktop.Show(name));
  }
  // A run as a person does it, from Start to the saved track file, read back as on another day.
  void Measure(Button& start) {
    EXPECT_TRUE(start.UserClick().ok());
    EXPECT_TRUE(RunUntilIdle());
    EXPECT_TRUE(SaveTracksAs(ws, machine.files, "run").ok());
    EXPECT_TRUE(OpenTracks(another_day, machine.files, "run.znt").complete());
  }
  std::vector<double> ReadBack(int column, int track = 5) {
    const auto points = another_day.tracks.Points(column, track);
    return {points.begin(), points.end()};
  }

  std::vector<double> current_read;  // s
  VirtualHost machine;
  std::int64_t began = machine.clock.Micros();
  Workstation ws;
  Workstation another_day;
  sim::Bench bench;
  Instruments instruments{ws, machine.host, Tables()};
};

// The bench without noise, mains and quantisation, with a textbook couple.
inline sim::Parameters Quiet(std::initializer_list<std::string_view> changes = {}) {
  return sim::With(changes, sim::Textbook({"bits=0", "rotor_gain=1"}));
}

// Types into a box and leaves it; the text must be taken as it is.
inline void Type(TextBox& box, const std::string& text) {
  EXPECT_TRUE(box.UserSet(text).ok()) << box.name();
  EXPECT_EQ(box.text(), text) << box.name();
}

// Mean of `current` where the potential is within `reach` of `centre`, over the whole track.
inline double MeanAround(const std::vector<double>& volts, const std::vector<double>& current,
                         double centre, double reach) {
  double sum = 0;
  int points = 0;
  for (std::size_t i = 0; i < volts.size(); ++i) {
    if (std::abs(volts[i] - centre) > reach) continue;
    sum += current[i];
    ++points;
  }
  EXPECT_GT(points, 10);
  return sum / points;
}

}  // namespace zento
