#include "program/dry_run.h"

#include "core/settings_file.h"

namespace zento {
namespace {

// The bench as it would have to be for the home's settings to find it.
sim::Parameters ParametersFor(const CheckQuestion& question, Files& files) {
  sim::Parameters parameters = question.cell;
  const auto bytes = files.Read(SettingsPath(question.home));
  Settings settings;
  if (!bytes.ok() || !ParseSettings(bytes.value(), settings).ok()) return parameters;
  // Without a generator somebody has set up the potentiostat to sweep by itself.
  if (settings.GPIBControl <= 0) parameters.own = 1;
  const std::string address = std::to_string(settings.GPIBAddress);
  // An address that the bench does not take is one that no instrument has either.
  static_cast<void>(sim::Set(parameters, "gpib_address", address));
  return parameters;
}

}  // namespace

UnattendedProgram Unattended(HeadlessProgram& program) {
  return {program.workstation(), program.host(), program.program().instruments(), program.loop(),
          [&dialogs = program.dialogs()] { return dialogs.TakeMessages(); }};
}

Result<MacroCheck> CheckMacro(const CheckQuestion& question, Files& files) {
  HeadlessProgram program(
      {.program = {.simulated = ParametersFor(question, files), .home = question.home},
       .files = &files,
       .dry = true});
  if (Status started = program.Start(); !started.ok()) return started;
  return CheckMacroOn(Unattended(program), question.text, question.title);
}

}  // namespace zento
