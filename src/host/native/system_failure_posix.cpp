#include <cerrno>
#include <system_error>

#include "host/native/system_failure.h"

namespace zento {

Status SystemFailure(const std::string& doing) {
  return Status::Failure(std::generic_category().message(errno)).Within(doing);
}

}  // namespace zento
