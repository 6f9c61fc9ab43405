#include "qt/banner_strip.h"

#include <QFontMetrics>

namespace zento {
namespace {

constexpr int kMargin = 12;
constexpr int kPadding = 4;
// Set explicitly: it stands out on light and dark desktops alike.
constexpr char kLook[] = "background: #ffe08a; color: #3d2b00;";

}  // namespace

BannerStrip::BannerStrip(QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::PlainText);
  setAlignment(Qt::AlignCenter);
  setStyleSheet(QLatin1String(kLook));
  QFont bold = font();
  bold.setBold(true);
  setFont(bold);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void BannerStrip::SetBanner(const QString& banner) {
  banner_ = banner;
  setVisible(!banner.isEmpty());
  Fit();
  updateGeometry();
}

QString BannerStrip::Short() const {
  return banner_.section(QLatin1String(" - "), 0, 0);
}

int BannerStrip::WidthOf(const QString& text) const {
  return fontMetrics().horizontalAdvance(text) + 2 * kMargin;
}

QSize BannerStrip::sizeHint() const {
  return minimumSizeHint();
}

QSize BannerStrip::minimumSizeHint() const {
  return {WidthOf(Short()), fontMetrics().height() + 2 * kPadding};
}

void BannerStrip::resizeEvent(QResizeEvent*) {
  Fit();
}

void BannerStrip::Fit() {
  const bool whole = WidthOf(banner_) <= width();
  setText(whole ? banner_ : Short());
  setToolTip(whole ? QString() : banner_);
}

}  // namespace zento
