#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "core/workstation.h"
#include "program/headless_program.h"
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

}  // namespace zento
