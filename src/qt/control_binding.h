#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <memory>
#include <vector>

#include "host/control.h"

class QWidget;

namespace zento {

class ControlBinding;

// What a binding needs from the window it stands in.
class BindingContext {
 public:
  virtual ~BindingContext() = default;
  // Whatever a person typed elsewhere in the window takes effect before an action of `acting`, also
  // when the action did not move the keyboard focus (a shortcut, Enter, an arrow).
  virtual void BeforeAction(const ControlBinding& acting) = 0;
};

// What stands between one control and the widget that shows it: a person's actions become the
// control's User... calls, the control's state becomes the widget's. The widget belongs to the
// window. The control may go at any moment, inside one of its own handlers too: Detach is called
// first, and nothing touches the control from then on.
class ControlBinding : public QObject {
 public:
  ControlBinding(Control& control, BindingContext& context)
      : control_(control), context_(context) {}

  Control& control() const { return control_; }
  virtual QWidget& widget() = 0;
  // In the order of the Tab key.
  virtual std::vector<QWidget*> TabStops() { return {&widget()}; }
  // True: the widget uses all the height it can get.
  virtual bool Tall() const { return false; }

  void Refresh();
  // `label` comes and goes with the control.
  void AttachLabel(QWidget& label);
  // Passes on what was typed but not left yet.
  virtual void Commit() {}
  virtual void GiveFocus();
  virtual void Detach() { gone_ = true; }

 protected:
  // Names a widget after the control, to be called once it exists; `suffix` tells several apart.
  void Name(QWidget& widget, const QString& suffix = {}) const;
  // The widget takes the control's state, without its signals coming back as a person's actions.
  virtual void Show() = 0;
  bool gone() const { return gone_; }
  // Runs a person's action, unless the control has gone or is not usable, and shows the outcome.
  template <typename Action>
  void Act(Action action) {
    if (gone_ || !control_.Usable()) return;
    context_.BeforeAction(*this);
    if (gone_) return;
    // What cannot be done (a row that is gone by now) changes nothing; Refresh shows the state.
    static_cast<void>(action());
    if (!gone_) Refresh();
  }

 private:
  Control& control_;
  BindingContext& context_;
  QPointer<QWidget> label_;
  bool gone_ = false;
};

// Null for the kinds that have no widget: menu entries and timers.
std::unique_ptr<ControlBinding> MakeBinding(Control& control, BindingContext& context);

}  // namespace zento
