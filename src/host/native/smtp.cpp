#include "host/native/smtp.h"

#include "text/status.h"

#ifdef ZENTO_CURL

#include <curl/curl.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <memory>
#include <string_view>

namespace zento {
namespace {

struct FreeHandle {
  void operator()(CURL* handle) const { curl_easy_cleanup(handle); }
};
struct FreeList {
  void operator()(curl_slist* list) const { curl_slist_free_all(list); }
};

// Once for the whole process, before the first thread that needs it goes on.
bool Prepared() {
  static const bool kPrepared = curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK;
  return kPrepared;
}

// What has not been sent yet.
std::size_t ReadMessage(char* to, std::size_t size, std::size_t count, void* message) {
  auto& rest = *static_cast<std::string_view*>(message);
  const std::size_t length = std::min(size * count, rest.size());
  std::memcpy(to, rest.data(), length);
  rest.remove_prefix(length);
  return length;
}

// The server's own words when it refuses something, for the person who has to mend it. Lines of
// ours, which may hold the password, are not looked at.
int KeepRefusal(CURL*, curl_infotype kind, char* text, std::size_t size, void* refusal) {
  constexpr std::size_t kLongest = 300;
  if (kind != CURLINFO_HEADER_IN || size == 0 || (text[0] != '4' && text[0] != '5')) return 0;
  std::string line(text, std::min(size, kLongest));
  std::replace_if(
      line.begin(), line.end(), [](char c) { return c < ' ' || c > '~'; }, ' ');
  line.erase(line.find_last_not_of(' ') + 1);
  *static_cast<std::string*>(refusal) = line;
  return 0;
}

std::string Url(const MailSettings& settings) {
  const bool implicit = settings.tls == MailSettings::Tls::kImplicit;
  const bool literal = settings.server.find(':') != std::string::npos;
  return std::string(implicit ? "smtps://" : "smtp://") +
         (literal ? "[" + settings.server + "]" : settings.server) + ":" +
         std::to_string(settings.port);
}

void SetConnection(CURL* curl, const SmtpJob& job) {
  const MailSettings& settings = job.settings;
  const bool starttls = settings.tls == MailSettings::Tls::kStartTls;
  const auto deadline = static_cast<long>(job.deadline.count());
  curl_easy_setopt(curl, CURLOPT_URL, Url(settings).c_str());
#if LIBCURL_VERSION_NUM >= 0x075500
  curl_easy_setopt(curl, CURLOPT_PROTOCOLS_STR, "smtp,smtps");
#else
  curl_easy_setopt(curl, CURLOPT_PROTOCOLS, static_cast<long>(CURLPROTO_SMTP | CURLPROTO_SMTPS));
#endif
#if LIBCURL_VERSION_NUM >= 0x075700
  // A look-up of a name that hangs is left behind instead of waited for.
  curl_easy_setopt(curl, CURLOPT_QUICK_EXIT, 1L);
#endif
  curl_easy_setopt(curl, CURLOPT_NOSIGNAL, 1L);
  curl_easy_setopt(curl, CURLOPT_TIMEOUT_MS, deadline);
  curl_easy_setopt(curl, CURLOPT_CONNECTTIMEOUT_MS, deadline);
  curl_easy_setopt(curl, CURLOPT_PROXY, "");
  curl_easy_setopt(curl, CURLOPT_USE_SSL,
                   static_cast<long>(starttls ? CURLUSESSL_ALL : CURLUSESSL_NONE));
  curl_easy_setopt(curl, CURLOPT_SSL_VERIFYPEER, 1L);
  curl_easy_setopt(curl, CURLOPT_SSL_VERIFYHOST, 2L);
  curl_easy_setopt(curl, CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
  if (settings.user.empty()) return;
  curl_easy_setopt(curl, CURLOPT_USERNAME, settings.user.c_str());
  curl_easy_setopt(curl, CURLOPT_PASSWORD, job.password.c_str());
}

Status Failure(CURLcode code, const SmtpJob& job, const std::string& detail,
               const std::string& refusal) {
  std::string why = job.settings.server + ": ";
  if (code == CURLE_OPERATION_TIMEDOUT) {
    why += "no success within " + std::to_string((job.deadline.count() + 500) / 1000) + " s; ";
  }
  why += detail.empty() ? curl_easy_strerror(code) : detail;
  return Status::Failure(refusal.empty() ? why : why + " (" + refusal + ")");
}

}  // namespace

Status SendOverSmtp(const SmtpJob& job) {
  const std::unique_ptr<CURL, FreeHandle> curl(Prepared() ? curl_easy_init() : nullptr);
  if (!curl) return Status::Failure("the mail library does not start");
  SetConnection(curl.get(), job);

  const std::string from = "<" + job.settings.sender.address + ">";
  const std::string to = "<" + job.receiver + ">";
  const std::unique_ptr<curl_slist, FreeList> receivers(curl_slist_append(nullptr, to.c_str()));
  curl_easy_setopt(curl.get(), CURLOPT_MAIL_FROM, from.c_str());
  curl_easy_setopt(curl.get(), CURLOPT_MAIL_RCPT, receivers.get());

  std::string_view rest = job.message;
  curl_easy_setopt(curl.get(), CURLOPT_UPLOAD, 1L);
  curl_easy_setopt(curl.get(), CURLOPT_READFUNCTION, ReadMessage);
  curl_easy_setopt(curl.get(), CURLOPT_READDATA, &rest);
  std::string refusal;
  curl_easy_setopt(curl.get(), CURLOPT_VERBOSE, 1L);
  curl_easy_setopt(curl.get(), CURLOPT_DEBUGFUNCTION, KeepRefusal);
  curl_easy_setopt(curl.get(), CURLOPT_DEBUGDATA, &refusal);
  std::array<char, CURL_ERROR_SIZE> detail{};
  curl_easy_setopt(curl.get(), CURLOPT_ERRORBUFFER, detail.data());

  const CURLcode code = curl_easy_perform(curl.get());
  return code == CURLE_OK ? Status::Ok() : Failure(code, job, detail.data(), refusal);
}

bool SmtpIsBuiltIn() {
  return true;
}

}  // namespace zento

#else

namespace zento {

Status SendOverSmtp(const SmtpJob&) {
  return Status::Failure("this program was built without mail");
}

bool SmtpIsBuiltIn() {
  return false;
}

}  // namespace zento

#endif
