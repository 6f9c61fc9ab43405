#pragma once

#include <chrono>
#include <string>

#include "host/mail_text.h"
#include "text/status_fwd.h"

namespace zento {

// One mail on its way to a server.
struct SmtpJob {
  MailSettings settings;
  std::string password;  // used when the settings name a user
  std::string receiver;  // a checked address
  std::string message;   // as ComposeMail makes it
  std::chrono::milliseconds deadline{30'000};
};

// Hands a mail over to the server and returns, at the latest some 100 ms behind the deadline, which
// covers everything from the look-up of the server's name on. Success: the server has accepted the
// mail. Fails with what was refused and the server's own words. Certificates are verified. Blocks:
// not for the window thread.
Status SendOverSmtp(const SmtpJob& job);

// Whether the program was built with what it takes; without, SendOverSmtp fails and says so.
bool SmtpIsBuiltIn();

}  // namespace zento
