#include "qt/page_area.h"

#include <QEvent>
#include <QScreen>

namespace zento {
namespace {

// What a window's frame, menu bar and banner may take of the screen.
constexpr QSize kAround(40, 120);

}  // namespace

PageArea::PageArea(QWidget* parent) : QScrollArea(parent) {
  setFrameShape(QFrame::NoFrame);
  setWidgetResizable(true);
  setWidget(new QWidget);
  widget()->installEventFilter(this);
}

QSize PageArea::sizeHint() const {
  return widget()->sizeHint().expandedTo(minimumSizeHint());
}

QSize PageArea::minimumSizeHint() const {
  const QSize page = widget()->minimumSizeHint();
  const QScreen* shown_on = screen();
  if (shown_on == nullptr) return page;
  return page.boundedTo(shown_on->availableSize() - kAround);
}

bool PageArea::eventFilter(QObject* watched, QEvent* event) {
  // The page wants another size: so does the area, and the window around it.
  if (watched == widget() && event->type() == QEvent::LayoutRequest) updateGeometry();
  return QScrollArea::eventFilter(watched, event);
}

}  // namespace zento
