#include "host/mail_text.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "text/codepage.h"
#include "text/lines.h"

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

}  // namespace zento
