#include "qt/text_label.h"

#include <QEvent>
#include <QFontMetrics>
#include <QPainter>
#include <QStringList>
#include <QStyle>
#include <QStyleOption>
#include <algorithm>

namespace zento {
namespace {

// In average characters. A text longer than this does not widen the window.
constexpr int kWidest = 44;

}  // namespace

TextLabel::TextLabel(QWidget* parent) : QFrame(parent) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  Grow();
}

void TextLabel::setText(const QString& text) {
  if (text == text_) return;
  text_ = text;
  Grow();
  ShowTip();
  update();
}

void TextLabel::SetTip(const QString& tip) {
  tip_ = tip;
  ShowTip();
}

void TextLabel::Grow() {
  const QFontMetrics metrics(font());
  const QSize text = metrics.size(0, text_);
  const QSize now(std::min(text.width() + 2, metrics.averageCharWidth() * kWidest),
                  std::max(text.height(), metrics.height()));
  const QSize wanted = wanted_.expandedTo(now);
  if (wanted == wanted_) return;
  wanted_ = wanted;
  updateGeometry();
}

void TextLabel::ShowTip() {
  const bool cut = QFontMetrics(font()).size(0, text_).width() > width();
  setToolTip(!cut ? tip_ : tip_.isEmpty() ? text_ : tip_ + QLatin1Char('\n') + text_);
}

QSize TextLabel::sizeHint() const {
  return wanted_;
}

void TextLabel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QFontMetrics metrics(font());
  QStringList lines = text_.split(QLatin1Char('\n'));
  for (QString& line : lines) line = metrics.elidedText(line, Qt::ElideRight, width());
  style()->drawItemText(&painter, rect(), Qt::AlignLeft | Qt::AlignVCenter, palette(), isEnabled(),
                        lines.join(QLatin1Char('\n')), foregroundRole());
}

void TextLabel::resizeEvent(QResizeEvent*) {
  ShowTip();
}

void TextLabel::changeEvent(QEvent* event) {
  QFrame::changeEvent(event);
  if (event->type() == QEvent::FontChange) Grow();
}

}  // namespace zento
