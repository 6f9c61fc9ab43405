// The search window over a folder of track files, against reading their bytes.
//
//   search_bench                          100,000 files of 30 kB, 3 GB
//   ZENTO_SEARCH_FILES=2000 search_bench  as many as that
//
// The files are made in the temporary folder and removed at the end: 50 of them with their own
// bytes, all others under further names of these, so that the disk holds few bytes and the system's
// cache all of them. Reading comes first. What grows with the number of files (listing, opening,
// headers, the list of hits) is at its full size; what grows with a file's points is not: a file of
// the largest kind has 30 MB. "stall" is the longest time the window took for one slice of its
// work, "peak" the program's largest memory above what it had before the first search.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <string>
#include <vector>

#ifndef _WIN32
#include <sys/resource.h>
#endif

#include "core/track_file.h"
#include "core/track_store.h"
#include "exchange/track_search.h"
#include "host/native/native_clock.h"
#include "host/native/native_files.h"
#include "host/services.h"
#include "host/virtual/virtual_host.h"
#include "text/lines.h"
#include "text/status.h"
#include "ui/main/search_form.h"

using namespace zento;

namespace {

namespace fs = std::filesystem;

int FileCount() {
  const char* const count = std::getenv("ZENTO_SEARCH_FILES");
  return count != nullptr ? std::max(1, std::atoi(count)) : 100'000;
}

constexpr int kContents = 50;

// 30 kB: a voltammogram of a thousand points and a half, or somewhat more.
std::string FileOf(int number) {
  TrackStore tracks;
  TrackRecord& record = tracks.Record(number % kTracks);
  record.Mode = kModeCV;
  record.Title = "Pt/C in 0.1 M HClO4, file " + std::to_string(number);
  record.Scanrate = 50;
  record.pnum = 1500;
  for (std::int32_t i = 0; i < record.pnum; ++i) {
    tracks.SetValue(0, number % kTracks, i, 1e-4 * ((i + number) % 9000));
    tracks.SetValue(1, number % kTracks, i, 1.2345e-5 * ((i * 37 + number) % 1009 - 500));
  }
  return FormatTracks(tracks);
}

// A folder that is gone again at the end of the program.
class Folder {
 public:
  Folder()
      : path_(fs::temp_directory_path() /
              ("zento-search-" + std::to_string(std::random_device()()))) {
    fs::create_directories(path_);
    std::error_code failed;
    for (int i = 0; i < FileCount(); ++i) {
      const fs::path file = path_ / ("run" + std::to_string(i) + ".znt");
      const int content = i % kContents;
      if (i < kContents) {
        std::ofstream(file, std::ios::binary) << FileOf(content);
        sizes_.push_back(fs::file_size(file, failed));
      } else {
        fs::create_hard_link(path_ / ("run" + std::to_string(content) + ".znt"), file, failed);
      }
      if (failed) {
        bytes_ = 0;
        return;
      }
      bytes_ += sizes_[static_cast<std::size_t>(content)];
    }
  }
  ~Folder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
  }
  const fs::path& path() const { return path_; }
  std::size_t bytes() const { return bytes_; }

 private:
  fs::path path_;
  std::vector<std::uintmax_t> sizes_;
  std::size_t bytes_ = 0;
};

const Folder& TheFolder() {
  static const Folder folder;
  return folder;
}

double PeakMegabytes() {
#ifndef _WIN32
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_maxrss) / 1024;
#else
  return 0;
#endif
}

bool Usable(benchmark::State& state) {
  if (TheFolder().bytes() > 0) return true;
  state.SkipWithError("the files could not be made");
  return false;
}

void BM_ReadBytes(benchmark::State& state) {
  if (!Usable(state)) return;
  NativeFiles files;
  std::vector<char> room(std::size_t{256} << 10);
  for (auto _ : state) {
    for (const auto& entry : fs::directory_iterator(TheFolder().path())) {
      auto file = files.Open(entry.path());
      while (file.value()->Read(room).value() > 0) benchmark::DoNotOptimize(room.data());
    }
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * TheFolder().bytes()));
}
BENCHMARK(BM_ReadBytes)->Unit(benchmark::kMillisecond)->UseRealTime();

// The whole window, driven tick by tick; nothing matches, so that all files are read.
void BM_SearchWindow(benchmark::State& state) {
  if (!Usable(state)) return;
  const double before = PeakMegabytes();
  NativeFiles files;
  NativeClock clock;
  double stall = 0;
  double worst_ticks = 0;
  for (auto _ : state) {
    VirtualHost machine(&files);
    Workstation workstation;
    Host host{clock, machine.timers, machine.desktop, machine.dialogs, machine.clipboard,
              files, machine.sound,  machine.mail};
    frmSearchTrack window(workstation, host, std::make_shared<fs::path>(TheFolder().path()));
    window.Load();
    if (!window.KeyWords.UserSet("nothing of that name").ok() ||
        !window.opnTitle.UserClick().ok() || !window.cmdSearch.UserClick().ok()) {
      state.SkipWithError("the search does not begin");
      break;
    }
    double ticks = 0;
    while (window.searching()) {
      const std::int64_t begun = clock.Micros();
      window.SearchTimer.on_tick();
      stall = std::max(stall, 1e-3 * static_cast<double>(clock.Micros() - begun));
      ++ticks;
    }
    worst_ticks = std::max(worst_ticks, ticks);
    if (window.search()->files_done() != window.search()->file_count()) {
      state.SkipWithError("not all files were read");
    }
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * TheFolder().bytes()));
  state.counters["stall_ms"] = stall;
  state.counters["slices"] = worst_ticks;
  state.counters["peak_MB"] = PeakMegabytes();
  state.counters["peak_grew_MB"] = PeakMegabytes() - before;
}
BENCHMARK(BM_SearchWindow)->Unit(benchmark::kMillisecond)->UseRealTime();

// One thread, line by line over whole files, as it would be without the search for "=".
void BM_WholeFiles(benchmark::State& state) {
  if (!Usable(state)) return;
  NativeFiles files;
  for (auto _ : state) {
    std::size_t lines = 0;
    for (const auto& entry : fs::directory_iterator(TheFolder().path())) {
      const auto bytes = files.Read(entry.path());
      LineReader reader(bytes.value());
      for (std::string_view line; reader.Next(line);) lines += line.find('=') != line.npos;
    }
    benchmark::DoNotOptimize(lines);
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * TheFolder().bytes()));
}
BENCHMARK(BM_WholeFiles)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
