#include "host/mail_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "text/lines.h"
#include "text/status.h"

namespace zento {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

const MailSender kSender{"Cell 2", "cell2@lab.example.org"};
const CalendarTime kMoment{2026, 2, 28, 23, 5, 9};

std::string Compose(const MailMessage& message) {
  const auto mail = ComposeMail(message, kSender, kMoment, "id.1");
  return mail.ok() ? mail.value() : "FAILED: " + mail.why();
}

std::vector<std::string> HeaderNames(const std::string& mail) {
  std::vector<std::string> names;
  std::string_view line;
  for (LineReader lines(mail); lines.Next(line) && !line.empty();) {
    if (line[0] != ' ') names.emplace_back(line.substr(0, line.find(':')));
  }
  return names;
}

TEST(MailText, IsAnInternetMessage) {
  EXPECT_EQ(Compose({"Dr \"Night\" Owl", "owl@example.org", "Run done", "All well.\n.dot\nx = 1 "}),
            "Date: Sat, 28 Feb 2026 23:05:09 +0000\r\n"
            "From: \"Cell 2\"\r\n <cell2@lab.example.org>\r\n"
            "To: \"Dr \\\"Night\\\" Owl\"\r\n <owl@example.org>\r\n"
            "Subject: Run done\r\n"
            "Message-ID: <id.1@lab.example.org>\r\n"
            "Auto-Submitted: auto-generated\r\n"
            "MIME-Version: 1.0\r\n"
            "Content-Type: text/plain; charset=utf-8\r\n"
            "Content-Transfer-Encoding: quoted-printable\r\n"
            "\r\n"
            "All well.\r\n.dot\r\nx =3D 1=20\r\n");
}

TEST(MailText, FieldsCannotAddHeadersOrReceivers) {
  const std::string plain = Compose({"A", "a@example.org", "S", "T"});
  for (const std::string evil :
       {"x\r\nBcc: thief@example.org", "x\nBcc: t@example.org\n\nbody", "x\rBcc: t@example.org",
        "x\xE2\x80\xA8"
        "Bcc: t@e.org",
        "x\xC2\x85"
        "Bcc: t@e.org",
        "x>, <t@e.org", "x\xFF\nBcc: t@e.org"}) {
    const std::string mail = Compose({evil, "a@example.org", evil, evil});
    EXPECT_EQ(HeaderNames(mail), HeaderNames(plain)) << mail;
    EXPECT_THAT(Compose({"A", "a@example.org" + evil.substr(1), "S", "T"}), StartsWith("FAILED"));
    EXPECT_THAT(Compose({"A", evil, "S", "T"}), StartsWith("FAILED"));
  }
}

TEST(MailText, OtherScriptsAreEncodedInPiecesOfWholeCharacters) {
  const std::string mail = Compose(
      {"測定室", "a@example.org", "一晩の測定が終わりました。データを確認してください。", "µA\n"});
  EXPECT_THAT(mail, HasSubstr("To: =?UTF-8?B?5ris5a6a5a6k?=\r\n <a@example.org>"));
  // 45 bytes are 15 of these characters.
  EXPECT_THAT(
      mail,
      HasSubstr("Subject: =?UTF-8?B?5LiA5pmp44Gu5ris5a6a44GM57WC44KP44KK44G+44GX44Gf44CC44OH44O8"
                "?=\r\n =?UTF-8?B?44K/44KS56K66KqN44GX44Gm44GP44Gg44GV44GE44CC?=\r\n"));
  EXPECT_THAT(mail, HasSubstr("\r\n\r\n=C2=B5A\r\n"));
  std::string_view line;
  for (LineReader lines(mail); lines.Next(line);) EXPECT_LE(line.size(), 90u);
}

TEST(MailText, LongLinesOfTheTextAreFolded) {
  const std::string mail = Compose({"", "a@example.org", "", std::string(200, 'x') + "=\tend\t"});
  const std::string body = mail.substr(mail.find("\r\n\r\n") + 4);
  EXPECT_EQ(body, std::string(75, 'x') + "=\r\n" + std::string(75, 'x') + "=\r\n" +
                      std::string(50, 'x') + "=3D\tend=09\r\n");
}

TEST(MailText, Addresses) {
  for (const char* good : {"a@b", "first.last+tag@example.org", "o'hara@lab-3.example.org"}) {
    EXPECT_TRUE(IsMailAddress(good)) << good;
  }
  for (const char* bad :
       {"",      "Address", "@b",     "a@",        "a@b@c",         "a b@c",      "a@b c",
        ".a@b",  "a.@b",    "a..b@c", "a@-b",      "a@b-",          "a@b..c",     "a@b.",
        "<a@b>", "a@b>",    "a,b@c",  "\"a b\"@c", "a@[127.0.0.1]", "\xC3\xA4@b", "a@b\n"}) {
    EXPECT_FALSE(IsMailAddress(bad)) << bad;
  }
  EXPECT_FALSE(IsMailAddress(std::string(65, 'a') + "@b"));
  EXPECT_FALSE(IsMailAddress("a@" + std::string(64, 'b')));
}

TEST(MailSettingsFile, IsReadWithUsualPorts) {
  const auto full = ParseMailSettings(
      "# the institute's server\r\nServer = smtp.example.org\r\nPort=2525\r\nTLS=implicit\r\n"
      "User=lab\r\nSender=lab@example.org\r\nSenderName=Cell 2\r\n");
  ASSERT_TRUE(full.ok()) << full.why();
  EXPECT_EQ(full->server, "smtp.example.org");
  EXPECT_EQ(full->port, 2525);
  EXPECT_EQ(full->tls, MailSettings::Tls::kImplicit);
  EXPECT_EQ(full->user, "lab");
  EXPECT_EQ(full->sender.name, "Cell 2");

  // Secure unless it was said otherwise.
  const auto least = ParseMailSettings("Server=s\nSender=a@b\n");
  ASSERT_TRUE(least.ok()) << least.why();
  EXPECT_EQ(least->tls, MailSettings::Tls::kStartTls);
  EXPECT_EQ(least->port, 587);
  EXPECT_EQ(ParseMailSettings("Server=s\nSender=a@b\nTLS=none")->port, 25);
}

TEST(MailSettingsFile, WhatIsNotUnderstoodFailsWithItsLine) {
  const auto why = [](const std::string& text) { return ParseMailSettings(text).why(); };
  EXPECT_THAT(why("Server=s\n\nPort=0\n"), StartsWith("line 3: Port"));
  EXPECT_THAT(why("Port=25x"), StartsWith("line 1: Port"));
  EXPECT_THAT(why("Server=s\nTLS=starttls\n"), StartsWith("line 2: TLS"));
  EXPECT_THAT(why("Sender=nobody"), StartsWith("line 1: Sender"));
  EXPECT_THAT(why("Server=smtp://s"), StartsWith("line 1: Server"));
  EXPECT_THAT(why("Server=s\nServer=t"), StartsWith("line 2: Server"));
  EXPECT_THAT(why("just text"), StartsWith("line 1: "));
  EXPECT_THAT(why("Servre=s"), HasSubstr("Servre"));
  EXPECT_THAT(why("Sender=a@b"), HasSubstr("Server="));
  // A secret that stands there by mistake is not repeated anywhere.
  EXPECT_THAT(why("Password=hush"), Not(HasSubstr("hush")));
}

TEST(MailSettingsFile, LoopbackIsThisMachineOnly) {
  for (const char* here : {"localhost", "127.0.0.1", "127.8.9.10", "::1"}) {
    EXPECT_TRUE(IsLoopback(here)) << here;
  }
  for (const char* there : {"127.example.org", "localhost.example.org", "10.0.0.1", "1270.0.0.1"}) {
    EXPECT_FALSE(IsLoopback(there)) << there;
  }
}

}  // namespace
}  // namespace zento
