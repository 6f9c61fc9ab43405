#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/track_file.h"
#include "core/workstation.h"
#include "exchange/track_search.h"
#include "host/services.h"
#include "program/headless_program.h"
#include "text/status.h"
#include "ui/main/control_panel.h"

namespace zento {

// The main window and its tools on a machine without instruments, for commands that change tracks.
// Files are only read; what a command made is saved by Save alone.
class TrackSession {
 public:
  // With the settings of `home`; empty = the built-in ones. `files` must outlive this.
  TrackSession(Files& files, const std::filesystem::path& home);

  // Fails when the main window does not open or the home has no settings.
  Status Start();
  // What the file holds that could not be taken goes to `notes`.
  Status OpenFile(const std::filesystem::path& path, std::vector<std::string>& notes);
  // Fails when the window does not open.
  Result<Form*> Show(std::string_view form);
  // What a person does with a control; then everything that is due happens. Fails when it is not
  // there or cannot be used.
  Status Click(Form& form, std::string_view control);
  Status Set(Form& form, std::string_view control, const std::string& value);
  // The message boxes shown since the last call.
  std::vector<std::string> TakeMessages();

  // Saves all tracks to the machine itself.
  Status Save(const std::filesystem::path& path);

  frmControlPanel& panel() { return *panel_; }
  Workstation& workstation() { return program_.workstation(); }

 private:
  Result<Control*> Usable(Form& form, std::string_view control);

  Files& files_;
  std::filesystem::path home_;
  HeadlessProgram program_;
  frmControlPanel* panel_ = nullptr;
};

// What a command does about the outcome of opening a track file: fails unless all tracks are there;
// what could not be taken besides goes to `notes`.
Status CheckLoad(const TrackFileLoad& load, const std::filesystem::path& path,
                 std::vector<std::string>& notes);

// The tracks of a file, which must be a complete track file; what it holds that could not be taken
// goes to `notes`.
Result<std::unique_ptr<TrackStore>> ReadTrackFile(Files& files, const std::filesystem::path& path,
                                                  std::vector<std::string>& notes);

// What a window said while a job was done in it.
struct JobReport {
  std::vector<std::string> messages;  // boxes that were shown: the window refused
  std::vector<std::string> notes;     // what a person should know besides
};

// Where the changed tracks go: never to the file they came from, and to one that exists only with
// `overwrite`.
struct SaveRequest {
  std::filesystem::path path;
  bool overwrite = false;
};

// Starts the session and opens the file. Fails, before anything is done, when the result could not
// be saved.
Status BeginTrackJob(TrackSession& session, const std::filesystem::path& file,
                     const SaveRequest& save, Files& files, std::vector<std::string>& notes);

struct ImportRequest {
  std::filesystem::path file;
  std::filesystem::path home;  // whose settings count; empty = the built-in ones
  std::filesystem::path from;
  int source = 0;  // track of `from`
  int track = 0;   // track of `file` that it becomes
  SaveRequest save;
};

// Imports a track as frmImportTrack does. Nothing is saved when the window shows a message. Fails
// when a file cannot be read or written.
Result<JobReport> ImportIntoFile(const ImportRequest& request, Files& files);

struct PasteRequest {
  std::filesystem::path file;
  std::string text;  // as the clipboard has it
  int track = 0;
  SaveRequest save;
};

// Pastes as the main window's menu does. Fails, saving nothing, when the text holds no track.
Result<JobReport> PasteIntoFile(const PasteRequest& request, Files& files);

struct SearchAnswer {
  std::vector<SearchHit> hits;
  std::string summary;
};

// Fails when the folder cannot be read.
Result<SearchAnswer> SearchFolder(const SearchCriteria& criteria,
                                  const std::filesystem::path& folder, bool subfolders,
                                  Files& files);

}  // namespace zento
