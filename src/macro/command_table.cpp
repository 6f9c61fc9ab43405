// Every command of the macro language, one row each.

#include <unordered_map>

#include "macro/actions.h"
#include "macro/command.h"

namespace zento {
namespace {

using enum Conversion;
using enum CommandKind;
using enum DryRule;

using CV = frmMeasureCV;
using RDE = frmMeasureRDE;
using PS = frmPotentialStep;
using RPMvsj = frmMeasureRPMvsj;

// The kinds of rows that measurements have.
constexpr MacroCommand Show(std::string_view name, MacroAction action) {
  return {name, {}, action, kShow, kRun, ""};
}
constexpr MacroCommand Set(std::string_view name, Conversions arguments, MacroAction action,
                           std::string_view usage) {
  return {name, arguments, action, kParameter, kRun, usage};
}
constexpr MacroCommand Start(std::string_view name, MacroAction action) {
  return {name, {}, action, kStart, kSkip, ""};
}
constexpr MacroCommand End(std::string_view name, MacroAction action) {
  return {name, {}, action, kEnd, kRun, ""};
}

// Name, conversions of the arguments it must have, action, kind, rule of debug mode, usage.
constexpr MacroCommand kCommands[] = {
    // Cyclic voltammetry.
    Show("CVMeasureMode", ShowWindow<CV>),
    Set("CV.RecordTrack", {kLong}, Call<&CV::SelTrack>, "CV.RecordTrack TrackNum"),
    Set("CV.Title", {kWord}, Call<&CV::Title>, "CV.Title Title"),
    Set("CV.RPM", {kNumberText}, Call<&CV::rpm>, "CV.RPM RPM"),
    Set("CV.Setting", {kNumberText}, Call<&CV::SettingNum>, "CV.Setting SettingNum"),
    Set("CV.DiskScale", {kNumber}, Call<&CV::DiskScale>, "CV.DiskScale YScale"),
    Set("CV.Voltage", {kNumber, kNumber, kNumber}, Call<&CV::SetVoltage>,
        "CV.Voltage V1st V2nd V3rd"),
    Set("CV.RetainTime", {kLong}, Call<&CV::RetainTime>, "CV.RetainTime InitialTime/s"),
    Set("CV.Scanrate", {kNumber}, Call<&CV::scanrate>, "CV.Scanrate Scanrate/s"),
    Set("CV.Repeat", {kLong}, Call<&CV::Repeat>, "CV.Repeat RepeatNum"),
    Set("CV.SamplingRate", {kNumber}, Call<&CV::SamplingRate>, "CV.SamplingRate Samplingrate/Hz"),
    Set("CV.Accumlation", {kLong}, Call<&CV::Accumlation>, "CV.Accumlation Accum.Num."),
    Start("CV.Start", Call<&CV::StartMeasurement>),
    End("CV.END", Quit<&CV::QuitCVMeasurement>),
    // Ring-disk voltammetry.
    Show("RDEMeasureMode", ShowWindow<RDE>),
    Set("RDE.RecordTrack", {kLong}, Call<&RDE::SelTrack>, "RDE.RecordTrack TrackNum"),
    Set("RDE.DiskScale", {kNumber}, Call<&RDE::DiskScale>, "RDE.DiskScale YScale"),
    Set("RDE.RingScale", {kNumber}, Call<&RDE::RingScale>, "RDE.RingScale YScale"),
    Set("RDE.Title", {kWord}, Call<&RDE::Title>, "RDE.Title TrackNum"),
    Set("RDE.RPM", {kNumberText}, Call<&RDE::rpm>, "RDE.RPM RPM"),
    Set("RDE.Voltage", {kNumber, kNumber, kNumber}, Call<&RDE::SetVoltage>,
        "RDE.Voltage V1st V2nd V3rd"),
    Set("RDE.RetainTime", {kLong}, Call<&RDE::RetainTime>, "RDE.RetainTime RetainTime/s"),
    Set("RDE.Scanrate", {kNumber}, Call<&RDE::scanrate>, "RDE.Scanrate Scanrate/s"),
    Set("RDE.Repeat", {kLong}, Call<&RDE::Repeat>, "RDE.Repeat RepeatNum"),
    Set("RDE.SamplingRate", {kNumber}, Call<&RDE::SamplingRate>,
        "RDE.SamplingRate Samplingrate/Hz"),
    Set("RDE.Accumlation", {kLong}, Call<&RDE::Accumlation>, "RDE.Accumlation Accum.Num."),
    Start("RDE.Start", Call<&RDE::StartMeasurement>),
    End("RDE.END", Quit<&RDE::QuitRDEMeasurement>),
    // Potential step.
    Show("PotentialStepMode", ShowWindow<PS>),
    Set("PS.RecordTrack", {kLong}, Call<&PS::SelTrack>, "PS.RecordTrack TrackNum"),
    Set("PS.Title", {kWord}, Call<&PS::Title>, "PS.Title TrackNum"),
    Set("PS.DiskScale", {kNumber}, Call<&PS::DiskScale>, "PS.DiskScale YScale"),
    Set("PS.Voltage", {kNumber, kNumber}, Call<&PS::SetVoltage>, "PS.Voltage V1st V2nd"),
    Set("PS.MeasureMode", {kInteger}, Call<&PS::MeasMode>, "PS.Measuremode mode"),
    Set("PS.RPM", {kNumberText}, Call<&PS::rpm>, "PS.RPM RPM"),
    Set("PS.RetainTime", {kLong}, Call<&PS::RetainTime>, "PS.RetainTime RetainTime/s"),
    Set("PS.Coulomb", {kNumber}, Call<&PS::CoulombNumber>, "PS.Coulomb CoulombNumber/C"),
    Set("PS.MeasureTime", {kLong}, Call<&PS::MeasureTime>, "PS.MeasureTime MeasureTime/s"),
    Set("PS.InitSamplingRate", {kNumber}, Call<&PS::InitSamplingRate>,
        "PS.InitSamplingRate Samplingrate/Hz"),
    Set("PS.Accumlation", {kLong}, Call<&PS::Accumlation>, "PS.Accumlation Accum.Num."),
    Start("PS.Start", Call<&PS::StartMeasurement>),
    End("PS.END", Quit<&PS::QuitPSMeasurement>),
    // Rotation-rate sweep.
    Show("RPMvsiMode", ShowWindow<RPMvsj>),
    Set("RPMvsi.RecordTrack", {kLong}, Call<&RPMvsj::SelTrack>, "RPMvsi.RecordTrack TrackNum"),
    Set("RPMvsi.Title", {kWord}, Call<&RPMvsj::Title>, "RPMvsi.Title TrackNum"),
    Set("RPMvsi.DiskScale", {kNumber}, Call<&RPMvsj::DiskScale>, "RPMvsi.DiskScale YScale"),
    Set("RPMvsi.mode", {kInteger}, Call<&RPMvsj::AppliedMeasuremode>, "RPMvsi.mode mode"),
    Set("RPMvsi.Potential", {kNumber}, Call<&RPMvsj::Potential>, "RPMvsi.Potential V1st"),
    Set("RPMvsi.RetainTime", {kLong}, Call<&RPMvsj::RetainTime>, "RPMvsi.RetainTime RetainTime/s"),
    Set("RPMvsi.RPM", {kNumber, kNumber, kNumber}, Call<&RPMvsj::SetRPMParameters>,
        "RPMvsi.RPM Start End Speed"),
    Set("RPMvsi.SamplingRate", {kNumber}, Call<&RPMvsj::SamplingRate>,
        "RPMvsi.SamplingRate Samplingrate/Hz"),
    Set("RPMvsi.Accumlation", {kLong}, Call<&RPMvsj::Accumlation>, "RPMvsi.Accumlation Accum.Num."),
    Start("RPMvsi.Start", Call<&RPMvsj::StartMeasurement>),
    End("RPMvsi.END", Quit<&RPMvsj::QuitRPMvsjMeasurement>),
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
    // Two kinds of measurement that have no window in this program. Their lines are read all the //
    // same, so that old macros are checked as they always were.
    Show("CVFMeasureMode", MissingWindow),
    Set("CVF.RecordTrack", {kNumber}, MissingWindow, "CVF.RecordTrack TrackNum"),
    Set("CVF.Title", {kWord}, MissingWindow, "CVF.Title TrackNum"),
    Set("CVF.RPM", {kNumber}, MissingWindow, "CVF.RPM RPM"),
    Set("CVF.Setting", {kNumber}, MissingWindow, "CVF.Setting SettingNum"),
    Set("CVF.DiskScale", {kNumber}, MissingWindow, "CVF.DiskScale YScale"),
    Set("CVF.Voltage", {kNumber, kNumber, kNumber}, MissingWindow, "CVF.Voltage V1st V2nd V3rd"),
    Set("CVF.RetainTime", {kNumber}, MissingWindow, "CVF.RetainTime InitialTime/s"),
    Set("CVF.Scanrate", {kNumber}, MissingWindow, "CVF.Scanrate Scanrate/s"),
    Set("CVF.Repeat", {kNumber}, MissingWindow, "CVF.Repeat RepeatNum"),
    Set("CVF.SamplingRate", {kNumber}, MissingWindow, "CVF.SamplingRate Samplingrate/Hz"),
    Set("CVF.Accumlation", {kNumber}, MissingWindow, "CVF.Accumlation Accum.Num."),
    Start("CVF.Start", MissingWindow),
    End("CVF.END", MissingWindow),
    Show("SSVMeasureMode", MissingWindow),
    Set("SSV.RecordTrack", {kNumber}, MissingWindow, "SSV.RecordTrack TrackNum"),
    Set("SSV.DiskScale", {kNumber}, MissingWindow, "SSV.DiskScale YScale"),
    Set("SSV.RingScale", {kNumber}, MissingWindow, "SSV.RingScale YScale"),
    Set("SSV.Title", {kWord}, MissingWindow, "SSV.Title TrackNum"),
    Set("SSV.RPM", {kNumber}, MissingWindow, "SSV.RPM RPM"),
    Set("SSV.Voltage", {kNumber, kNumber}, MissingWindow, "SSV.Voltage V1st V2nd"),
    Set("SSV.Acceleratemode", {kNumber}, MissingWindow, "SSV.Acceleratemode mode"),
    Set("SSV.CurrentTolerance", {kNumber}, MissingWindow, "SSV.CurrentTolerance i/%"),
    Set("SSV.SetSkipMode", {kNumber}, MissingWindow, "SSV.SetSkipMode mode"),
    Set("SSV.AppliedCurrent", {kNumber}, MissingWindow, "SSV.AppliedCurrent i/%"),
    Set("SSV.VoltStep", {kNumber}, MissingWindow, "SSV.VoltStep Voltstep/V"),
    Set("SSV.StepTime", {kNumber}, MissingWindow, "SSV.StepTime StepTime/s"),
    Set("SSV.Segment", {kNumber}, MissingWindow, "SSV.Segment SegmentNum."),
    Set("SSV.SamplingRate", {kNumber}, MissingWindow, "SSV.SamplingRate Samplingrate/Hz"),
    Set("SSV.Accumlation", {kNumber}, MissingWindow, "SSV.Accumlation Accum.Num."),
    Set("SSV.SendtoClip", {kNumber}, MissingWindow, "SSV.SendtoClip mode"),
    Set("SSV.MinTime", {kNumber}, MissingWindow, "SSV.MinTime mode"),
    Set("SSV.RecordNextTrack", {kNumber}, MissingWindow, "SSV.RecordNextTrack mode"),
    Start("SSV.Start", MissingWindow),
    End("SSV.END", MissingWindow),
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
