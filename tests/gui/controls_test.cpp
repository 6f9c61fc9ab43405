// One test per kind of control: what a person does reaches the control, what the program does
// reaches the widget.

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QItemSelectionModel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QTableView>
#include <QToolButton>
#include <utility>

#include "gui_fixture.h"
#include "qt/text_bindings.h"

namespace zento {
namespace {

using Controls = GuiTest;

TEST_F(Controls, EveryWidgetBearsItsControlsAddress) {
  demo::DemoForm& form = Show();
  for (const Control* control : form.controls()) {
    if (control->Kind() == ControlKind::kTimer) continue;
    if (control->Kind() == ControlKind::kMenuItem) {
      EXPECT_NE(Window(form)->findChild<QAction*>(ToQt(control->Address())), nullptr);
      continue;
    }
    const QWidget* widget = Window(form)->WidgetOf(*control);
    ASSERT_NE(widget, nullptr) << control->Address();
    EXPECT_EQ(widget->objectName(), ToQt(control->Address()));
    EXPECT_EQ(widget->accessibleName(), ToQt(control->Address()));
  }
}

TEST_F(Controls, LabelFollowsAndNeverShrinksTheLayout) {
  demo::DemoForm& form = Show();
  auto* label = Widget<TextLabel>(form, "lblTimeRemain");
  const int width = label->minimumSizeHint().width();
  form.lblRemain.SetText("1s");
  EXPECT_EQ(label->text(), "1s");
  EXPECT_EQ(label->minimumSizeHint().width(), width);
  form.lblRemain.SetText(std::string(400, 'W'));
  EXPECT_EQ(label->toolTip(), QString(400, 'W')) << "what is cut is shown as the tool tip";
}

TEST_F(Controls, WhatIsTypedCountsOnceWhenTheBoxIsLeftOrAnActionComes) {
  demo::DemoForm& form = Show();
  std::vector<std::string> order;
  form.txtScanrate.on_change = [&] { order.push_back("change " + form.txtScanrate.text()); };
  form.txtScanrate.on_lost_focus = [&] {
    order.push_back("left");
    if (form.txtScanrate.text() == "-5") form.txtScanrate.SetText("0.01");
  };
  form.cmdStart.on_click = [&] { order.push_back("start"); };
  auto* edit = Widget<QLineEdit>(form, "txtScanrate");
  edit->setFocus();
  edit->selectAll();
  QTest::keyClicks(edit, "-5");
  EXPECT_EQ(order, (std::vector<std::string>{"change -", "change -5"}));
  QTest::keyClick(edit, Qt::Key_Tab);
  EXPECT_EQ(edit->text(), "0.01");
  EXPECT_FALSE(edit->hasFocus());
  edit->setFocus();
  edit->selectAll();
  order.clear();
  QTest::keyClicks(edit, "2");
  QTest::keyClick(edit, Qt::Key_Return);  // the default button
  QTest::keyClick(edit, Qt::Key_Tab);
  EXPECT_EQ(order, (std::vector<std::string>{"change 2", "left", "start"}))
      << "nothing was typed since: left once only";
  form.cmdStart.SetEnabled(false);
  edit->setFocus();
  order.clear();
  QTest::keyClicks(edit, "3");
  QTest::keyClick(edit, Qt::Key_Return);
  ASSERT_EQ(order.size(), 2U);
  EXPECT_EQ(order[1], "left") << "also where no button is pressed";
}

TEST_F(Controls, ATextBoxThatHandlesEnterKeepsIt) {
  demo::DemoForm& form = Show();
  std::vector<KeyCode> keys;
  bool started = false;
  form.txtTitle.on_key = [&](Key key) { keys.push_back(key.code); };
  form.cmdStart.on_click = [&] { started = true; };
  auto* edit = Widget<QLineEdit>(form, "txtTitle");
  for (const auto key :
       {Qt::Key_Return, Qt::Key_Delete, Qt::Key_Backspace, Qt::Key_Up, Qt::Key_Down}) {
    QTest::keyClick(edit, key);
  }
  EXPECT_EQ(keys, (std::vector<KeyCode>{KeyCode::kEnter, KeyCode::kDelete, KeyCode::kBackspace,
                                        KeyCode::kUp, KeyCode::kDown}));
  EXPECT_FALSE(started);
  // Pasted line breaks become blanks.
  host.host().clipboard.SetText("two\nlines");
  edit->selectAll();
  edit->paste();
  EXPECT_EQ(form.txtTitle.text(), "two lines");
}

TEST_F(Controls, SeveralLinesOfText) {
  demo::DemoForm& form = Show();
  auto* edit = Widget<QPlainTextEdit>(form, "txtNotes");
  edit->moveCursor(QTextCursor::End);
  QTest::keyClick(edit, Qt::Key_Return);
  QTest::keyClicks(edit, "x");
  EXPECT_EQ(form.txtNotes.text(), "Ferrocyanide in 1 M KCl\nsecond line\nx");
  form.txtNotes.SetText("日本語");
  EXPECT_EQ(edit->toPlainText(), "日本語");
}

TEST_F(Controls, ButtonsDefaultAndCancel) {
  demo::DemoForm& form = Show();
  int clicks = 0;
  form.cmdStart.on_click = [&] { ++clicks; };
  auto* button = Widget<QPushButton>(form, "cmdStart");
  Click(button);
  EXPECT_EQ(clicks, 1);
  form.cmdStart.SetEnabled(false);
  EXPECT_FALSE(button->isEnabled());
  QTest::keyClick(Window(form), Qt::Key_Return);
  EXPECT_EQ(clicks, 1) << "a default button that is disabled is not pressed";
  bool cancelled = false;
  form.cmdClose.on_click = [&] { cancelled = true; };
  QTest::keyClick(Widget<QLineEdit>(form, "txtTitle"), Qt::Key_Escape);
  EXPECT_TRUE(cancelled);
  form.cmdClose.SetCaption("Save & close");
  EXPECT_EQ(Widget<QPushButton>(form, "cmdClose")->text(), "Save && close");
  form.cmdClose.SetVisible(false);
  EXPECT_FALSE(Widget<QPushButton>(form, "cmdClose")->isVisible());
}

TEST_F(Controls, OptionGroup) {
  demo::DemoForm& form = Show();
  std::vector<int> chosen;
  form.OpnMethod.on_select = [&](int index) { chosen.push_back(index); };
  auto* first = Widget<QRadioButton>(form, "OpnCVMeas(0)");
  auto* second = Widget<QRadioButton>(form, "OpnCVMeas(1)");
  ClickMark(second);
  ClickMark(second);
  EXPECT_EQ(chosen, (std::vector<int>{1, 1}));
  form.OpnMethod.Select(0);
  EXPECT_TRUE(first->isChecked() && !second->isChecked());
  form.OpnMethod.Select(-1);
  EXPECT_FALSE(first->isChecked() || second->isChecked());
}

TEST_F(Controls, CheckBoxHasAThirdStateForTheProgram) {
  demo::DemoForm& form = Show();
  auto* box = Widget<QCheckBox>(form, "chkPower(2)");
  EXPECT_EQ(box->checkState(), Qt::PartiallyChecked);
  for (const auto& [value, state] : {std::pair(0, Qt::Unchecked), std::pair(1, Qt::Checked)}) {
    ClickMark(box);
    EXPECT_EQ(form.chkOutlet[2].value(), value);
    EXPECT_EQ(box->checkState(), state);
  }
  // A handler that takes the click back wins.
  form.chkOutlet[2].on_click = [&](int) { form.chkOutlet[2].SetValue(1); };
  ClickMark(box);
  EXPECT_EQ(box->checkState(), Qt::Checked);
}

TEST_F(Controls, ComboBox) {
  demo::DemoForm& form = Show();
  int chosen = -1;
  form.cbxReference.on_select = [&](int index) { chosen = index; };
  auto* combo = Widget<QComboBox>(form, "cbxReference");
  EXPECT_EQ(combo->currentIndex(), -1);
  combo->setFocus();
  QTest::keyClick(combo, Qt::Key_Down);
  QTest::keyClick(combo, Qt::Key_Down);
  EXPECT_EQ(chosen, 1);
  form.cbxReference.Select(3);
  EXPECT_EQ(combo->currentText(), "Hg|HgO");
  EXPECT_EQ(chosen, 1) << "the program's choice runs no handler";
}

TEST_F(Controls, UpDownByArrowsAndByTheKeysOfItsBox) {
  demo::DemoForm& form = Show();
  Click(Widget<QToolButton>(form, "UpDown1.up"));
  Click(Widget<QToolButton>(form, "UpDown1.up"));
  Click(Widget<QToolButton>(form, "UpDown1.down"));
  auto* edit = Widget<QLineEdit>(form, "txtDataNum");
  EXPECT_EQ(edit->text(), "1");
  QTest::keyClick(edit, Qt::Key_Up);
  EXPECT_EQ(form.track, 2);
  EXPECT_TRUE(edit->isReadOnly());
}

TEST_F(Controls, Grid) {
  demo::DemoForm& form = Show();
  std::pair<int, int> clicked{-1, -1};
  form.sheet.on_click = [&](int row, int column) { clicked = {row, column}; };
  auto* view = Widget<QTableView>(form, "InformationSheet");
  QTest::mouseClick(view->viewport(), Qt::LeftButton, {},
                    view->visualRect(view->model()->index(3, 1)).center());
  EXPECT_EQ(clicked, (std::pair<int, int>{3, 1}));
  EXPECT_TRUE(view->selectionModel()->isRowSelected(3, {}));
  form.sheet.SetCell(3, 1, "50");
  EXPECT_EQ(view->model()->index(3, 1).data().toString(), "50");
  form.sheet.Resize(2, 4);
  EXPECT_EQ(view->model()->rowCount(), 2);
  EXPECT_EQ(view->model()->columnCount(), 4);
  EXPECT_FALSE(view->selectionModel()->hasSelection());
}

TEST_F(Controls, MenuEntries) {
  demo::DemoForm& form = Show();
  const auto menus = Window(form)->menuBar()->actions();
  ASSERT_EQ(menus.size(), 2);
  EXPECT_EQ(menus[0]->text(), "&File");
  EXPECT_EQ(menus[0]->menu()->actions().size(), 4) << "three entries and a separator";
  EXPECT_FALSE(Window(form)->findChild<QAction*>("mnuLater")->isEnabled());
  EXPECT_EQ(Window(form)->findChild<QAction*>("mnuCopy")->text(), "&Copy A && B");
  int opened = 0;
  std::string left;
  form.mnuOpen.on_click = [&] { ++opened; };
  form.txtTitle.on_lost_focus = [&] { left = form.txtTitle.text(); };
  Widget<QLineEdit>(form, "txtTitle")->selectAll();
  QTest::keyClicks(Widget<QLineEdit>(form, "txtTitle"), "x");
  QTest::keyClick(Widget<QLineEdit>(form, "txtTitle"), Qt::Key_O, Qt::ControlModifier);
  EXPECT_EQ(opened, 1);
  EXPECT_EQ(left, "x") << "what was typed counts for a shortcut";
  menus[0]->menu()->actions()[0]->trigger();
  EXPECT_EQ(opened, 2);
}

TEST_F(Controls, ListBox) {
  demo::DemoForm& form = Show();
  int chosen = -1;
  int opened = -1;
  form.lstFiles.on_select = [&](int index) { chosen = index; };
  form.lstFiles.on_open = [&](int index) { opened = index; };
  auto* list = Widget<QListWidget>(form, "lstFiles");
  const QPoint second = list->visualItemRect(list->item(1)).center();
  QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, second);
  EXPECT_EQ(chosen, 1);
  QTest::keyClick(list, Qt::Key_Return);
  EXPECT_EQ(opened, 1);
  form.lstFiles.SetItems({"only"});
  EXPECT_EQ(list->count(), 1);
  EXPECT_EQ(list->currentRow(), -1);
}

TEST_F(Controls, ProgressBar) {
  demo::DemoForm& form = Show();
  auto* bar = Widget<QProgressBar>(form, "barProgress");
  EXPECT_EQ(bar->value(), 40);
  form.bar.SetRange(7);
  form.bar.SetPosition(7);
  EXPECT_EQ(bar->text(), "100%");
}

TEST_F(Controls, TabGoesThroughTheControlsInTheirOrder) {
  demo::DemoForm& form = Show();
  Widget(form, "txtTitle")->setFocus();
  std::vector<std::string> visited;
  for (int i = 0; i < 6; ++i) {
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    visited.push_back(FromQt(QApplication::focusWidget()->objectName()));
  }
  EXPECT_EQ(visited, (std::vector<std::string>{"txtDataNum", "txtScanrate", "cbxReference",
                                               "OpnCVMeas(0)", "chkPower(0)", "chkPower(1)"}));
}

}  // namespace
}  // namespace zento
