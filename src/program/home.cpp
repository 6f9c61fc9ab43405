#include "program/home.h"

#include <cmath>
#include <utility>

#include "core/settings_file.h"
#include "core/settings_table.h"
#include "devices/rotation.h"
#include "host/native/home.h"
#include "sim/rotor.h"

namespace zento {
namespace {

constexpr char kCalibrationFile[] = "rpm-calibration.txt";

#ifdef _WIN32
constexpr char kSound[] = R"(C:\Windows\Media\chimes.wav)";
#else
constexpr char kSound[] = "/usr/share/sounds/freedesktop/stereo/complete.oga";
#endif

double ToCentivolts(double volts) {
  return std::round(volts * 100) / 100;
}

struct Sweep {
  double from, to;  // V
};

// Around the couple's potential, past both of its peaks; from where oxygen rests to its limit.
Sweep SweepForCell(const sim::Parameters& parameters) {
  if (parameters.Kind() == sim::kOxygen) return {1.0, 0.2};
  return {ToCentivolts(parameters.formal_potential - 0.35),
          ToCentivolts(parameters.formal_potential + 0.35)};
}

const char* TitleForCell(sim::CellKind cell) {
  if (cell == sim::kOxygen) return "Oxygen on the simulated bench";
  if (cell == sim::kBlank) return "Double layer of the simulated bench";
  return "Couple of the simulated bench";
}

// Sampled slowly enough to be drawn while it is recorded.
CVPreset PresetForCell(CVPreset preset, const sim::Parameters& parameters) {
  const Sweep sweep = SweepForCell(parameters);
  preset.CVTitle = TitleForCell(parameters.Kind());
  preset.CVV0 = sweep.from;
  preset.CVV1 = sweep.to;
  preset.CVV2 = sweep.from;
  preset.CVYScale = parameters.disk_range;
  preset.CVScanrate = 50;
  preset.CVSamplingRate = 10;
  preset.CVCyclenum = 1;
  preset.CVRetainTime = 5;
  return preset;
}

// The other measurements: potentials of this cell where the defaults would not suit it, and scales
// that belong to the bench's current followers.
void UseSweepAndRanges(Settings& settings, const sim::Parameters& parameters) {
  settings.DiskYScale = settings.PSYScale = settings.RPjYScale = parameters.disk_range;
  settings.RingYScale = parameters.ring_range;
  settings.RPMScale = settings.PSRPMScale = settings.RPjRPMScale = parameters.tach_scale;
  if (parameters.Kind() == sim::kArray) {
    for (std::size_t i = 1; i < settings.MMScale.size(); i += 2) {
      settings.MMScale[i] = parameters.disk_range;
    }
  }
  if (parameters.Kind() != sim::kOxygen) return;
  const Sweep sweep = SweepForCell(parameters);
  settings.RDEV0 = settings.RDEV2 = sweep.from;
  settings.RDEV1 = settings.PSV1 = sweep.to;
  // Nothing flows yet at this potential, and a step from whole tenths of a volt is seen at once.
  settings.PSV0 = 1.2;
}

Settings SettingsForBench(const sim::Parameters& parameters) {
  Settings settings;
  SetAllToDefaults(settings);
  settings.ADBoard = 2;
  settings.DABoard = 1;
  settings.GPIBControl = 2;
  settings.GPIBAddress = static_cast<std::int32_t>(parameters.gpib_address);
  settings.PowerControl = 2;
  settings.RPMvsVoltageFile = kCalibrationFile;
  settings.SoundFileName = kSound;
  settings.CV[1] = PresetForCell(settings.CV[1], parameters);
  UseSweepAndRanges(settings, parameters);
  return settings;
}

std::vector<CalibrationPoint> MotorLaw(const sim::Parameters& parameters) {
  std::vector<CalibrationPoint> points;
  for (const auto& point : sim::RotorCalibration(parameters)) {
    points.push_back({point.rpm, point.volts});
  }
  return points;
}

}  // namespace

Result<std::filesystem::path> FindHome(const std::filesystem::path& wanted, bool simulated) {
  HomeQuestion question;
  question.wanted = wanted;
  question.simulated = simulated;
  question.executable_folder = ExecutableFolder();
  return ResolveHome(question);
}

std::vector<std::filesystem::path> DataFolders() {
  const std::filesystem::path folder = ExecutableFolder();
  if (folder.empty()) return {};
  return {folder, folder.parent_path() / "share" / "zento"};
}

Result<HeldHome> TakeHome(const std::filesystem::path& wanted, bool simulated,
                          std::string_view who) {
  auto folder = FindHome(wanted, simulated);
  if (!folder.ok()) return folder.status();
  auto lock = HomeLock::Take(folder.value(), who);
  if (!lock.ok()) return lock.status();
  return HeldHome{std::move(folder.value()), std::move(lock.value())};
}

Status PrepareBenchHome(Files& files, const std::filesystem::path& home,
                        const sim::Parameters& parameters) {
  if (files.Exists(SettingsPath(home))) return Status::Ok();
  if (Status made = files.CreateFolder(home); !made.ok()) return made;
  // The settings come last: they are the sign that the home is complete.
  const auto calibration = home / kCalibrationFile;
  if (!files.Exists(calibration)) {
    Status saved = files.Replace(calibration, FormatCalibration(MotorLaw(parameters)));
    if (!saved.ok()) return saved;
  }
  return files.Replace(SettingsPath(home), FormatSettings(SettingsForBench(parameters)));
}

}  // namespace zento
