#pragma once

#include <algorithm>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/services.h"
#include "host/virtual/memory_services.h"

namespace zento {

// Reads the machine's files and keeps in memory whatever is written, so that a program can be tried
// in a person's home without leaving a trace there.
class DryFiles : public Files {
 public:
  // `real` is only read from and must outlive this.
  explicit DryFiles(Files& real) : real_(real) {}

  Result<std::string> Read(const std::filesystem::path& path) override {
    return kept_.Exists(path) ? kept_.Read(path) : real_.Read(path);
  }
  Status Replace(const std::filesystem::path& path, std::string_view bytes) override {
    return kept_.Replace(path, bytes);
  }
  Status Append(const std::filesystem::path& path, std::string_view bytes) override {
    if (Status taken = TakeOver(path); !taken.ok()) return taken;
    return kept_.Append(path, bytes);
  }
  Status AppendFlushed(const std::filesystem::path& path, std::string_view bytes) override {
    return Append(path, bytes);
  }
  Status Rename(const std::filesystem::path& from, const std::filesystem::path& to) override {
    if (Status taken = TakeOver(from); !taken.ok()) return taken;
    return kept_.Rename(from, to);
  }
  bool Exists(const std::filesystem::path& path) override {
    return kept_.Exists(path) || real_.Exists(path);
  }
  Status CreateFolder(const std::filesystem::path& path) override {
    return kept_.CreateFolder(path);
  }
  Result<std::unique_ptr<FileReader>> Open(const std::filesystem::path& path) override {
    return kept_.Exists(path) ? kept_.Open(path) : real_.Open(path);
  }
  // What is there, and what was written since.
  Result<std::vector<FolderEntry>> ListFolder(const std::filesystem::path& path) override {
    auto kept = kept_.ListFolder(path);
    auto real = real_.ListFolder(path);
    if (!kept.ok()) return real;
    if (!real.ok()) return kept;
    for (FolderEntry& entry : real.value()) {
      const auto same = [&](const FolderEntry& other) { return other.name == entry.name; };
      if (std::none_of(kept->begin(), kept->end(), same)) kept->push_back(std::move(entry));
    }
    return kept;
  }
  std::vector<std::filesystem::path> Drives() override { return real_.Drives(); }

 private:
  Status TakeOver(const std::filesystem::path& path) {
    if (kept_.Exists(path) || !real_.Exists(path)) return Status::Ok();
    const auto bytes = real_.Read(path);
    return bytes.ok() ? kept_.Replace(path, bytes.value()) : bytes.status();
  }

  Files& real_;
  MemoryFiles kept_;
};

}  // namespace zento
