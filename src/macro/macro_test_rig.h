#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "macro/interpreter.h"
#include "measure/test_rig.h"

namespace zento {

// A workstation on made-up vendor tables with an interpreter, and what the interpreter told.
struct MacroRig : TestRig, MacroObserver {
  MacroRig() { interpreter.observer = this; }

  // Starts a macro and lets its first turn pass.
  bool Begin(std::string_view text) {
    const bool started = interpreter.Start(text);
    RunFor(0.002);
    return started;
  }
  // Runs a macro to its end, measurements included; false when it does not come to one.
  bool Run(std::string_view text, double limit_seconds = 1e5) {
    if (!interpreter.Start(text)) return false;
    return machine.RunUntil([this] { return !ws.macro_active && ws.running_flag == 0; },
                            static_cast<std::int64_t>(limit_seconds * 1e6));
  }
  const MacroOutcome& outcome() const { return ended.value(); }
  frmMeasureCV* CVWindow() { return machine.desktop.FindAs<frmMeasureCV>("frmMeasureCV"); }

  void LineDone(int line, MacroLineResult result) override {
    results.push_back(result);
    last_line = line;
  }
  void MeasurementBegun(int line) override { begun.push_back(line); }
  void MeasurementEnded(int line) override { finished.push_back(line); }
  void WaitTicked(std::int64_t millis) override { remaining.push_back(millis); }
  void RunEnded(const MacroOutcome& outcome) override { ended = outcome; }

  std::vector<MacroLineResult> results;
  int last_line = 0;
  std::vector<int> begun;
  std::vector<int> finished;
  std::vector<std::int64_t> remaining;
  std::optional<MacroOutcome> ended;
  MacroInterpreter interpreter{ws, machine.host, instruments};
};

}  // namespace zento
