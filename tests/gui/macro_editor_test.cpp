// The macro editor as a person sees it: colours, marks, templates, a run.

#include <QAction>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTextBlock>
#include <QTextLayout>

#include "gui_fixture.h"
#include "macro/macro_form.h"
#include "program/main_program.h"
#include "text/status.h"

namespace zento {
namespace {

class MacroEditor : public GuiTest {
 protected:
  MacroEditor() {
    MainOptions options;
    options.simulated.emplace();
    options.home = PathFromQt(folder_.path());
    program.emplace(host.host(), options);
    EXPECT_TRUE(program->Start().ok());
    host.host().desktop.Show(frmMacro::kName);
    Settle();
  }
  frmMacro& Editor() { return *host.host().desktop.FindAs<frmMacro>(frmMacro::kName); }
  QPlainTextEdit& Edit() { return *Widget<QPlainTextEdit>(Editor(), "txtMacro"); }
  QTextBlock Line(int number) { return Edit().document()->findBlockByNumber(number - 1); }
  bool Underlined(int number) {
    for (const auto& range : Line(number).layout()->formats()) {
      if (range.format.underlineStyle() == QTextCharFormat::WaveUnderline) return true;
    }
    return false;
  }
  // The colour of a line's character.
  QColor Colour(int number, int column) {
    for (const auto& range : Line(number).layout()->formats()) {
      if (column >= range.start && column < range.start + range.length) {
        return range.format.foreground().color();
      }
    }
    return {};
  }

  QTemporaryDir folder_;
  std::optional<MainProgram> program;
};

TEST_F(MacroEditor, MarksALineThatWouldBeRefusedAsItIsTyped) {
  QTest::keyClicks(&Edit(), "CV.Voltage 0.6 1.25");
  EXPECT_TRUE(Underlined(1));
  EXPECT_EQ(Editor().lblLine.text(), " 1line Syntax error:CV.Voltage V1st V2nd V3rd");
  QTest::keyClicks(&Edit(), " 1");
  EXPECT_FALSE(Underlined(1));
  EXPECT_EQ(Editor().lblLine.text(), "CV.Voltage V1st V2nd V3rd");
  QTest::keyClick(&Edit(), Qt::Key_Return);
  QTest::keyClicks(&Edit(), "cv.rpm 400");
  EXPECT_TRUE(Underlined(2));
  EXPECT_EQ(Editor().lblLine.text(), " 2line Syntax Error");
  QTest::keyClick(&Edit(), Qt::Key_Up);
  EXPECT_EQ(Editor().lblLine.text(), "CV.Voltage V1st V2nd V3rd") << "the caret's line counts";
}

TEST_F(MacroEditor, ColoursCommandsNumbersAndComments) {
  Editor().txtMacro.SetText("' 日本 400\nCV.Title 日本 5\nMotor.On 400");
  const QColor comment = Colour(1, 0);
  const QColor command = Colour(3, 0);
  const QColor number = Colour(3, 9);
  EXPECT_TRUE(comment.isValid() && command.isValid() && number.isValid());
  EXPECT_TRUE(comment != command && command != number && number != comment);
  EXPECT_EQ(Colour(1, 7), comment) << "to the end of the line, past wide characters";
  EXPECT_EQ(Colour(2, 0), command);
  EXPECT_FALSE(Colour(2, 12).isValid()) << "a title is no number";
}

TEST_F(MacroEditor, ATemplateReplacesTheSelectionAndCanBeUndone) {
  Edit().setPlainText("日本 one two");
  QTextCursor cursor = Edit().textCursor();
  cursor.setPosition(3);
  cursor.setPosition(6, QTextCursor::KeepAnchor);
  Edit().setTextCursor(cursor);
  Window(Editor())->findChild<QAction*>("Mail_Acc")->trigger();
  const QString text = Edit().toPlainText();
  EXPECT_TRUE(text.startsWith(ToQt("日本 Mail.DisplayName Displayname\n"))) << FromQt(text);
  EXPECT_TRUE(text.endsWith("Mail.Send\n two"));
  EXPECT_EQ(FromQt(text), Editor().txtMacro.text());
  EXPECT_EQ(Edit().textCursor().position(), text.size() - 4) << "behind the block";
  Edit().undo();
  EXPECT_EQ(Editor().txtMacro.text(), "日本 one two");
}

TEST_F(MacroEditor, PointsOutTheLineThatRuns) {
  QTest::keyClicks(&Edit(), "' first");
  QTest::keyClick(&Edit(), Qt::Key_Return);
  QTest::keyClicks(&Edit(), "Wait 1");
  Click(Widget<QPushButton>(Editor(), "cmdRun"));
  ASSERT_TRUE(WaitFor([&] { return !Edit().extraSelections().isEmpty(); }));
  EXPECT_EQ(Edit().extraSelections().front().cursor.blockNumber(), 1);
  EXPECT_FALSE(Widget<QPushButton>(Editor(), "cmdRun")->isEnabled());
  ASSERT_TRUE(WaitFor([&] { return !program->workstation().macro_active; }));
  EXPECT_TRUE(Edit().extraSelections().isEmpty());
  EXPECT_TRUE(Widget<QPushButton>(Editor(), "cmdRun")->isEnabled());
  EXPECT_TRUE(Editor().lblStatus.text().ends_with("remain"));
}

}  // namespace
}  // namespace zento
