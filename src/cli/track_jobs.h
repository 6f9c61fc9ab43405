#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/track_file.h"
#include "exchange/track_search.h"
#include "host/services.h"
#include "text/status.h"

namespace zento {

// The tracks of a file, which must be a complete track file; what it holds that could not be taken
// goes to `notes`.
Result<std::unique_ptr<TrackStore>> ReadTrackFile(Files& files, const std::filesystem::path& path,
                                                  std::vector<std::string>& notes);

// What a window said while a job was done in it.
struct JobReport {
  std::vector<std::string> messages;  // boxes that were shown: the window refused
  std::vector<std::string> notes;     // what a person should know besides
};

// Where the changed tracks go: never to the file they came from, and to one that exists only with
// `overwrite`.
struct SaveRequest {
  std::filesystem::path path;
  bool overwrite = false;
};

class TrackSession;

// Starts the session and opens the file. Fails, before anything is done, when the result could not
// be saved.
Status BeginTrackJob(TrackSession& session, const std::filesystem::path& file,
                     const SaveRequest& save, Files& files, std::vector<std::string>& notes);

struct ImportRequest {
  std::filesystem::path file;
  std::filesystem::path home;  // whose settings count; empty = the built-in ones
  std::filesystem::path from;
  int source = 0;  // track of `from`
  int track = 0;   // track of `file` that it becomes
  SaveRequest save;
};

// Imports a track as frmImportTrack does. Nothing is saved when the window shows a message. Fails
// when a file cannot be read or written.
Result<JobReport> ImportIntoFile(const ImportRequest& request, Files& files);

struct PasteRequest {
  std::filesystem::path file;
  std::string text;  // as the clipboard has it
  int track = 0;
  SaveRequest save;
};

// Pastes as the main window's menu does. Fails, saving nothing, when the text holds no track.
Result<JobReport> PasteIntoFile(const PasteRequest& request, Files& files);

struct SearchAnswer {
  std::vector<SearchHit> hits;
  std::string summary;
};

// Fails when the folder cannot be read.
Result<SearchAnswer> SearchFolder(const SearchCriteria& criteria,
                                  const std::filesystem::path& folder, bool subfolders,
                                  Files& files);

}  // namespace zento
