#include "qt/start_up.h"

#include <QApplication>
#include <QCommandLinkButton>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFont>
#include <QFontInfo>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <QProxyStyle>
#include <QPushButton>
#include <QStringList>
#include <QTimer>
#include <QVBoxLayout>

namespace zento {
namespace {

// Points. Smaller system fonts are brought up to it.
constexpr double kLeastFontSize = 10;

// Buttons say what they do in words; an icon on some of them adds nothing.
class PlainStyle : public QProxyStyle {
 public:
  PlainStyle() : QProxyStyle(QLatin1String("Fusion")) {}
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* data) const override {
    if (hint == SH_DialogButtonBox_ButtonsHaveIcons) return 0;
    return QProxyStyle::styleHint(hint, option, widget, data);
  }
};

QPixmap DrawIcon(int size) {
  QPixmap picture(size, size);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.scale(size / 64.0, size / 64.0);
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(18, 60, 92));
  painter.drawRoundedRect(QRectF(1, 1, 62, 62), 12, 12);
  painter.setPen(QPen(QColor(120, 160, 185), 1.5));
  painter.drawLine(QPointF(9, 33), QPointF(55, 33));
  // The forward wave with its peak, and the way back with the other.
  QPainterPath wave(QPointF(10, 38));
  wave.cubicTo(22, 37, 26, 32, 30, 20);
  wave.cubicTo(33, 9, 38, 16, 54, 24);
  wave.cubicTo(45, 26, 40, 32, 36, 43);
  wave.cubicTo(32, 55, 26, 44, 10, 38);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(QColor(255, 200, 60), 3.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.drawPath(wave);
  return picture;
}

// A voltammogram on a tile, drawn at the sizes that desktops ask for.
QIcon ProgramIcon() {
  QIcon icon;
  for (const int size : {16, 24, 32, 48, 64, 128, 256}) icon.addPixmap(DrawIcon(size));
  return icon;
}

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

void ApplyAppearance(QApplication& application) {
  QApplication::setStyle(new PlainStyle);
  QFont font = QApplication::font();
  if (font.pointSizeF() < kLeastFontSize) font.setPointSizeF(kLeastFontSize);
  font.setFamilies({QFontInfo(font).family(), QLatin1String("VL Gothic")});
  QApplication::setFont(font);
  application.setWindowIcon(ProgramIcon());
  QApplication::setApplicationDisplayName(QString());
}

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
