#include "host/mail_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <set>

#include "text/codepage.h"
#include "text/lines.h"
#include "text/status.h"

namespace zento {
namespace {

constexpr std::size_t kLongestLocalPart = 64;
constexpr std::size_t kLongestDomain = 255;
constexpr std::size_t kLongestLabel = 63;
constexpr std::size_t kLongestPlainText = 60;     // of a header that is not encoded
constexpr std::size_t kLongestEncodedChunk = 45;  // bytes; 60 characters of base 64
constexpr std::size_t kLongestQuotedPrintable = 76;

bool IsLetterOrDigit(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

bool IsAtomCharacter(char c) {
  return IsLetterOrDigit(c) || std::string_view("!#$%&'*+-/=?^_`{|}~").find(c) != std::string::npos;
}

// Calls `accept` for each piece between dots; false when one was not accepted.
template <typename Accept>
bool AllDotted(std::string_view text, Accept accept) {
  for (;;) {
    const std::size_t dot = text.find('.');
    if (!accept(text.substr(0, dot))) return false;
    if (dot == text.npos) return true;
    text.remove_prefix(dot + 1);
  }
}

bool IsAtom(std::string_view piece) {
  return !piece.empty() && std::all_of(piece.begin(), piece.end(), IsAtomCharacter);
}

bool IsHostLabel(std::string_view piece) {
  return !piece.empty() && piece.size() <= kLongestLabel && piece.front() != '-' &&
         piece.back() != '-' && std::all_of(piece.begin(), piece.end(), [](char c) {
           return IsLetterOrDigit(c) || c == '-';
         });
}

// Where the character that begins at `at` ends, in valid UTF-8.
std::size_t CharacterEnd(std::string_view text, std::size_t at) {
  ++at;
  while (at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0u) == 0x80u) ++at;
  return at;
}

bool IsControl(std::string_view character) {
  const auto first = static_cast<unsigned char>(character[0]);
  if (character.size() == 1) return first < 0x20 || first == 0x7F;
  // U+0080 to U+009F, and the separators of lines and paragraphs, U+2028 and U+2029.
  if (character.size() == 2)
    return first == 0xC2 && static_cast<unsigned char>(character[1]) < 0xA0;
  return character == "\xE2\x80\xA8" || character == "\xE2\x80\xA9";
}

// Valid UTF-8 with blanks in place of control characters.
std::string OneLine(std::string_view text) {
  const std::string valid = MakeValidUtf8(text);
  std::string line;
  for (std::size_t at = 0; at < valid.size();) {
    const std::size_t end = CharacterEnd(valid, at);
    const auto character = std::string_view(valid).substr(at, end - at);
    line.append(IsControl(character) ? " " : character);
    at = end;
  }
  return line;
}

bool IsPlain(std::string_view text) {
  return text.size() <= kLongestPlainText && text.find("=?") == text.npos &&
         std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~'; });
}

std::string Base64(std::string_view bytes) {
  constexpr char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string out;
  for (std::size_t at = 0; at < bytes.size(); at += 3) {
    std::uint32_t bits = 0;
    const std::size_t count = std::min<std::size_t>(3, bytes.size() - at);
    for (std::size_t i = 0; i < 3; ++i) {
      bits = bits << 8 | (i < count ? static_cast<unsigned char>(bytes[at + i]) : 0u);
    }
    for (std::size_t i = 0; i < 4; ++i) {
      out += i <= count ? kDigits[bits >> (18 - 6 * i) & 0x3Fu] : '=';
    }
  }
  return out;
}

// RFC 2047: as many encoded words as it takes, one a line, cut between characters.
std::string EncodedWords(std::string_view text) {
  std::string out;
  for (std::size_t at = 0; at < text.size();) {
    std::size_t end = at;
    for (std::size_t next = at; next < text.size();) {
      next = CharacterEnd(text, next);
      if (next - at > kLongestEncodedChunk) break;
      end = next;
    }
    if (!out.empty()) out += "\r\n ";
    out += "=?UTF-8?B?" + Base64(text.substr(at, end - at)) + "?=";
    at = end;
  }
  return out;
}

std::string HeaderText(std::string_view text) {
  const std::string line = OneLine(text);
  return IsPlain(line) ? line : EncodedWords(line);
}

std::string Quoted(std::string_view text) {
  std::string out = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') out += '\\';
    out += c;
  }
  return out + '"';
}

// An address alone, or behind the name of whose it is, on a line of its own.
std::string Mailbox(std::string_view name, const std::string& address) {
  const std::string line = OneLine(name);
  if (line.find_first_not_of(' ') == line.npos) return address;
  return (IsPlain(line) ? Quoted(line) : EncodedWords(line)) + "\r\n <" + address + ">";
}

std::string TwoDigits(int value) {
  return {static_cast<char>('0' + value / 10 % 10), static_cast<char>('0' + value % 10)};
}

int DayOfWeek(int year, int month, int day) {  // 0 = Sunday; Sakamoto's method
  constexpr std::array kShift = {0, 3, 2, 5, 0, 3, 5, 1, 4, 6, 2, 4};
  if (month < 3) --year;
  return (year + year / 4 - year / 100 + year / 400 + kShift[static_cast<std::size_t>(month - 1)] +
          day) %
         7;
}

std::string DateText(const CalendarTime& utc) {
  constexpr std::array kDays = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
  constexpr std::array kMonths = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                  "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
  const int weekday = DayOfWeek(utc.year, utc.month, utc.day);
  return std::string(kDays[static_cast<std::size_t>(weekday)]) + ", " + TwoDigits(utc.day) + " " +
         kMonths[static_cast<std::size_t>(utc.month - 1)] + " " + std::to_string(utc.year) + " " +
         TwoDigits(utc.hour) + ":" + TwoDigits(utc.minute) + ":" + TwoDigits(utc.second) + " +0000";
}

std::string HexByte(char c) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  const auto byte = static_cast<unsigned char>(c);
  return {'=', kDigits[byte >> 4], kDigits[byte & 15u]};
}

// One line in quoted-printable, with soft breaks (RFC 2045, 6.7).
void AppendQuotedPrintable(std::string& out, std::string_view line) {
  std::size_t column = 0;
  for (std::size_t i = 0; i < line.size(); ++i) {
    const char c = line[i];
    const bool blank = c == ' ' || c == '\t';
    const bool plain = blank ? i + 1 < line.size() : c > ' ' && c <= '~' && c != '=';
    const std::string piece = plain ? std::string(1, c) : HexByte(c);
    // One column stays for the sign of a soft break.
    if (column + piece.size() >= kLongestQuotedPrintable) {
      out += "=\r\n";
      column = 0;
    }
    out += piece;
    column += piece.size();
  }
  out += "\r\n";
}

std::string Body(std::string_view text) {
  std::string out;
  std::string_view line;
  for (LineReader lines(text); lines.Next(line);) {
    std::string clean;
    // Tabs are no harm within a line.
    for (std::size_t tab = 0; tab != line.npos;) {
      tab = line.find('\t');
      clean += OneLine(line.substr(0, tab));
      if (tab == line.npos) break;
      clean += '\t';
      line.remove_prefix(tab + 1);
    }
    AppendQuotedPrintable(out, clean);
  }
  return out;
}

}  // namespace

bool IsMailAddress(std::string_view address) {
  const std::size_t at = address.find('@');
  if (at == address.npos || at > kLongestLocalPart) return false;
  const std::string_view domain = address.substr(at + 1);
  return domain.size() <= kLongestDomain && AllDotted(address.substr(0, at), IsAtom) &&
         AllDotted(domain, IsHostLabel);
}

Result<std::string> ComposeMail(const MailMessage& message, const MailSender& sender,
                                const CalendarTime& utc, std::string_view id) {
  if (!IsMailAddress(message.address)) {
    return Status::Failure("\"" + OneLine(message.address) + "\" is no mail address");
  }
  if (!IsMailAddress(sender.address)) {
    return Status::Failure("\"" + OneLine(sender.address) + "\" is no mail address to send from");
  }
  const std::string domain = sender.address.substr(sender.address.find('@') + 1);
  return "Date: " + DateText(utc) + "\r\nFrom: " + Mailbox(sender.name, sender.address) +
         "\r\nTo: " + Mailbox(message.display_name, message.address) +
         "\r\nSubject: " + HeaderText(message.subject) + "\r\nMessage-ID: <" + std::string(id) +
         "@" + domain +
         ">\r\nAuto-Submitted: auto-generated"
         "\r\nMIME-Version: 1.0"
         "\r\nContent-Type: text/plain; charset=utf-8"
         "\r\nContent-Transfer-Encoding: quoted-printable\r\n\r\n" +
         Body(message.text);
}

namespace {

using Tls = MailSettings::Tls;

struct TlsName {
  std::string_view name;
  Tls tls;
  int usual_port;
};
constexpr TlsName kTlsNames[] = {
    {"none", Tls::kNone, 25}, {"STARTTLS", Tls::kStartTls, 587}, {"implicit", Tls::kImplicit, 465}};

std::string_view Trim(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t");
  if (first == text.npos) return {};
  return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

Status SetServer(MailSettings& settings, std::string_view value) {
  const auto usable = [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '.' ||
           c == '-' || c == ':';
  };
  if (value.empty() || !std::all_of(value.begin(), value.end(), usable)) {
    return Status::Failure("Server is a host name or an address, without port");
  }
  settings.server = value;
  return Status::Ok();
}

Status SetPort(MailSettings& settings, std::string_view value) {
  int port = 0;
  const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), port);
  if (error != std::errc() || end != value.data() + value.size() || port < 1 || port > 65535) {
    return Status::Failure("Port is a number from 1 to 65535");
  }
  settings.port = port;
  return Status::Ok();
}

Status SetTls(MailSettings& settings, std::string_view value) {
  for (const TlsName& known : kTlsNames) {
    if (known.name != value) continue;
    settings.tls = known.tls;
    return Status::Ok();
  }
  return Status::Failure("TLS is none, STARTTLS or implicit");
}

Status SetUser(MailSettings& settings, std::string_view value) {
  settings.user = value;
  return Status::Ok();
}

Status SetSender(MailSettings& settings, std::string_view value) {
  if (!IsMailAddress(value)) return Status::Failure("Sender is a mail address");
  settings.sender.address = value;
  return Status::Ok();
}

Status SetSenderName(MailSettings& settings, std::string_view value) {
  settings.sender.name = value;
  return Status::Ok();
}

struct Key {
  std::string_view name;
  Status (*set)(MailSettings&, std::string_view value);
};
constexpr std::array kKeys = {Key{"Server", SetServer}, Key{"Port", SetPort},
                              Key{"TLS", SetTls},       Key{"User", SetUser},
                              Key{"Sender", SetSender}, Key{"SenderName", SetSenderName}};

Status ReadLine(std::string_view line, std::set<std::string_view>& seen, MailSettings& settings) {
  const std::size_t equals = line.find('=');
  if (equals == line.npos) return Status::Failure("a line is Key=Value, or begins with #");
  const std::string_view name = Trim(line.substr(0, equals));
  for (const Key& key : kKeys) {
    if (key.name != name) continue;
    if (!seen.insert(key.name).second) {
      return Status::Failure(std::string(name) + " stands there twice");
    }
    return key.set(settings, Trim(line.substr(equals + 1)));
  }
  if (name == "Password") {
    return Status::Failure(
        "the password does not belong here: put it into \"Mail password.txt\", readable by you "
        "alone, or into the environment variable " +
        std::string(kMailPasswordVariable));
  }
  return Status::Failure("there is no key \"" + std::string(name) + "\"");
}

}  // namespace

Result<MailSettings> ParseMailSettings(std::string_view bytes) {
  const std::string text = DecodeFile(bytes);
  MailSettings settings;
  std::set<std::string_view> seen;
  LineReader lines(text);
  std::string_view line;
  for (int number = 1; lines.Next(line); ++number) {
    line = Trim(line);
    if (line.empty() || line.front() == '#') continue;
    const Status read = ReadLine(line, seen, settings);
    if (!read.ok()) return read.Within("line " + std::to_string(number));
  }
  for (const char* needed : {"Server", "Sender"}) {
    if (seen.count(needed) == 0) return Status::Failure(std::string(needed) + "= is missing");
  }
  if (settings.port == 0) {
    for (const TlsName& known : kTlsNames) {
      if (known.tls == settings.tls) settings.port = known.usual_port;
    }
  }
  return settings;
}

std::filesystem::path MailSettingsPath(const std::filesystem::path& home) {
  return home / "Mail.txt";
}

std::filesystem::path MailPasswordPath(const std::filesystem::path& home) {
  return home / "Mail password.txt";
}

bool IsLoopback(std::string_view server) {
  if (server == "localhost" || server == "::1") return true;
  const std::string_view net = "127.";
  return server.substr(0, net.size()) == net &&
         server.find_first_not_of("0123456789.") == server.npos;
}

}  // namespace zento
