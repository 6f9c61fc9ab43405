#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

#include "host/surface.h"
#include "text/status.h"

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

// Whole files. Every failure says what was done to which file and the system's cause.
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
};

// Asynchronous sound; silent without a sound device or when the file cannot be played.
class Sound {
 public:
  virtual ~Sound() = default;
  virtual void Play(const std::string& wave_file) = 0;
};

}  // namespace zento
