#include "core/run_log.h"

#include <algorithm>
#include <utility>

#include "host/desktop.h"
#include "host/dialogs.h"
#include "host/host.h"
#include "host/services.h"
#include "text/format.h"
#include "text/status.h"

namespace zento {
namespace {

constexpr char kFileName[] = "Run log.txt";
constexpr std::string_view kEol = "\r\n";
constexpr std::int64_t kSoonMillis = 1000;
// A file that every editor still opens at once: some hundreds of runs.
constexpr std::size_t kLargeFile = std::size_t{4} << 20;
// What is kept in memory while the file cannot be written.
constexpr std::size_t kMostWaiting = std::size_t{4} << 20;
constexpr std::size_t kLongestBusLine = 100;
constexpr std::size_t kTimeWidth = 21;  // the time of day and two blanks

// One line of printable text, whatever a title or another machine's answer holds: a line break in
// it must not look like a line of the log, nor an escape sequence repaint a terminal.
std::string Printable(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    const std::string_view rest = text.substr(i);
    if (byte < 0x20 || byte == 0x7f) {
      out += ' ';
    } else if (byte == 0xc2 && rest.size() > 1 && static_cast<unsigned char>(rest[1]) < 0xa0) {
      out += ' ';  // U+0080 to U+009F, the next line among them
      i += 1;
    } else if (rest.starts_with("\xe2\x80\xa8") || rest.starts_with("\xe2\x80\xa9")) {
      out += ' ';  // line and paragraph separator
      i += 2;
    } else {
      out += text[i];
    }
  }
  return out;
}

std::string TwoDigits(std::int64_t value) {
  return (value < 10 ? "0" : "") + std::to_string(value);
}

}  // namespace

std::filesystem::path RunLogPath(const std::filesystem::path& home) {
  return home / kFileName;
}

std::string FormatDuration(std::int64_t millis) {
  if (millis < 60'000) return Format(static_cast<double>(millis) / 1000, "0.0") + " s";
  const std::int64_t seconds = millis / 1000;
  const std::int64_t hours = seconds / 3600;
  const std::int64_t minutes = seconds / 60 % 60;
  const std::string rest = " min " + TwoDigits(seconds % 60) + " s";
  if (hours == 0) return std::to_string(minutes) + rest;
  return std::to_string(hours) + " h " + TwoDigits(minutes) + rest;
}

void RunLog::Attach(Host& host, std::filesystem::path home) {
  host_ = &host;
  path_ = std::move(home /= kFileName);
  soon_.emplace(host.timers, [this] { Write(false); });
  soon_->SetInterval(kSoonMillis);
}

RunLog::Entry RunLog::Begin(const std::string& what, std::span<const RunParameter> parameters) {
  if (host_ == nullptr) return 0;
  const std::size_t depth = open_.size();
  if (depth == 0) {
    StartNewFileWhenLarge();
    if (in_file_.value_or(0) > 0 || !waiting_.empty()) waiting_ += kEol;
  }
  open_.push_back({++last_entry_, depth, Printable(what), host_->clock.Micros()});
  Line(depth, "BEGIN " + what);
  // Computed readings must not pass for measured ones here either.
  const std::string& banner = host_->desktop.banner();
  if (depth == 0 && !banner.empty()) Continue(depth, banner);
  for (const RunParameter& parameter : parameters) {
    Continue(depth, parameter.name + ": " + parameter.value);
  }
  Flush();
  // Written again: the next failure is news.
  if (depth == 0 && waiting_.empty()) failure_shown_ = false;
  return last_entry_;
}

void RunLog::Event(const std::string& text, Entry entry) {
  if (host_ == nullptr) return;
  Line(DepthFor(entry), text);
  WriteSoon();
}

void RunLog::BusCommand(std::string_view command) {
  if (host_ == nullptr || JoinBusLine(Printable(command))) return;
  const std::size_t before = waiting_.size();
  Event("bus: " + std::string(command));
  bus_line_ = waiting_.size() - before;
  bus_time_ = host_->clock.Now();
}

bool RunLog::JoinBusLine(const std::string& command) {
  const std::size_t length = bus_line_ + 1 + command.size();
  if (bus_line_ == 0 || length > kLongestBusLine || bus_time_ != host_->clock.Now()) return false;
  waiting_.resize(waiting_.size() - kEol.size());
  waiting_.append(" ").append(command).append(kEol);
  bus_line_ = length;
  return true;
}

void RunLog::End(Entry entry, const std::string& how) {
  const auto it = std::find_if(open_.begin(), open_.end(),
                               [entry](const Open& open) { return open.entry == entry; });
  if (it == open_.end()) return;
  const Open ended = std::move(*it);
  open_.erase(it);
  const std::int64_t millis = (host_->clock.Micros() - ended.began) / 1000;
  Line(ended.depth, "END " + ended.what + ": " + how + "; took " + FormatDuration(millis));
  Flush();
}

// Lines about an entry stand under it; lines about none under the one begun last.
std::size_t RunLog::DepthFor(Entry entry) const {
  if (open_.empty()) return 0;
  for (const Open& open : open_) {
    if (open.entry == entry) return open.depth + 1;
  }
  return open_.back().depth + 1;
}

void RunLog::Line(std::size_t depth, const std::string& text) {
  bus_line_ = 0;
  waiting_ += FormatGeneralDate(host_->clock.Now()) + "  ";
  waiting_.append(2 * depth, ' ').append(Printable(text)).append(kEol);
}

void RunLog::Continue(std::size_t depth, const std::string& text) {
  waiting_.append(kTimeWidth + 2 * depth + 4, ' ').append(Printable(text)).append(kEol);
}

void RunLog::WriteSoon() {
  if (!soon_->Enabled()) soon_->SetEnabled(true);
}

void RunLog::Write(bool flushed) {
  if (host_ == nullptr) return;
  soon_->SetEnabled(false);
  bus_line_ = 0;
  if (waiting_.empty()) return;
  WriteCopy(flushed);
  Files& files = host_->files;
  const Status written =
      flushed ? files.AppendFlushed(path_, waiting_) : files.Append(path_, waiting_);
  if (written.ok()) {
    if (in_file_) *in_file_ += waiting_.size();
    waiting_.clear();
    copied_ = 0;
    return;
  }
  Forget();
  if (std::exchange(failure_shown_, true)) return;
  host_->dialogs.Message("The run log is not being written.\n" + written.why());
}

void RunLog::WriteCopy(bool flushed) {
  if (copy_.empty() || copied_ == waiting_.size()) return;
  Files& files = host_->files;
  const std::string_view rest = std::string_view(waiting_).substr(copied_);
  const Status written = flushed ? files.AppendFlushed(copy_, rest) : files.Append(copy_, rest);
  copied_ = waiting_.size();
  if (written.ok() || std::exchange(copy_failure_shown_, true)) return;
  host_->dialogs.Message("The copy of the run log is not being written.\n" + written.why());
}

// Keeps the newest lines when nothing can be written for very long.
void RunLog::Forget() {
  if (waiting_.size() <= kMostWaiting) return;
  const std::size_t cut = waiting_.find('\n', waiting_.size() - kMostWaiting / 2);
  waiting_.erase(0, cut + 1);
  waiting_.insert(0, std::string("(Lines are missing here: the file could not be written.)\r\n"));
  copied_ = waiting_.size();
}

void RunLog::StartNewFileWhenLarge() {
  Files& files = host_->files;
  if (!in_file_) {
    const auto bytes = files.Read(path_);
    in_file_ = bytes.ok() ? bytes.value().size() : 0;
    // A line that a power cut left unfinished.
    if (bytes.ok() && !bytes.value().empty() && bytes.value().back() != '\n') waiting_ += kEol;
  }
  if (*in_file_ <= kLargeFile) return;
  std::filesystem::path old;
  for (int number = 1; old.empty() || files.Exists(old); ++number) {
    old = path_.parent_path() / ("Run log " + std::to_string(number) + ".txt");
  }
  // When it cannot be moved it goes on growing.
  if (files.Rename(path_, old).ok()) in_file_ = 0;
}

}  // namespace zento
