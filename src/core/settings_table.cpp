#include "core/settings_table.h"

#include <cstddef>
#include <type_traits>

#include "text/lines.h"
#include "text/number.h"

namespace zento {
namespace {

constexpr std::monostate kKept{};

double SameInput(int channel) {
  return channel;
}
double PotentialThenCurrent(int channel) {
  return channel % 2 == 0 ? 1.0 : 0.005;
}

using S = Settings;
using P = CVPreset;

const SettingRow kCVNum = {"CVNum", &S::CVNum, 0.0, "CV preset in use, 0 to 5"};

const PresetRow kPresetRows[] = {
    {"CVTitle", &P::CVTitle, "Initial Setting", "preset's title"},
    {"CVXScale", &P::CVXScale, 1.0, "V of potential per V"},
    {"CVYScale", &P::CVYScale, 0.001, "A per V"},
    {"CVV0", &P::CVV0, 0.6, "first vertex, V"},
    {"CVV1", &P::CVV1, 1.2, "second vertex, V"},
    {"CVV2", &P::CVV2, -0.2, "third vertex, V"},
    {"CVScanrate", &P::CVScanrate, 50.0, "sweep rate, mV/s"},
    {"CVCyclenum", &P::CVCyclenum, 2.0, "cycles"},
    {"CVSamplingRate", &P::CVSamplingRate, 100.0, "points per second, Hz"},
    {"CVAccum", &P::CVAccum, 100.0, "readings averaged a point"},
    {"CVRef", &P::CVRef, kKept, "reference electrode, 0 none to 4 RHE"},
    {"CVRetainTime", &P::CVRetainTime, 10.0, "time at the first vertex, s"},
    {"CVRPM", &P::CVRPM, kKept, "rotation rate, rpm"},
};

const SettingRow kRows[] = {
    {"DiskXScale", &S::DiskXScale, 1.0, "RDE: V of disk potential per V"},
    {"DiskYScale", &S::DiskYScale, 0.001, "RDE: A of disk current per V"},
    {"RingXScale", &S::RingXScale, 1.0, "RDE: V of ring potential per V"},
    {"RingYScale", &S::RingYScale, 1e-5, "RDE: A of ring current per V"},
    {"RPMScale", &S::RPMScale, 1000.0, "RDE: rpm per V"},
    {"RDEV0", &S::RDEV0, 0.8, "RDE: first vertex, V"},
    {"RDEV1", &S::RDEV1, -0.2, "RDE: second vertex, V"},
    {"RDEV2", &S::RDEV2, 0.8, "RDE: third vertex, V"},
    {"RDEScanrate", &S::RDEScanrate, 50.0, "RDE: sweep rate, mV/s"},
    {"RDECycleNum", &S::RDECycleNum, 1.0, "RDE: cycles"},
    {"RDESamplingRate", &S::RDESamplingRate, 2.0, "RDE: points per second, Hz"},
    {"RDEAccum", &S::RDEAccum, 500.0, "RDE: readings averaged a point"},
    {"RDERef", &S::RDERef, kKept, "RDE: reference electrode, 0 none to 4 RHE"},
    {"RDERetainTime", &S::RDERetainTime, 10.0, "RDE: time at the first vertex, s"},
    {"RDERPM", &S::RDERPM, kKept, "RDE: rotation rate, rpm"},
    {"PSXScale", &S::PSXScale, 1.0, "potential step: V of potential per V"},
    {"PSYScale", &S::PSYScale, 0.001, "potential step: A per V"},
    {"PSRPMScale", &S::PSRPMScale, 1000.0, "potential step: rpm per V"},
    {"PSMaxTime", &S::PSMaxTime, 100.0, "potential step: longest time, s"},
    {"PSCoulomb", &S::PSCoulomb, 0.1, "potential step: charge limit, C"},
    {"PSInitSamplingRate", &S::PSInitSamplingRate, 10.0, "potential step: first sampling rate, Hz"},
    {"PSSamplinDivision", &S::PSSamplinDivision, 1.2, "potential step: thinning of the points"},
    {"PSAccum", &S::PSAccum, 500.0, "potential step: readings averaged a point"},
    {"PSV0", &S::PSV0, 0.8, "potential step: potential before, V"},
    {"PSV1", &S::PSV1, 0.1, "potential step: potential after, V"},
    {"PSRetainTime", &S::PSRetainTime, 10.0, "potential step: time before, s"},
    {"PSRPM", &S::PSRPM, kKept, "potential step: rotation rate, rpm"},
    {"PSGraphOn", &S::PSGraphOn, 1.0, "potential step: draw while measuring, 0 or 1"},
    {"RPjXScale", &S::RPjXScale, 1.0, "RPM vs. i: V of potential per V"},
    {"RPjYScale", &S::RPjYScale, 0.001, "RPM vs. i: A per V"},
    {"RPjRPMScale", &S::RPjRPMScale, 1000.0, "RPM vs. i: rpm per V"},
    {"RPjDiskPotential", &S::RPjDiskPotential, -0.1, "RPM vs. i: disk potential, V"},
    {"RPjRPMLimit", &S::RPjRPMLimit, 1500.0, "RPM vs. i: highest rotation rate, rpm"},
    {"RPjSamplingRate", &S::RPjSamplingRate, 10.0, "RPM vs. i: points per second, Hz"},
    {"RPjAccum", &S::RPjAccum, 250.0, "RPM vs. i: readings averaged a point"},
    {"RPjStartRPM", &S::RPjStartRPM, 200.0, "RPM vs. i: first rotation rate, rpm"},
    {"RPjEndRPM", &S::RPjEndRPM, 1200.0, "RPM vs. i: last rotation rate, rpm"},
    {"RPjSpeed", &S::RPjSpeed, 10.0, "RPM vs. i: speed of the change, rpm/s"},
    {"RPjRetainTime", &S::RPjRetainTime, 15.0, "RPM vs. i: time before, s"},
    {"RPjV", &S::RPjV, -0.2, "RPM vs. i: applied potential, V"},
    {"MMAdch", &S::MMAdch, &SameInput, "monitor: analog input of each channel"},
    {"MMScale", &S::MMScale, &PotentialThenCurrent, "monitor: scale of each channel, per V"},
    {"MMMaxTime", &S::MMMaxTime, 600.0, "monitor: longest time, s"},
    {"MMSamplingRate", &S::MMSamplingRate, 1.0, "monitor: points per second, Hz"},
    {"MMAccum", &S::MMAccum, 20.0, "monitor: readings averaged a point"},
    {"SSVDiskXScale", &S::SSVDiskXScale, 1.0, "staircase: V of disk potential per V"},
    {"SSVDiskYScale", &S::SSVDiskYScale, 0.001, "staircase: A of disk current per V"},
    {"SSVRingXScale", &S::SSVRingXScale, 1.0, "staircase: V of ring potential per V"},
    {"SSVRingYScale", &S::SSVRingYScale, 1e-5, "staircase: A of ring current per V"},
    {"SSVRPMScale", &S::SSVRPMScale, 1000.0, "staircase: rpm per V"},
    {"SSVV1st", &S::SSVV1st, 1.0, "staircase: first potential, V"},
    {"SSVV2nd", &S::SSVV2nd, -0.2, "staircase: second potential, V"},
    {"SSVVoltStep", &S::SSVVoltStep, 0.005, "staircase: step, V"},
    {"SSVStepTime", &S::SSVStepTime, 30.0, "staircase: longest time on a step, s"},
    {"SSVAccelerateMode", &S::SSVAccelerateMode, 1.0, "staircase: acceleration"},
    {"SSVCurrentTolerance", &S::SSVCurrentTolerance, 0.5, "staircase: current tolerance"},
    {"SSVSkipMode", &S::SSVSkipMode, 1.0, "staircase: leave a steady step early, 0 or 1"},
    {"SSVAppliedCurrent", &S::SSVAppliedCurrent, 5.0, "staircase: applied current"},
    {"SSVSamplingRate", &S::SSVSamplingRate, 2.0, "staircase: points per second, Hz"},
    {"SSVAccum", &S::SSVAccum, 500.0, "staircase: readings averaged a point"},
    {"SSVRef", &S::SSVRef, kKept, "staircase: reference electrode, 0 none to 4 RHE"},
    {"SSVRPM", &S::SSVRPM, kKept, "staircase: rotation rate, rpm"},
    {"SSVSegment", &S::SSVSegment, 2.0, "staircase: segments"},
    {"SSVMinTime", &S::SSVMinTime, 1.0, "staircase: shortest time on a step, s"},
    {"SSVRecordNextTrack", &S::SSVRecordNextTrack, 1.0,
     "staircase: all points into the next track"},
    {"FFTFxmax", &S::FFTFxmax, 25.0, "FFT filter: cut-off of the x column, Hz"},
    {"FFTFymax", &S::FFTFymax, 2.0, "FFT filter: cut-off of the currents, Hz"},
    {"KLne", &S::KLne, 4.0, "Koutecky-Levich: electrons transferred"},
    {"KLVuse", &S::KLVuse, -0.1, "Koutecky-Levich: potential, V"},
    {"KLVrange", &S::KLVrange, -0.02, "Koutecky-Levich: potential range, V"},
    {"KLElectrodeArea", &S::KLElectrodeArea, 0.28274, "Koutecky-Levich: electrode area, cm2"},
    {"KLViscosity", &S::KLViscosity, 0.01, "Koutecky-Levich: kinematic viscosity, cm2/s"},
    {"KLDm", &S::KLDm, 2e-5, "Koutecky-Levich: diffusion coefficient, cm2/s"},
    {"KLConc", &S::KLConc, 1.5e-6, "Koutecky-Levich: concentration, mol/cm3"},
    {"KLMethod", &S::KLMethod, 0.0, "Koutecky-Levich: method"},
    {"KLVariable", &S::KLVariable, 0.0, "Koutecky-Levich: variable"},
    {"O2CE", &S::O2CE, 0.4, "oxygen reduction: collection efficiency"},
    {"O2VStep", &S::O2VStep, 0.1, "oxygen reduction: potential step, V"},
    {"O2Vrange", &S::O2Vrange, 0.02, "oxygen reduction: potential range, V"},
    {"TaEred", &S::TaEred, 1.0, "Tafel: equilibrium potential, V"},
    {"TaArea", &S::TaArea, 1.0, "Tafel: electrode area, cm2"},
    {"SoundFileName", &S::SoundFileName, "A:\\Windows\\MEDIA\\The Microsoft Sound.wav",
     "played at the end of a measurement"},
    {"PrevGraphDrawSetting", &S::PrevGraphDrawSetting, 0.0, "preview: 0 lines, 1 dots"},
    {"ADBoard", &S::ADBoard, 0.0, "analog input"},
    {"DeviceName", &S::DeviceName, "AIO00", "name of the AD12-16U(PCI)E"},
    {"CardNumber", &S::CardNumber, kKept, "number of the PCI-9112"},
    {"DynamicRange", &S::DynamicRange, 0.0, "PCI-9112: switch input ranges, 0 or 1"},
    {"GPIBControl", &S::GPIBControl, 0.0, "generator"},
    {"GPIBAddress", &S::GPIBAddress, 7.0, "bus address of the generator"},
    {"FGKind", &S::FGKind, 0.0, "model of the generator"},
    {"DABoard", &S::DABoard, kKept, "rotation control"},
    {"RPMvsVoltageFile", &S::RPMvsVoltageFile, kKept, "rotation-rate calibration file"},
    {"PowerControl", &S::PowerControl, 0.0, "outlets"},
};

template <typename T>
constexpr bool kIsList =
    std::is_same_v<T, std::vector<std::int16_t>> || std::is_same_v<T, std::vector<double>>;

template <typename T>
std::string TextOf(const T& value) {
  if constexpr (std::is_same_v<T, std::string>) {
    return OneLine(value);
  } else if constexpr (kIsList<T>) {
    return JoinValues(value);
  } else {
    return SignedNumber(value);
  }
}

void Assign(std::int32_t& target, double value) {
  target = ToLong(value);
}
void Assign(std::int16_t& target, double value) {
  target = ToInteger(value);
}
void Assign(double& target, double value) {
  target = value;
}

void AssignText(std::string& target, std::string_view text) {
  target = text;
}
void AssignText(std::vector<std::int16_t>& target, std::string_view text) {
  target = SplitIntegers(ListHead(text, kMonitorChannels + 1));
}
void AssignText(std::vector<double>& target, std::string_view text) {
  target = SplitDoubles(ListHead(text, kMonitorChannels + 1));
}
template <typename Number>
requires std::is_arithmetic_v<Number>
void AssignText(Number& target, std::string_view text) {
  Assign(target, ParseLenient(text));
}

template <typename T>
void AssignDefault(T& target, const SettingDefault& initial) {
  if constexpr (std::is_same_v<T, std::string>) {
    if (const auto* text = std::get_if<std::string_view>(&initial)) target = *text;
  } else if constexpr (kIsList<T>) {
    const auto* element = std::get_if<double (*)(int)>(&initial);
    if (element == nullptr) return;
    target.resize(kMonitorChannels);
    for (int i = 0; i < kMonitorChannels; ++i) {
      Assign(target[static_cast<std::size_t>(i)], (*element)(i));
    }
  } else {
    if (const auto* number = std::get_if<double>(&initial)) Assign(target, *number);
  }
}

}  // namespace

const SettingRow& CVNumRow() {
  return kCVNum;
}
std::span<const PresetRow> PresetRows() {
  return kPresetRows;
}
std::span<const SettingRow> SettingRows() {
  return kRows;
}

template <typename Owner>
std::string SettingText(const SettingRowOf<Owner>& row, const Owner& owner) {
  return std::visit([&](auto member) { return TextOf(owner.*member); }, row.member);
}

template <typename Owner>
void SetSettingFromText(const SettingRowOf<Owner>& row, Owner& owner, std::string_view text) {
  std::visit([&](auto member) { AssignText(owner.*member, text); }, row.member);
}

template <typename Owner>
void SetSettingToDefault(const SettingRowOf<Owner>& row, Owner& owner) {
  std::visit([&](auto member) { AssignDefault(owner.*member, row.initial); }, row.member);
}

template std::string SettingText(const SettingRow&, const Settings&);
template std::string SettingText(const PresetRow&, const CVPreset&);
template void SetSettingFromText(const SettingRow&, Settings&, std::string_view);
template void SetSettingFromText(const PresetRow&, CVPreset&, std::string_view);
template void SetSettingToDefault(const SettingRow&, Settings&);
template void SetSettingToDefault(const PresetRow&, CVPreset&);

void SetAllToDefaults(Settings& settings) {
  SetSettingToDefault(kCVNum, settings);
  for (CVPreset& preset : settings.CV) {
    for (const PresetRow& row : kPresetRows) SetSettingToDefault(row, preset);
  }
  for (const SettingRow& row : kRows) SetSettingToDefault(row, settings);
}

}  // namespace zento
