// The window around the controls.

#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QScreen>

#include "gui_fixture.h"

namespace zento {
namespace {

using WindowTest = GuiTest;

TEST_F(WindowTest, ShowsCaptionBannerAndEverythingWhole) {
  demo::DemoForm& form = Show();
  FormWindow& window = *Window(form);
  EXPECT_EQ(window.windowTitle(), "Demonstration of every control");
  form.SetCaption("Other");
  EXPECT_EQ(window.windowTitle(), "Other");
  auto* banner = Widget<QLabel>(form, "banner");
  EXPECT_TRUE(banner->isVisible());
  EXPECT_EQ(banner->text(), "SIMULATED BENCH");
  for (const Control* control : form.controls()) {
    const QWidget* widget = window.WidgetOf(*control);
    if (widget == nullptr) continue;
    EXPECT_GE(widget->width(), widget->minimumSizeHint().width()) << control->Address();
    EXPECT_GE(widget->height(), widget->minimumSizeHint().height()) << control->Address();
    const QRect place(widget->mapTo(&window, QPoint(0, 0)), widget->size());
    EXPECT_TRUE(window.rect().contains(place)) << control->Address();
  }
}

TEST_F(WindowTest, HidingKeepsTheFormAndTheXAsksIt) {
  demo::DemoForm& form = Show();
  host.host().desktop.Hide("frmDemo");
  EXPECT_FALSE(Window(form)->isVisible());
  EXPECT_EQ(&Show(), &form);
  EXPECT_TRUE(Window(form)->isVisible());
  const QPointer<FormWindow> window = Window(form);
  form.may_close = false;
  window->close();
  EXPECT_EQ(form.close_requests, 1);
  EXPECT_TRUE(window->isVisible());
  form.may_close = true;
  window->close();
  EXPECT_FALSE(window->isVisible());
  EXPECT_EQ(host.host().desktop.Find("frmDemo"), nullptr);
  Settle();
  EXPECT_TRUE(window.isNull());
}

TEST_F(WindowTest, UnloadingInsideEachKindOfSignalIsSafe) {
  const auto unload = [this] { host.host().desktop.Unload("frmDemo"); };
  const std::vector<std::function<void(demo::DemoForm&)>> ways = {
      [&](demo::DemoForm& form) {
        form.cmdStart.on_click = unload;
        Click(Widget(form, "cmdStart"));
      },
      [&](demo::DemoForm& form) {
        form.txtTitle.on_change = unload;
        QTest::keyClick(Widget(form, "txtTitle"), Qt::Key_A);
      },
      [&](demo::DemoForm& form) {
        form.txtTitle.on_key = [&](Key) { unload(); };
        QTest::keyClick(Widget(form, "txtTitle"), Qt::Key_Return);
      },
      [&](demo::DemoForm& form) {
        form.txtTitle.on_lost_focus = unload;
        Widget(form, "txtTitle")->setFocus();
        QTest::keyClick(Widget(form, "txtTitle"), Qt::Key_Tab);
      },
      [&](demo::DemoForm& form) {
        form.chkOutlet[0].on_click = [&](int) { unload(); };
        ClickMark(Widget(form, "chkPower(0)"));
      },
      [&](demo::DemoForm& form) {
        form.OpnMethod.on_select = [&](int) { unload(); };
        ClickMark(Widget(form, "OpnCVMeas(1)"));
      },
      [&](demo::DemoForm& form) {
        form.mnuQuit.on_click = unload;
        QTest::keyClick(Widget(form, "txtTitle"), Qt::Key_Q, Qt::ControlModifier);
      },
      [&](demo::DemoForm& form) {
        form.lstFiles.on_select = [&](int) { unload(); };
        QTest::keyClick(Widget(form, "lstFiles"), Qt::Key_Down);
      },
      [&](demo::DemoForm& form) {
        form.sheet.on_click = [&](int, int) { unload(); };
        Click(Widget(form, "InformationSheet")->findChild<QWidget*>("qt_scrollarea_viewport"));
      },
      [&](demo::DemoForm& form) {
        form.timer.SetInterval(1);
        form.timer.on_tick = unload;
        form.timer.SetEnabled(true);
        EXPECT_TRUE(WaitFor([&] { return host.host().desktop.Find("frmDemo") == nullptr; }));
      },
  };
  for (std::size_t i = 0; i < ways.size(); ++i) {
    demo::DemoForm& form = Show();
    const QPointer<FormWindow> window = Window(form);
    ways[i](form);
    EXPECT_EQ(host.host().desktop.Find("frmDemo"), nullptr) << "way " << i;
    EXPECT_TRUE(WaitFor([&] { return window.isNull(); })) << "way " << i;
  }
}

TEST_F(WindowTest, GeometryIsKeptOnTheScreenAndReported) {
  host.host().desktop.Load("frmDemo")->RequestGeometry({true, 100'000, -500, 0, 0});
  demo::DemoForm& form = Show();
  ASSERT_TRUE(WaitFor([&] { return form.geometry().left < 100'000; }));
  const QRect room = Window(form)->screen()->availableGeometry();
  EXPECT_TRUE(room.contains(Window(form)->frameGeometry().topLeft()));
  EXPECT_GE(form.geometry().top, room.top());
  EXPECT_GT(form.geometry().width, 400);
  const Form::Geometry before = form.geometry();
  Window(form)->resize(Window(form)->size() + QSize(7, 9));
  Settle();
  EXPECT_EQ(form.geometry().width, before.width + 7);
  EXPECT_EQ(form.geometry().height, before.height + 9);
  form.RequestGeometry(before);
  Settle();
  EXPECT_EQ(form.geometry().width, before.width);
  EXPECT_EQ(form.geometry().height, before.height);
}

TEST_F(WindowTest, TicksKeepTheirMeanRateInTheEventLoop) {
  demo::DemoForm& form = Show();
  // Starved machines are allowed for: this guards against drift, not against jitter.
  int ticks = 0;
  form.timer.SetInterval(10);
  form.timer.on_tick = [&] {
    form.timer.SetEnabled(false);
    ++ticks;
    form.timer.SetEnabled(true);
  };
  form.timer.SetEnabled(true);
  const std::int64_t began = clock.Micros();
  QTest::qWait(1000);
  const double due = static_cast<double>(clock.Micros() - began) / 10'000;
  EXPECT_LE(ticks, due + 1);
  EXPECT_GE(ticks, due * 0.9);
}

}  // namespace
}  // namespace zento
