#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

namespace zento {

struct TextQuestion {
  std::string prompt;
  std::string title;
  std::string initial;
};

struct FileQuestion {
  bool save = false;  // a save dialog asks before it overwrites
  std::string title;
  std::string description;       // "Track files"
  std::string pattern;           // "*.znt"
  std::filesystem::path folder;  // where to begin; empty = where the last dialog was
  std::string suggested;         // file name to begin with
};

enum class Buttons { kYesNo, kOkCancel };

// Message boxes and questions. None of these waits: each returns at once, timers go on, and the
// continuation is called when the person has answered. A continuation must not assume that windows
// which were open when the question was asked still are.
class Dialogs {
 public:
  virtual ~Dialogs() = default;

  // A text with an OK button and the program's name as title.
  virtual void Message(const std::string& text, std::function<void()> closed = {}) = 0;
  // True for Yes or OK; closing the box counts as No or Cancel.
  virtual void Ask(const std::string& text, Buttons buttons,
                   std::function<void(bool)> answered) = 0;
  // Nothing when cancelled.
  virtual void AskText(const TextQuestion& question,
                       std::function<void(std::optional<std::string>)> answered) = 0;
  virtual void AskFile(const FileQuestion& question,
                       std::function<void(std::optional<std::filesystem::path>)> answered) = 0;
};

}  // namespace zento
