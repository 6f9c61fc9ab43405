#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "devices/vendor/loader.h"
#include "devices/vendor/tables.h"
#include "host/path_text.h"
#include "text/status_fwd.h"

// What the loader needs from the operating system, one implementation a platform, and how it takes
// functions out of a library.

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

// Fills the functions of a table from one library and notes the first function it does not have.
class Binder {
 public:
  explicit Binder(const SharedLibrary& library) : library_(library) {}

  template <typename R, typename... Arguments>
  Binder& Bind(const char* name, std::function<R(Arguments...)>& function) {
    using Function = R(ZENTO_VENDOR_CALL*)(Arguments...);
    SharedLibrary::Function found = library_.Find(name);
    // 32-bit libraries may export the name with the bytes of its arguments behind it.
    // NOLINTNEXTLINE(bugprone-sizeof-expression): pointers count as what they are
    constexpr std::size_t kBytes = (std::size_t{0} + ... + ((sizeof(Arguments) + 3) / 4 * 4));
    if (found == nullptr) found = library_.Find(name + ("@" + std::to_string(kBytes)));
    if (found == nullptr) {
      found = library_.Find("_" + std::string(name) + "@" + std::to_string(kBytes));
    }
    if (found != nullptr) {
      function = reinterpret_cast<Function>(found);
    } else if (missing_.empty()) {
      missing_ = TextFromPath(library_.file()) + " has no function " + name;
    }
    return *this;
  }

  // Empty when every function was there.
  const std::string& missing() const { return missing_; }

 private:
  const SharedLibrary& library_;
  std::string missing_;
};

// Where the system keeps libraries, in the order of search.
std::vector<std::filesystem::path> SystemLibraryFolders();

// An environment variable in UTF-8; nothing when it is not set or empty.
std::optional<std::string> EnvironmentVariable(const char* name);

// One of the vendors' libraries: the environment variable that may name it by its full path, and
// the file that is looked for without it.
struct LibraryName {
  const char* variable;
  const char* windows_file;
  const char* linux_file;
};

// The library that its variable names, else the one of its name in the first folder that has one
// which can be loaded. The failure lists every place that was looked at, or why what was found
// there could not be loaded.
Result<SharedLibrary> FindLibrary(const Surroundings& surroundings, const LibraryName& name);

// Ports through the port library (Windows) or the kernel's port device (Linux).
PortIo LoadPortIo(const Surroundings& surroundings);

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
