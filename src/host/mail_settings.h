#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

#include "host/mail_text.h"
#include "text/status.h"

namespace zento {

// How mails leave the machine.
struct MailSettings {
  enum class Tls : std::uint8_t {
    kNone,      // in the clear
    kStartTls,  // the connection is made secure before anything is said, or not used
    kImplicit,  // secure from the first byte
  };

  std::string server;  // a host name or an address
  int port = 0;        // 1 to 65535
  Tls tls = Tls::kStartTls;
  std::string user;  // empty: the server wants no sign-on
  MailSender sender;
};

// The text of Mail.txt, Key=Value lines (see docs/formats.md). Unlike the program's own settings
// file this one is written by hand, so whatever is not understood fails, with its line number.
Result<MailSettings> ParseMailSettings(std::string_view bytes);

std::filesystem::path MailSettingsPath(const std::filesystem::path& home);
// The file that may hold the password, on its first line; only its owner may read it.
std::filesystem::path MailPasswordPath(const std::filesystem::path& home);
// The environment variable that holds it otherwise, and goes first.
inline constexpr char kMailPasswordVariable[] = "ZENTO_MAIL_PASSWORD";

// Whether a server is this machine itself: "localhost", "127.x.y.z" or "::1".
bool IsLoopback(std::string_view server);

}  // namespace zento
