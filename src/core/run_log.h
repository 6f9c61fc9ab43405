#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/clock.h"
#include "host/timer_queue.h"

namespace zento {

struct Host;

// One value that a run was started with, as a person reads it: {"Scan rate", "50 mV/s"}.
struct RunParameter {
  std::string name;
  std::string value;
};

// The diary of all runs, a plain text file in the home that is only ever added to: what was started
// with which values, what was sent on the bus, what happened, and how it ended. What a person reads
// in the morning to know what the night was like.
//
// Entries nest: a measurement begun while a macro runs stands indented under it, and may outlive
// it. The beginning and the end of an entry are on the disk when the call returns; other lines are
// in the file within a second of theirs, together and without waiting for the disk, so that many of
// them hold up no tick.
//
// Nothing here fails towards the caller. While the file cannot be written, its lines are kept in
// memory and tried again with the next ones, and the person is told once.
class RunLog {
 public:
  // A log that is not attached to a home takes no notice of anything.
  RunLog() = default;
  RunLog(const RunLog&) = delete;
  RunLog& operator=(const RunLog&) = delete;

  // Before the first entry. `host` outlives the log.
  void Attach(Host& host, std::filesystem::path home);

  // Writes to this file too whatever is written from now on, also while the home's cannot be. A
  // copy that cannot be written is told once; what is missing in it stands in the home's.
  void CopyTo(std::filesystem::path file) { copy_ = std::move(file); }

  // 0 names no entry: what is said about it stands by itself, or under the entry begun last.
  using Entry = std::int32_t;

  // `what` is a noun as a person says it ("Cyclic voltammetry", "Macro night.zmc").
  Entry Begin(const std::string& what, std::span<const RunParameter> parameters = {});
  // One line, with the time.
  void Event(const std::string& text, Entry entry = 0);
  // A command that is about to go out on the bus, whoever sends it. Those of one moment share
  // lines.
  void BusCommand(std::string_view command);
  // How the entry ended, in full; its duration is added. Ending an entry twice does nothing.
  void End(Entry entry, const std::string& how);

  // Puts what has not been written yet on the disk.
  void Flush() { Write(true); }

 private:
  struct Open {
    Entry entry;
    std::size_t depth;
    std::string what;
    std::int64_t began;  // microseconds of the clock
  };

  std::size_t DepthFor(Entry entry) const;
  void Line(std::size_t depth, const std::string& text);
  bool JoinBusLine(const std::string& command);
  void Continue(std::size_t depth, const std::string& text);
  void WriteSoon();
  void WriteCopy(bool flushed);
  void Write(bool flushed);
  void StartNewFileWhenLarge();
  void Forget();

  Host* host_ = nullptr;
  std::filesystem::path path_;
  std::filesystem::path copy_;  // empty = none
  std::optional<TimerQueue::PeriodicTimer> soon_;
  std::vector<Open> open_;
  Entry last_entry_ = 0;
  std::string waiting_;       // lines not in the file yet
  std::size_t bus_line_ = 0;  // length of the line of bus commands that ends it, or 0
  CalendarTime bus_time_;
  std::optional<std::size_t> in_file_;  // bytes; known once it was looked at
  std::size_t copied_ = 0;              // bytes of `waiting_` that are in the copy
  bool copy_failure_shown_ = false;
  bool failure_shown_ = false;  // that the file cannot be written
};

// The log's file in the home. Once it is large, its content moves to "Run log 1.txt", "Run log
// 2.txt" and so on, and it begins anew.
std::filesystem::path RunLogPath(const std::filesystem::path& home);

// "2 h 05 min 10 s", "1 min 20 s", "12.5 s".
std::string FormatDuration(std::int64_t millis);

}  // namespace zento
