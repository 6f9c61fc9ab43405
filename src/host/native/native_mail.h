#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "host/mail.h"
#include "host/timer_queue.h"

namespace zento {

struct NativeMailOptions {
  std::filesystem::path home;
  // For a mail as a whole, from Send on.
  std::chrono::milliseconds deadline{30'000};
  // Null = the environment.
  std::function<std::optional<std::string>(const char*)> variable = {};
};

// Sends mails by the server that the home's Mail.txt names. The file, and the password when a user
// is named there, are read anew for each mail, so that they can be mended during the night. A
// password goes over a connection without TLS to this machine itself only.
//
// Each mail has a thread of its own, which knows nothing but a copy of what it sends; results are
// looked for by a timer. More than 16 mails under way are refused. A mail whose thread does not
// come back is given up soon after its deadline.
std::unique_ptr<Mail> MakeNativeMail(TimerQueue& timers, NativeMailOptions options);

}  // namespace zento
