#include "host/native/native_mail.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "host/native/native_clock.h"
#include "host/native/real_time_loop.h"
#include "host/native/smtp.h"
#include "host/native/smtp_server_test.h"
#include "text/status.h"

namespace zento {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;
using namespace std::chrono_literals;

constexpr std::int64_t kLimit = 20'000'000;
const MailMessage kMessage{"Night Owl", "owl@example.org", "Run done", "All well.\n.\n..two\n"};

class NativeMailTest : public testing::Test {
 protected:
  void SetUp() override {
    if (!SmtpIsBuiltIn()) GTEST_SKIP() << "built without mail";
    home_ = std::filesystem::path(testing::TempDir()) /
            testing::UnitTest::GetInstance()->current_test_info()->name();
    std::filesystem::remove_all(home_);
    std::filesystem::create_directories(home_);
  }
  void TearDown() override { std::filesystem::remove_all(home_); }

  void WriteFile(const std::string& name, const std::string& text, bool private_to_us = false) {
    std::ofstream(home_ / name) << text;
    using std::filesystem::perms;
    std::filesystem::permissions(
        home_ / name, private_to_us ? perms::owner_read | perms::owner_write : perms(0644));
  }
  void UseServer(const SmtpServer& server, const std::string& more = "TLS=none\n") {
    WriteFile("Mail.txt", "Server=127.0.0.1\nSender=cell@lab.example.org\nPort=" +
                              std::to_string(server.port()) + "\n" + more);
  }
  std::unique_ptr<Mail> MakeMail(std::chrono::milliseconds deadline = 10s) {
    return MakeNativeMail(
        timers_, {home_, deadline, [this](const char* name) {
                    const auto found = variables_.find(name);
                    return found == variables_.end() ? std::nullopt : std::optional(found->second);
                  }});
  }
  // "" for success, else why it failed; through the loop.
  std::string Outcome(Mail& mail, const MailMessage& message = kMessage) {
    std::optional<Status> outcome;
    mail.Send(message, [&](const Status& status) { outcome = status; });
    EXPECT_FALSE(outcome) << "told from within Send";
    EXPECT_EQ(mail.UnderWay(), 1);
    EXPECT_EQ(loop_.RunUntil([&] { return outcome.has_value(); }, kLimit), Waited::kDone);
    EXPECT_EQ(mail.UnderWay(), 0);
    return outcome ? outcome->why() : "never told";
  }

  NativeClock clock_;
  TimerQueue timers_{clock_};
  RealTimeLoop loop_{clock_, timers_};
  std::filesystem::path home_;
  std::map<std::string, std::string> variables_;
};

TEST_F(NativeMailTest, ReachesTheServerAsItWasWritten) {
  SmtpServer server(SmtpServer::Habit::kTakesAll);
  UseServer(server);
  const auto mail = MakeMail();
  EXPECT_EQ(Outcome(*mail), "");
  const auto mails = server.mails();
  ASSERT_EQ(mails.size(), 1u);
  EXPECT_THAT(mails[0].sender, StartsWith("<cell@lab.example.org>"));
  EXPECT_THAT(mails[0].receivers, ElementsAre("<owl@example.org>"));
  EXPECT_THAT(mails[0].message, HasSubstr("\r\nSubject: Run done\r\n"));
  EXPECT_THAT(mails[0].message, testing::EndsWith("\r\n\r\nAll well.\r\n.\r\n..two\r\n"));
}

TEST_F(NativeMailTest, SignsOnWithThePasswordOfTheEnvironmentOrThePrivateFile) {
  SmtpServer server(SmtpServer::Habit::kTakesAll);
  UseServer(server, "TLS=none\nUser=lab\n");
  const auto mail = MakeMail();
  EXPECT_THAT(Outcome(*mail), HasSubstr("there is no password"));
  WriteFile("Mail password.txt", "from file\n");
  EXPECT_THAT(Outcome(*mail), HasSubstr("open to others"));
  WriteFile("Mail password.txt", "from file\n", true);
  EXPECT_EQ(Outcome(*mail), "");
  variables_["ZENTO_MAIL_PASSWORD"] = "secret";
  EXPECT_EQ(Outcome(*mail), "");
  const auto mails = server.mails();
  ASSERT_EQ(mails.size(), 2u);
  EXPECT_EQ(mails[0].login, "AGxhYgBmcm9tIGZpbGU=");  // NUL lab NUL from file
  EXPECT_EQ(mails[1].login, "AGxhYgBzZWNyZXQ=");      // NUL lab NUL secret
}

TEST_F(NativeMailTest, KeepsThePasswordFromOpenConnections) {
  variables_["ZENTO_MAIL_PASSWORD"] = "secret";
  const auto mail = MakeMail();
  WriteFile("Mail.txt", "Server=mail.invalid\nSender=a@b\nUser=lab\nTLS=none\n");
  EXPECT_THAT(Outcome(*mail), HasSubstr("not sent without TLS"));
  // A server that does not offer STARTTLS gets neither password nor mail.
  SmtpServer server(SmtpServer::Habit::kTakesAll);
  UseServer(server, "TLS=STARTTLS\nUser=lab\n");
  EXPECT_THAT(Outcome(*mail), HasSubstr("STARTTLS"));
  EXPECT_THAT(server.commands(), testing::Not(HasSubstr("AUTH")));
  EXPECT_THAT(server.mails(), IsEmpty());
}

TEST_F(NativeMailTest, SaysWhatTheServerDidNotLike) {
  SmtpServer refusing(SmtpServer::Habit::kRefusesReceiver);
  UseServer(refusing);
  const auto mail = MakeMail();
  EXPECT_THAT(Outcome(*mail), HasSubstr("550 5.1.1 nobody of that name"));
  SmtpServer dropping(SmtpServer::Habit::kDropsInMessage);
  UseServer(dropping);
  EXPECT_THAT(Outcome(*mail), StartsWith("127.0.0.1: "));
  EXPECT_THAT(dropping.mails(), IsEmpty());
}

TEST_F(NativeMailTest, GivesUpAtTheDeadline) {
  SmtpServer server(SmtpServer::Habit::kNeverAnswers);
  UseServer(server);
  const auto mail = MakeMail(400ms);
  const std::int64_t began = clock_.Micros();
  EXPECT_THAT(Outcome(*mail), HasSubstr("no success within"));
  const std::int64_t took = clock_.Micros() - began;
  EXPECT_GE(took, 350'000);
  EXPECT_LT(took, 5'000'000);
}

TEST_F(NativeMailTest, EndsWithAllMailsToldAndLetsNoFloodPass) {
  SmtpServer server(SmtpServer::Habit::kTakesAll);
  UseServer(server);
  std::vector<std::string> outcomes;
  {
    const auto mail = MakeMail();
    for (int i = 0; i < 17; ++i) {
      mail->Send(kMessage, [&](const Status& status) { outcomes.push_back(status.why()); });
    }
    EXPECT_EQ(mail->UnderWay(), 17);
    EXPECT_THAT(outcomes, IsEmpty());
    mail->Finish();
    EXPECT_EQ(mail->UnderWay(), 0);
  }
  EXPECT_EQ(outcomes.size(), 17u);
  EXPECT_EQ(std::count(outcomes.begin(), outcomes.end(), ""), 16);
  EXPECT_EQ(server.mails().size(), 16u);
}

TEST_F(NativeMailTest, FailsClearlyWithoutUsableSettings) {
  const auto mail = MakeMail();
  EXPECT_THAT(Outcome(*mail), HasSubstr("Mail.txt"));
  WriteFile("Mail.txt", "Server=s\nPort=many\n");
  EXPECT_THAT(Outcome(*mail), HasSubstr("Mail.txt: line 2: Port"));
  WriteFile("Mail.txt", "Server=127.0.0.1\nSender=a@b\nTLS=none\n");
  EXPECT_EQ(Outcome(*mail, {"", "nobody", "", ""}), "\"nobody\" is no mail address");
  // A port that nobody listens at: the server has gone again.
  UseServer(SmtpServer(SmtpServer::Habit::kTakesAll));
  EXPECT_THAT(Outcome(*mail), StartsWith("127.0.0.1: "));
}

}  // namespace
}  // namespace zento
