#include "qt/appearance.h"

#include <QApplication>
#include <QFont>
#include <QFontInfo>
#include <QIcon>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <QProxyStyle>
#include <QStringList>

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

}  // namespace

QIcon ProgramIcon() {
  QIcon icon;
  for (const int size : {16, 24, 32, 48, 64, 128, 256}) icon.addPixmap(DrawIcon(size));
  return icon;
}

void ApplyAppearance(QApplication& application) {
  QApplication::setStyle(new PlainStyle);
  QFont font = QApplication::font();
  if (font.pointSizeF() < kLeastFontSize) font.setPointSizeF(kLeastFontSize);
  font.setFamilies({QFontInfo(font).family(), QLatin1String("VL Gothic")});
  QApplication::setFont(font);
  application.setWindowIcon(ProgramIcon());
  QApplication::setApplicationDisplayName(QString());
}

}  // namespace zento
