#include "exchange/track_search.h"

#include <algorithm>
#include <utility>

#include "host/path_text.h"
#include "text/natural_order.h"
#include "text/number.h"

namespace zento {
namespace {

constexpr std::int64_t kSliceMicros = 15'000;
// On a clock that stands still while the program works, a slice ends all the same.
constexpr std::size_t kSliceBytes = std::size_t{32} << 20;
constexpr int kSliceSteps = 2000;
constexpr std::size_t kPiece = std::size_t{128} << 10;

using Paths = std::vector<std::filesystem::path>;

bool IsTrackFileName(const std::string& name) {
  if (name.size() < kTrackFileExtension.size()) return false;
  const std::string end = name.substr(name.size() - kTrackFileExtension.size());
  return std::equal(end.begin(), end.end(), kTrackFileExtension.begin(),
                    [](char a, char b) { return natural::Folded(a) == natural::Folded(b); });
}

Paths Sorted(std::vector<std::string> names) {
  std::sort(names.begin(), names.end(),
            [](const std::string& a, const std::string& b) { return NaturalLess(a, b); });
  Paths paths;
  paths.reserve(names.size());
  for (const std::string& name : names) paths.push_back(PathFromText(name));
  return paths;
}

std::vector<std::string> CutAtBlanks(std::string_view text) {
  std::vector<std::string> words;
  while (!text.empty()) {
    const std::size_t blank = std::min(text.find(' '), text.size());
    if (blank > 0) words.emplace_back(text.substr(0, blank));
    text.remove_prefix(std::min(blank + 1, text.size()));
  }
  return words;
}

std::string Counted(std::size_t count, const char* what) {
  return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

}  // namespace

Result<TrackFolder> ReadTrackFolder(Files& files, const std::filesystem::path& folder) {
  auto entries = files.ListFolder(folder);
  if (!entries.ok()) return entries.status();
  std::vector<std::string> folders;
  std::vector<std::string> own_folders;
  std::vector<std::string> names;
  for (const FolderEntry& entry : entries.value()) {
    std::string name = TextFromPath(entry.name);
    if (entry.folder) {
      if (!entry.link) own_folders.push_back(name);
      folders.push_back(std::move(name));
    } else if (IsTrackFileName(name)) {
      names.push_back(std::move(name));
    }
  }
  return TrackFolder{Sorted(std::move(folders)), Sorted(std::move(own_folders)),
                     Sorted(std::move(names))};
}

bool SearchCriteria::Matches(const TrackRecord& record) const {
  if (record.Mode < 1) return false;
  if (mode && record.Mode != *mode) return false;
  if (scanrate && record.Scanrate != *scanrate) return false;
  if (rpm && record.RPM != *rpm) return false;
  return std::all_of(keywords.begin(), keywords.end(), [&](const std::string& word) {
    return record.Title.find(word) != std::string::npos;
  });
}

Result<SearchCriteria> ParseCriteria(const TypedCriteria& typed) {
  SearchCriteria criteria;
  criteria.mode = typed.mode;
  if (typed.keywords) {
    if (typed.keywords->empty()) return Status::Failure("Please input keywords!");
    criteria.keywords = CutAtBlanks(*typed.keywords);
  }
  if (typed.rpm) {
    criteria.rpm = ParseLenient(*typed.rpm);
    if (*criteria.rpm < 0) return Status::Failure("Please input RPM!");
  }
  if (typed.scanrate) {
    criteria.scanrate = ParseLenient(*typed.scanrate);
    if (*criteria.scanrate <= 0) return Status::Failure("Please input scanrate!");
  }
  return criteria;
}

TrackSearch::TrackSearch(Files& files, const Clock& clock, SearchCriteria criteria,
                         const std::filesystem::path& folder, bool subfolders)
    : files_(files),
      clock_(clock),
      criteria_(std::move(criteria)),
      subfolders_(subfolders),
      folders_{folder},
      room_(kPiece) {}

bool TrackSearch::Work() {
  const std::int64_t begun = clock_.Micros();
  slice_bytes_ = 0;
  for (int steps = 0; steps < kSliceSteps; ++steps) {
    if (full() || (counted() && next_ == paths_.size())) return false;
    Step();
    if (slice_bytes_ >= kSliceBytes || clock_.Micros() - begun >= kSliceMicros) break;
  }
  return true;
}

double TrackSearch::Done() const {
  if (!counted() || paths_.empty()) return 0;
  double files = static_cast<double>(next_);
  if (reading_ && reading_->file->Size() > 0) {
    const double part =
        static_cast<double>(reading_->read) / static_cast<double>(reading_->file->Size());
    files += std::min(part, 1.0);
  }
  return files / static_cast<double>(paths_.size());
}

std::string TrackSearch::Summary() const {
  std::string text = Counted(hits_.size(), "track") + " found in ";
  if (next_ < paths_.size()) text += std::to_string(next_) + " of ";
  text += Counted(paths_.size(), "file");
  if (full()) text += "; there may be more, only the first 200 are shown";
  if (passed_over_ > 0) {
    text += "; " + Counted(passed_over_, "file") + " could not be read as track files";
  }
  if (unreadable_folders_ > 0) {
    text += "; " + Counted(unreadable_folders_, "folder") + " could not be read";
  }
  return text;
}

void TrackSearch::Step() {
  if (!counted()) return LookIntoFolder();
  if (!reading_) return OpenFile();
  ReadPiece();
}

void TrackSearch::LookIntoFolder() {
  const std::filesystem::path folder = std::move(folders_.back());
  folders_.pop_back();
  auto found = ReadTrackFolder(files_, folder);
  if (!found.ok()) {
    ++unreadable_folders_;
    return;
  }
  for (const auto& name : found->files) paths_.push_back(folder / name);
  if (!subfolders_) return;
  for (auto name = found->own_folders.rbegin(); name != found->own_folders.rend(); ++name) {
    folders_.push_back(folder / *name);
  }
}

void TrackSearch::OpenFile() {
  auto opened = files_.Open(paths_[next_]);
  if (!opened.ok()) return EndFile(false);
  reading_ = std::make_unique<Reading>(std::move(opened.value()));
}

void TrackSearch::ReadPiece() {
  const auto got = reading_->file->Read(room_);
  if (!got.ok()) return EndFile(false);
  reading_->read += got.value();
  slice_bytes_ += got.value();
  const bool ended = got.value() == 0;
  if (!ended && reading_->stream.Feed({room_.data(), got.value()})) return;
  EndFile(reading_->stream.Finish().complete());
}

void TrackSearch::EndFile(bool readable) {
  const std::filesystem::path& path = paths_[next_];
  if (!readable) ++passed_over_;
  for (int track = 0; readable && track < kTracks && !full(); ++track) {
    const TrackRecord& record = reading_->headers[static_cast<std::size_t>(track)];
    if (!criteria_.Matches(record)) continue;
    hits_.push_back({path, track, record.Title, record.Mode, record.RPM, record.Scanrate});
  }
  reading_.reset();
  ++next_;
}

}  // namespace zento
