#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "text/status.h"

// What the loader needs from the operating system; one implementation a platform.

// How the vendors' libraries are called: 32-bit Windows has a convention of its own.
#if defined(_WIN32) && !defined(_WIN64)
#define ZENTO_VENDOR_CALL __stdcall
#else
#define ZENTO_VENDOR_CALL
#endif

namespace zento::vendor {

// A library in this process. It stays there to the end: vendors' libraries start threads of their
// own, which must not lose the code they run.
class SharedLibrary {
 public:
  using Function = void (*)();

  // `file` is a full path, so that the failure names its cause and nothing is loaded by accident.
  static Result<SharedLibrary> Open(const std::filesystem::path& file);

  // Null when there is no such function.
  Function Find(const std::string& name) const;
  const std::filesystem::path& file() const { return file_; }

 private:
  SharedLibrary(std::filesystem::path file, void* handle)
      : file_(std::move(file)), handle_(handle) {}

  std::filesystem::path file_;
  void* handle_;
};

// Where the system keeps libraries, in the order of search.
std::vector<std::filesystem::path> SystemLibraryFolders();

// An environment variable in UTF-8; nothing when it is not set or empty.
std::optional<std::string> EnvironmentVariable(const char* name);

// The platform's file names of the vendors' libraries.
extern const char* const kPciDaskFile;
extern const char* const kAioFile;
extern const char* const kAddressHelperFile;
extern const char* const kGpibFile;

// The device of serial port `port`, 1 = the first.
std::string SerialDevice(int port);
// Sets "data terminal ready" and "request to send", which some converters draw their power from. A
// line without modem lines refuses, which does no harm.
void RaiseModemLines(std::intptr_t native_handle);
// Forgets what was written to the line and not sent yet.
void DiscardOutput(std::intptr_t native_handle);
// The system's words for one of its error codes.
std::string SystemErrorText(int code);

}  // namespace zento::vendor
