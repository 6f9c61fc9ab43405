#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "core/run_state.h"

namespace zento {

class RunLog;
class TrackHistory;
class TrackStore;
struct Settings;

// One point of the rotation-rate calibration.
struct CalibrationPoint {
  double rpm = 0;
  double volts = 0;  // motor voltage
  friend bool operator==(const CalibrationPoint&, const CalibrationPoint&) = default;
};

// Everything the windows share, built once at start and passed by reference. The larger parts are
// owned out of sight, so that a file that only passes a workstation on need not know them.
struct Workstation {
 private:
  struct Parts;
  const std::unique_ptr<Parts> parts_;

 public:
  Workstation();
  ~Workstation();

  TrackStore& tracks;
  TrackHistory& history;  // of what windows did to the tracks
  Settings& settings;
  bool SettingsLoaded = false;  // true only after a complete read of the settings file

  // -1 while a measurement or a macro's wait is active, else 0.
  std::int16_t running_flag = 0;

  double motor_voltage = 0;                       // V, last sent to analog-output channel 0
  std::vector<CalibrationPoint> rpm_calibration;  // in file order

  std::string FileTitle;  // name, without folder, of the track file last opened or saved
  // Fingerprint of the tracks as they were last opened, saved or rescued; see core/rescue.h.
  std::size_t kept_tracks = 0;
  int shown_track = 0;              // 0 to 20, the one that the main window shows
  std::int32_t DataGeneration = 0;  // one more for each track file that was loaded
  std::filesystem::path home;       // the program's folder: settings, calibration, logs

  RunLog& run_log;  // not attached to a home in tests that do not ask for it

  // Set by a measurement while running_flag is: brings the run to its safe end before it returns
  // (points stored, generator off, rotation 0, flag cleared). Empty while no measurement runs.
  std::function<void()> end_active_run;
  // Where the run of the moment stands.
  RunFeed runs;
  // True from a macro's start to its end, also while it waits for a measurement.
  bool macro_active = false;
  // Set while macro_active is: stops the macro before it returns (its wait ended, rotation 0). A
  // measurement goes on; whoever wants that ended too calls end_active_run afterwards.
  std::function<void()> end_active_macro;
  // Set by the main window while it is loaded: shows a track as its current one. Call through
  // ShowTrack, which does nothing without a main window.
  std::function<void(int track)> show_data_info;
  void ShowTrack(int track) const {
    if (show_data_info) show_data_info(track);
  }
};

}  // namespace zento
