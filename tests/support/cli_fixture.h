#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "cli/cli.h"
#include "cli/exit_status.h"
#include "host/native/native_files.h"
#include "host/path_text.h"
#include "text/status.h"

namespace zento {

// The command line run inside the test, with what it printed, in a folder of its own that goes with
// the test.
class CliFixture : public testing::Test {
 protected:
  CliFixture() { std::filesystem::create_directories(folder_); }
  ~CliFixture() override {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }

  // The exit status; what was printed is in out_ and err_.
  int Run(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "zento-cli");
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    const int status = RunCli(arguments);
    std::fflush(stdout);
    out_ = testing::internal::GetCapturedStdout();
    err_ = testing::internal::GetCapturedStderr();
    return status;
  }

  // Names of files are UTF-8, below the folder.
  std::string In(const char* name) const { return TextFromPath(folder_ / PathFromText(name)); }
  bool IsThere(const char* name) const { return std::filesystem::exists(PathFromText(In(name))); }
  void Write(const char* name, std::string_view bytes) {
    ASSERT_TRUE(NativeFiles().Replace(PathFromText(In(name)), std::string(bytes)).ok());
  }
  // Empty when there is no such file.
  std::string Bytes(const char* name) const {
    const auto bytes = NativeFiles().Read(PathFromText(In(name)));
    return bytes.ok() ? bytes.value() : "";
  }

  const std::filesystem::path folder_ = std::filesystem::path(testing::TempDir()) /
                                        ("zento-cli-" + std::to_string(std::random_device()()));
  std::string out_;
  std::string err_;
};

}  // namespace zento
