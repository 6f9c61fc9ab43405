// The single-track editor by keys and clicks.

#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollBar>
#include <QTableView>

#include "core/track_store.h"
#include "gui_fixture.h"
#include "ui/main/edit_a_track_form.h"

namespace zento {
namespace {

class EditGridTest : public GuiTest {
 protected:
  EditGridTest() {
    TrackRecord& record = ws.tracks.Record(0);
    record.Mode = kModeRDE;
    record.pnum = 60;
    for (int i = 0; i < 60; ++i) {
      for (int c = 0; c < 3; ++c) ws.tracks.SetValue(c, 0, i, i + 0.1 * c);
    }
    host.host().desktop.Register(
        frmEditATrack::kName, [this] { return std::make_unique<frmEditATrack>(ws, host.host()); });
    form = dynamic_cast<frmEditATrack*>(host.host().desktop.Show(frmEditATrack::kName));
    Settle();
    view = Widget<QTableView>(*form, "DataGrid");
    edit = view->findChild<QLineEdit*>("txtEdit");
  }
  void ClickCell(int row, int column, Qt::KeyboardModifiers modifiers = {}) {
    QTest::mouseClick(view->viewport(), Qt::LeftButton, modifiers,
                      view->visualRect(view->model()->index(row, column)).center());
  }
  std::pair<int, int> Current() const {
    return {view->currentIndex().row(), view->currentIndex().column()};
  }

  Workstation ws;
  frmEditATrack* form = nullptr;
  QTableView* view = nullptr;
  QLineEdit* edit = nullptr;
};

TEST_F(EditGridTest, TypingOpensTheEditorOverTheCell) {
  ASSERT_NE(edit, nullptr);
  EXPECT_FALSE(edit->isVisible());
  ClickCell(2, 1);
  QTest::keyClick(view, Qt::Key_Right);
  EXPECT_EQ(Current(), (std::pair<int, int>{2, 2}));
  QTest::keyClick(view, Qt::Key_A);
  EXPECT_FALSE(edit->isVisible());
  QTest::keyClick(view, Qt::Key_4);
  ASSERT_TRUE(edit->isVisible());
  EXPECT_TRUE(edit->hasFocus());
  EXPECT_EQ(edit->geometry(), view->visualRect(view->model()->index(2, 2)));
  QTest::keyClicks(edit, ".5e-3");
  EXPECT_EQ(edit->text(), "4.5e-3");
  QTest::keyClick(edit, Qt::Key_Return);
  EXPECT_FALSE(edit->isVisible());
  EXPECT_TRUE(view->hasFocus());
  EXPECT_EQ(ws.tracks.Value(2, 0, 2), 4.5e-3);
  EXPECT_EQ(Current(), (std::pair<int, int>{3, 2}));
  EXPECT_EQ(view->model()->index(2, 2).data().toString(), "4.500e-3");

  // On at once with the next cell; a click elsewhere takes it, Escape does not.
  QTest::keyClicks(view, "7");
  ClickCell(5, 0);
  EXPECT_EQ(ws.tracks.Value(2, 0, 3), 7);
  EXPECT_EQ(Current(), (std::pair<int, int>{5, 0}));
  QTest::keyClicks(view, "8");
  QTest::keyClick(edit, Qt::Key_Escape);
  EXPECT_FALSE(edit->isVisible());
  EXPECT_TRUE(view->hasFocus());
  EXPECT_EQ(ws.tracks.Value(0, 0, 5), 5);
}

TEST_F(EditGridTest, DeleteRemovesTheSelectedRows) {
  ClickCell(2, 1);
  ClickCell(5, 1, Qt::ShiftModifier);
  ClickCell(7, 1, Qt::ControlModifier);
  EXPECT_EQ(form->DataGrid.selected_rows(), (std::vector<int>{2, 3, 4, 5, 7}));
  QTest::keyClick(view, Qt::Key_Delete);
  Settle();
  auto* question = OpenDialog<QMessageBox>();
  ASSERT_NE(question, nullptr);
  Click(question->button(QMessageBox::Yes));
  Settle();
  EXPECT_EQ(ws.tracks.Record(0).pnum, 55);
  EXPECT_EQ(view->model()->rowCount(), 55);
  EXPECT_EQ(ws.tracks.Value(0, 0, 2), 6);
  EXPECT_EQ(ws.tracks.Value(0, 0, 3), 8);
}

TEST_F(EditGridTest, TheEditorStaysWithItsCellWhenTheTableIsScrolled) {
  ClickCell(4, 0);
  QTest::keyClicks(view, "1");
  view->verticalScrollBar()->setValue(3);
  EXPECT_EQ(edit->geometry(), view->visualRect(view->model()->index(4, 0)));
}

}  // namespace
}  // namespace zento
