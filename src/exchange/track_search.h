#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/track_file.h"
#include "core/track_header.h"
#include "host/clock.h"
#include "host/services.h"
#include "text/status.h"

namespace zento {

// What a person who looks for tracks sees of a folder. Names without the folder, in the order in
// which a person looks for them.
struct TrackFolder {
  std::vector<std::filesystem::path> folders;
  std::vector<std::filesystem::path> own_folders;  // of these, those that are no links elsewhere
  std::vector<std::filesystem::path> files;        // track files, by their extension in any case
};

Result<TrackFolder> ReadTrackFolder(Files& files, const std::filesystem::path& folder);

// What a track has to be to be found; what is not set does not matter.
struct SearchCriteria {
  std::optional<std::int32_t> mode;
  std::optional<double> scanrate;     // mV/s, exactly
  std::optional<double> rpm;          // exactly
  std::vector<std::string> keywords;  // all of them in the title, case-sensitive

  // Never an empty track.
  bool Matches(const TrackRecord& record) const;
};

// The same as a person types it.
struct TypedCriteria {
  std::optional<std::int32_t> mode;
  std::optional<std::string> scanrate;
  std::optional<std::string> rpm;
  std::optional<std::string> keywords;  // apart by blanks
};
// Fails when one of them has no sensible value; says which.
Result<SearchCriteria> ParseCriteria(const TypedCriteria& typed);

struct SearchHit {
  std::filesystem::path path;
  int track = 0;
  std::string title;
  std::int32_t mode = kModeNone;
  double rpm = 0;
  double scanrate = 0;
};

// Looks through the track files of a folder slice by slice: a slice ends after some milliseconds or
// some megabytes, in the middle of a file too, so that whoever runs it stays responsive. Files are
// taken in the order in which the folder shows them; with subfolders, those of a folder before
// those of the folders in it, without following links. What is no track file or cannot be read is
// counted and passed over.
class TrackSearch {
 public:
  static constexpr std::size_t kMostHits = 200;

  // The services outlive the search.
  TrackSearch(Files& files, const Clock& clock, SearchCriteria criteria,
              const std::filesystem::path& folder, bool subfolders);

  // Works for one slice. False when there is nothing left to do.
  bool Work();

  const std::vector<SearchHit>& hits() const { return hits_; }
  // More tracks may match than are held: the search ended when there was room for no more.
  bool full() const { return hits_.size() == kMostHits; }
  // All folders have been looked into, so the number of files is known.
  bool counted() const { return folders_.empty(); }
  std::size_t file_count() const { return paths_.size(); }
  std::size_t files_done() const { return next_; }
  std::size_t passed_over() const { return passed_over_; }
  std::size_t unreadable_folders() const { return unreadable_folders_; }
  // From 0 to 1: whole files, and the part of the one being read.
  double Done() const;
  // What was found so far, and in how many files, for a person.
  std::string Summary() const;

 private:
  struct Reading {
    explicit Reading(std::unique_ptr<FileReader> opened) : file(std::move(opened)) {}
    std::unique_ptr<FileReader> file;
    std::uint64_t read = 0;
    TrackHeaders headers;
    TrackHeaderStream stream{headers};
  };

  // The smallest pieces of work.
  void LookIntoFolder();
  void OpenFile();
  void ReadPiece();
  void EndFile(bool readable);
  void Step();

  Files& files_;
  const Clock& clock_;
  SearchCriteria criteria_;
  bool subfolders_;
  std::vector<std::filesystem::path> folders_;  // to be looked into, the next one last
  std::vector<std::filesystem::path> paths_;    // of the files, in order
  std::size_t next_ = 0;                        // of the paths
  std::unique_ptr<Reading> reading_;
  std::vector<char> room_;
  std::size_t slice_bytes_ = 0;
  std::vector<SearchHit> hits_;
  std::size_t passed_over_ = 0;
  std::size_t unreadable_folders_ = 0;
};

}  // namespace zento
