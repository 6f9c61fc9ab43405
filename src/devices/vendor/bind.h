#pragma once

#include <functional>
#include <string>

#include "devices/vendor/platform.h"

namespace zento::vendor {

// Fills table entries from one library and notes the first function it does not have.
class Binder {
 public:
  explicit Binder(const SharedLibrary& library) : library_(library) {}

  template <typename R, typename... Arguments>
  Binder& Bind(const char* name, std::function<R(Arguments...)>& entry) {
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
      entry = reinterpret_cast<Function>(found);
    } else if (missing_.empty()) {
      missing_ = TextOf(library_.file()) + " has no function " + name;
    }
    return *this;
  }

  // Empty when every function was there.
  const std::string& missing() const { return missing_; }

 private:
  static std::string TextOf(const std::filesystem::path& file);
  const SharedLibrary& library_;
  std::string missing_;
};

}  // namespace zento::vendor
