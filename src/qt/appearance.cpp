#include "qt/appearance.h"

#include <QApplication>
#include <QFont>
#include <QFontInfo>
#include <QIcon>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <QStringList>
#include <QStyleFactory>

namespace zento {
namespace {

// Points. Smaller system fonts are brought up to it.
constexpr double kLeastFontSize = 10;

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
  QPainterPath wave(QPointF(9, 36));
  wave.cubicTo(22, 35, 28, 33, 32, 20);
  wave.cubicTo(35, 8, 40, 18, 55, 23);
  wave.cubicTo(46, 26, 42, 30, 37, 42);
  wave.cubicTo(32, 60, 26, 46, 9, 40);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(QColor(255, 200, 60), 4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.drawPath(wave);
  return picture;
}

}  // namespace

QIcon ProgramIcon() {
  QIcon icon;
  for (const int size : {16, 24, 32, 48, 64, 128, 256}) icon.addPixmap(DrawIcon(size));
  return icon;
}

void ApplyAppearance(QApplication& application) {
  QApplication::setStyle(QStyleFactory::create(QLatin1String("Fusion")));
  QFont font = QApplication::font();
  if (font.pointSizeF() < kLeastFontSize) font.setPointSizeF(kLeastFontSize);
  font.setFamilies({QFontInfo(font).family(), QLatin1String("VL Gothic")});
  QApplication::setFont(font);
  application.setWindowIcon(ProgramIcon());
  QApplication::setApplicationDisplayName(QString());
}

}  // namespace zento
