#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "host/services.h"

namespace zento {

// A clipboard of the program's own.
class MemoryClipboard : public Clipboard {
 public:
  void SetText(const std::string& text) override { text_ = text; }
  std::string Text() const override { return text_; }
  // Replaces the text, as another kind of content does; `pictures` counts them.
  void SetPicture(Size size, const std::function<void(Surface&)>& paint) override;

  int pictures = 0;
  Size picture_size;                            // of the last one
  std::function<void(Surface&)> paint_picture;  // draws the last one again; may outlive its form

 private:
  std::string text_;
};

// Keeps what was played.
class SilentSound : public Sound {
 public:
  void Play(const std::string& wave_file) override { played.push_back(wave_file); }
  std::vector<std::string> played;
};

// Files that live in memory, with faults on demand. Folders come into being with their files. A
// fault of kRead also hits Open.
class MemoryFiles : public Files {
 public:
  enum class Operation { kRead, kReplace, kAppend, kRename, kCreateFolder, kListFolder };

  Result<std::string> Read(const std::filesystem::path& path) override;
  Status Replace(const std::filesystem::path& path, std::string_view bytes) override;
  Status Append(const std::filesystem::path& path, std::string_view bytes) override;
  Status AppendFlushed(const std::filesystem::path& path, std::string_view bytes) override;
  Status Rename(const std::filesystem::path& from, const std::filesystem::path& to) override;
  bool Exists(const std::filesystem::path& path) override;
  Status CreateFolder(const std::filesystem::path& path) override;
  Result<std::unique_ptr<FileReader>> Open(const std::filesystem::path& path) override;
  Result<std::vector<FolderEntry>> ListFolder(const std::filesystem::path& path) override;
  std::vector<std::filesystem::path> Drives() override;

  // The next such operation fails with `why`, and nothing is changed by it.
  void FailNext(Operation operation, std::string why = "input/output error");
  // From now on a write that brings all files together above `bytes` fails: the disk is full.
  void SetCapacity(std::size_t bytes) { capacity_ = bytes; }

  // Paths of all files, in order.
  std::vector<std::filesystem::path> List() const;

 private:
  std::optional<Status> Fault(Operation operation, const std::string& doing);
  std::size_t BytesWithout(const std::filesystem::path& path) const;

  std::map<std::filesystem::path, std::string> files_;
  std::map<std::filesystem::path, bool> folders_;
  std::map<Operation, std::string> faults_;
  std::optional<std::size_t> capacity_;
};

}  // namespace zento
