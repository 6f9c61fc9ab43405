#include "qt/form_menu.h"

#include <QAction>
#include <QKeySequence>
#include <QMenu>
#include <QMenuBar>
#include <utility>

#include "host/controls.h"
#include "host/form.h"
#include "qt/qt_text.h"

namespace zento {
namespace {

// Marks the first letter that is not in `taken` as the mnemonic.
QString WithMnemonic(const QString& caption, QString& taken) {
  QString text = caption;
  for (qsizetype i = 0; i < text.size(); ++i) {
    const QChar letter = text.at(i).toUpper();
    if (!letter.isLetter() || letter.unicode() > 127 || taken.contains(letter)) continue;
    taken += letter;
    text.replace(QLatin1Char('&'), QLatin1String("&&"));
    // Ampersands before the letter have been doubled.
    return text.insert(i + caption.left(i).count(QLatin1Char('&')), QLatin1Char('&'));
  }
  return text.replace(QLatin1Char('&'), QLatin1String("&&"));
}

}  // namespace

FormMenu::FormMenu(Form& form, QMenuBar& bar, std::function<void()> before_action)
    : before_action_(std::move(before_action)) {
  std::map<std::string, QMenu*> menus;
  QString taken;
  for (Control* control : form.controls()) {
    auto* entry = dynamic_cast<MenuEntry*>(control);
    if (entry == nullptr) continue;
    QMenu*& menu = menus[entry->menu()];
    if (menu == nullptr) {
      menu = bar.addMenu(WithMnemonic(ToQt(entry->menu()), taken));
      menu->setObjectName(QLatin1String("menu.") + ToQt(entry->menu()));
      menu->setToolTipsVisible(true);
    }
    Add(*entry, *menu);
  }
  bar.setVisible(!menus.empty());
}

void FormMenu::Add(MenuEntry& entry, QMenu& menu) {
  if (entry.separator_before) menu.addSeparator();
  QString taken = menu.property("mnemonics").toString();
  QAction* action = menu.addAction(WithMnemonic(ToQt(entry.caption()), taken));
  menu.setProperty("mnemonics", taken);
  action->setObjectName(ToQt(entry.Address()));
  if (!entry.shortcut().empty()) {
    action->setShortcut(QKeySequence(ToQt(entry.shortcut()), QKeySequence::PortableText));
  }
  actions_[&entry] = action;
  connect(action, &QAction::triggered, this, [this, &entry] {
    if (gone_) return;
    before_action_();
    if (!gone_ && entry.Usable()) static_cast<void>(entry.UserClick());
  });
  Refresh(entry);
}

void FormMenu::Refresh(const Control& control) {
  const auto found = actions_.find(&control);
  if (gone_ || found == actions_.end()) return;
  QAction& action = *found->second;
  // Captions that change keep no mnemonic: it could meet another one's.
  const QString caption = ToQt(control.Value());
  if (action.text().remove(QLatin1Char('&')) != QString(caption).remove(QLatin1Char('&'))) {
    action.setText(QString(caption).replace(QLatin1Char('&'), QLatin1String("&&")));
  }
  action.setEnabled(control.enabled());
  action.setVisible(control.visible());
  if (!control.tip().empty()) action.setToolTip(ToQt(control.tip()));
}

}  // namespace zento
