#include "qt/qt_dialogs.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QMessageBox>
#include <QWindow>
#include <algorithm>
#include <utility>

#include "qt/form_window.h"
#include "qt/qt_text.h"

namespace zento {
namespace {

constexpr char kProgramName[] = "Zento";
constexpr char kMessageName[] = "Message";

// The window a person works in, or the one they came from when that is a dialog.
QWindow* WorkingWindow() {
  for (QWidget* widget = QApplication::activeWindow(); widget != nullptr;) {
    if (dynamic_cast<FormWindow*>(widget) != nullptr) return widget->windowHandle();
    const QWindow* window = widget->windowHandle();
    return window == nullptr ? nullptr : window->transientParent();
  }
  return nullptr;
}

// "*.znt" without its star and dot.
QString Suffix(const std::string& pattern) {
  const QString suffix = ToQt(pattern).section(QLatin1Char('.'), -1);
  return suffix.contains(QLatin1Char('*')) ? QString() : suffix;
}

}  // namespace

QtDialogs::~QtDialogs() {
  on_all_closed = {};
  for (const QPointer<QObject>& dialog : std::exchange(open_, {})) delete dialog.data();
}

bool QtDialogs::Open() const {
  return std::any_of(open_.begin(), open_.end(),
                     [](const auto& dialog) { return !dialog.isNull(); });
}

std::vector<std::string> QtDialogs::Unread() const {
  std::vector<std::string> texts;
  for (const QPointer<QObject>& dialog : open_) {
    const auto* box = qobject_cast<QMessageBox*>(dialog.data());
    if (box != nullptr && box->objectName() == QLatin1String(kMessageName)) {
      texts.push_back(FromQt(box->text()));
    }
  }
  return texts;
}

void QtDialogs::Show(QDialog& dialog, Qt::WindowModality modality) {
  dialog.setAttribute(Qt::WA_DeleteOnClose);
  dialog.setWindowModality(modality);
  QObject::connect(&dialog, &QObject::destroyed, &dialog, [this](QObject* gone) {
    std::erase_if(open_, [gone](const auto& other) { return other.isNull() || other == gone; });
    if (open_.empty() && on_all_closed) on_all_closed();
  });
  open_.emplace_back(&dialog);
  QWindow* above = WorkingWindow();
  // A window of its own from the start, so that the one it stands before can be named without
  // owning it.
  dialog.winId();
  if (above != nullptr && dialog.windowHandle() != nullptr) {
    dialog.windowHandle()->setTransientParent(above);
  }
  dialog.show();
}

void QtDialogs::Message(const std::string& text, std::function<void()> closed) {
  auto* box = new QMessageBox(QMessageBox::Information, QLatin1String(kProgramName), ToQt(text),
                              QMessageBox::Ok);
  box->setObjectName(QLatin1String(kMessageName));
  box->setTextFormat(Qt::PlainText);
  box->setTextInteractionFlags(Qt::TextSelectableByMouse);
  QObject::connect(box, &QDialog::finished, box, [closed = std::move(closed)] {
    if (closed) closed();
  });
  Show(*box, Qt::NonModal);
}

void QtDialogs::Ask(const std::string& text, Buttons buttons, std::function<void(bool)> answered) {
  const auto offered = buttons == Buttons::kYesNo ? QMessageBox::Yes | QMessageBox::No
                                                  : QMessageBox::Ok | QMessageBox::Cancel;
  auto* box =
      new QMessageBox(QMessageBox::Question, QLatin1String(kProgramName), ToQt(text), offered);
  box->setObjectName(QLatin1String("Question"));
  box->setTextFormat(Qt::PlainText);
  // With Escape, and closing counts as it.
  box->setEscapeButton(buttons == Buttons::kYesNo ? QMessageBox::No : QMessageBox::Cancel);
  QObject::connect(box, &QDialog::finished, box, [answered = std::move(answered)](int result) {
    if (answered) answered(result == QMessageBox::Yes || result == QMessageBox::Ok);
  });
  Show(*box, Qt::WindowModal);
}

void QtDialogs::AskText(const TextQuestion& question,
                        std::function<void(std::optional<std::string>)> answered) {
  auto* box = new QInputDialog;
  box->setObjectName(QLatin1String("TextQuestion"));
  box->setWindowTitle(question.title.empty() ? QLatin1String(kProgramName) : ToQt(question.title));
  box->setLabelText(ToQt(question.prompt));
  box->setTextValue(ToQt(question.initial));
  QObject::connect(box, &QDialog::finished, box, [box, answered = std::move(answered)](int result) {
    if (!answered) return;
    if (result == QDialog::Accepted) return answered(FromQt(box->textValue()));
    answered(std::nullopt);
  });
  Show(*box, Qt::WindowModal);
}

void QtDialogs::AskFile(const FileQuestion& question,
                        std::function<void(std::optional<std::filesystem::path>)> answered) {
  auto* box = new QFileDialog;
  box->setObjectName(QLatin1String("FileQuestion"));
  box->setWindowTitle(question.title.empty() ? QLatin1String(kProgramName) : ToQt(question.title));
  box->setAcceptMode(question.save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
  box->setFileMode(question.save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
  QStringList filters;
  if (!question.pattern.empty()) {
    filters << QStringLiteral("%1 (%2)").arg(ToQt(question.description), ToQt(question.pattern));
  }
  filters << QLatin1String("All files (*)");
  box->setNameFilters(filters);
  if (question.save) box->setDefaultSuffix(Suffix(question.pattern));
  QString folder = PathToQt(question.folder);
  if (folder.isEmpty()) folder = last_folder_;
  box->setDirectory(folder.isEmpty() ? QDir::homePath() : folder);
  if (!question.suggested.empty()) box->selectFile(ToQt(question.suggested));
  QObject::connect(box, &QDialog::finished, box,
                   [this, box, answered = std::move(answered)](int result) {
                     const QStringList chosen = box->selectedFiles();
                     if (result != QDialog::Accepted || chosen.isEmpty()) {
                       if (answered) answered(std::nullopt);
                       return;
                     }
                     last_folder_ = QFileInfo(chosen.first()).absolutePath();
                     if (answered) answered(PathFromQt(chosen.first()));
                   });
  Show(*box, Qt::WindowModal);
}

}  // namespace zento
