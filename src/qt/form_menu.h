#pragma once

#include <QObject>
#include <functional>
#include <map>

class QAction;
class QMenu;
class QMenuBar;

namespace zento {

class Control;
class Form;
class MenuEntry;

// The menu bar of a form: entries under their menus, in the order in which they were made.
class FormMenu : public QObject {
 public:
  FormMenu(Form& form, QMenuBar& bar, std::function<void()> before_action);
  // Shows the state of `control` when it is one of the entries.
  void Refresh(const Control& control);
  void Detach() { gone_ = true; }

 private:
  void Add(MenuEntry& entry, QMenu& menu);
  std::map<const Control*, QAction*> actions_;
  std::function<void()> before_action_;
  bool gone_ = false;
};

}  // namespace zento
