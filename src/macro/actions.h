#pragma once

#include <cstddef>
#include <string>
#include <type_traits>
#include <utility>

#include "macro/command.h"
#include "measure/cv_form.h"
#include "measure/rde_form.h"
#include "measure/rpm_form.h"
#include "measure/step_form.h"

namespace zento {

// The actions of commands that are nothing but an operation of a window.

template <typename Window>
constexpr const char* kWindowName = nullptr;
template <>
inline constexpr const char* kWindowName<frmMeasureCV> = "frmMeasureCV";
template <>
inline constexpr const char* kWindowName<frmMeasureRDE> = "frmMeasureRDE";
template <>
inline constexpr const char* kWindowName<frmPotentialStep> = "frmPotentialStep";
template <>
inline constexpr const char* kWindowName<frmMeasureRPMvsj> = "frmMeasureRPMvsj";

// An argument as an operation takes it. Its conversion has seen to the range.
template <typename T>
T ArgumentAs(const MacroArgument& argument) {
  if constexpr (std::is_same_v<T, std::string>) {
    return argument.text;
  } else {
    return static_cast<T>(argument.number);
  }
}

template <typename Window, typename... P, std::size_t... I>
void CallWith(Window& window, void (Window::*operation)(P...),
              [[maybe_unused]] MacroArguments arguments, std::index_sequence<I...>) {
  (window.*operation)(ArgumentAs<std::remove_cvref_t<P>>(arguments[I])...);
}

template <typename Window, typename... P>
ActionResult CallOn(void (Window::*operation)(P...), MacroContext& context,
                    MacroArguments arguments) {
  auto* const window = context.host.desktop.LoadAs<Window>(kWindowName<Window>);
  if (window == nullptr) return ActionResult::kWindowRefused;
  CallWith(*window, operation, arguments, std::index_sequence_for<P...>());
  return ActionResult::kDone;
}

// Calls the operation on its window, which is loaded unseen if need be.
template <auto operation>
ActionResult Call(MacroContext& context, MacroArguments arguments) {
  return CallOn(operation, context, arguments);
}

template <typename Window>
ActionResult ShowWindow(MacroContext& context, MacroArguments) {
  const bool shown = context.host.desktop.Show(kWindowName<Window>) != nullptr;
  return shown ? ActionResult::kDone : ActionResult::kWindowRefused;
}

template <typename Window>
ActionResult QuitOn(void (Window::*operation)(), MacroContext& context) {
  auto* const window = context.host.desktop.FindAs<Window>(kWindowName<Window>);
  if (window != nullptr) (window->*operation)();
  return ActionResult::kDone;
}

// Closes the window; one that is not there is not opened for it.
template <auto operation>
ActionResult Quit(MacroContext& context, MacroArguments) {
  return QuitOn(operation, context);
}

// The commands of windows that this program does not have.
inline ActionResult MissingWindow(MacroContext&, MacroArguments) {
  return ActionResult::kWindowMissing;
}

// Devices, sound, waits and mail.
ActionResult SetPotential(MacroContext& context, MacroArguments arguments);
ActionResult MotorOn(MacroContext& context, MacroArguments arguments);
ActionResult MotorOff(MacroContext& context, MacroArguments arguments);
ActionResult SwitchPower(MacroContext& context, MacroArguments arguments);
ActionResult PlaySoundFile(MacroContext& context, MacroArguments arguments);
ActionResult Wait(MacroContext& context, MacroArguments arguments);
ActionResult SetMailDisplayName(MacroContext& context, MacroArguments arguments);
ActionResult SetMailAddress(MacroContext& context, MacroArguments arguments);
ActionResult SetMailSubject(MacroContext& context, MacroArguments arguments);
ActionResult SetMailNote(MacroContext& context, MacroArguments arguments);
ActionResult SendMail(MacroContext& context, MacroArguments arguments);

}  // namespace zento
