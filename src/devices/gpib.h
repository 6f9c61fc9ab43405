#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "core/settings.h"
#include "core/workstation.h"
#include "devices/device_table.h"
#include "devices/vendor/tables.h"

namespace zento {

// The link to the instruments on the bus that Settings::GPIBControl chooses. A change of it counts
// from the next InitialiseLink, so that a running generator is switched off over the link that
// switched it on.
class GpibLink {
 public:
  explicit GpibLink(const DeviceParts& parts)
      : settings_(parts.settings), link_(kBusLinks, &Settings::GPIBControl, parts) {}
  GpibLink(const GpibLink&) = delete;
  GpibLink& operator=(const GpibLink&) = delete;

  // 0 = success, also when the settings name no link; 1 = failure, see status_text. Harmless on a
  // link that works.
  std::int32_t InitialiseLink();

  // Initialises the link in use from scratch, after a failure on it. Whether it works again.
  bool Recover();

  // Sends one command line to the instrument at `address`. Returns when it was handed over, at the
  // latest after the link's timeout. A failure stops nothing: false, and status_text tells.
  bool Send(std::int32_t address, std::string_view command);

  // What the last call on the link came to, for a person.
  const std::string& status_text() const { return status_text_; }

  // Settings::GPIBControl of the last successful InitialiseLink; before any, as it is now.
  std::int32_t Control() const { return link_.Number(); }

  // Told every command that is about to be sent, without the link's framing.
  std::function<void(std::string_view command)> on_command;
  // Told of a command that did not go out, and why.
  std::function<void(std::string_view command, const std::string& why)> on_failure;

 private:
  const Settings& settings_;
  ChosenDevice<BusLink> link_;
  std::string status_text_;
};

// Puts what the bus board's `function` meant by returning `code` into `text`, for a person. Returns
// 1 when the code reports an error, 0 when it does not: the low byte is the outcome (3 and above
// are errors), the other bytes tell what arrived meanwhile.
std::int32_t CheckGpibStatus(std::string_view function, std::int32_t code, std::string& text);

}  // namespace zento
