#include "host/mail_settings.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <set>

#include "text/codepage.h"
#include "text/lines.h"

namespace zento {
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
