#pragma once

#ifdef _WIN32

#include <string>
#include <string_view>

namespace zento {

// Between the system's UTF-16 and the program's UTF-8.
std::string Utf8FromWide(std::wstring_view wide);
std::wstring WideFromUtf8(std::string_view utf8);

}  // namespace zento

#endif
