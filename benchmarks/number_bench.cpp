// Numbers of a track file: writing and reading them, beside what the standard library offers.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "text/format.h"
#include "text/number.h"

namespace {

constexpr std::size_t kPoints = 40001;

struct Curve {
  std::vector<double> potentials;  // V
  std::vector<double> currents;    // A
};

// A noisy triangle sweep and currents over some decades of both signs, as a measurement stores
// them.
const Curve& Points() {
  static const Curve curve = [] {
    Curve made;
    std::mt19937_64 random(1);
    std::normal_distribution<double> noise(0, 6e-4);
    for (std::size_t i = 0; i < kPoints; ++i) {
      const double phase = static_cast<double>(i) / 10000;
      made.potentials.push_back(std::fabs(std::remainder(phase, 2.0)) * 1.4 - 0.2 + noise(random));
      made.currents.push_back(std::sin(phase * 7) * std::pow(10, -7 + 2 * std::cos(phase)) +
                              1e-5 * noise(random));
    }
    return made;
  }();
  return curve;
}

template <typename WritePotential, typename WriteCurrent>
void WriteAll(benchmark::State& state, WritePotential write_potential, WriteCurrent write_current) {
  const Curve& curve = Points();
  std::vector<char> room(kPoints * 32);
  for (auto _ : state) {
    char* out = room.data();
    for (std::size_t i = 0; i < kPoints; ++i) {
      out = write_potential(out, curve.potentials[i]);
      *out++ = '\t';
      out = write_current(out, curve.currents[i]);
      *out++ = '\n';
    }
    benchmark::DoNotOptimize(out);
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * 2 * static_cast<std::int64_t>(kPoints));
}

void Write(benchmark::State& state) {
  WriteAll(state, zento::WriteFixed4, zento::WriteScientific);
}
BENCHMARK(Write);

void WriteByFormat(benchmark::State& state) {
  const auto write = [](const char* pattern) {
    return [pattern](char* out, double value) {
      const std::string text = zento::Format(value, pattern);
      return std::copy(text.begin(), text.end(), out);
    };
  };
  WriteAll(state, write("0.0000"), write("0.0###e+0"));
}
BENCHMARK(WriteByFormat);

// The peers leave the trailing zeros, which is less to do.
void WriteByToChars(benchmark::State& state) {
  const auto write = [](std::chars_format format) {
    return [format](char* out, double value) {
      return std::to_chars(out, out + 32, value, format, 4).ptr;
    };
  };
  WriteAll(state, write(std::chars_format::fixed), write(std::chars_format::scientific));
}
BENCHMARK(WriteByToChars);

void WriteBySnprintf(benchmark::State& state) {
  WriteAll(
      state, [](char* out, double value) { return out + std::snprintf(out, 32, "%.4f", value); },
      [](char* out, double value) { return out + std::snprintf(out, 32, "%.4e", value); });
}
BENCHMARK(WriteBySnprintf);

// The same points as one text, a separator behind each number and a NUL at the end.
const std::string& Text() {
  static const std::string text = [] {
    const Curve& curve = Points();
    std::string made;
    for (std::size_t i = 0; i < kPoints; ++i) {
      made += zento::Format(curve.potentials[i], "0.0000") + '\t' +
              zento::Format(curve.currents[i], "0.0###e+0") + '\n';
    }
    return made;
  }();
  return text;
}

template <typename Read>
void ReadAll(benchmark::State& state, Read read) {
  const std::string& text = Text();
  const char* const last = text.data() + text.size();
  for (auto _ : state) {
    double sum = 0;
    for (const char* p = text.data(); p != last; ++p) {
      double value = 0;
      p = read(p, last, value);
      sum += value;
    }
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * 2 * static_cast<std::int64_t>(kPoints));
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

void Read(benchmark::State& state) {
  ReadAll(state, zento::ParseNumber);
}
BENCHMARK(Read);

void ReadByFromChars(benchmark::State& state) {
  ReadAll(state, [](const char* p, const char* last, double& value) {
    return std::from_chars(p, last, value).ptr;
  });
}
BENCHMARK(ReadByFromChars);

void ReadByStrtod(benchmark::State& state) {
  ReadAll(state, [](const char* p, const char*, double& value) {
    char* end = nullptr;
    value = std::strtod(p, &end);
    return static_cast<const char*>(end);
  });
}
BENCHMARK(ReadByStrtod);

// General form, as settings and headers hold it.
void WriteGeneralForm(benchmark::State& state) {
  for (auto _ : state) {
    for (const double value : {0.05, -1e-6, 0.28274, 1500.0}) {
      benchmark::DoNotOptimize(zento::SignedNumber(value));
    }
  }
  state.SetItemsProcessed(state.iterations() * 4);
}
BENCHMARK(WriteGeneralForm);

}  // namespace
