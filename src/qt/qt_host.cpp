#include "qt/qt_host.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QImage>
#include <QSocketNotifier>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>

#include "host/native/alarm.h"
#include "host/native/native_mail.h"
#include "host/services.h"
#include "qt/form_window.h"
#include "qt/qt_text.h"
#include "qt/raster_surface.h"

namespace zento {
namespace {

class QtClipboard : public Clipboard {
 public:
  void SetText(const std::string& text) override {
    QGuiApplication::clipboard()->setText(ToQt(text));
  }
  std::string Text() const override { return FromQt(QGuiApplication::clipboard()->text()); }
  void SetPicture(Size size, const std::function<void(Surface&)>& paint) override {
    // As sharp as the screen it was copied from.
    const double ratio = qGuiApp->devicePixelRatio();
    QImage image(static_cast<int>(std::ceil(size.width * ratio)),
                 static_cast<int>(std::ceil(size.height * ratio)), QImage::Format_RGB32);
    if (image.isNull()) return;
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::white);
    {
      RasterSurface surface(image);
      paint(surface);
    }
    QGuiApplication::clipboard()->setImage(image);
  }
};

// Runs a timer queue from the event loop. Deadlines are absolute (the queue's), so an alarm that
// comes late delays one tick, never the rate.
class TimerDriver : public QObject {
 public:
  // Both must outlive the driver.
  TimerDriver(TimerQueue& queue, Clock& clock) : queue_(queue), clock_(clock) {
    timer_.setSingleShot(true);
    timer_.setTimerType(Qt::PreciseTimer);
    connect(&timer_, &QTimer::timeout, this, [this] { Run(); });
    if (alarm_.Descriptor() >= 0) {
      watch_ = new QSocketNotifier(alarm_.Descriptor(), QSocketNotifier::Read, this);
      connect(watch_, &QSocketNotifier::activated, this, [this] { Run(); });
    }
    queue_.on_rearm = [this] { Arm(); };
    Arm();
  }
  ~TimerDriver() override { queue_.on_rearm = {}; }

 private:
  void Run() {
    if (watch_ != nullptr) alarm_.Acknowledge();
    // The handlers rearm timers one after the other; one alarm is set when they are done.
    running_ = true;
    queue_.RunDue();
    running_ = false;
    Arm();
  }

  void Arm() {
    if (running_) return;
    const auto due = queue_.NextDue();
    if (!due) {
      timer_.stop();
      if (watch_ != nullptr) alarm_.Cancel();
      return;
    }
    const std::int64_t micros = std::max<std::int64_t>(*due - clock_.Micros(), 0);
    if (watch_ != nullptr) {
      alarm_.After(micros);
    } else {
      timer_.start(std::chrono::milliseconds((micros + 999) / 1000));
    }
  }

  TimerQueue& queue_;
  Clock& clock_;
  Alarm alarm_;
  QSocketNotifier* watch_ = nullptr;
  // Where the platform has no alarm to watch; rounds to milliseconds.
  QTimer timer_;
  bool running_ = false;
};

}  // namespace

QtDesktop::~QtDesktop() {
  for (auto& [form, window] : windows_) delete window.data();
}

void QtDesktop::FormShown(Form& form) {
  QPointer<FormWindow>& window = windows_[&form];
  if (window == nullptr) window = new FormWindow(form);
  window->Reveal();
}

void QtDesktop::FormHidden(Form& form) {
  if (FormWindow* window = WindowOf(form)) window->hide();
}

void QtDesktop::FormUnloaded(Form& form) {
  const auto found = windows_.find(&form);
  if (found == windows_.end()) return;
  // Perhaps from within a signal of one of the window's own widgets.
  const QPointer<FormWindow> window = found->second;
  windows_.erase(found);
  if (window == nullptr) return;
  window->Detach();
  window->deleteLater();
}

FormWindow* QtDesktop::WindowOf(const Form& form) const {
  const auto found = windows_.find(&form);
  return found == windows_.end() ? nullptr : found->second.data();
}

QtHost::QtHost(Clock& clock, Files& files, Sound& sound, const std::filesystem::path& home)
    : timers_(clock),
      clipboard_(std::make_unique<QtClipboard>()),
      mail_(MakeNativeMail(timers_, {.home = home})),
      desktop_(timers_),
      timer_driver_(std::make_unique<TimerDriver>(timers_, clock)),
      host_{clock, timers_, desktop_, dialogs_, *clipboard_, files, sound, *mail_} {
  desktop_.SetView(&windows_);
}

QtHost::~QtHost() {
  desktop_.SetView(nullptr);
}

}  // namespace zento
