// A whole measurement by clicks and keys, on the simulated bench, in real time.

#include <QAction>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QTableView>
#include <QTemporaryDir>
#include <QToolButton>
#include <algorithm>
#include <cmath>

#include "core/track_store.h"
#include "gui_fixture.h"
#include "program/main_program.h"
#include "qt/canvas_widget.h"
#include "text/status.h"

namespace zento {
namespace {

class MeasurementTest : public GuiTest {
 protected:
  MeasurementTest() {
    MainOptions options;
    options.simulated.emplace();
    options.home = PathFromQt(folder_.path());
    program.emplace(host.host(), options);
    EXPECT_TRUE(program->Start().ok());
    Settle();
  }

  Form& Main() { return *host.host().desktop.Find(kMainForm); }
  Form& OpenCv() {
    Window(Main())->findChild<QAction*>("mnuCV")->trigger();
    Settle();
    Form* form = host.host().desktop.Find("frmMeasureCV");
    EXPECT_NE(form, nullptr);
    return *form;
  }
  // Clicks into the box, replaces its text and goes on with the Tab key.
  void Type(const Form& form, const char* name, const char* text) {
    auto* edit = Widget<QLineEdit>(form, name);
    Click(edit);
    edit->selectAll();
    QTest::keyClicks(edit, text);
    QTest::keyClick(edit, Qt::Key_Tab);
  }
  // 0 -> 0.5 -> 0 V in one second, 50 points a second.
  void TypeShortSweep(const Form& form) {
    Type(form, "txtVoltSetting(0)", "0");
    Type(form, "txtVoltSetting(1)", "0.5");
    Type(form, "txtVoltSetting(2)", "0");
    Type(form, "txtScanrate", "1000");
    Type(form, "txtCycleNum", "1");
    Type(form, "txtRetainTime", "0");
    Type(form, "txtSamplingrate", "50");
    Type(form, "txtAccum", "5");
  }
  bool Running() { return program->workstation().running_flag != 0; }

  QTemporaryDir folder_;
  std::optional<MainProgram> program;
};

TEST_F(MeasurementTest, AVoltammogramFromTheMenuToTheInformationSheet) {
  Form& form = OpenCv();
  auto* setting = Widget<QLineEdit>(form, "txtCVNum");
  EXPECT_TRUE(setting->hasFocus()) << "the first control has the focus when a window opens";
  QTest::keyClick(setting, Qt::Key_Up);
  EXPECT_EQ(setting->text(), "1");
  TypeShortSweep(form);
  Type(form, "txtTitle", "Ferrocyanide");
  for (int i = 0; i < 3; ++i) Click(Widget<QToolButton>(form, "UpDown1.up"));
  Click(Widget<QPushButton>(form, "cmdStart"));
  EXPECT_TRUE(Running());
  EXPECT_FALSE(Widget<QPushButton>(form, "cmdStart")->isEnabled());
  EXPECT_EQ(OpenDialog<QMessageBox>(), nullptr);
  EXPECT_EQ(program->workstation().settings.CVNum, 1);
  ASSERT_TRUE(WaitFor([&] { return !Running(); }, 20'000));
  EXPECT_TRUE(Widget<QPushButton>(form, "cmdStart")->isEnabled());
  EXPECT_EQ(Widget<QLineEdit>(form, "txtDataNum")->text(), "4") << "the next track is the target";

  const TrackRecord& track = program->workstation().tracks.Record(3);
  EXPECT_EQ(track.Title, "Ferrocyanide");
  // A loaded machine may drop ticks; the sweep is there all the same.
  EXPECT_GT(track.pnum, 20);
  EXPECT_LE(track.pnum, 56);

  // The main window shows what was measured.
  auto* sheet = Widget<QTableView>(Main(), "InformationSheet");
  EXPECT_EQ(sheet->model()->index(1, 1).data().toString(), "Ferrocyanide");
  const QImage& preview = Widget<CanvasWidget>(Main(), "PrevGraph")->Picture();
  int coloured = 0;
  for (int y = 0; y < preview.height(); ++y) {
    for (int x = 0; x < preview.width(); ++x)
      coloured += preview.pixelColor(x, y).saturation() > 60;
  }
  EXPECT_GT(coloured, 50);
}

TEST_F(MeasurementTest, ClosingTheMainWindowDuringARunStoresThePointsFirst) {
  Form& form = OpenCv();
  TypeShortSweep(form);
  Type(form, "txtScanrate", "10");
  Click(Widget<QPushButton>(form, "cmdStart"));
  ASSERT_TRUE(Running());
  QTest::qWait(600);
  Window(Main())->close();
  Settle();
  // Whatever the window asks, the answer is yes.
  for (int i = 0; i < 5 && !program->Ended(); ++i) {
    if (auto* box = OpenDialog<QMessageBox>()) {
      if (auto* yes = box->button(QMessageBox::Yes)) Click(yes);
      if (auto* ok = box->button(QMessageBox::Ok)) Click(ok);
    }
    Settle();
  }
  EXPECT_TRUE(program->Ended());
  EXPECT_FALSE(Running());
  EXPECT_GT(program->workstation().tracks.Record(0).pnum, 0);
  EXPECT_TRUE(host.host().desktop.Loaded().empty());
}

}  // namespace
}  // namespace zento
