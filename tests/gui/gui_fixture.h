#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QTest>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "demo_form.h"
#include "host/native/native_clock.h"
#include "host/native/native_files.h"
#include "qt/form_window.h"
#include "qt/qt_host.h"
#include "qt/qt_text.h"

namespace zento {

class SilentSound : public Sound {
 public:
  void Play(const std::string&) override {}
};

// A graphical host with the demonstration form in a window.
class GuiTest : public testing::Test {
 protected:
  GuiTest() {
    host.host().desktop.SetBanner("SIMULATED BENCH");
    host.host().desktop.Register("frmDemo",
                                 [this] { return std::make_unique<demo::DemoForm>(host.host()); });
  }

  demo::DemoForm& Show() {
    auto* form = dynamic_cast<demo::DemoForm*>(host.host().desktop.Show("frmDemo"));
    EXPECT_NE(form, nullptr);
    Settle();
    return *form;
  }
  FormWindow* Window(const Form& form) { return host.windows().WindowOf(form); }

  template <typename W = QWidget>
  W* Widget(const Form& form, const char* name) {
    W* found = Window(form)->template findChild<W*>(QLatin1String(name));
    EXPECT_NE(found, nullptr) << name;
    return found;
  }
  void Click(QWidget* widget) { QTest::mouseClick(widget, Qt::LeftButton); }
  // A click where the mark of a radio button or check box is.
  void ClickMark(QWidget* widget) {
    QTest::mouseClick(widget, Qt::LeftButton, {}, QPoint(8, widget->height() / 2));
  }
  static void Settle() {
    for (int i = 0; i < 5; ++i) QApplication::processEvents();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
  // False when `done` does not hold within so many milliseconds.
  static bool WaitFor(const std::function<bool()>& done, int millis = 5000) {
    QElapsedTimer passed;
    passed.start();
    while (!done()) {
      if (passed.elapsed() > millis) return false;
      QTest::qWait(5);
    }
    return true;
  }
  template <typename D>
  static D* OpenDialog() {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
      if (auto* dialog = qobject_cast<D*>(widget); dialog != nullptr && dialog->isVisible()) {
        return dialog;
      }
    }
    return nullptr;
  }

  NativeClock clock;
  NativeFiles files;
  SilentSound sound;
  QtHost host{clock, files, sound};
};

}  // namespace zento
