#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "core/workstation.h"
#include "devices/vendor/tables.h"

namespace zento {

// The link to the instruments on the bus: a converter on the serial port, or a bus board.
// Settings::GPIBControl says which; a change counts from the next InitialiseLink, so that a running
// generator is switched off over the link that switched it on.
class GpibLink {
 public:
  GpibLink(Workstation& workstation, vendor::Libraries& libraries)
      : workstation_(workstation), bus_(libraries.gpib), serial_(libraries.serial) {}
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
  std::int32_t Control() const { return control_.value_or(workstation_.settings.GPIBControl); }

  // Told every command that is about to be sent, without the link's framing.
  std::function<void(std::string_view command)> on_command;
  // Told of a command that did not go out, and why.
  std::function<void(std::string_view command, const std::string& why)> on_failure;

 private:
  std::int32_t Initialise(std::int32_t control);
  std::int32_t InitialiseBoard(std::string& text);
  std::int32_t InitialiseSerial();
  bool SendOnBoard(std::int32_t address, std::string_view command);
  bool SendOnSerial(std::int32_t address, std::string_view command);

  Workstation& workstation_;
  vendor::Gpib& bus_;
  vendor::SerialLine& serial_;
  std::optional<std::int32_t> control_;
  std::string status_text_;
};

}  // namespace zento
