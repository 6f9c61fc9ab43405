#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace zento {

inline constexpr int kCVPresets = 6;
inline constexpr int kMonitorChannels = 20;  // of the multichannel monitor

// One of the numbered settings of the CV window.
struct CVPreset {
  std::string CVTitle;
  double CVXScale = 0;  // V of electrode potential per V on channel 0
  double CVYScale = 0;  // A per V on channel 1
  double CVV0 = 0;      // V, first, second and third vertex
  double CVV1 = 0;
  double CVV2 = 0;
  double CVScanrate = 0;  // mV/s
  std::int32_t CVCyclenum = 0;
  double CVSamplingRate = 0;      // Hz
  double CVAccum = 0;             // readings averaged a point
  std::int32_t CVRef = 0;         // index into RefName
  std::int32_t CVRetainTime = 0;  // s at the first vertex
  std::int32_t CVRPM = 0;         // rpm

  friend bool operator==(const CVPreset&, const CVPreset&) = default;
};

// The presets, analysis parameters and device choices that outlive a session, named after their
// keys in Parameters.txt. All zero or empty until the file has been read or the defaults were
// applied.
struct Settings {
  std::int32_t CVNum = 0;  // 0 to 5, the preset in use
  std::array<CVPreset, kCVPresets> CV;

  double DiskXScale = 0, DiskYScale = 0, RingXScale = 0, RingYScale = 0;
  double RPMScale = 0;  // rpm per V on channel 4
  double RDEV0 = 0, RDEV1 = 0, RDEV2 = 0;
  double RDEScanrate = 0, RDECycleNum = 0, RDESamplingRate = 0, RDEAccum = 0;
  std::int32_t RDERef = 0, RDERetainTime = 0, RDERPM = 0;

  double PSXScale = 0, PSYScale = 0, PSRPMScale = 0;
  double PSMaxTime = 0, PSCoulomb = 0, PSInitSamplingRate = 0, PSSamplinDivision = 0, PSAccum = 0;
  double PSV0 = 0, PSV1 = 0, PSRetainTime = 0;
  std::int32_t PSRPM = 0;
  std::int16_t PSGraphOn = 0;

  double RPjXScale = 0, RPjYScale = 0, RPjRPMScale = 0, RPjDiskPotential = 0, RPjRPMLimit = 0;
  double RPjSamplingRate = 0, RPjAccum = 0, RPjStartRPM = 0, RPjEndRPM = 0, RPjSpeed = 0;
  double RPjRetainTime = 0, RPjV = 0;

  // Analog input and scale of each monitor channel. One element more once a file has been read.
  std::vector<std::int16_t> MMAdch = std::vector<std::int16_t>(kMonitorChannels);
  std::vector<double> MMScale = std::vector<double>(kMonitorChannels);
  double MMMaxTime = 0, MMSamplingRate = 0, MMAccum = 0;

  double SSVDiskXScale = 0, SSVDiskYScale = 0, SSVRingXScale = 0, SSVRingYScale = 0;
  double SSVRPMScale = 0, SSVV1st = 0, SSVV2nd = 0, SSVVoltStep = 0, SSVStepTime = 0;
  double SSVAccelerateMode = 0, SSVCurrentTolerance = 0;
  std::int16_t SSVSkipMode = 0;
  double SSVAppliedCurrent = 0, SSVSamplingRate = 0, SSVAccum = 0;
  std::int32_t SSVRef = 0, SSVRPM = 0, SSVSegment = 0;
  std::int16_t SSVMinTime = 0, SSVRecordNextTrack = 0;

  double FFTFxmax = 0, FFTFymax = 0;

  double KLne = 0, KLVuse = 0, KLVrange = 0, KLElectrodeArea = 0, KLViscosity = 0, KLDm = 0;
  double KLConc = 0;
  std::int16_t KLMethod = 0, KLVariable = 0;

  double O2CE = 0, O2VStep = 0, O2Vrange = 0;
  double TaEred = 0, TaArea = 0;

  std::string SoundFileName;
  std::int32_t PrevGraphDrawSetting = 0;  // 0 lines, 1 dots

  std::int32_t ADBoard = 0;  // 0 port-mapped board, 1 AIO device, 2 PCI-9112
  std::string DeviceName;
  std::int32_t CardNumber = 0;
  std::int16_t DynamicRange = 0;
  std::int32_t GPIBControl = 0;  // 0 none, 1 serial converter, 2 bus board
  std::int32_t GPIBAddress = 0;
  std::int32_t FGKind = 0;
  std::int32_t DABoard = 0;  // 0 none, 1 PCI-9112 analog output
  std::string RPMvsVoltageFile;
  std::int32_t PowerControl = 0;  // 0 none, 1 port-mapped output, 2 PCI-9112 digital output

  friend bool operator==(const Settings&, const Settings&) = default;
};

}  // namespace zento
