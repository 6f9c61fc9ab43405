#pragma once

#include <string>

#include "text/status.h"

namespace zento {

// The failure of the system call just made, with the system's cause as text: "write a.znt: No space
// left on device". To be called before anything else may change the system's error code.
Status SystemFailure(const std::string& doing);

}  // namespace zento
