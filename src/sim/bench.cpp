#include "sim/bench.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "text/format.h"
#include "text/status.h"

namespace zento::sim {
namespace {

constexpr int kWordBits = 12;

}  // namespace

int Quantise(double volts, double range, int bits) {
  const int codes = 1 << bits;
  const double code = std::floor((volts + range) * codes / (2.0 * range) + 0.5);
  return static_cast<int>(std::clamp(code, 0.0, codes - 1.0));
}

Board::Board(const Parameters& parameters, Random& random)
    : noise_(parameters.noise * 1e-3),
      mains_(parameters.mains * 1e-3),
      mains_frequency_(parameters.mains_frequency),
      bits_(static_cast<int>(parameters.bits)),
      random_(random) {}

double Board::Mains(std::int64_t micros) const {
  const double cycles = static_cast<double>(micros) * 1e-6 * mains_frequency_;
  return mains_ * std::sin(2.0 * std::numbers::pi * (cycles - std::floor(cycles)));
}

double Board::Volts(double disturbed, double range) const {
  if (bits_ == 0) return std::clamp(disturbed, -range, range);
  return Quantise(disturbed, range, bits_) * (2.0 * range) / (1 << bits_) - range;
}

std::uint16_t Board::Word(double disturbed) const {
  const int bits = bits_ == 0 ? kWordBits : std::min(bits_, kWordBits);
  return static_cast<std::uint16_t>(Quantise(disturbed, kWidestRange, bits) << (kWordBits - bits));
}

Bench::Bench(Clock& clock, const Parameters& parameters)
    : clock_(clock),
      start_(clock.Micros()),
      free_at_(start_),
      gpib_address_(static_cast<int>(parameters.gpib_address)),
      random_(static_cast<std::uint64_t>(parameters.seed)),
      plant_(parameters, random_),
      board_(parameters, random_),
      converter_([this](int address, std::string_view text) { Talk(address, text); }) {}

vendor::Libraries Bench::Libraries() {
  return {PortIoTable(), AioTable(), DaskTable(), GpibTable(), SerialTable()};
}

std::int64_t Bench::Moment() const {
  const std::int64_t now = clock_.Micros();
  return std::clamp(free_at_, now, now + kLongestLead);
}

void Bench::CatchUp() {
  plant_.AdvanceTo(static_cast<double>(Moment() - start_) * 1e-6);
}

double Bench::Convert(int channel) {
  const std::int64_t moment = Moment();
  free_at_ = moment + Board::kConversionMicros;
  clock_.Spend(Board::kConversionMicros);
  const double seconds = static_cast<double>(moment - start_) * 1e-6;
  plant_.AdvanceTo(seconds);
  return board_.Disturb(plant_.VoltsAt(channel, seconds), moment - start_);
}

bool Bench::Talk(int address, std::string_view text) {
  if (address != gpib_address_ || faults.bus) return false;
  CatchUp();
  const double ahead = plant_.time() - static_cast<double>(Moment() - start_) * 1e-6;
  // An instrument ignores what it does not understand.
  static_cast<void>(plant_.potentiostat().generator().Send(text, ahead));
  return true;
}

void Bench::SetOutlets(std::uint8_t state) {
  CatchUp();
  outlets_ = state;
  plant_.SetMotorPower((state & 1) != 0);
}

std::string Bench::Describe() {
  CatchUp();
  const double now = static_cast<double>(Moment() - start_) * 1e-6;
  const CommandGenerator& generator = plant_.potentiostat().generator();
  return "simulated: cell at " + Format(plant_.VoltsAt(Plant::kPotential, now), "0.000") + " V, " +
         Format(plant_.DiskAmperes() * 1e6, "0.000") + " uA, generator " +
         (generator.output_on() ? "on" : "off") + ", " + Format(plant_.rotor().rpm(), "0") + " rpm";
}

}  // namespace zento::sim
