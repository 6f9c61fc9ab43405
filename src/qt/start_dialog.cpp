#include "qt/start_dialog.h"

#include <QCommandLinkButton>
#include <QDialog>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

#include "qt/appearance.h"

namespace zento {
namespace {

constexpr int kSimulated = 1;
constexpr int kHardware = 2;
constexpr int kPollMs = 200;
// A frame, so that a choice looks like one before the pointer is on it.
constexpr char kChoiceLook[] =
    "QCommandLinkButton { border: 1px solid palette(mid); border-radius: 5px;"
    " background: palette(button); }"
    "QCommandLinkButton:hover, QCommandLinkButton:focus { border-color: palette(highlight);"
    " background: palette(light); }";

QCommandLinkButton* Choice(const char* name, const char* text, const char* description, int result,
                           QDialog& dialog) {
  auto* button = new QCommandLinkButton(QLatin1String(text), QLatin1String(description));
  button->setObjectName(QLatin1String(name));
  button->setAccessibleName(QLatin1String(name));
  button->setIcon(QIcon());
  button->setStyleSheet(QLatin1String(kChoiceLook));
  button->setAutoDefault(false);
  QObject::connect(button, &QAbstractButton::clicked, &dialog,
                   [&dialog, result] { dialog.done(result); });
  return button;
}

}  // namespace

std::optional<bool> AskForBench(const std::function<bool()>& interrupted) {
  QDialog dialog;
  dialog.setObjectName(QLatin1String("StartDialog"));
  dialog.setWindowTitle(QLatin1String("Zento"));
  auto* rows = new QVBoxLayout(&dialog);
  rows->setContentsMargins(20, 20, 20, 16);
  rows->setSpacing(12);

  auto* heading = new QHBoxLayout;
  auto* icon = new QLabel;
  icon->setPixmap(ProgramIcon().pixmap(QSize(48, 48), dialog.devicePixelRatio()));
  auto* question = new QLabel(QLatin1String("What do you want to work with?"));
  QFont large = question->font();
  large.setPointSizeF(large.pointSizeF() * 1.3);
  question->setFont(large);
  heading->addWidget(icon);
  heading->addSpacing(8);
  heading->addWidget(question, 1);
  rows->addLayout(heading);

  rows->addWidget(Choice("cmdHardware", "Laboratory hardware",
                         "The instruments connected to this computer", kHardware, dialog));
  rows->addWidget(Choice("cmdSimulated", "Simulated bench",
                         "A computed cell, generator and motor. Nothing is switched or measured",
                         kSimulated, dialog));
  auto* leave = new QDialogButtonBox(QDialogButtonBox::Cancel);
  leave->button(QDialogButtonBox::Cancel)->setText(QLatin1String("Quit"));
  QObject::connect(leave, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
  rows->addWidget(leave);

  QTimer watch;
  QObject::connect(&watch, &QTimer::timeout, &dialog, [&] {
    if (interrupted && interrupted()) dialog.reject();
  });
  watch.start(kPollMs);
  switch (dialog.exec()) {
    case kSimulated:
      return true;
    case kHardware:
      return false;
    default:
      return std::nullopt;
  }
}

}  // namespace zento
