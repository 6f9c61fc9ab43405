#pragma once

#include <QMainWindow>
#include <map>
#include <memory>

#include "host/form.h"
#include "qt/control_binding.h"

namespace zento {

class BannerStrip;
class CanvasWidget;
class FormMenu;
class PageArea;

// Shows any form as a window: widgets for its controls in its layout, menus, a strip for the
// desktop's banner. Nothing here knows a particular form.
//
// The window outlives its form by a moment: Detach is called when the form is unloaded, which may
// happen inside a signal of one of the window's own widgets; the window then hides and deletes
// itself later.
class FormWindow : public QMainWindow, public FormView, private BindingContext {
 public:
  explicit FormWindow(Form& form);
  ~FormWindow() override;

  // Shows the window, or brings it to the front.
  void Reveal();
  void Detach();
  // Null once the form has gone.
  Form* form() const { return form_; }
  // The widget that shows the control; null when the layout has none for it.
  QWidget* WidgetOf(const Control& control) const;

  void ControlChanged(Control& control) override;
  void CanvasInvalid(Canvas& canvas) override;
  void CanvasOverlayInvalid(Canvas& canvas) override;
  void CanvasExtended(Canvas& canvas, Rect dirty,
                      const std::function<void(Surface&)>& paint) override;
  void CaptionChanged(Form& form) override;
  void FocusRequested(Control& control) override;
  void GeometryRequested(Form& form) override;

 protected:
  void closeEvent(QCloseEvent* event) override;
  void changeEvent(QEvent* event) override;
  void moveEvent(QMoveEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void BeforeAction(const ControlBinding& acting) override;
  void Build();
  void LinkTabStops(const LayoutNode& layout);
  ControlBinding* Find(const Control& control) const;
  CanvasWidget* CanvasOf(const Canvas& canvas) const;
  bool PressButton(bool cancel);
  void ShowBanner();
  void ReportGeometry();
  void KeepOnScreen();
  QSize SizeAroundPage() const;

  Form* form_;
  std::map<const Control*, std::unique_ptr<ControlBinding>> bindings_;
  std::unique_ptr<FormMenu> menu_;
  BannerStrip* banner_;
  PageArea* area_;
  QWidget* first_stop_ = nullptr;  // has the focus when the window opens
  bool placing_ = false;           // the program moves the window, not a person
};

}  // namespace zento
