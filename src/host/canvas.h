#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>

#include "host/control.h"
#include "host/surface.h"

namespace zento {

enum class PointerButton { kNone, kLeft, kMiddle, kRight };

struct PointerEvent {
  Point at;
  PointerButton button = PointerButton::kNone;
  bool shift = false;
  bool control = false;
};

// A picture in a form. Whoever shows it keeps what was painted and asks again only when the picture
// was declared invalid or its size changed, so that one more point costs one small piece.
//
// Every shown canvas offers its picture for copying and for saving as PNG, SVG and PDF.
class Canvas : public Control {
 public:
  Canvas(Form& form, std::string name, Size size = {480, 320})
      : Control(form, std::move(name)), size_(size) {}
  ControlKind Kind() const override { return ControlKind::kCanvas; }
  std::string Value() const override { return {}; }

  // Draws the whole picture for the surface's extent, which need not be the size on the screen.
  virtual void Paint(Surface& surface) = 0;
  // Drawn over the picture at every screen update and not part of it: rubber band, cross hair.
  virtual void PaintOverlay(Surface&) {}

  // The size on the screen, in device-independent pixels; kept when nothing shows the form.
  Size size() const { return size_; }
  // The screen size changed. Ends with the picture invalid.
  void Resize(Size size);

  virtual void PointerPressed(const PointerEvent&) {}
  virtual void PointerMoved(const PointerEvent&) {}
  virtual void PointerReleased(const PointerEvent&) {}
  virtual void PointerLeft() {}
  virtual void DoubleClicked(const PointerEvent&) {}
  // Positive steps turn away from the person.
  virtual void WheelTurned(const PointerEvent&, double /*steps*/) {}

  // A line of text about the pointer's place, shown beside the picture; empty = none.
  virtual std::string Readout() const { return {}; }

 protected:
  virtual void SizeChanged() {}
  // The picture must be painted anew.
  void Invalidate();
  void InvalidateOverlay();
  // `paint` adds to the picture, inside `dirty` only. It is called at once, before this returns, or
  // not at all when nothing shows the canvas or a full repaint is due anyway.
  void Extend(Rect dirty, const std::function<void(Surface&)>& paint);

 private:
  Size size_;
};

}  // namespace zento
