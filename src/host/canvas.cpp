#include "host/canvas.h"

#include "host/form.h"

namespace zento {

void Canvas::Resize(Size size) {
  if (size == size_) return;
  size_ = size;
  SizeChanged();
  Invalidate();
}

void Canvas::Invalidate() {
  if (FormView* view = form().view()) view->CanvasInvalid(*this);
}

void Canvas::InvalidateOverlay() {
  if (FormView* view = form().view()) view->CanvasOverlayInvalid(*this);
}

void Canvas::Extend(Rect dirty, const std::function<void(Surface&)>& paint) {
  if (FormView* view = form().view()) view->CanvasExtended(*this, dirty, paint);
}

}  // namespace zento
