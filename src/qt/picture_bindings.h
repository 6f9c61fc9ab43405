#pragma once

#include <QProgressBar>

#include "host/canvas.h"
#include "host/controls.h"
#include "qt/canvas_widget.h"
#include "qt/control_binding.h"

namespace zento {

class CanvasBinding final : public ControlBinding {
 public:
  CanvasBinding(Canvas& canvas, BindingContext& context)
      : ControlBinding(canvas, context), shown_(new CanvasWidget(canvas)) {
    Name(*shown_);
  }
  QWidget& widget() override { return *shown_; }
  CanvasWidget& canvas_widget() { return *shown_; }
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

class ProgressBinding final : public ControlBinding {
 public:
  ProgressBinding(ProgressBar& bar, BindingContext& context)
      : ControlBinding(bar, context), bar_(bar), shown_(new QProgressBar) {
    Name(*shown_);
  }
  QWidget& widget() override { return *shown_; }
  std::vector<QWidget*> TabStops() override { return {}; }

 protected:
  void Show() override {
    // A toolkit bar of range 0 means "busy"; an empty range means nothing done here.
    shown_->setRange(0, bar_.maximum() > 0 ? bar_.maximum() : 1);
    shown_->setValue(bar_.position());
  }

 private:
  ProgressBar& bar_;
  QProgressBar* shown_;
};

}  // namespace zento
