#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zento {

// Puts what the bus library's `function` meant by returning `code` into `text`, for a person.
// Returns 1 when the code reports an error, 0 when it does not: the low byte is the outcome (3 and
// above are errors), the other bytes tell what arrived meanwhile.
std::int32_t CheckGpibStatus(std::string_view function, std::int32_t code, std::string& text);

}  // namespace zento
