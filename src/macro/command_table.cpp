// Every command of the macro language, one row each, and what the rows do.

#include "macro/command_table.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <unordered_map>
#include <utility>

#include "host/services.h"
#include "measure/cv_form.h"
#include "measure/rde_form.h"
#include "measure/rpm_form.h"
#include "measure/step_form.h"

namespace zento {
namespace {

using enum Conversion;
using enum CommandKind;
using enum DryRule;

using CV = frmMeasureCV;
using RDE = frmMeasureRDE;
using PS = frmPotentialStep;
using RPMvsj = frmMeasureRPMvsj;

template <typename Window>
constexpr const char* kWindowName = nullptr;
template <>
constexpr const char* kWindowName<CV> = "frmMeasureCV";
template <>
constexpr const char* kWindowName<RDE> = "frmMeasureRDE";
template <>
constexpr const char* kWindowName<PS> = "frmPotentialStep";
template <>
constexpr const char* kWindowName<RPMvsj> = "frmMeasureRPMvsj";

// An argument as an operation takes it. Its conversion has seen to the range.
template <typename T>
T ArgumentAs(const MacroArgument& argument) {
  if constexpr (std::is_same_v<T, std::string>) {
    return argument.text;
  } else {
    return static_cast<T>(argument.number);
  }
}

template <typename Window, typename Owner, typename... P, std::size_t... I>
void CallWith(Window& window, void (Owner::*operation)(P...),
              [[maybe_unused]] MacroArguments arguments, std::index_sequence<I...>) {
  (window.*operation)(ArgumentAs<std::remove_cvref_t<P>>(arguments[I])...);
}

template <typename Window, typename Owner, typename... P>
void CallOn(Window& window, void (Owner::*operation)(P...), MacroArguments arguments) {
  CallWith(window, operation, arguments, std::index_sequence_for<P...>());
}

// Calls the operation on its window, which is loaded unseen if need be.
template <typename Window, auto operation>
ActionResult Call(MacroContext& context, MacroArguments arguments) {
  auto* const window = context.host.desktop.LoadAs<Window>(kWindowName<Window>);
  if (window == nullptr) return ActionResult::kWindowRefused;
  CallOn(*window, operation, arguments);
  return ActionResult::kDone;
}

template <typename Window>
ActionResult ShowWindow(MacroContext& context, MacroArguments) {
  const bool shown = context.host.desktop.Show(kWindowName<Window>) != nullptr;
  return shown ? ActionResult::kDone : ActionResult::kWindowRefused;
}

// Closes the window; one that is not there is not opened for it.
template <typename Window, auto operation>
ActionResult Quit(MacroContext& context, MacroArguments) {
  auto* const window = context.host.desktop.FindAs<Window>(kWindowName<Window>);
  if (window != nullptr) (window->*operation)();
  return ActionResult::kDone;
}

// The commands of windows that this program does not have.
ActionResult MissingWindow(MacroContext&, MacroArguments) {
  return ActionResult::kWindowMissing;
}

void Append(std::vector<const Control*>& list, const Control& control) {
  list.push_back(&control);
}
template <typename C, std::size_t n>
void Append(std::vector<const Control*>& list, const ControlArray<C, n>& controls) {
  for (std::size_t i = 0; i < n; ++i) list.push_back(&controls[i]);
}

template <typename Window, auto... controls>
std::vector<const Control*> ControlsOf(const Desktop& desktop) {
  std::vector<const Control*> list;
  const auto* const window = desktop.FindAs<Window>(kWindowName<Window>);
  if (window != nullptr) (Append(list, window->*controls), ...);
  return list;
}

// Devices, sound, waits and mail.

// SetPotential programmes a small slow sweep around the potential and leaves the output off.
constexpr std::int32_t kFunction = 1;
constexpr double kSweepVolts = 0.1;
constexpr double kSweepRate = 10;  // mV/s
constexpr std::int32_t kSweepRetainSeconds = 10;

ActionResult SetPotential(MacroContext& context, MacroArguments arguments) {
  const double e = arguments[0].number;
  const std::array<double, 3> potentials = {e, e + kSweepVolts, e - kSweepVolts};
  context.instruments.generator.ProgrammeCyclicSweep(kFunction, potentials, kSweepRate,
                                                     kSweepRetainSeconds);
  return ActionResult::kDone;
}

ActionResult MotorOn(MacroContext& context, MacroArguments arguments) {
  context.instruments.rotation.SetRotation(ArgumentAs<std::int32_t>(arguments[0]));
  return ActionResult::kDone;
}

ActionResult MotorOff(MacroContext& context, MacroArguments) {
  context.instruments.rotation.SetRotation(0);
  return ActionResult::kDone;
}

ActionResult SwitchPower(MacroContext& context, MacroArguments arguments) {
  const bool opened = context.instruments.outlets.Power(ArgumentAs<std::int16_t>(arguments[0]),
                                                        ArgumentAs<std::uint8_t>(arguments[1]));
  return opened ? ActionResult::kDone : ActionResult::kWindowRefused;
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

// The kinds of rows that measurements have.
template <typename Window>
constexpr MacroCommand Show(std::string_view name) {
  return {name, {}, ShowWindow<Window>, kShow, kRun, "", kWindowName<Window>};
}
// Sets what `controls`, members of the window, hold afterwards.
template <typename Window, auto operation, auto... controls>
constexpr MacroCommand Set(std::string_view name, Conversions arguments, std::string_view usage) {
  constexpr ControlsOfCommand kControls =
      sizeof...(controls) > 0 ? ControlsOf<Window, controls...> : nullptr;
  return {name, arguments, Call<Window, operation>, kParameter,
          kRun, usage,     kWindowName<Window>,     kControls};
}
template <typename Window>
constexpr MacroCommand RecordTrack(std::string_view name, std::string_view usage) {
  MacroCommand row = Set<Window, &Window::SelTrack, &Window::txtDataNum>(name, {kLong}, usage);
  row.moves_on = true;
  return row;
}
template <typename Window>
constexpr MacroCommand Start(std::string_view name) {
  return {
      name, {}, Call<Window, &Window::StartMeasurement>, kStart, kSkip, "", kWindowName<Window>};
}
template <typename Window, auto operation>
constexpr MacroCommand End(std::string_view name) {
  return {name, {}, Quit<Window, operation>, kEnd, kRun, "", kWindowName<Window>};
}
constexpr MacroCommand Missing(std::string_view name, Conversions arguments, CommandKind kind,
                               std::string_view usage) {
  return {name, arguments, MissingWindow, kind, kind == kStart ? kSkip : kRun, usage};
}

constexpr MacroCommand kCommands[] = {
    // Cyclic voltammetry.
    Show<CV>("CVMeasureMode"),
    RecordTrack<CV>("CV.RecordTrack", "CV.RecordTrack TrackNum"),
    Set<CV, &CV::Title>("CV.Title", {kWord}, "CV.Title Title"),
    Set<CV, &CV::rpm, &CV::txtRPM>("CV.RPM", {kNumberText}, "CV.RPM RPM"),
    Set<CV, &CV::SettingNum, &CV::txtCVNum>("CV.Setting", {kNumberText}, "CV.Setting SettingNum"),
    Set<CV, &CV::DiskScale, &CV::txtYScale>("CV.DiskScale", {kNumber}, "CV.DiskScale YScale"),
    Set<CV, &CV::SetVoltage, &CV::txtVoltSetting>("CV.Voltage", {kNumber, kNumber, kNumber},
                                                  "CV.Voltage V1st V2nd V3rd"),
    Set<CV, &CV::RetainTime, &CV::txtRetainTime>("CV.RetainTime", {kLong},
                                                 "CV.RetainTime InitialTime/s"),
    Set<CV, &CV::scanrate, &CV::txtScanrate>("CV.Scanrate", {kNumber}, "CV.Scanrate Scanrate/s"),
    Set<CV, &CV::Repeat, &CV::txtCycleNum>("CV.Repeat", {kLong}, "CV.Repeat RepeatNum"),
    Set<CV, &CV::SamplingRate, &CV::txtSamplingrate>("CV.SamplingRate", {kNumber},
                                                     "CV.SamplingRate Samplingrate/Hz"),
    Set<CV, &CV::Accumlation, &CV::txtAccum>("CV.Accumlation", {kLong},
                                             "CV.Accumlation Accum.Num."),
    Start<CV>("CV.Start"),
    End<CV, &CV::QuitCVMeasurement>("CV.END"),
    // Ring-disk voltammetry.
    Show<RDE>("RDEMeasureMode"),
    RecordTrack<RDE>("RDE.RecordTrack", "RDE.RecordTrack TrackNum"),
    Set<RDE, &RDE::DiskScale, &RDE::txtDiskYScale>("RDE.DiskScale", {kNumber},
                                                   "RDE.DiskScale YScale"),
    Set<RDE, &RDE::RingScale, &RDE::txtRingYScale>("RDE.RingScale", {kNumber},
                                                   "RDE.RingScale YScale"),
    Set<RDE, &RDE::Title>("RDE.Title", {kWord}, "RDE.Title TrackNum"),
    Set<RDE, &RDE::rpm, &RDE::txtRPM>("RDE.RPM", {kNumberText}, "RDE.RPM RPM"),
    Set<RDE, &RDE::SetVoltage, &RDE::txtVoltSetting>("RDE.Voltage", {kNumber, kNumber, kNumber},
                                                     "RDE.Voltage V1st V2nd V3rd"),
    Set<RDE, &RDE::RetainTime, &RDE::txtRetainTime>("RDE.RetainTime", {kLong},
                                                    "RDE.RetainTime RetainTime/s"),
    Set<RDE, &RDE::scanrate, &RDE::txtScanrate>("RDE.Scanrate", {kNumber},
                                                "RDE.Scanrate Scanrate/s"),
    Set<RDE, &RDE::Repeat, &RDE::txtCycleNum>("RDE.Repeat", {kLong}, "RDE.Repeat RepeatNum"),
    Set<RDE, &RDE::SamplingRate, &RDE::txtSamplingrate>("RDE.SamplingRate", {kNumber},
                                                        "RDE.SamplingRate Samplingrate/Hz"),
    Set<RDE, &RDE::Accumlation, &RDE::txtAccum>("RDE.Accumlation", {kLong},
                                                "RDE.Accumlation Accum.Num."),
    Start<RDE>("RDE.Start"),
    End<RDE, &RDE::QuitRDEMeasurement>("RDE.END"),
    // Potential step.
    Show<PS>("PotentialStepMode"),
    RecordTrack<PS>("PS.RecordTrack", "PS.RecordTrack TrackNum"),
    Set<PS, &PS::Title>("PS.Title", {kWord}, "PS.Title TrackNum"),
    Set<PS, &PS::DiskScale, &PS::txtYScale>("PS.DiskScale", {kNumber}, "PS.DiskScale YScale"),
    Set<PS, &PS::SetVoltage, &PS::txtVoltSetting>("PS.Voltage", {kNumber, kNumber},
                                                  "PS.Voltage V1st V2nd"),
    Set<PS, &PS::MeasMode, &PS::opnPSMeas>("PS.MeasureMode", {kInteger}, "PS.Measuremode mode"),
    Set<PS, &PS::rpm, &PS::txtRPM>("PS.RPM", {kNumberText}, "PS.RPM RPM"),
    Set<PS, &PS::RetainTime, &PS::txtRetainTime>("PS.RetainTime", {kLong},
                                                 "PS.RetainTime RetainTime/s"),
    Set<PS, &PS::CoulombNumber, &PS::txtCoulomb>("PS.Coulomb", {kNumber},
                                                 "PS.Coulomb CoulombNumber/C"),
    Set<PS, &PS::MeasureTime, &PS::txtMaxTime>("PS.MeasureTime", {kLong},
                                               "PS.MeasureTime MeasureTime/s"),
    Set<PS, &PS::InitSamplingRate, &PS::txtInitSamplingRate>("PS.InitSamplingRate", {kNumber},
                                                             "PS.InitSamplingRate Samplingrate/Hz"),
    Set<PS, &PS::Accumlation, &PS::txtAccum>("PS.Accumlation", {kLong},
                                             "PS.Accumlation Accum.Num."),
    Start<PS>("PS.Start"),
    End<PS, &PS::QuitPSMeasurement>("PS.END"),
    // Rotation-rate sweep.
    Show<RPMvsj>("RPMvsiMode"),
    RecordTrack<RPMvsj>("RPMvsi.RecordTrack", "RPMvsi.RecordTrack TrackNum"),
    Set<RPMvsj, &RPMvsj::Title>("RPMvsi.Title", {kWord}, "RPMvsi.Title TrackNum"),
    Set<RPMvsj, &RPMvsj::DiskScale, &RPMvsj::txtYScale>("RPMvsi.DiskScale", {kNumber},
                                                        "RPMvsi.DiskScale YScale"),
    Set<RPMvsj, &RPMvsj::AppliedMeasuremode, &RPMvsj::opnRPMvsj>("RPMvsi.mode", {kInteger},
                                                                 "RPMvsi.mode mode"),
    Set<RPMvsj, &RPMvsj::Potential, &RPMvsj::txtDiskXValue>("RPMvsi.Potential", {kNumber},
                                                            "RPMvsi.Potential V1st"),
    Set<RPMvsj, &RPMvsj::RetainTime, &RPMvsj::txtRetainTime>("RPMvsi.RetainTime", {kLong},
                                                             "RPMvsi.RetainTime RetainTime/s"),
    Set<RPMvsj, &RPMvsj::SetRPMParameters, &RPMvsj::txtStartRPM, &RPMvsj::txtEndRPM,
        &RPMvsj::txtSpeed>("RPMvsi.RPM", {kNumber, kNumber, kNumber}, "RPMvsi.RPM Start End Speed"),
    Set<RPMvsj, &RPMvsj::SamplingRate, &RPMvsj::txtSamplingrate>(
        "RPMvsi.SamplingRate", {kNumber}, "RPMvsi.SamplingRate Samplingrate/Hz"),
    Set<RPMvsj, &RPMvsj::Accumlation, &RPMvsj::txtAccum>("RPMvsi.Accumlation", {kLong},
                                                         "RPMvsi.Accumlation Accum.Num."),
    Start<RPMvsj>("RPMvsi.Start"),
    End<RPMvsj, &RPMvsj::QuitRPMvsjMeasurement>("RPMvsi.END"),
    // Potential, sound, waiting, motor and outlets.
    {"SetPotential", {kNumber}, SetPotential, kHardware, kSkip, "SetPotential E/V"},
    {"Sound", {kWord}, PlaySoundFile, kSound, kRun, "Sound FileName"},
    {"Wait", {kLong}, Wait, kWait, kSkip, "Wait time/ms"},
    {"Motor.On", {kLong}, MotorOn, kHardware, kSkip, "Motor.On rpm"},
    {"Motor.Off", {}, MotorOff, kHardware, kSkip, ""},
    {"Power", {kInteger, kByte}, SwitchPower, kHardware, kSkip, "Power ch sw"},
    // Mail.
    {"Mail.DisplayName", {kWords}, SetMailDisplayName, kMail, kRun, "Mail.DisplayName Displayname"},
    {"Mail.Address", {kWord}, SetMailAddress, kMail, kRun, "Mail.Address Address"},
    {"Mail.Subject", {kWord}, SetMailSubject, kMail, kRun, "Mail.Subject Subject"},
    {"Mail.MsgNote", {kWord}, SetMailNote, kMail, kRun, "Mail.MsgNote MsgNote"},
    {"Mail.Send", {}, SendMail, kMail, kRun, ""},
    // Two kinds of measurement that have no window in this program. Their lines are read all the
    // same, so that old macros are checked as they always were.
    Missing("CVFMeasureMode", {}, kShow, ""),
    Missing("CVF.RecordTrack", {kNumber}, kParameter, "CVF.RecordTrack TrackNum"),
    Missing("CVF.Title", {kWord}, kParameter, "CVF.Title TrackNum"),
    Missing("CVF.RPM", {kNumber}, kParameter, "CVF.RPM RPM"),
    Missing("CVF.Setting", {kNumber}, kParameter, "CVF.Setting SettingNum"),
    Missing("CVF.DiskScale", {kNumber}, kParameter, "CVF.DiskScale YScale"),
    Missing("CVF.Voltage", {kNumber, kNumber, kNumber}, kParameter, "CVF.Voltage V1st V2nd V3rd"),
    Missing("CVF.RetainTime", {kNumber}, kParameter, "CVF.RetainTime InitialTime/s"),
    Missing("CVF.Scanrate", {kNumber}, kParameter, "CVF.Scanrate Scanrate/s"),
    Missing("CVF.Repeat", {kNumber}, kParameter, "CVF.Repeat RepeatNum"),
    Missing("CVF.SamplingRate", {kNumber}, kParameter, "CVF.SamplingRate Samplingrate/Hz"),
    Missing("CVF.Accumlation", {kNumber}, kParameter, "CVF.Accumlation Accum.Num."),
    Missing("CVF.Start", {}, kStart, ""),
    Missing("CVF.END", {}, kEnd, ""),
    Missing("SSVMeasureMode", {}, kShow, ""),
    Missing("SSV.RecordTrack", {kNumber}, kParameter, "SSV.RecordTrack TrackNum"),
    Missing("SSV.DiskScale", {kNumber}, kParameter, "SSV.DiskScale YScale"),
    Missing("SSV.RingScale", {kNumber}, kParameter, "SSV.RingScale YScale"),
    Missing("SSV.Title", {kWord}, kParameter, "SSV.Title TrackNum"),
    Missing("SSV.RPM", {kNumber}, kParameter, "SSV.RPM RPM"),
    Missing("SSV.Voltage", {kNumber, kNumber}, kParameter, "SSV.Voltage V1st V2nd"),
    Missing("SSV.Acceleratemode", {kNumber}, kParameter, "SSV.Acceleratemode mode"),
    Missing("SSV.CurrentTolerance", {kNumber}, kParameter, "SSV.CurrentTolerance i/%"),
    Missing("SSV.SetSkipMode", {kNumber}, kParameter, "SSV.SetSkipMode mode"),
    Missing("SSV.AppliedCurrent", {kNumber}, kParameter, "SSV.AppliedCurrent i/%"),
    Missing("SSV.VoltStep", {kNumber}, kParameter, "SSV.VoltStep Voltstep/V"),
    Missing("SSV.StepTime", {kNumber}, kParameter, "SSV.StepTime StepTime/s"),
    Missing("SSV.Segment", {kNumber}, kParameter, "SSV.Segment SegmentNum."),
    Missing("SSV.SamplingRate", {kNumber}, kParameter, "SSV.SamplingRate Samplingrate/Hz"),
    Missing("SSV.Accumlation", {kNumber}, kParameter, "SSV.Accumlation Accum.Num."),
    Missing("SSV.SendtoClip", {kNumber}, kParameter, "SSV.SendtoClip mode"),
    Missing("SSV.MinTime", {kNumber}, kParameter, "SSV.MinTime mode"),
    Missing("SSV.RecordNextTrack", {kNumber}, kParameter, "SSV.RecordNextTrack mode"),
    Missing("SSV.Start", {}, kStart, ""),
    Missing("SSV.END", {}, kEnd, ""),
};

}  // namespace

std::span<const MacroCommand> MacroCommands() {
  return kCommands;
}

const MacroCommand* FindMacroCommand(std::string_view name) {
  static const auto* const kByName = [] {
    auto* table = new std::unordered_map<std::string_view, const MacroCommand*>;
    for (const MacroCommand& command : kCommands) table->emplace(command.name, &command);
    return table;
  }();
  const auto found = kByName->find(name);
  return found == kByName->end() ? nullptr : found->second;
}

}  // namespace zento
