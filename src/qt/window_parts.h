#pragma once

#include <QLabel>
#include <QScrollArea>
#include <QString>
#include <functional>
#include <map>

class QAction;
class QMenu;
class QMenuBar;

namespace zento {

class Control;
class FileTarget;
class Form;
class MenuItem;

// What stands around a form's controls in its window.

// The line that every window shows all the time. Where the window is too narrow for all of
// "WHAT - explanation", the explanation moves into the tool tip; the first part is never cut.
class BannerStrip : public QLabel {
 public:
  BannerStrip();
  void SetBanner(const QString& banner);
  QSize sizeHint() const override { return minimumSizeHint(); }
  QSize minimumSizeHint() const override;

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  QString Short() const;
  int WidthOf(const QString& text) const;
  void Fit();
  QString banner_;
};

// The room in which a form's page stands. As large as the page asks for, with scroll bars only
// where the screen is too small to show all of it.
class PageArea : public QScrollArea {
 public:
  PageArea();
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
};

// The menu bar of a form: entries under their menus, in the order in which they were made.
class FormMenu : public QObject {
 public:
  FormMenu(Form& form, QMenuBar& bar, std::function<void()> before_action);
  // Shows the state of `control` when it is one of the entries.
  void Refresh(const Control& control);
  void Detach() { gone_ = true; }

 private:
  void Add(MenuItem& entry, QMenu& menu);
  std::map<const Control*, QAction*> actions_;
  std::function<void()> before_action_;
  bool gone_ = false;
};

// Hands files that a person drops anywhere on the window to a form that takes them, also over boxes
// that would take their names as text. Only files of this machine count; other drags go on to the
// widgets. Watches what the window holds now. `before` runs first, as before any action of the
// window; `target` is asked who takes the files, null once the form has gone.
void TakeDroppedFiles(QWidget& window, std::function<FileTarget*()> target,
                      std::function<void()> before);

}  // namespace zento
