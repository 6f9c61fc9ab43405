#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

#include "devices/vendor/tables.h"
#include "host/clock.h"
#include "sim/parameters.h"
#include "sim/plant.h"
#include "sim/random.h"

namespace zento::sim {

// The inputs of a board: what a conversion makes of a voltage. Ranges are symmetric about 0.
class Board {
 public:
  static constexpr std::int64_t kConversionMicros = 25;
  static constexpr double kWidestRange = 2.5;  // V either way

  Board(const Parameters& parameters, Random& random);

  // The voltage with the noise and the mains pick-up of the moment `micros`.
  double Disturb(double volts, std::int64_t micros) {
    if (noise_ > 0.0) volts += noise_ * random_.Gaussian();
    return mains_ > 0.0 ? volts + Mains(micros) : volts;
  }

  // What a converter of `bits` parameter bits reports, in volts, within +-`range`.
  double Volts(double disturbed, double range) const;

  // The word of the boards whose interface carries 12 bits: 0 is -2.5 V, 2048 is 0 V, 4095 is
  // 2.49878 V. A coarser converter leaves the lower bits 0.
  std::uint16_t Word(double disturbed) const;

 private:
  double Mains(std::int64_t micros) const;

  double noise_, mains_, mains_frequency_;
  int bits_;
  Random& random_;
};

// The code of `volts` within +-`range` at `bits` of resolution: floor((V + range) 2^bits/(2 range)
// + 1/2), held between 0 and 2^bits - 1.
int Quantise(double volts, double range, int bits);

// The simulated bench: everything on the far side of the vendors' libraries. Each call through one
// of its tables first carries the physics on to the clock's now. A conversion takes 25 us: it
// happens at the clock's now or at the end of the conversion before it, whichever is later, and is
// reported to the clock as time spent. A clock that ignores that (a real one, since our conversions
// take no real time) is led by at most `kLongestLead`; conversions beyond it are squeezed together
// rather than let the experiment run away from the clock.
//
// Inputs (of all three boards): 0 disk potential, 1 disk current, 2 ring potential, 3 ring current,
// 4 rotation; the others carry nothing but noise. With an array of cells, whose ten potentiostats
// all follow the same command, inputs 2 i and 2 i + 1 are potential and current of cell i, and the
// rotation's signal is not connected. A signal beyond a board's range reads as its end, so that
// rotation at 1000 rpm/V is clipped at 2499 rpm (at 2500 without quantisation). Analog output 0 is
// the motor's voltage. Outlet 0, on the outlet port or the PCI-9112's digital port 0, is the
// motor's power.
class Bench {
 public:
  static constexpr std::int64_t kLongestLead = 20'000;  // us

  // Starts at the clock's now. `clock` must outlive the bench.
  Bench(Clock& clock, const Parameters& parameters);
  Bench(const Bench&) = delete;
  Bench& operator=(const Bench&) = delete;

  // All tables filled. The bench must outlive them.
  vendor::Libraries Libraries();

  // One line for a window: what is simulated and what it is doing.
  std::string Describe();

  // Things that go wrong on real benches, for tests.
  struct Faults {
    bool conversion_never_done = false;  // port-mapped board
    bool aio_open = false;
    bool register_card = false;
    bool bus = false;  // nothing on the bus answers
    bool serial_open = false;
  };
  Faults faults;

  const Plant& plant() const { return plant_; }
  std::uint8_t outlets() const { return outlets_; }

 private:
  vendor::PortIo PortIoTable();
  vendor::Aio AioTable();
  vendor::Dask DaskTable();
  vendor::Gpib GpibTable();
  vendor::SerialLine SerialTable();

  // The bench's now, in us of the clock: never before the last conversion's end, but for the lead.
  std::int64_t Moment() const;
  void CatchUp();
  // The disturbed voltage of one conversion.
  double Convert(int channel);
  // Passes a text on to what listens at the address. False when nothing does.
  bool Talk(int address, std::string_view text);
  void SetOutlets(std::uint8_t state);

  std::uint8_t ReadPort(std::uint16_t port);
  void WritePort(std::uint16_t port, std::uint8_t value);
  std::int32_t WordAddress(std::uint16_t* word);
  std::uint16_t* WordAt(std::int32_t address) const;
  bool HasCard(std::uint16_t card) const { return card_ >= 0 && card == card_; }

  Clock& clock_;
  std::int64_t start_;
  std::int64_t free_at_;  // when the converter is done, us of the clock
  int gpib_address_;
  Random random_;
  Plant plant_;
  Board board_;
  SerialConverter converter_;

  std::uint8_t outlets_ = 0;
  bool port_done_ = false;
  std::uint16_t port_word_ = 0;
  int aio_opened_ = 0;
  std::array<std::uint16_t*, 16> words_{};
  std::int32_t next_word_ = 0;
  int card_ = -1;
  bool bus_ready_ = false;
  bool serial_open_ = false;
};

}  // namespace zento::sim
