#pragma once

#include <string>

#include "text/status_fwd.h"

namespace zento {

class Form;

enum class KeyCode {
  kCharacter,
  kEnter,
  kEscape,
  kDelete,
  kBackspace,
  kUp,
  kDown,
  kLeft,
  kRight,
  kTab
};

struct Key {
  KeyCode code = KeyCode::kCharacter;
  char32_t character = 0;  // kCharacter only
};

enum class ControlKind {
  kLabel,
  kTextBox,
  kButton,
  kOptionGroup,
  kCheckBox,
  kComboBox,
  kUpDown,
  kGrid,
  kMenuItem,
  kTimer,
  kCanvas,
  kListBox,
  kProgressBar,
};

// One named part of a form. A control registers itself with its form, which is how a script line, a
// macro and a widget find it. What the program does to a control is a method named for the thing
// (SetText); what a person does to it begins with User and runs the control's handlers.
//
// User actions fail when the control has no such action or the value makes no sense for it. Callers
// check Usable() first: a person cannot act on a control that is disabled or hidden.
class Control {
 public:
  // `index` is the element's place in a control array, -1 for a control on its own.
  Control(Form& form, std::string name, int index = -1);
  virtual ~Control();
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  virtual ControlKind Kind() const = 0;
  Form& form() const { return form_; }
  const std::string& name() const { return name_; }
  int index() const { return index_; }
  // "txtAccum", or "chkPower(2)" in an array.
  std::string Address() const;

  bool enabled() const { return enabled_; }
  void SetEnabled(bool enabled);
  bool visible() const { return visible_; }
  void SetVisible(bool visible);
  bool Usable() const { return enabled_ && visible_; }

  // A hint shown when the pointer rests on the control; also what a screen reader adds.
  const std::string& tip() const { return tip_; }
  void SetTip(std::string tip);

  // The control's text or value as text; a grid gives rows of tab-separated cells.
  virtual std::string Value() const = 0;

  // Replaces the value as a person would and leaves the control.
  virtual Status UserSet(const std::string& value);
  // Types without leaving.
  virtual Status UserType(const std::string& text);
  virtual Status UserKey(Key key);
  virtual Status UserClick();
  virtual Status UserClickCell(int row, int column);
  // +1 up, -1 down.
  virtual Status UserStep(int direction);

 protected:
  // Tells whoever shows the form that this control looks different now.
  void Changed();

 private:
  Form& form_;
  std::string name_;
  int index_;
  std::string tip_;
  bool enabled_ = true;
  bool visible_ = true;
};

}  // namespace zento
