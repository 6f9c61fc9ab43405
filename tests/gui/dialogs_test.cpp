// Message boxes and questions, answered as a person does.

#include <QFileDialog>
#include <QInputDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>

#include "gui_fixture.h"

namespace zento {
namespace {

using DialogsTest = GuiTest;

TEST_F(DialogsTest, MessagesHoldUpNothing) {
  demo::DemoForm& form = Show();
  int ticks = 0;
  int closed = 0;
  form.timer.SetInterval(2);
  form.timer.on_tick = [&] {
    if (++ticks == 2) host.host().dialogs.Message("Buffer overflow!", [&] { ++closed; });
    if (ticks == 3) host.host().dialogs.Message("Another one", [&] { ++closed; });
  };
  form.timer.SetEnabled(true);
  ASSERT_TRUE(WaitFor([&] { return ticks > 20; }));
  EXPECT_EQ(closed, 0);
  EXPECT_EQ(host.dialogs().Unread(), (std::vector<std::string>{"Buffer overflow!", "Another one"}));
  int clicks = 0;
  form.cmdStart.on_click = [&] { ++clicks; };
  Click(Widget(form, "cmdStart"));
  EXPECT_EQ(clicks, 1) << "the window is not blocked";
  host.host().desktop.Unload("frmDemo");
  Settle();
  // They stay when the window they came from has gone.
  while (auto* box = OpenDialog<QMessageBox>()) {
    EXPECT_EQ(box->windowTitle(), "Zento");
    Click(box->button(QMessageBox::Ok));
    Settle();
  }
  EXPECT_EQ(closed, 2);
  EXPECT_FALSE(host.dialogs().Open());
}

TEST_F(DialogsTest, QuestionsAreAnsweredByClicking) {
  Show();
  std::vector<bool> answers;
  const auto ask = [&](Buttons buttons, QMessageBox::StandardButton press) {
    host.host().dialogs.Ask("Do you want to convert potential?", buttons,
                            [&](bool yes) { answers.push_back(yes); });
    Settle();
    auto* box = OpenDialog<QMessageBox>();
    ASSERT_NE(box, nullptr);
    if (press == QMessageBox::Close) {
      box->close();
    } else {
      Click(box->button(press));
    }
    Settle();
  };
  ask(Buttons::kYesNo, QMessageBox::Yes);
  ask(Buttons::kYesNo, QMessageBox::No);
  ask(Buttons::kOkCancel, QMessageBox::Ok);
  ask(Buttons::kOkCancel, QMessageBox::Cancel);
  ask(Buttons::kYesNo, QMessageBox::Close);
  EXPECT_EQ(answers, (std::vector<bool>{true, false, true, false, false}));
}

TEST_F(DialogsTest, TextQuestion) {
  std::vector<std::optional<std::string>> answers;
  for (const int result : {QDialog::Accepted, QDialog::Rejected}) {
    host.host().dialogs.AskText({"Please input pH of the solution.", "pH of the solution", "7"},
                                [&](auto answer) { answers.push_back(answer); });
    Settle();
    auto* box = OpenDialog<QInputDialog>();
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->windowTitle(), "pH of the solution");
    auto* edit = box->findChild<QLineEdit*>();
    edit->setFocus();
    QTest::keyClick(edit, Qt::Key_End);
    QTest::keyClicks(edit, ".4");
    box->done(result);
    Settle();
  }
  ASSERT_EQ(answers.size(), 2U);
  EXPECT_EQ(answers[0], "7.4");
  EXPECT_EQ(answers[1], std::nullopt);
}

TEST_F(DialogsTest, FileQuestionAddsTheExtensionAndRemembersTheFolder) {
  const QTemporaryDir folder;
  std::optional<std::filesystem::path> chosen;
  FileQuestion question;
  question.save = true;
  question.description = "Track files";
  question.pattern = "*.znt";
  question.folder = PathFromQt(folder.path());
  host.host().dialogs.AskFile(question, [&](auto path) { chosen = path; });
  Settle();
  auto* box = OpenDialog<QFileDialog>();
  ASSERT_NE(box, nullptr);
  auto* name = box->findChild<QLineEdit*>("fileNameEdit");
  ASSERT_NE(name, nullptr);
  QTest::keyClicks(name, "day1");
  QTest::keyClick(name, Qt::Key_Return);
  Settle();
  ASSERT_TRUE(chosen.has_value());
  EXPECT_EQ(*chosen, PathFromQt(folder.filePath("day1.znt")));

  question.folder.clear();
  host.host().dialogs.AskFile(question, [&](auto path) { chosen = path; });
  Settle();
  box = OpenDialog<QFileDialog>();
  ASSERT_NE(box, nullptr);
  EXPECT_EQ(box->directory().absolutePath(), folder.path());
  box->reject();
  Settle();
  EXPECT_FALSE(chosen.has_value());
}

}  // namespace
}  // namespace zento
