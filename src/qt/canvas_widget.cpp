#include "qt/canvas_widget.h"

#include <QContextMenuEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>
#include <vector>

#include "qt/canvas_menu.h"
#include "qt/qt_surface.h"
#include "qt/qt_text.h"
#include "qt/raster_surface.h"

namespace zento {
namespace {

PointerButton ToButton(Qt::MouseButton button) {
  switch (button) {
    case Qt::LeftButton:
      return PointerButton::kLeft;
    case Qt::MiddleButton:
      return PointerButton::kMiddle;
    case Qt::RightButton:
      return PointerButton::kRight;
    default:
      return PointerButton::kNone;
  }
}

PointerEvent ToEvent(const QSinglePointEvent& event, Qt::MouseButton button) {
  return {{event.position().x(), event.position().y()},
          ToButton(button),
          event.modifiers().testFlag(Qt::ShiftModifier),
          event.modifiers().testFlag(Qt::ControlModifier)};
}

// While a button is held, moves report it.
Qt::MouseButton Held(const QMouseEvent& event) {
  if (event.buttons().testFlag(Qt::LeftButton)) return Qt::LeftButton;
  if (event.buttons().testFlag(Qt::MiddleButton)) return Qt::MiddleButton;
  return Qt::NoButton;
}

class CanvasBinding final : public ControlBinding {
 public:
  CanvasBinding(Canvas& canvas, BindingContext& context)
      : ControlBinding(canvas, context), shown_(new CanvasWidget(canvas)) {
    Name(*shown_);
  }
  QWidget& widget() override { return *shown_; }
  std::vector<QWidget*> TabStops() override { return {}; }
  bool Tall() const override { return true; }
  void Detach() override {
    ControlBinding::Detach();
    shown_->Detach();
  }

 protected:
  void Show() override {}

 private:
  CanvasWidget* shown_;
};

}  // namespace

std::unique_ptr<ControlBinding> Bind(Canvas& canvas, BindingContext& context) {
  return std::make_unique<CanvasBinding>(canvas, context);
}

CanvasWidget::CanvasWidget(Canvas& canvas, QWidget* parent)
    : QWidget(parent), canvas_(&canvas), readout_(new QLabel(this)) {
  setMouseTracking(true);
  // Every pixel comes from the picture: no background is painted first.
  setAttribute(Qt::WA_OpaquePaintEvent);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  readout_->setObjectName(ToQt(canvas.Address()) + QLatin1String(".readout"));
  readout_->setAttribute(Qt::WA_TransparentForMouseEvents);
  readout_->setAutoFillBackground(true);
  readout_->setMargin(3);
  readout_->hide();
}

void CanvasWidget::Detach() {
  canvas_ = nullptr;
  readout_->hide();
}

QSize CanvasWidget::sizeHint() const {
  if (canvas_ == nullptr) return {};
  return {static_cast<int>(canvas_->size().width), static_cast<int>(canvas_->size().height)};
}

QSize CanvasWidget::minimumSizeHint() const {
  return {160, 110};
}

void CanvasWidget::InvalidatePicture() {
  if (painting_) return;
  due_ = true;
  update();
}

void CanvasWidget::InvalidateOverlay() {
  update();
}

void CanvasWidget::Extend(Rect dirty, const std::function<void(Surface&)>& paint) {
  if (due_ || painting_) return;
  {
    RasterSurface surface(picture_);
    paint(surface);
  }
  // One pixel more on each side: end pixels of lines lie on the rectangle's rim.
  const int left = static_cast<int>(std::floor(dirty.x)) - 1;
  const int top = static_cast<int>(std::floor(dirty.y)) - 1;
  const int right = static_cast<int>(std::ceil(dirty.x + dirty.width)) + 2;
  const int bottom = static_cast<int>(std::ceil(dirty.y + dirty.height)) + 2;
  update(left, top, right - left, bottom - top);
}

const QImage& CanvasWidget::Picture() {
  if (canvas_ != nullptr && (due_ || picture_.devicePixelRatio() != devicePixelRatio())) Repaint();
  return picture_;
}

void CanvasWidget::Repaint() {
  const qreal ratio = devicePixelRatio();
  const QSize pixels(static_cast<int>(std::ceil(width() * ratio)),
                     static_cast<int>(std::ceil(height() * ratio)));
  if (pixels.isEmpty()) return;
  if (picture_.size() != pixels) {
    picture_ = QImage(pixels, QImage::Format_RGB32);
    picture_.fill(Qt::white);
  }
  picture_.setDevicePixelRatio(ratio);
  due_ = false;
  painting_ = true;
  RasterSurface surface(picture_);
  canvas_->Paint(surface);
  painting_ = false;
}

void CanvasWidget::paintEvent(QPaintEvent*) {
  const QImage& picture = Picture();
  // The painter is clipped to what needs an update; pixel goes to pixel at any scaling.
  QPainter painter(this);
  painter.drawImage(QPoint(0, 0), picture);
  if (canvas_ == nullptr) return;
  QtSurface overlay(painter, canvas_->size());
  canvas_->PaintOverlay(overlay);
}

void CanvasWidget::resizeEvent(QResizeEvent*) {
  due_ = true;
  if (canvas_ == nullptr) return;
  canvas_->Resize({static_cast<double>(width()), static_cast<double>(height())});
}

void CanvasWidget::mousePressEvent(QMouseEvent* event) {
  if (canvas_ == nullptr || event->button() == Qt::RightButton) return;
  canvas_->PointerPressed(ToEvent(*event, event->button()));
}

void CanvasWidget::mouseMoveEvent(QMouseEvent* event) {
  if (canvas_ == nullptr) return;
  canvas_->PointerMoved(ToEvent(*event, Held(*event)));
  ShowReadout(event->position());
}

void CanvasWidget::mouseReleaseEvent(QMouseEvent* event) {
  if (canvas_ == nullptr || event->button() == Qt::RightButton) return;
  canvas_->PointerReleased(ToEvent(*event, event->button()));
}

void CanvasWidget::mouseDoubleClickEvent(QMouseEvent* event) {
  if (canvas_ == nullptr || event->button() == Qt::RightButton) return;
  canvas_->DoubleClicked(ToEvent(*event, event->button()));
}

void CanvasWidget::wheelEvent(QWheelEvent* event) {
  const double steps = event->angleDelta().y() / 120.0;
  if (canvas_ == nullptr || steps == 0) return event->ignore();
  canvas_->WheelTurned(ToEvent(*event, Qt::NoButton), steps);
  ShowReadout(event->position());
  event->accept();
}

void CanvasWidget::leaveEvent(QEvent*) {
  readout_->hide();
  if (canvas_ != nullptr) canvas_->PointerLeft();
}

void CanvasWidget::contextMenuEvent(QContextMenuEvent* event) {
  if (canvas_ != nullptr) ShowCanvasMenu(*this, event->globalPos());
}

void CanvasWidget::ShowReadout(QPointF pointer) {
  if (canvas_ == nullptr) return;
  const QString text = ToQt(canvas_->Readout());
  readout_->setVisible(!text.isEmpty());
  if (text.isEmpty()) return;
  readout_->setText(text);
  readout_->adjustSize();
  // In the corner that the pointer is not in.
  const int right = width() - readout_->width() - 2;
  const bool crowded = pointer.x() > right - 20 && pointer.y() < readout_->height() + 20;
  readout_->move(crowded ? 2 : std::max(2, right), 2);
}

}  // namespace zento
