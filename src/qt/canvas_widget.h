#pragma once

#include <QImage>
#include <QWidget>
#include <functional>
#include <memory>

#include "host/canvas.h"
#include "qt/control_binding.h"

class QLabel;

namespace zento {

// Shows a canvas. Keeps the picture in the screen's own pixels, paints it anew at most once per
// turn of the event loop, draws increments into it at once and updates only what they touched.
class CanvasWidget : public QWidget {
  Q_OBJECT

 public:
  explicit CanvasWidget(Canvas& canvas, QWidget* parent = nullptr);

  // The canvas is about to go.
  void Detach();
  // Null once it has gone.
  Canvas* canvas() const { return canvas_; }

  void InvalidatePicture();
  void InvalidateOverlay();
  void Extend(Rect dirty, const std::function<void(Surface&)>& paint);

  // The picture without overlay, painted first if that is due.
  const QImage& Picture();

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  void Repaint();
  void ShowReadout(QPointF pointer);

  Canvas* canvas_;
  QImage picture_;
  bool due_ = true;        // the picture must be painted anew
  bool painting_ = false;  // a canvas that declares itself invalid while it paints changes nothing
  QLabel* readout_;
};

// Its widget is a CanvasWidget.
std::unique_ptr<ControlBinding> Bind(Canvas& canvas, BindingContext& context);

}  // namespace zento
