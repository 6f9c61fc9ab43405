#include "host/native/native_mail.h"

#include <algorithm>
#include <condition_variable>
#include <cstdint>
#include <ctime>
#include <exception>
#include <mutex>
#include <random>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "host/mail_text.h"
#include "host/native/home.h"
#include "host/native/native_files.h"
#include "host/native/smtp.h"
#include "text/codepage.h"
#include "text/status.h"

namespace zento {
namespace {

using std::chrono::steady_clock;

constexpr std::size_t kMostUnderWay = 16;
constexpr std::int64_t kLookMillis = 50;
// What a thread may be late by before it is given up.
constexpr std::chrono::milliseconds kGrace{2000};

CalendarTime UtcNow() {
  const auto now = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
  const auto day = std::chrono::floor<std::chrono::days>(now);
  const std::chrono::year_month_day date(day);
  const std::chrono::hh_mm_ss time(now - day);
  return {static_cast<int>(date.year()),
          static_cast<int>(static_cast<unsigned>(date.month())),
          static_cast<int>(static_cast<unsigned>(date.day())),
          static_cast<int>(time.hours().count()),
          static_cast<int>(time.minutes().count()),
          static_cast<int>(time.seconds().count())};
}

std::string UniqueId() {
  std::random_device random;
  std::string id = "zento";
  for (int i = 0; i < 4; ++i) id += "." + std::to_string(random());
  return id;
}

// What a sending thread and the window thread share; whoever leaves last takes it along.
struct Delivery {
  std::mutex mutex;
  std::condition_variable changed;
  std::optional<Status> result;
};

void Deliver(const SmtpJob& job, Delivery& delivery) {
  Status result;
  try {
    result = SendOverSmtp(job);
  } catch (const std::exception& error) {
    result = Status::Failure(error.what());
  }
  const std::lock_guard lock(delivery.mutex);
  delivery.result = std::move(result);
  delivery.changed.notify_all();
}

class NativeMail : public Mail {
 public:
  NativeMail(TimerQueue& timers, NativeMailOptions options)
      : options_(std::move(options)), look_(timers, [this] { Look(); }) {
    if (!options_.variable) options_.variable = EnvironmentVariable;
    look_.SetInterval(kLookMillis);
  }
  ~NativeMail() override { Finish(); }

  void Send(const MailMessage& message, std::function<void(const Status&)> done) override {
    UnderWayMail mail;
    mail.done = std::move(done);
    mail.give_up = steady_clock::now() + options_.deadline + kGrace;
    mail.delivery = std::make_shared<Delivery>();
    if (Status begun = Begin(message, mail.delivery); !begun.ok()) {
      mail.delivery->result = std::move(begun);
    }
    under_way_.push_back(std::move(mail));
    look_.SetEnabled(true);
  }

  int UnderWay() const override { return static_cast<int>(under_way_.size()); }

  void Finish() override {
    while (!under_way_.empty()) {
      const auto mail = under_way_.front();
      {
        std::unique_lock lock(mail.delivery->mutex);
        mail.delivery->changed.wait_until(lock, mail.give_up,
                                          [&] { return mail.delivery->result.has_value(); });
      }
      Look();
    }
  }

 private:
  struct UnderWayMail {
    std::function<void(const Status&)> done;
    steady_clock::time_point give_up;
    std::shared_ptr<Delivery> delivery;
  };

  Status Begin(const MailMessage& message, const std::shared_ptr<Delivery>& delivery) {
    if (under_way_.size() >= kMostUnderWay) {
      return Status::Failure("too many mails are on their way already");
    }
    const auto bytes = NativeFiles().Read(MailSettingsPath(options_.home));
    if (!bytes.ok()) return bytes.status().Within("mail needs a Mail.txt in the home");
    const auto settings = ParseMailSettings(bytes.value());
    if (!settings.ok()) return settings.status().Within("Mail.txt");
    const auto text = ComposeMail(message, settings->sender, UtcNow(), UniqueId());
    if (!text.ok()) return text.status();
    const auto password = Password(settings.value());
    if (!password.ok()) return password.status();

    SmtpJob job{settings.value(), password.value(), message.address, text.value(),
                options_.deadline};
    std::thread([job = std::move(job), delivery] { Deliver(job, *delivery); }).detach();
    return Status::Ok();
  }

  Result<std::string> Password(const MailSettings& settings) const {
    if (settings.user.empty()) return std::string();
    if (settings.tls == MailSettings::Tls::kNone && !IsLoopback(settings.server)) {
      return Status::Failure(
          "Mail.txt: a password is not sent without TLS (TLS=STARTTLS or "
          "TLS=implicit), except to this machine itself");
    }
    if (auto given = options_.variable(kMailPasswordVariable)) return *given;
    const auto kept = ReadSecretFile(MailPasswordPath(options_.home));
    if (!kept.ok()) return kept.status();
    if (kept.value() && !kept.value()->empty()) return *kept.value();
    return Status::Failure("Mail.txt names a user, but there is no password: neither in " +
                           std::string(kMailPasswordVariable) + " nor in \"Mail password.txt\"");
  }

  // Takes what has come to its end out of the list and tells it.
  void Look() {
    std::vector<std::pair<UnderWayMail, Status>> ended;
    for (auto mail = under_way_.begin(); mail != under_way_.end();) {
      if (const auto result = ResultOf(*mail)) {
        ended.emplace_back(std::move(*mail), *result);
        mail = under_way_.erase(mail);
      } else {
        ++mail;
      }
    }
    look_.SetEnabled(!under_way_.empty());
    for (const auto& [mail, result] : ended) {
      if (mail.done) mail.done(result);
    }
  }

  static std::optional<Status> ResultOf(const UnderWayMail& mail) {
    const std::lock_guard lock(mail.delivery->mutex);
    if (mail.delivery->result) return mail.delivery->result;
    if (steady_clock::now() < mail.give_up) return std::nullopt;
    return Status::Failure("the mail did not come to an end in time");
  }

  NativeMailOptions options_;
  TimerQueue::PeriodicTimer look_;
  std::vector<UnderWayMail> under_way_;
};

}  // namespace

std::unique_ptr<Mail> MakeNativeMail(TimerQueue& timers, NativeMailOptions options) {
  return std::make_unique<NativeMail>(timers, std::move(options));
}

}  // namespace zento
