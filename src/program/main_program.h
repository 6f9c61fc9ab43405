#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "core/workstation.h"
#include "devices/instruments.h"
#include "host/host.h"
#include "sim/bench.h"
#include "sim/parameters.h"
#include "text/status.h"

namespace zento {

// How much of the program is there.
enum class Windows {
  kAll,
  kMainAndAnalyses,  // the main window, its tools and the analyses, without instruments
  kAnalyses,         // the analyses alone, without instruments, with the built-in settings
};

struct MainOptions {
  // Set: the simulated bench with these parameters. Not set: the instruments on this machine.
  std::optional<sim::Parameters> simulated = {};
  std::filesystem::path home = {};
  // Of the files that were installed with the program.
  std::vector<std::filesystem::path> data_folders = {};
  Windows windows = Windows::kAll;
};

// What becomes of the tracks when a program ends.
struct TracksAtEnd {
  // Saves them where somebody asked for it; empty = nobody did.
  std::function<Status()> save = {};
  // Those that then stand in no file as they are go to one in the home, see RescueTracks.
  bool rescue = true;
};

// What the end of a program leaves to be said.
struct SafeEnd {
  bool run_was_active = false;  // it was brought to its safe end
  Status saved;                 // where it was asked for
  // The file that unsaved tracks went to, if there were any; or why they are lost.
  Result<std::optional<std::filesystem::path>> rescued{std::nullopt};
};

// The program above a host: the workstation, its instruments, every window by its name. The
// graphical and the command-line program differ only in the host they give it.
class MainProgram {
 public:
  // Opens nothing and writes nothing. `host` must outlive the program.
  MainProgram(Host& host, MainOptions options);
  // Ends the program if that has not been done, without saving tracks, and finishes its mails.
  ~MainProgram();
  MainProgram(const MainProgram&) = delete;
  MainProgram& operator=(const MainProgram&) = delete;

  // Prepares a fresh home of the simulated bench, makes the windows known and shows the main one.
  // Fails when the home cannot be prepared or the main window does not open.
  Status Start();

  // The one end of a program, whoever asked for it: a person, the system or an error inside. Closes
  // the main window, which ends an active macro and run, switches a turning motor off, saves the
  // settings and closes all others; then sees to the tracks. Where the main window is closed
  // already, only that. Mails under way are waited for when this object goes, with the tracks safe.
  SafeEnd EndSafely(const TracksAtEnd& tracks = {});
  // The main window is closed: nothing is left to do.
  bool Ended() const;

  Workstation& workstation() { return workstation_; }
  Instruments& instruments() { return instruments_; }
  // Null with the instruments of this machine.
  const sim::Bench* bench() const { return bench_.get(); }

 private:
  void RegisterForms();
  void CloseMainWindow();

  Host& host_;
  MainOptions options_;
  Workstation workstation_;
  std::unique_ptr<sim::Bench> bench_;
  Instruments instruments_;
};

inline constexpr char kMainForm[] = "frmControlPanel";

}  // namespace zento
