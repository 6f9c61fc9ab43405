#include <dlfcn.h>
#include <sys/ioctl.h>
#include <termios.h>

#include <cstdlib>
#include <system_error>

#include "devices/vendor/platform.h"

namespace zento::vendor {

const char* const kPciDaskFile = "libpci_dask.so";
const char* const kAioFile = "libapiaio.so";
const char* const kAddressHelperFile = "libvbadd32.so";
const char* const kGpibFile = "libapigpib1.so";

Result<SharedLibrary> SharedLibrary::Open(const std::filesystem::path& file) {
  if (void* const handle = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL)) {
    return SharedLibrary(file, handle);
  }
  const char* const error = dlerror();
  std::string why = error != nullptr ? error : "unknown cause";
  if (why.find("wrong ELF class") != why.npos) {
    why += sizeof(void*) == 8 ? "; this program needs the 64-bit library"
                              : "; this program needs the 32-bit library";
  }
  return Status::Failure(file.string() + " cannot be loaded: " + why);
}

SharedLibrary::Function SharedLibrary::Find(const std::string& name) const {
  return reinterpret_cast<Function>(dlsym(handle_, name.c_str()));
}

std::vector<std::filesystem::path> SystemLibraryFolders() {
  return {
    "/usr/local/lib",
#if defined(__x86_64__)
        "/usr/lib/x86_64-linux-gnu",
#elif defined(__i386__)
        "/usr/lib/i386-linux-gnu",
#elif defined(__aarch64__)
        "/usr/lib/aarch64-linux-gnu",
#endif
        sizeof(void*) == 8 ? "/usr/lib64" : "/usr/lib32", "/usr/lib",
        sizeof(void*) == 8 ? "/lib64" : "/lib32", "/lib",
  };
}

std::optional<std::string> EnvironmentVariable(const char* name) {
  const char* const value = std::getenv(name);
  if (value == nullptr || *value == '\0') return std::nullopt;
  return value;
}

std::string SerialDevice(int port) {
  return "/dev/ttyS" + std::to_string(port - 1);
}

void RaiseModemLines(std::intptr_t native_handle) {
  int lines = TIOCM_DTR | TIOCM_RTS;
  ioctl(static_cast<int>(native_handle), TIOCMBIS, &lines);
}

void DiscardOutput(std::intptr_t native_handle) {
  tcflush(static_cast<int>(native_handle), TCOFLUSH);
}

std::string SystemErrorText(int code) {
  return std::error_code(code, std::generic_category()).message();
}

}  // namespace zento::vendor
