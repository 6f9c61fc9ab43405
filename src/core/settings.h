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

  // Ring-disk voltammetry.
  double DiskXScale = 0;  // V of disk potential per V on channel 0
  double DiskYScale = 0;  // A of disk current per V on channel 1
  double RingXScale = 0;  // V of ring potential per V on channel 2
  double RingYScale = 0;  // A of ring current per V on channel 3
  double RPMScale = 0;    // rpm per V on channel 4
  double RDEV0 = 0;       // V, first, second and third vertex
  double RDEV1 = 0;
  double RDEV2 = 0;
  double RDEScanrate = 0;  // mV/s
  double RDECycleNum = 0;
  double RDESamplingRate = 0;      // Hz
  double RDEAccum = 0;             // readings averaged a point
  std::int32_t RDERef = 0;         // index into RefName
  std::int32_t RDERetainTime = 0;  // s at the first vertex
  std::int32_t RDERPM = 0;         // rpm

  // Potential step.
  double PSXScale = 0;            // V of potential per V
  double PSYScale = 0;            // A per V
  double PSRPMScale = 0;          // rpm per V
  double PSMaxTime = 0;           // s
  double PSCoulomb = 0;           // C, ends the step
  double PSInitSamplingRate = 0;  // Hz
  double PSSamplinDivision = 0;   // divides the sampling rate after each point
  double PSAccum = 0;             // readings averaged a point
  double PSV0 = 0;                // V before the step
  double PSV1 = 0;                // V after it
  double PSRetainTime = 0;        // s before the step
  std::int32_t PSRPM = 0;         // rpm
  std::int16_t PSGraphOn = 0;     // 1 = draw while measuring

  // Rotation-rate sweep.
  double RPjXScale = 0;         // V of potential per V
  double RPjYScale = 0;         // A per V
  double RPjRPMScale = 0;       // rpm per V
  double RPjDiskPotential = 0;  // V
  double RPjRPMLimit = 0;       // rpm
  double RPjSamplingRate = 0;   // Hz
  double RPjAccum = 0;          // readings averaged a point
  double RPjStartRPM = 0;       // rpm
  double RPjEndRPM = 0;         // rpm
  double RPjSpeed = 0;          // rpm/s
  double RPjRetainTime = 0;     // s before the sweep
  double RPjV = 0;              // V

  // Multichannel monitor: analog input of each channel, and what 1 V on it stands for. One element
  // more once a file has been read.
  std::vector<std::int16_t> MMAdch = std::vector<std::int16_t>(kMonitorChannels);
  std::vector<double> MMScale = std::vector<double>(kMonitorChannels);
  double MMMaxTime = 0;       // s
  double MMSamplingRate = 0;  // Hz
  double MMAccum = 0;         // readings averaged a point

  // Staircase sweep, which no window measures.
  double SSVDiskXScale = 0;  // V of disk potential per V
  double SSVDiskYScale = 0;  // A of disk current per V
  double SSVRingXScale = 0;  // V of ring potential per V
  double SSVRingYScale = 0;  // A of ring current per V
  double SSVRPMScale = 0;    // rpm per V
  double SSVV1st = 0;        // V
  double SSVV2nd = 0;        // V
  double SSVVoltStep = 0;    // V
  double SSVStepTime = 0;    // s at most on a step
  double SSVAccelerateMode = 0;
  double SSVCurrentTolerance = 0;
  std::int16_t SSVSkipMode = 0;  // 1 = leave a steady step early
  double SSVAppliedCurrent = 0;
  double SSVSamplingRate = 0;           // Hz
  double SSVAccum = 0;                  // readings averaged a point
  std::int32_t SSVRef = 0;              // index into RefName
  std::int32_t SSVRPM = 0;              // rpm
  std::int32_t SSVSegment = 0;          // segments
  std::int16_t SSVMinTime = 0;          // s at least on a step
  std::int16_t SSVRecordNextTrack = 0;  // 1 = all points into the next track

  double FFTFxmax = 0;  // Hz, cut-off of the x column
  double FFTFymax = 0;  // Hz, cut-off of the currents

  // Koutecky-Levich analysis.
  double KLne = 0;             // electrons transferred
  double KLVuse = 0;           // V
  double KLVrange = 0;         // V
  double KLElectrodeArea = 0;  // cm2
  double KLViscosity = 0;      // cm2/s
  double KLDm = 0;             // cm2/s
  double KLConc = 0;           // mol/cm3
  std::int16_t KLMethod = 0;
  std::int16_t KLVariable = 0;

  double O2CE = 0;      // collection efficiency of the ring
  double O2VStep = 0;   // V
  double O2Vrange = 0;  // V
  double TaEred = 0;    // V, equilibrium potential
  double TaArea = 0;    // cm2

  std::string SoundFileName;
  std::int32_t PrevGraphDrawSetting = 0;  // 0 lines, 1 dots

  // The devices: numbers of rows in the tables of devices/device_table.h.
  std::int32_t ADBoard = 0;       // analog input board
  std::string DeviceName;         // of the analog I/O board
  std::int32_t CardNumber = 0;    // of the PCI-9112
  std::int16_t DynamicRange = 0;  // PCI-9112: 0 = always the widest input range
  std::int32_t GPIBControl = 0;   // link to the bus
  std::int32_t GPIBAddress = 0;   // of the function generator
  std::int32_t FGKind = 0;        // kept for the file; changes no command
  std::int32_t DABoard = 0;       // motor's voltage; 0 = no rotation control
  std::string RPMvsVoltageFile;   // rotation-rate calibration; a relative path starts at the home
  std::int32_t PowerControl = 0;  // output that switches the outlets

  friend bool operator==(const Settings&, const Settings&) = default;
};

}  // namespace zento
