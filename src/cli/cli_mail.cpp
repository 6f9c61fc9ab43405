#include "cli/cli_mail.h"

#include "cli/console_text.h"
#include "cli/exit_status.h"
#include "host/native/native_clock.h"
#include "host/native/native_mail.h"
#include "host/path_text.h"
#include "program/home.h"

namespace zento {

int SendTestMail(const ProgramOptions& options, const std::string& address) {
  const auto home = FindHome(options.home(), options.simulated().value_or(false));
  if (!home.ok()) return FailWith(home.status());
  NativeClock clock;
  TimerQueue timers(clock);
  const auto mail = MakeNativeMail(timers, {.home = home.value()});
  Status sent;
  WriteError("sending with the settings of " + TextFromPath(home.value()));
  mail->Send({"", address, "Test mail", "Mails from macros will reach this address."},
             [&](const Status& how) { sent = how; });
  mail->Finish();
  if (!sent.ok()) return FailWith(sent.Within("NOT sent"));
  WriteOut("The server has taken the mail to " + address + "\n");
  return kExitOk;
}

}  // namespace zento
