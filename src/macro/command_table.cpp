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

// Name, conversions of the arguments it must have, action, kind, rule of debug mode, usage.
constexpr MacroCommand kCommands[] = {
    // Cyclic voltammetry.
    {"CVMeasureMode", {}, ShowWindow<CV>, kShow, kRun, ""},
    {"CV.RecordTrack", {kLong}, Call<&CV::SelTrack>, kParameter, kRun, "CV.RecordTrack TrackNum"},
    {"CV.Title", {kWord}, Call<&CV::Title>, kParameter, kRun, "CV.Title Title"},
    {"CV.RPM", {kNumberText}, Call<&CV::rpm>, kParameter, kRun, "CV.RPM RPM"},
    {"CV.Setting", {kNumberText}, Call<&CV::SettingNum>, kParameter, kRun, "CV.Setting SettingNum"},
    {"CV.DiskScale", {kNumber}, Call<&CV::DiskScale>, kParameter, kRun, "CV.DiskScale YScale"},
    {"CV.Voltage",
     {kNumber, kNumber, kNumber},
     Call<&CV::SetVoltage>,
     kParameter,
     kRun,
     "CV.Voltage V1st V2nd V3rd"},
    {"CV.RetainTime",
     {kLong},
     Call<&CV::RetainTime>,
     kParameter,
     kRun,
     "CV.RetainTime InitialTime/s"},
    {"CV.Scanrate", {kNumber}, Call<&CV::scanrate>, kParameter, kRun, "CV.Scanrate Scanrate/s"},
    {"CV.Repeat", {kLong}, Call<&CV::Repeat>, kParameter, kRun, "CV.Repeat RepeatNum"},
    {"CV.SamplingRate",
     {kNumber},
     Call<&CV::SamplingRate>,
     kParameter,
     kRun,
     "CV.SamplingRate Samplingrate/Hz"},
    {"CV.Accumlation",
     {kLong},
     Call<&CV::Accumlation>,
     kParameter,
     kRun,
     "CV.Accumlation Accum.Num."},
    {"CV.Start", {}, Call<&CV::StartMeasurement>, kStart, kSkip, ""},
    {"CV.END", {}, Quit<&CV::QuitCVMeasurement>, kEnd, kRun, ""},
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
    {"CVFMeasureMode", {}, MissingWindow, kShow, kRun, ""},
    {"CVF.RecordTrack", {kNumber}, MissingWindow, kParameter, kRun, "CVF.RecordTrack TrackNum"},
    {"CVF.Title", {kWord}, MissingWindow, kParameter, kRun, "CVF.Title TrackNum"},
    {"CVF.RPM", {kNumber}, MissingWindow, kParameter, kRun, "CVF.RPM RPM"},
    {"CVF.Setting", {kNumber}, MissingWindow, kParameter, kRun, "CVF.Setting SettingNum"},
    {"CVF.DiskScale", {kNumber}, MissingWindow, kParameter, kRun, "CVF.DiskScale YScale"},
    {"CVF.Voltage",
     {kNumber, kNumber, kNumber},
     MissingWindow,
     kParameter,
     kRun,
     "CVF.Voltage V1st V2nd V3rd"},
    {"CVF.RetainTime", {kNumber}, MissingWindow, kParameter, kRun, "CVF.RetainTime InitialTime/s"},
    {"CVF.Scanrate", {kNumber}, MissingWindow, kParameter, kRun, "CVF.Scanrate Scanrate/s"},
    {"CVF.Repeat", {kNumber}, MissingWindow, kParameter, kRun, "CVF.Repeat RepeatNum"},
    {"CVF.SamplingRate",
     {kNumber},
     MissingWindow,
     kParameter,
     kRun,
     "CVF.SamplingRate Samplingrate/Hz"},
    {"CVF.Accumlation", {kNumber}, MissingWindow, kParameter, kRun, "CVF.Accumlation Accum.Num."},
    {"CVF.Start", {}, MissingWindow, kStart, kSkip, ""},
    {"CVF.END", {}, MissingWindow, kEnd, kRun, ""},
    {"SSVMeasureMode", {}, MissingWindow, kShow, kRun, ""},
    {"SSV.RecordTrack", {kNumber}, MissingWindow, kParameter, kRun, "SSV.RecordTrack TrackNum"},
    {"SSV.DiskScale", {kNumber}, MissingWindow, kParameter, kRun, "SSV.DiskScale YScale"},
    {"SSV.RingScale", {kNumber}, MissingWindow, kParameter, kRun, "SSV.RingScale YScale"},
    {"SSV.Title", {kWord}, MissingWindow, kParameter, kRun, "SSV.Title TrackNum"},
    {"SSV.RPM", {kNumber}, MissingWindow, kParameter, kRun, "SSV.RPM RPM"},
    {"SSV.Voltage", {kNumber, kNumber}, MissingWindow, kParameter, kRun, "SSV.Voltage V1st V2nd"},
    {"SSV.Acceleratemode", {kNumber}, MissingWindow, kParameter, kRun, "SSV.Acceleratemode mode"},
    {"SSV.CurrentTolerance",
     {kNumber},
     MissingWindow,
     kParameter,
     kRun,
     "SSV.CurrentTolerance i/%"},
    {"SSV.SetSkipMode", {kNumber}, MissingWindow, kParameter, kRun, "SSV.SetSkipMode mode"},
    {"SSV.AppliedCurrent", {kNumber}, MissingWindow, kParameter, kRun, "SSV.AppliedCurrent i/%"},
    {"SSV.VoltStep", {kNumber}, MissingWindow, kParameter, kRun, "SSV.VoltStep Voltstep/V"},
    {"SSV.StepTime", {kNumber}, MissingWindow, kParameter, kRun, "SSV.StepTime StepTime/s"},
    {"SSV.Segment", {kNumber}, MissingWindow, kParameter, kRun, "SSV.Segment SegmentNum."},
    {"SSV.SamplingRate",
     {kNumber},
     MissingWindow,
     kParameter,
     kRun,
     "SSV.SamplingRate Samplingrate/Hz"},
    {"SSV.Accumlation", {kNumber}, MissingWindow, kParameter, kRun, "SSV.Accumlation Accum.Num."},
    {"SSV.SendtoClip", {kNumber}, MissingWindow, kParameter, kRun, "SSV.SendtoClip mode"},
    {"SSV.MinTime", {kNumber}, MissingWindow, kParameter, kRun, "SSV.MinTime mode"},
    {"SSV.RecordNextTrack", {kNumber}, MissingWindow, kParameter, kRun, "SSV.RecordNextTrack mode"},
    {"SSV.Start", {}, MissingWindow, kStart, kSkip, ""},
    {"SSV.END", {}, MissingWindow, kEnd, kRun, ""},
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
