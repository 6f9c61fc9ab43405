#pragma once

#include <cstddef>

namespace zento {

// Lead bytes 81 to 9F and E0 to FC, in this order.
inline constexpr std::size_t kCodePage932Leads = 31 + 29;
// Trail bytes 40 to 7E and 80 to FC, in this order.
inline constexpr std::size_t kCodePage932Trails = 63 + 125;

// The two-byte characters by lead and trail; U+FFFD where there is none. A null row holds none or
// (leads F0 to F9) the user-defined characters, which run from U+E000 without gaps.
extern const char16_t* const kCodePage932Rows[kCodePage932Leads];

}  // namespace zento
