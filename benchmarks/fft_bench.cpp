// The Fourier transform in place, forward and back (the way back divides by N), on two arrays of
// doubles. Goal: at most twice FFTW's time from 4096 points on, at most four times at 1024.
//
// The peers: FFTW on interleaved complex doubles, in place, with the plan that it estimates and
// with the one that it measures (both made outside the measurement, as our table of twiddles is),
// and the definition carried out literally, which calls sine and cosine for every block.

#include <benchmark/benchmark.h>

#include <cstddef>
#include <random>
#include <vector>

#ifdef ZENTO_FFTW
#include <fftw3.h>
#endif

#include "analysis/fft.h"
#include "analysis/test_definitions.h"
#include "analysis/vector_passes.h"

namespace {

using namespace zento;

std::vector<double> Noise(std::size_t points) {
  std::mt19937 random(5);
  std::normal_distribution<double> value;
  std::vector<double> values(points);
  for (double& v : values) v = value(random);
  return values;
}

// Calls `transform` with alternating signs, so that the values stay in range.
template <typename Transform>
void Measure(benchmark::State& state, const Transform& transform) {
  double sign = 1;
  for (auto _ : state) {
    transform(sign);
    sign = -sign;
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void Ours(benchmark::State& state) {
  const auto points = static_cast<std::size_t>(state.range(0));
  std::vector<double> re = Noise(points), im = Noise(points);
  Measure(state, [&](double sign) { FFT(re.data(), im.data(), points, sign); });
}

// What a processor without AVX2 does.
void OursBaseline(benchmark::State& state) {
  const auto points = static_cast<std::size_t>(state.range(0));
  std::vector<double> re = Noise(points), im = Noise(points);
  Measure(state, [&](double sign) {
    FftPassesBaseline(re.data(), im.data(), TablesFor(points, sign < 0),
                      sign < 0 ? 1 / static_cast<double>(points) : 1);
  });
}

void Literal(benchmark::State& state) {
  const auto points = static_cast<std::size_t>(state.range(0));
  std::vector<double> re = Noise(points), im = Noise(points);
  Measure(state,
          [&](double sign) { LiteralFft(re.data(), im.data(), static_cast<long>(points), sign); });
}

#define SIZES RangeMultiplier(2)->Range(1024, 131072)->Unit(benchmark::kMicrosecond)

BENCHMARK(Ours)->SIZES;

#ifdef ZENTO_FFTW

// Without FFTW's own division there is none: the peer does less by a pass over the data.
void Fftw(benchmark::State& state, unsigned planning) {
  const auto points = static_cast<std::size_t>(state.range(0));
  fftw_complex* data = fftw_alloc_complex(points);
  const int n = static_cast<int>(points);
  fftw_plan forward = fftw_plan_dft_1d(n, data, data, FFTW_BACKWARD, planning);
  fftw_plan back = fftw_plan_dft_1d(n, data, data, FFTW_FORWARD, planning);
  const std::vector<double> re = Noise(points), im = Noise(points);
  const auto fill = [&] {
    for (std::size_t i = 0; i < points; ++i) {
      data[i][0] = re[i];
      data[i][1] = im[i];
    }
  };
  fill();
  // Undivided values grow by N each time there and back; they are renewed before they overflow.
  int rounds = 0;
  Measure(state, [&](double sign) {
    fftw_execute(sign > 0 ? forward : back);
    if (++rounds % 64 == 0) {
      state.PauseTiming();
      fill();
      state.ResumeTiming();
    }
  });
  fftw_destroy_plan(forward);
  fftw_destroy_plan(back);
  fftw_free(data);
}
BENCHMARK_CAPTURE(Fftw, estimated, FFTW_ESTIMATE)->SIZES;
BENCHMARK_CAPTURE(Fftw, measured, FFTW_MEASURE)->SIZES;

#endif

BENCHMARK(OursBaseline)->SIZES;
BENCHMARK(Literal)->RangeMultiplier(8)->Range(1024, 65536)->Unit(benchmark::kMicrosecond);

}  // namespace
