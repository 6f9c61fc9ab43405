#pragma once

// A workstation on the simulated bench, for tests that hold what the windows measure against
// theory.

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string_view>
#include <vector>

#include "core/settings_file.h"
#include "graph/graph_form.h"
#include "host/virtual/virtual_host.h"
#include "measure/measure_forms.h"
#include "sim/bench.h"
#include "sim/test_support.h"

namespace zento {

inline constexpr double kFaraday = 96485.33212;

struct Laboratory {
  explicit Laboratory(const sim::Parameters& parameters) : bench(machine.clock, parameters) {
    for (const char* graph : {"Graph1", "Graph2"}) {
      machine.desktop.Register(
          graph, [this, graph] { return std::make_unique<Graph>(machine.host, graph); });
    }
    RegisterDeviceForms(machine.desktop, ws, machine.host, instruments);
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

  std::vector<double> current_read;  // s
  VirtualHost machine;
  std::int64_t began = machine.clock.Micros();
  Workstation ws;
  sim::Bench bench;
  Instruments instruments{ws, machine.host, Tables()};
};

// The bench without noise, mains and quantisation, with a textbook couple.
inline sim::Parameters Quiet(std::initializer_list<std::string_view> changes = {}) {
  return sim::With(changes, sim::Textbook({"bits=0", "rotor_gain=1"}));
}

}  // namespace zento
