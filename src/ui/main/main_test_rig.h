#pragma once

#include <memory>
#include <string>
#include <vector>

#include "core/settings_file.h"
#include "core/track_file.h"
#include "core/track_store.h"
#include "graph/graph_form.h"
#include "host/virtual/virtual_host.h"
#include "ui/main/control_panel.h"
#include "ui/main/device_forms.h"
#include "ui/main/device_forms.h"
#include "ui/main/main_forms.h"
#include "ui/main/settings_form.h"

namespace zento {

// The main window on a machine without instruments and without a person. For tests.
struct MainRig {
  MainRig() {
    ws.home = "home";
    for (const char* name : {"Graph1", "Graph2"}) {
      machine.desktop.Register(
          name, [this, name] { return std::make_unique<Graph>(machine.host, name); });
    }
    RegisterDeviceForms(machine.desktop, ws, machine.host, instruments);
    RegisterMainForms(machine.desktop, ws, machine.host, instruments);
  }

  frmControlPanel& Panel() {
    return *dynamic_cast<frmControlPanel*>(machine.desktop.Show("frmControlPanel"));
  }
  Status Click(const std::string& name) {
    const Status clicked = Panel().Find(name)->UserClick();
    machine.Settle();
    return clicked;
  }
  // A voltammogram of five points.
  void FillCV(int track) {
    TrackRecord& record = ws.tracks.Record(track);
    record.Mode = kModeCV;
    record.Title = "Pt";
    record.pnum = 5;
    record.V = {0.1, 0.6, -0.2};
    record.Vxmin = -0.2;
    record.Vxmax = 0.6;
    record.Vymin = -1e-3;
    record.Vymax = 1e-3;
    record.DiskYscale = 0.001;
    for (std::int32_t i = 0; i < 5; ++i) {
      ws.tracks.SetValue(0, track, i, 0.1 * i);
      ws.tracks.SetValue(1, track, i, 1e-4 * i);
      ws.tracks.SetValue(2, track, i, 1e-6 * i);
    }
  }

  VirtualHost machine;
  Workstation ws;
  Instruments instruments{ws, machine.host, vendor::Libraries{}};
};

}  // namespace zento
