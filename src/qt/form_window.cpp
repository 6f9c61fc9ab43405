#include "qt/form_window.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMenuBar>
#include <QScreen>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "host/controls.h"
#include "host/desktop.h"
#include "host/file_target.h"
#include "host/host.h"
#include "qt/basic_bindings.h"
#include "qt/canvas_widget.h"
#include "qt/layout_builder.h"
#include "qt/qt_text.h"
#include "qt/window_parts.h"

namespace zento {

FormWindow::FormWindow(Form& form) : form_(&form), banner_(new BannerStrip), area_(new PageArea) {
  setObjectName(ToQt(form.name()));
  setAccessibleName(ToQt(form.name()));
  setWindowTitle(ToQt(form.caption()));
  setContextMenuPolicy(Qt::NoContextMenu);
  Build();
  form.SetView(this);
}

FormWindow::~FormWindow() {
  Detach();
}

void FormWindow::Build() {
  banner_->setObjectName(QLatin1String("banner"));

  auto* centre = new QWidget;
  auto* rows = new QVBoxLayout(centre);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->setSpacing(0);
  rows->addWidget(banner_);
  rows->addWidget(area_, 1);
  setCentralWidget(centre);
  ShowBanner();

  const auto commit = [this] {
    for (auto& [control, binding] : bindings_) binding->Commit();
  };
  menu_ = std::make_unique<FormMenu>(*form_, *menuBar(), commit);
  const LayoutNode root = form_->Layout();
  LayoutBuilder builder([this](Control& control) -> ControlBinding* {
    auto& binding = bindings_[&control];
    if (binding == nullptr) binding = MakeBinding(control, *this);
    return binding.get();
  });
  builder.Build(root, *area_->widget());
  std::erase_if(bindings_, [](const auto& entry) { return entry.second == nullptr; });
  for (auto& [control, binding] : bindings_) binding->Refresh();
  LinkTabStops(root);
  const auto target = [this] { return dynamic_cast<FileTarget*>(form_); };
  if (target() != nullptr) TakeDroppedFiles(*this, target, commit);
}

void FormWindow::LinkTabStops(const LayoutNode& layout) {
  QWidget* last = nullptr;
  std::vector<Control*> controls;
  layout::AppendControls(layout, controls);
  for (const Control* control : controls) {
    ControlBinding* binding = Find(*control);
    if (binding == nullptr) continue;
    for (QWidget* stop : binding->TabStops()) {
      if (last != nullptr) QWidget::setTabOrder(last, stop);
      if (first_stop_ == nullptr) first_stop_ = stop;
      last = stop;
    }
  }
}

ControlBinding* FormWindow::Find(const Control& control) const {
  const auto found = bindings_.find(&control);
  return found == bindings_.end() ? nullptr : found->second.get();
}

CanvasWidget* FormWindow::CanvasOf(const Canvas& canvas) const {
  return dynamic_cast<CanvasWidget*>(WidgetOf(canvas));
}

QWidget* FormWindow::WidgetOf(const Control& control) const {
  ControlBinding* binding = Find(control);
  return binding == nullptr ? nullptr : &binding->widget();
}

void FormWindow::Reveal() {
  if (form_ == nullptr) return;
  ShowBanner();
  if (!isVisible()) {
    GeometryRequested(*form_);
    show();
    if (focusWidget() == nullptr && first_stop_ != nullptr) first_stop_->setFocus();
    // The window manager gives it a frame at its own pace.
    for (const int millis : {0, 100, 400}) {
      QTimer::singleShot(millis, this, [this] { KeepOnScreen(); });
    }
  }
  if (isMinimized()) showNormal();
  raise();
  activateWindow();
}

void FormWindow::Detach() {
  if (form_ == nullptr) return;
  form_->SetView(nullptr);
  form_ = nullptr;
  menu_->Detach();
  for (auto& [control, binding] : bindings_) binding->Detach();
  hide();
}

void FormWindow::BeforeAction(const ControlBinding& acting) {
  for (auto& [control, binding] : bindings_) {
    if (binding.get() != &acting) binding->Commit();
  }
}

void FormWindow::ControlChanged(Control& control) {
  if (ControlBinding* binding = Find(control)) {
    binding->Refresh();
  } else {
    menu_->Refresh(control);
  }
}

void FormWindow::CanvasInvalid(Canvas& canvas) {
  if (CanvasWidget* shown = CanvasOf(canvas)) shown->InvalidatePicture();
}

void FormWindow::CanvasOverlayInvalid(Canvas& canvas) {
  if (CanvasWidget* shown = CanvasOf(canvas)) shown->InvalidateOverlay();
}

void FormWindow::CanvasExtended(Canvas& canvas, Rect dirty,
                                const std::function<void(Surface&)>& paint) {
  if (CanvasWidget* shown = CanvasOf(canvas)) shown->Extend(dirty, paint);
}

void FormWindow::CaptionChanged(Form& form) {
  setWindowTitle(ToQt(form.caption()));
}

void FormWindow::FocusRequested(Control& control) {
  if (ControlBinding* binding = Find(control)) binding->GiveFocus();
}

void FormWindow::ShowBanner() {
  banner_->SetBanner(ToQt(form_->host().desktop.banner()));
}

// The form's inner size is that of its page, without menu bar and banner.
QSize FormWindow::SizeAroundPage() const {
  int height = 0;
  if (!menuBar()->isHidden()) height += menuBar()->sizeHint().height();
  if (!banner_->isHidden()) height += banner_->sizeHint().height();
  return {0, height};
}

void FormWindow::GeometryRequested(Form& form) {
  const Form::Geometry wanted = form.geometry();
  placing_ = true;
  QSize size = area_->sizeHint();
  if (wanted.width > 0) size.setWidth(wanted.width);
  if (wanted.height > 0) size.setHeight(wanted.height);
  const QSize screen_size = screen()->availableSize();
  resize((size + SizeAroundPage()).boundedTo(screen_size));
  if (wanted.placed) move(wanted.left, wanted.top);
  placing_ = false;
  if (isVisible()) KeepOnScreen();
}

void FormWindow::KeepOnScreen() {
  if (form_ == nullptr || isMaximized() || isFullScreen()) return;
  const QRect room = screen()->availableGeometry();
  const QRect frame = frameGeometry();
  const QPoint at(std::clamp(frame.left(), room.left(),
                             std::max(room.left(), room.right() + 1 - frame.width())),
                  std::clamp(frame.top(), room.top(),
                             std::max(room.top(), room.bottom() + 1 - frame.height())));
  if (at != frame.topLeft()) move(at);
  ReportGeometry();
}

void FormWindow::ReportGeometry() {
  if (form_ == nullptr || placing_ || !isVisible() || isMinimized()) return;
  form_->ReportGeometry({true, pos().x(), pos().y(), area_->width(), area_->height()});
}

void FormWindow::closeEvent(QCloseEvent* event) {
  if (form_ == nullptr) return event->accept();
  form_->CloseRequested();
  // Unloaded meanwhile: the window is hidden and about to be deleted. A form may also just have
  // hidden its window. Else it decides when to go.
  event->setAccepted(form_ == nullptr || !isVisible());
}

void FormWindow::changeEvent(QEvent* event) {
  QMainWindow::changeEvent(event);
  if (event->type() == QEvent::ActivationChange && isActiveWindow() && form_ != nullptr) {
    form_->Activate();
  }
}

void FormWindow::moveEvent(QMoveEvent* event) {
  QMainWindow::moveEvent(event);
  ReportGeometry();
}

void FormWindow::resizeEvent(QResizeEvent* event) {
  QMainWindow::resizeEvent(event);
  ReportGeometry();
}

void FormWindow::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  const bool escape = event->key() == Qt::Key_Escape;
  if ((enter || escape) && PressButton(escape)) return event->accept();
  QMainWindow::keyPressEvent(event);
}

bool FormWindow::PressButton(bool cancel) {
  if (form_ == nullptr) return false;
  for (Control* control : form_->controls()) {
    auto* button = dynamic_cast<Button*>(control);
    if (button == nullptr || !button->Usable()) continue;
    if (cancel ? !button->is_cancel : !button->is_default) continue;
    if (auto* binding = dynamic_cast<ButtonBinding*>(Find(*button))) {
      binding->Press();
      return true;
    }
  }
  return false;
}

}  // namespace zento
