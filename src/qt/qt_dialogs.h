#pragma once

#include <QPointer>
#include <QString>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "host/dialogs.h"

class QDialog;
class QMessageBox;

namespace zento {

// Message boxes and questions as windows of their own. None of them waits and none runs an event
// loop inside another: timers go on, and a run reaches its end whether or not anybody answers.
//
// Messages block no window, so that a person can still press Stop. A question blocks the window it
// was asked from (the one being worked in), so that the same question is not asked twice. They
// belong to no window: a message stays when the window it came from has gone.
class QtDialogs : public Dialogs {
 public:
  ~QtDialogs() override;

  void Message(const std::string& text, std::function<void()> closed = {}) override;
  void Ask(const std::string& text, Buttons buttons, std::function<void(bool)> answered) override;
  void AskText(const TextQuestion& question,
               std::function<void(std::optional<std::string>)> answered) override;
  void AskFile(const FileQuestion& question,
               std::function<void(std::optional<std::filesystem::path>)> answered) override;

  // Whether something waits for a person's answer.
  bool Open() const;
  // The messages that nobody has closed yet, oldest first.
  std::vector<std::string> Unread() const;
  // Called when the last one has been answered.
  std::function<void()> on_all_closed;

 private:
  // Shows `dialog`, which deletes itself when it is closed.
  void Show(QDialog& dialog, Qt::WindowModality modality);

  // As plain objects: they are looked at while they are being destroyed.
  std::vector<QPointer<QObject>> open_;
  QString last_folder_;
};

}  // namespace zento
