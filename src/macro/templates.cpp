// The blocks that the macro editor inserts.

#include "macro/macro_form.h"

namespace zento {
namespace {

constexpr MacroTemplate kTemplates[] = {
    {"CV_Acc", "Cyclic Voltammogram",
     "CVMeasureMode\r\n"
     "    CV.RecordTrack 0\r\n"
     "    CV.Title SampleName\r\n"
     "    CV.Setting 0\r\n"
     "    CV.RPM 0\r\n"
     "    CV.DiskScale 1e-3\r\n"
     "    CV.Voltage 0.6 1.25 -0.25\r\n"
     "    CV.RetainTime 10\r\n"
     "    CV.Scanrate 20\r\n"
     "    CV.Repeat 3\r\n"
     "    CV.SamplingRate 5\r\n"
     "    CV.Accumlation 200\r\n"
     "    CV.Start\r\n"
     "CV.END\r\n"},
    {"RRDE_Acc", "RRDE",
     "RDEMeasureMode\r\n"
     "    RDE.RecordTrack 0\r\n"
     "    RDE.DiskScale 1e-3\r\n"
     "    RDE.RingScale 1e-4\r\n"
     "    RDE.Title SampleName\r\n"
     "    RDE.RPM 300\r\n"
     "    RDE.Voltage 1 -0.3 1\r\n"
     "    RDE.RetainTime 10\r\n"
     "    RDE.Scanrate 5\r\n"
     "    RDE.Repeat 1\r\n"
     "    RDE.SamplingRate 2\r\n"
     "    RDE.Accumlation 500\r\n"
     "    RDE.Start\r\n"
     "RDE.END\r\n"},
    {"PSTime_Acc", "Potential Step(Stop by Time)",
     "PotentialStepMode\r\n"
     "    PS.RecordTrack 0\r\n"
     "    PS.Title SampleName\r\n"
     "    PS.DiskScale 1e-3\r\n"
     "    PS.Voltage 1 0.2\r\n"
     "    PS.MeasureMode 0\r\n"
     "    PS.RetainTime 30\r\n"
     "    PS.RPM 0\r\n"
     "    PS.MeasureTime 10\r\n"
     "    PS.InitSamplingRate 50\r\n"
     "    PS.Accumlation 20\r\n"
     "    PS.Start\r\n"
     "PS.END\r\n"},
    {"PSCoulomb_Acc", "Potential Step(Stop by Coulomb Number)",
     "PotentialStepMode\r\n"
     "    PS.RecordTrack 0\r\n"
     "    PS.Title SampleName\r\n"
     "    PS.DiskScale 1e-3\r\n"
     "    PS.Voltage 1 0.2\r\n"
     "    PS.Coulomb 0.1\r\n"
     "    PS.RetainTime 30\r\n"
     "    PS.MeasureTime 10\r\n"
     "    PS.InitSamplingRate 50\r\n"
     "    PS.Accumlation 20\r\n"
     "    PS.Start\r\n"
     "PS.END\r\n"},
    {"RPMvsi_Acc", "RPM vs. i",
     "RPMvsiMode\r\n"
     "    RPMvsi.RecordTrack 0\r\n"
     "    RPMvsi.DiskScale 1e-3\r\n"
     "    RPMvsi.Title SampleName\r\n"
     "    RPMvsi.mode 2\r\n"
     "    RPMvsi.Potential 0.2\r\n"
     "    RPMvsi.RetainTime 10\r\n"
     "    RPMvsi.RPM 200 1200 10\r\n"
     "    RPMvsi.SamplingRate 1\r\n"
     "    RPMvsi.Accumlation 1000\r\n"
     "    RPMvsi.Start\r\n"
     "RPMvsi.END\r\n"},
    {"SSV_Acc", "Steady State Voltammogram",
     "SSVMeasureMode\r\n"
     "    SSV.RecordTrack 0\r\n"
     "    SSV.DiskScale 1e-3\r\n"
     "    SSV.RingScale 1e-4\r\n"
     "    SSV.Title SampleName\r\n"
     "    SSV.RPM 300\r\n"
     "    SSV.Voltage 1 -0.2\r\n"
     "    SSV.Acceleratemode 1\r\n"
     "    SSV.CurrentTolerance 1\r\n"
     "    SSV.SetSkipMode 1\r\n"
     "    SSV.AppliedCurrent 5\r\n"
     "    SSV.VoltStep 0.005\r\n"
     "    SSV.StepTime 30\r\n"
     "    SSV.Segment 2\r\n"
     "    SSV.SamplingRate 2\r\n"
     "    SSV.Accumlation 500\r\n"
     "    SSV.SendtoClip 1\r\n"
     "    SSV.MinTime 1\r\n"
     "    SSV.RecordNextTrack 1\r\n"
     "    SSV.Start\r\n"
     "SSV.END\r\n"},
    {"Mail_Acc", "Mail",
     "Mail.DisplayName Displayname\r\n"
     "Mail.Address Address\r\n"
     "Mail.Subject Subject\r\n"
     "Mail.MsgNote MsgNote\r\n"
     "Mail.Send\r\n"},
};

}  // namespace

std::span<const MacroTemplate> MacroTemplates() {
  return kTemplates;
}

}  // namespace zento
