#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "core/settings.h"
#include "core/settings_file.h"
#include "core/track_store.h"
#include "core/workstation.h"
#include "devices/instruments.h"
#include "graph/graph_form.h"
#include "host/virtual/virtual_host.h"
#include "measure/cv_form.h"
#include "measure/measure_form.h"
#include "measure/rde_form.h"
#include "measure/rpm_form.h"
#include "measure/step_form.h"

namespace zento {

// A workstation on made-up vendor tables: a PCI-9112 whose inputs follow `volts`, a bus board that
// notes its commands, a motor and an outlet port that remember what they were told. For tests.
struct TestRig {
  TestRig() {
    for (const char* graph : {"Graph1", "Graph2"}) {
      machine.desktop.Register(
          graph, [this, graph] { return std::make_unique<Graph>(machine.host, graph); });
    }
    RegisterMeasureForms(machine.desktop, ws, machine.host, instruments);
    ApplyDefaultSettings(ws);
    ws.settings.ADBoard = 2;
    ws.settings.DABoard = 1;
    ws.settings.PowerControl = 2;
    ws.settings.GPIBControl = 2;
    ws.rpm_calibration = {{100, 0.1}, {3000, 3.0}};
    ws.show_data_info = [this](int track) { shown_tracks.push_back(track); };
  }

  vendor::Libraries Tables() {
    vendor::Libraries tables;
    vendor::Dask& dask = tables.dask;
    dask.Register_Card = [this](std::uint16_t, std::uint16_t) { return card_status; };
    dask.AI_VReadChannel = [this](std::uint16_t, std::uint16_t channel, std::uint16_t, double* v) {
      ++reads;
      *v = volts(channel);
      return std::int16_t{0};
    };
    dask.AO_9112_Config = [this](std::uint16_t, std::uint16_t, double) { return output_status; };
    dask.AO_VWriteChannel = [this](std::uint16_t, std::uint16_t, double v) {
      motor_volts = v;
      return std::int16_t{0};
    };
    dask.DO_WritePort = [this](std::uint16_t, std::uint16_t, std::uint32_t value) {
      outlets = value;
      return std::int16_t{0};
    };
    dask.Release_Card = [](std::uint16_t) { return std::int16_t{0}; };
    vendor::Gpib& bus = tables.gpib;
    bus.GpIni = [this] { return bus_status; };
    bus.GpIfc = [](std::int32_t) { return 0; };
    bus.GpRen = [] { return 0; };
    bus.GpTimeout = [](std::int32_t) { return 0; };
    bus.GpBoardsts = [](std::int32_t, std::int32_t* value) { return *value = 0; };
    bus.GpTalk = [this](const std::int32_t*, std::int32_t, const char* text) {
      sent.emplace_back(text);
      return 0;
    };
    bus.GpExit = [] { return 0; };
    return tables;
  }

  // Seconds of virtual time since the rig was made.
  double Seconds() const { return static_cast<double>(machine.clock.Micros() - began) * 1e-6; }
  void RunFor(double seconds) { machine.RunFor(static_cast<std::int64_t>(seconds * 1e6)); }
  bool RunUntilIdle(double limit_seconds = 1e6) {
    return machine.RunUntil([this] { return ws.running_flag == 0; },
                            static_cast<std::int64_t>(limit_seconds * 1e6));
  }

  frmMeasureCV& CV() { return *dynamic_cast<frmMeasureCV*>(machine.desktop.Show("frmMeasureCV")); }
  frmPotentialStep& Step() {
    return *dynamic_cast<frmPotentialStep*>(machine.desktop.Show("frmPotentialStep"));
  }
  frmMeasureRPMvsj& Sweep() {
    return *dynamic_cast<frmMeasureRPMvsj*>(machine.desktop.Show("frmMeasureRPMvsj"));
  }
  frmMeasureRDE& RDE() {
    return *dynamic_cast<frmMeasureRDE*>(machine.desktop.Show("frmMeasureRDE"));
  }
  const GraphView& Picture(const char* graph) {
    return dynamic_cast<Graph*>(machine.desktop.Find(graph))->Picture1;
  }
  const TrackRecord& Record(int track) const { return ws.tracks.Record(track); }
  bool MotorOn() const { return (outlets & 1) != 0; }

  std::function<double(int channel)> volts = [](int) { return 0.0; };
  std::int16_t card_status = 0;
  std::int16_t output_status = 0;
  std::int32_t bus_status = 0;
  long reads = 0;
  double motor_volts = -1;
  std::uint32_t outlets = 0;
  std::vector<std::string> sent;
  std::vector<int> shown_tracks;

  VirtualHost machine;
  Workstation ws;
  std::int64_t began = machine.clock.Micros();
  Instruments instruments{ws, machine.host, Tables()};
};

}  // namespace zento
