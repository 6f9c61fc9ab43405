// Whatever stands in the fields, a mail has the headers it should have, one receiver, and lines
// that every server takes. The same bytes are read as settings too.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "host/mail_text.h"
#include "text/status.h"

namespace {

using namespace zento;

void Require(bool holds) {
  if (!holds) std::abort();
}

constexpr std::array<std::string_view, 9> kHeaders = {
    "Date: ",         "From: ",         "To: ",
    "Subject: ",      "Message-ID: <",  "Auto-Submitted: ",
    "MIME-Version: ", "Content-Type: ", "Content-Transfer-Encoding: "};

void CheckMail(std::string_view mail, std::string_view receiver) {
  constexpr std::size_t kLongestHeaderLine = 400;  // an address alone may have 320
  constexpr std::size_t kLongestBodyLine = 76;
  std::size_t headers = 0;
  bool in_body = false;
  bool to = false;
  while (!mail.empty()) {
    const std::size_t end = mail.find("\r\n");
    Require(end != mail.npos);
    const std::string_view line = mail.substr(0, end);
    mail.remove_prefix(end + 2);
    Require(std::all_of(line.begin(), line.end(),
                        [](char c) { return (c >= ' ' && c <= '~') || c == '\t'; }));
    Require(line.size() <= (in_body ? kLongestBodyLine : kLongestHeaderLine));
    if (in_body) continue;
    if (line.empty()) {
      in_body = true;
    } else if (line[0] != ' ') {
      Require(headers < kHeaders.size());
      Require(line.substr(0, kHeaders[headers].size()) == kHeaders[headers]);
      to = headers == 2;
      ++headers;
      if (to && line == "To: " + std::string(receiver)) to = false;
    } else if (to && line == " <" + std::string(receiver) + ">") {
      to = false;
    }
    Require(!in_body || !to);
  }
  Require(in_body && headers == kHeaders.size() && !to);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  static_cast<void>(ParseMailSettings(bytes));

  // Four fields, cut at NULs.
  std::array<std::string, 4> fields;
  std::string_view rest = bytes;
  for (std::string& field : fields) {
    const std::size_t nul = std::min(rest.find('\0'), rest.size());
    field = rest.substr(0, nul);
    rest.remove_prefix(std::min(nul + 1, rest.size()));
  }
  const MailSender sender{fields[0], "sender@example.org"};
  const CalendarTime utc{2026, 1, 1, 0, 0, 0};
  const auto given = ComposeMail({fields[0], fields[1], fields[2], fields[3]}, sender, utc, "i");
  Require(given.ok() == IsMailAddress(fields[1]));
  if (given.ok()) CheckMail(given.value(), fields[1]);
  const auto mail = ComposeMail({fields[0], "a@b", fields[2], fields[3]}, sender, utc, "i");
  Require(mail.ok());
  CheckMail(mail.value(), "a@b");
  return 0;
}
