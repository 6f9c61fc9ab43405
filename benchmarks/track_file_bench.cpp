// Reading and writing a full track file: 21 tracks of 40001 points in 3 columns. Every reader fills
// a track store of its own that was empty before. Each of ours has
// its peers beside it: what one writes first (getline and strtod, snprintf), what the standard
// library has (to_chars with a precision), and the best single-purpose loop we can write.

#include <benchmark/benchmark.h>

#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "core/track_file.h"

#ifdef __GLIBC__
#include <malloc.h>

#include "core/track_store.h"
#endif

namespace {

// Memory that was used once stays with the program: what the kernel takes for fresh pages (about 10
// ms for the data of a file) would hit now this one, now that one of the readers.
[[maybe_unused]] const bool keeps_memory = [] {
#ifdef __GLIBC__
  mallopt(M_MMAP_THRESHOLD, 1 << 30);
  mallopt(M_TRIM_THRESHOLD, 1 << 30);
#endif
  return true;
}();

using zento::kMaxPoints;
using zento::kTrackColumns;
using zento::kTracks;

// A ring-disk measurement of three sweeps, with noise in the last digits as a board has it.
const zento::TrackStore& Tracks() {
  static const zento::TrackStore* const tracks = [] {
    auto* store = new zento::TrackStore;
    unsigned noise = 12345;
    const auto jitter = [&] {
      noise = noise * 1664525u + 1013904223u;
      return (static_cast<double>(noise >> 8) / 16777216.0 - 0.5);
    };
    for (int track = 0; track < kTracks; ++track) {
      zento::TrackRecord& record = store->Record(track);
      record.Mode = zento::kModeRDE;
      record.Title = "Pt in 0.1 M HClO4, track " + std::to_string(track);
      record.pnum = kMaxPoints;
      for (std::int32_t i = 0; i < kMaxPoints; ++i) {
        const double phase = 6 * M_PI * i / kMaxPoints;
        store->SetValue(0, track, i, 0.3 + 0.7 * std::cos(phase) + 6e-4 * jitter());
        store->SetValue(1, track, i, 1e-3 * std::sin(phase) + 1e-6 * jitter());
        store->SetValue(2, track, i, 1e-5 * (1 - std::cos(phase)) + 1e-8 * jitter());
      }
    }
    return store;
  }();
  return *tracks;
}

const std::string& FileBytes() {
  static const std::string bytes = FormatTracks(Tracks());
  return bytes;
}

void Count(benchmark::State& state) {
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                          static_cast<std::int64_t>(FileBytes().size()));
}

// What the points and the file's bytes take together, as a multiple of the data: nothing else of
// size is allocated while a file is read.
double MemoryOfData(const zento::TrackStore& tracks) {
  double bytes = static_cast<double>(FileBytes().capacity());
  for (int track = 0; track < kTracks; ++track) {
    for (int column = 0; column < kTrackColumns; ++column) {
      bytes += static_cast<double>(tracks.Column(column, track).capacity() * sizeof(double));
    }
  }
  return bytes / (1.0 * kTracks * kMaxPoints * kTrackColumns * sizeof(double));
}

void ReadOurs(benchmark::State& state) {
  for (auto _ : state) {
    auto tracks = std::make_unique<zento::TrackStore>();
    if (!ReadTracks(FileBytes(), *tracks).complete()) std::abort();
    benchmark::DoNotOptimize(tracks->Column(2, 20).data());
    state.counters["memory/data"] = MemoryOfData(*tracks);
  }
  Count(state);
}

void ReadGetlineStrtod(benchmark::State& state) {
  for (auto _ : state) {
    auto tracks = std::make_unique<zento::TrackStore>();
    std::istringstream stream(FileBytes());
    std::string line;
    int track = 0;
    while (std::getline(stream, line)) {
      if (line.starts_with("DataNum=")) track = std::atoi(line.c_str() + 8);
      if (line.empty() || line.find('=') != line.npos || (line[0] != '-' && line[0] > '9')) {
        continue;
      }
      char* at = line.data();
      for (int column = 0; column < kTrackColumns; ++column) {
        tracks->Column(column, track).push_back(std::strtod(at, &at));
      }
    }
    if (tracks->Column(2, 20).size() != static_cast<std::size_t>(kMaxPoints)) std::abort();
    benchmark::DoNotOptimize(tracks->Column(2, 20).data());
  }
  Count(state);
}

// No checks, no texts, no lists, no other forms of numbers: digits, a point, one to seven digits
// read at once, an exponent.
const char* BareNumber(const char* p, double& value) {
  static constexpr double kPower[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                      1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                      1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
  static constexpr std::uint64_t kWhole[] = {1, 10, 100, 1000, 10000, 100000, 1000000, 10000000};
  const bool negative = *p == '-';
  p += negative;
  std::uint64_t mantissa = 0;
  while (*p >= '0') mantissa = mantissa * 10 + static_cast<std::uint64_t>(*p++ - '0');
  ++p;
  std::uint64_t eight = 0;
  std::memcpy(&eight, p, sizeof eight);
  eight ^= 0x3030303030303030u;
  const int count =
      std::countr_zero(((eight + 0x7676767676767676u) | eight) & 0x8080808080808080u) / 8;
  eight <<= 64 - 8 * count;
  eight = (eight * 10 + (eight >> 8)) & 0x00FF00FF00FF00FFu;
  eight = (eight * 100 + (eight >> 16)) & 0x0000FFFF0000FFFFu;
  eight = (eight * 10000 + (eight >> 32)) & 0xFFFFFFFFu;
  std::ptrdiff_t power = 0;
  if (count == 4) {  // guessed right, the next number begins early
    mantissa = mantissa * 10000 + eight;
    p += 4;
    power = -4;
  } else {
    mantissa = mantissa * kWhole[count] + eight;
    p += count;
    power = -count;
  }
  if (*p == 'e') {
    const bool below = *++p == '-';
    ++p;
    int exponent = 0;
    while (*p >= '0') exponent = exponent * 10 + (*p++ - '0');
    power += below ? -exponent : exponent;
  }
  const auto magnitude = static_cast<double>(static_cast<std::int64_t>(mantissa));
  const double scaled = power < 0 ? magnitude / kPower[-power] : magnitude * kPower[power];
  value = negative ? -scaled : scaled;
  return p;
}

void ReadBestOnePass(benchmark::State& state) {
  for (auto _ : state) {
    auto tracks = std::make_unique<zento::TrackStore>();
    const char* p = FileBytes().data();
    const char* const end = p + FileBytes().size();
    int track = 0;
    while (p != end) {
      if (std::memcmp(p, "Table", 5) != 0) {
        if (std::memcmp(p, "DataNum=", 8) == 0) track = std::atoi(p + 8);
        p = static_cast<const char*>(std::memchr(p, '\n', static_cast<std::size_t>(end - p))) + 1;
        continue;
      }
      p += 7;
      std::array<double*, kTrackColumns> columns{};
      for (int c = 0; c < kTrackColumns; ++c) {
        std::vector<double>& column = tracks->Column(c, track);
        column.resize(static_cast<std::size_t>(kMaxPoints));
        columns[static_cast<std::size_t>(c)] = column.data();
      }
      for (std::int32_t i = 0; i < kMaxPoints; ++i) {
        p = BareNumber(p, columns[0][i]) + 1;
        p = BareNumber(p, columns[1][i]) + 1;
        p = BareNumber(p, columns[2][i]) + 2;
      }
    }
    benchmark::DoNotOptimize(tracks->Column(2, 20).data());
  }
  Count(state);
}

void WriteOurs(benchmark::State& state) {
  Tracks();
  for (auto _ : state) {
    std::string out = FormatTracks(Tracks());
    benchmark::DoNotOptimize(out.data());
  }
  Count(state);
}

// snprintf has no pattern that drops zeros behind the point and writes short exponents; this is the
// nearest it has, and less work.
void WriteSnprintf(benchmark::State& state) {
  for (auto _ : state) {
    std::string out;
    out.reserve(FileBytes().size() * 2);
    for (int track = 0; track < kTracks; ++track) {
      const auto& x = Tracks().Column(0, track);
      const auto& y = Tracks().Column(1, track);
      const auto& z = Tracks().Column(2, track);
      char row[1024];
      for (std::size_t i = 0; i < x.size(); ++i) {
        const int length = std::snprintf(row, sizeof row, "%.4f\t%.4e\t%.4e\r\n", x[i], y[i], z[i]);
        out.append(row, static_cast<std::size_t>(length));
      }
    }
    benchmark::DoNotOptimize(out.data());
  }
  Count(state);
}

void WriteToChars(benchmark::State& state) {
  for (auto _ : state) {
    std::string out;
    out.reserve(FileBytes().size() * 2);
    for (int track = 0; track < kTracks; ++track) {
      const auto& x = Tracks().Column(0, track);
      const auto& y = Tracks().Column(1, track);
      const auto& z = Tracks().Column(2, track);
      char row[1024];
      char* const last = row + sizeof row;
      for (std::size_t i = 0; i < x.size(); ++i) {
        char* p = std::to_chars(row, last, x[i], std::chars_format::fixed, 4).ptr;
        *p++ = '\t';
        p = std::to_chars(p, last, y[i], std::chars_format::scientific, 4).ptr;
        *p++ = '\t';
        p = std::to_chars(p, last, z[i], std::chars_format::scientific, 4).ptr;
        *p++ = '\r';
        *p++ = '\n';
        out.append(row, static_cast<std::size_t>(p - row));
      }
    }
    benchmark::DoNotOptimize(out.data());
  }
  Count(state);
}

BENCHMARK(ReadOurs)->Unit(benchmark::kMillisecond);
BENCHMARK(ReadBestOnePass)->Unit(benchmark::kMillisecond);
BENCHMARK(ReadGetlineStrtod)->Unit(benchmark::kMillisecond);
BENCHMARK(WriteOurs)->Unit(benchmark::kMillisecond);
BENCHMARK(WriteToChars)->Unit(benchmark::kMillisecond);
BENCHMARK(WriteSnprintf)->Unit(benchmark::kMillisecond);

}  // namespace
