#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

#include "core/workstation.h"
#include "devices/instruments.h"
#include "host/host.h"
#include "sim/bench.h"
#include "sim/parameters.h"

namespace zento {

struct MainOptions {
  // Set: the simulated bench with these parameters. Not set: the instruments on this machine.
  std::optional<sim::Parameters> simulated;
  std::filesystem::path home;
  // Of the files that were installed with the program.
  std::vector<std::filesystem::path> data_folders = {};
};

// The whole program above a host: the workstation, its instruments, every window by its name. The
// graphical and the command-line program differ only in the host they give it.
class MainProgram {
 public:
  // Opens nothing and writes nothing. `host` must outlive the program.
  MainProgram(Host& host, MainOptions options);
  // Ends the program if that has not been done.
  ~MainProgram();
  MainProgram(const MainProgram&) = delete;
  MainProgram& operator=(const MainProgram&) = delete;

  // Furnishes a fresh home of the simulated bench, makes the windows known and shows the main one.
  // Fails when the home cannot be furnished or the main window does not open.
  Status Start();

  // Brings an active run to its safe end and closes the main window, which saves the settings and
  // closes all others. A second call does nothing.
  void End();
  // The main window is closed: nothing is left to do.
  bool Ended() const;

  Workstation& workstation() { return workstation_; }
  Instruments& instruments() { return instruments_; }
  // Null with the instruments of this machine.
  const sim::Bench* bench() const { return bench_.get(); }

 private:
  void RegisterForms();

  Host& host_;
  MainOptions options_;
  Workstation workstation_;
  std::unique_ptr<sim::Bench> bench_;
  Instruments instruments_;
};

inline constexpr char kMainForm[] = "frmControlPanel";

}  // namespace zento
