#pragma once

#include <functional>
#include <string>

#include "text/status_fwd.h"

namespace zento {

// A notice to one person. All texts UTF-8; line breaks count in `text` only.
struct MailMessage {
  std::string display_name;  // the receiver's; may be empty
  std::string address;       // the receiver's, as in "lab@example.org"
  std::string subject;
  std::string text;
};

// Electronic mail, sent beside everything else.
class Mail {
 public:
  virtual ~Mail() = default;

  // Returns at once. `done` is called once, from the loop and never from within Send, with what
  // became of the mail: success once a server has taken it over. It may be called as late as in
  // Finish, after the windows have gone, so it must need none of them.
  virtual void Send(const MailMessage& message, std::function<void(const Status&)> done) = 0;

  // How many mails are on their way, their `done` not called yet.
  virtual int UnderWay() const = 0;

  // Holds the caller until every mail has been sent or has failed, which takes half a minute at
  // most, and calls their `done`. For the program's end, once everything is switched off.
  virtual void Finish() = 0;
};

}  // namespace zento
