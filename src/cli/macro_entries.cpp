#include "cli/macro_entries.h"

#include <algorithm>
#include <iterator>

namespace zento {
namespace {

constexpr char kCV[] = "frmMeasureCV";
constexpr char kRDE[] = "frmMeasureRDE";
constexpr char kStep[] = "frmPotentialStep";
constexpr char kSweep[] = "frmMeasureRPMvsj";

constexpr MacroEntry kEntries[] = {
    {"CV.RecordTrack", kCV, {"txtDataNum"}, false, true},
    {"CV.RPM", kCV, {"txtRPM"}},
    {"CV.Setting", kCV, {"txtCVNum"}},
    {"CV.DiskScale", kCV, {"txtYScale"}},
    {"CV.Voltage", kCV, {"txtVoltSetting", "txtVoltSetting", "txtVoltSetting"}, true},
    {"CV.RetainTime", kCV, {"txtRetainTime"}},
    {"CV.Scanrate", kCV, {"txtScanrate"}},
    {"CV.Repeat", kCV, {"txtCycleNum"}},
    {"CV.SamplingRate", kCV, {"txtSamplingrate"}},
    {"CV.Accumlation", kCV, {"txtAccum"}},
    {"RDE.RecordTrack", kRDE, {"txtDataNum"}, false, true},
    {"RDE.DiskScale", kRDE, {"txtDiskYScale"}},
    {"RDE.RingScale", kRDE, {"txtRingYScale"}},
    {"RDE.RPM", kRDE, {"txtRPM"}},
    {"RDE.Voltage", kRDE, {"txtVoltSetting", "txtVoltSetting", "txtVoltSetting"}, true},
    {"RDE.RetainTime", kRDE, {"txtRetainTime"}},
    {"RDE.Scanrate", kRDE, {"txtScanrate"}},
    {"RDE.Repeat", kRDE, {"txtCycleNum"}},
    {"RDE.SamplingRate", kRDE, {"txtSamplingrate"}},
    {"RDE.Accumlation", kRDE, {"txtAccum"}},
    {"PS.RecordTrack", kStep, {"txtDataNum"}, false, true},
    {"PS.DiskScale", kStep, {"txtYScale"}},
    {"PS.Voltage", kStep, {"txtVoltSetting", "txtVoltSetting"}, true},
    {"PS.MeasureMode", kStep, {"opnPSMeas"}},
    {"PS.RPM", kStep, {"txtRPM"}},
    {"PS.RetainTime", kStep, {"txtRetainTime"}},
    {"PS.Coulomb", kStep, {"txtCoulomb"}},
    {"PS.MeasureTime", kStep, {"txtMaxTime"}},
    {"PS.InitSamplingRate", kStep, {"txtInitSamplingRate"}},
    {"PS.Accumlation", kStep, {"txtAccum"}},
    {"RPMvsi.RecordTrack", kSweep, {"txtDataNum"}, false, true},
    {"RPMvsi.DiskScale", kSweep, {"txtYScale"}},
    {"RPMvsi.mode", kSweep, {"opnRPMvsj"}},
    {"RPMvsi.Potential", kSweep, {"txtDiskXValue"}},
    {"RPMvsi.RetainTime", kSweep, {"txtRetainTime"}},
    {"RPMvsi.RPM", kSweep, {"txtStartRPM", "txtEndRPM", "txtSpeed"}},
    {"RPMvsi.SamplingRate", kSweep, {"txtSamplingrate"}},
    {"RPMvsi.Accumlation", kSweep, {"txtAccum"}},
};

}  // namespace

const MacroEntry* FindMacroEntry(std::string_view command) {
  const auto* const found = std::ranges::find(kEntries, command, &MacroEntry::command);
  return found == std::end(kEntries) ? nullptr : found;
}

}  // namespace zento
