#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "host/clock.h"
#include "host/mail.h"
#include "text/format.h"
#include "text/status_fwd.h"

// A mail as the text that goes to a server. Pure functions.

namespace zento {

struct MailSender {
  std::string name;  // may be empty
  std::string address;
};

// Whether a mail can be addressed so: letters, digits and the usual signs in dotted words, "@", and
// a host name; ASCII, at most 64 characters before the sign and 255 behind it. No quotes, no
// comments, no blanks: nothing that a server could take for a second receiver.
bool IsMailAddress(std::string_view address);

// The mail as an internet message (RFC 5322) in MIME, lines ended by CR LF, pure ASCII whatever the
// fields hold, no line longer than 998 characters.
//
// Nothing that stands in a field can become a header or a receiver: addresses are checked (a bad
// one is the only failure), line breaks and control characters in names and subject become blanks,
// and what is not plain ASCII is encoded (RFC 2047). In the text line breaks stay, CR LF, LF and CR
// alike; other control characters but the tab become blanks.
//
// `utc` is the moment of sending in UTC; `id` names the mail, unique, of letters, digits, dots and
// hyphens. A line that begins with a dot is left as it is: doubling dots is part of sending.
Result<std::string> ComposeMail(const MailMessage& message, const MailSender& sender,
                                const CalendarTime& utc, std::string_view id);

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
