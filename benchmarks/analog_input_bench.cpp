// What a measurement's tick costs in our own work around the vendor's conversions: accumulation 500
// on 5 channels, 2500 conversions. The peer is the bare loop over the vendor's function.
//
// Goal: at most 20 us beyond the peer.

#include <benchmark/benchmark.h>

#include <array>
#include <cstdint>

#include "core/settings.h"
#include "core/workstation.h"
#include "devices/analog_input.h"
#include "devices/pci_card.h"

namespace zento {
namespace {

constexpr std::array<std::uint8_t, 5> kChannels = {0, 1, 2, 3, 4};
constexpr int kAccumulation = 500;

vendor::Libraries FastCard() {
  vendor::Libraries libraries;
  libraries.dask.Register_Card = [](std::uint16_t, std::uint16_t) { return std::int16_t{0}; };
  libraries.dask.AI_VReadChannel = [](std::uint16_t, std::uint16_t channel, std::uint16_t range,
                                      double* volts) {
    *volts = channel * 0.3 + range * 1e-3;
    return std::int16_t{0};
  };
  return libraries;
}

void BM_VendorCallsAlone(benchmark::State& state) {
  vendor::Libraries libraries = FastCard();
  std::array<double, 5> sums{};
  for (auto _ : state) {
    sums.fill(0);
    for (int round = 0; round < kAccumulation; ++round) {
      for (std::size_t i = 0; i < kChannels.size(); ++i) {
        double volts = 0;
        libraries.dask.AI_VReadChannel(0, kChannels[i], 3, &volts);
        sums[i] += volts;
      }
    }
    benchmark::DoNotOptimize(sums);
  }
}

// Argument: automatic ranging off or on.
void BM_ReadSum(benchmark::State& state) {
  Workstation workstation;
  workstation.settings.ADBoard = 2;
  workstation.settings.DynamicRange = static_cast<std::int16_t>(state.range(0));
  vendor::Libraries libraries = FastCard();
  PciCard card(workstation.settings, libraries.dask);
  AnalogInput input({workstation.settings, libraries, card});
  if (input.Open() != 0) state.SkipWithError("the board did not open");
  std::array<double, 5> sums{};
  for (auto _ : state) {
    if (!input.ReadSum(kChannels, kAccumulation, sums)) state.SkipWithError("a read failed");
    benchmark::DoNotOptimize(sums);
  }
}

BENCHMARK(BM_VendorCallsAlone)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_ReadSum)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace zento
