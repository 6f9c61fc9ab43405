#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "text/status_fwd.h"
#include "ui/main/track_search.h"

namespace zento {

class Files;

// What a window said while a job was done in it.
struct JobTold {
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
Result<JobTold> ImportIntoFile(const ImportRequest& request, Files& files);

struct PasteRequest {
  std::filesystem::path file;
  std::filesystem::path home;
  std::string text;  // as the clipboard has it
  int track = 0;
  SaveRequest save;
};

// Pastes as the main window's menu does. Fails, saving nothing, also when the text holds no track.
Result<JobTold> PasteIntoFile(const PasteRequest& request, Files& files);

// As typed; what is not set does not matter.
struct SearchRequest {
  std::filesystem::path folder;
  std::optional<std::string> title;  // words apart by blanks
  std::optional<std::string> mode;   // "CV"
  std::optional<std::string> rpm;
  std::optional<std::string> scan_rate;  // mV/s
  bool subfolders = false;
};

struct SearchAnswer {
  std::vector<SearchHit> hits;
  std::string state;  // what the window says at the end
  std::vector<std::string> messages;
};

// Searches as frmSearchTrack does. Fails when the folder cannot be read or a value makes no sense.
Result<SearchAnswer> SearchFolder(const SearchRequest& request, Files& files);

}  // namespace zento
