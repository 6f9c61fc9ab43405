#include "macro/actions.h"

#include <array>
#include <cstdint>

#include "devices/power_form.h"

namespace zento {
namespace {

// SetPotential programmes a small slow sweep around the potential and leaves the output off.
constexpr std::int32_t kFunction = 1;
constexpr double kSweepVolts = 0.1;
constexpr double kSweepRate = 10;  // mV/s
constexpr std::int32_t kSweepRetainSeconds = 10;

}  // namespace

ActionResult SetPotential(MacroContext& context, MacroArguments arguments) {
  const double e = arguments[0].number;
  const std::array<double, 3> potentials = {e, e + kSweepVolts, e - kSweepVolts};
  context.instruments.generator.ProgrammeCyclicSweep(kFunction, potentials, kSweepRate,
                                                     kSweepRetainSeconds);
  return ActionResult::kDone;
}

ActionResult MotorOn(MacroContext& context, MacroArguments arguments) {
  auto rpm = ArgumentAs<std::int32_t>(arguments[0]);
  context.instruments.rotation.SetRotation(rpm);
  return ActionResult::kDone;
}

ActionResult MotorOff(MacroContext& context, MacroArguments) {
  std::int32_t rpm = 0;
  context.instruments.rotation.SetRotation(rpm);
  return ActionResult::kDone;
}

ActionResult SwitchPower(MacroContext& context, MacroArguments arguments) {
  auto* const power = context.host.desktop.LoadAs<PowerForm>("frmPower");
  if (power == nullptr) return ActionResult::kWindowRefused;
  auto sw = ArgumentAs<std::uint8_t>(arguments[1]);
  power->Power(ArgumentAs<std::int16_t>(arguments[0]), sw);
  return ActionResult::kDone;
}

ActionResult PlaySoundFile(MacroContext& context, MacroArguments arguments) {
  context.host.sound.Play(arguments[0].text);
  return ActionResult::kDone;
}

ActionResult Wait(MacroContext& context, MacroArguments arguments) {
  context.wait_millis = ArgumentAs<std::int32_t>(arguments[0]);
  return ActionResult::kDone;
}

ActionResult SetMailDisplayName(MacroContext& context, MacroArguments arguments) {
  context.mail.display_name = arguments[0].text;
  return ActionResult::kDone;
}

ActionResult SetMailAddress(MacroContext& context, MacroArguments arguments) {
  context.mail.address = arguments[0].text;
  return ActionResult::kDone;
}

ActionResult SetMailSubject(MacroContext& context, MacroArguments arguments) {
  context.mail.subject = arguments[0].text;
  return ActionResult::kDone;
}

ActionResult SetMailNote(MacroContext& context, MacroArguments arguments) {
  context.mail.text = arguments[0].text;
  return ActionResult::kDone;
}

ActionResult SendMail(MacroContext& context, MacroArguments) {
  context.send_mail = true;
  return ActionResult::kDone;
}

}  // namespace zento
