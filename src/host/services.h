#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/surface.h"
#include "text/status_fwd.h"

namespace zento {

// The clipboard. Text is UTF-8.
class Clipboard {
 public:
  virtual ~Clipboard() = default;
  virtual void SetText(const std::string& text) = 0;
  // Empty when the clipboard holds no text.
  virtual std::string Text() const = 0;
  // Puts the picture that `paint` draws on a surface of `size` on the clipboard, as a bitmap.
  virtual void SetPicture(Size size, const std::function<void(Surface&)>& paint) = 0;
};

// A file that is read from its beginning to its end, piece by piece. Closed when it goes.
class FileReader {
 public:
  virtual ~FileReader() = default;
  // Fills the beginning of `room`, which is not empty; how many bytes it got, 0 at the end only.
  virtual Result<std::size_t> Read(std::span<char> room) = 0;
  // In bytes, as it was when the file was opened.
  virtual std::uint64_t Size() const = 0;
};

// What stands in a folder.
struct FolderEntry {
  std::filesystem::path name;  // without the folder
  bool folder = false;         // else a file that can be opened
  bool link = false;           // reached through a symbolic link
};

// Files. Every failure says what was done to which file and the system's cause.
class Files {
 public:
  virtual ~Files() = default;
  virtual Result<std::string> Read(const std::filesystem::path& path) = 0;
  // Replaces the file whole: written beside, flushed, renamed. After a failure the old file is as
  // it was and nothing is left beside it.
  virtual Status Replace(const std::filesystem::path& path, std::string_view bytes) = 0;
  // Adds to the end, creating the file when it is missing. What was added outlives the program; a
  // power cut some seconds later too.
  virtual Status Append(const std::filesystem::path& path, std::string_view bytes) = 0;
  // The same, and flushed to the disk, for which it may wait.
  virtual Status AppendFlushed(const std::filesystem::path& path, std::string_view bytes) = 0;
  // Moves a file; fails rather than overwrite.
  virtual Status Rename(const std::filesystem::path& from, const std::filesystem::path& to) = 0;
  virtual bool Exists(const std::filesystem::path& path) = 0;
  virtual Status CreateFolder(const std::filesystem::path& path) = 0;
  // For files that are too large to be read whole. Refuses folders, devices and pipes, and never
  // waits for any of them.
  virtual Result<std::unique_ptr<FileReader>> Open(const std::filesystem::path& path) = 0;
  // The folders and files in a folder, in no particular order, without what cannot be opened as one
  // of the two.
  virtual Result<std::vector<FolderEntry>> ListFolder(const std::filesystem::path& path) = 0;
  // Where a person begins to look for files: the drives, or the root, the person's own folder and
  // the media that are plugged in. Absolute; the first always exists.
  virtual std::vector<std::filesystem::path> Drives() = 0;
};

// Asynchronous sound; silent without a sound device or when the file cannot be played.
class Sound {
 public:
  virtual ~Sound() = default;
  virtual void Play(const std::string& wave_file) = 0;
};

}  // namespace zento
