#pragma once

#include <string>
#include <string_view>

// Text inside the program is UTF-8; this is where bytes of files become text and back. The same on
// every platform and in every locale.

namespace zento {

// Strictly: no overlong forms, no surrogates, nothing above U+10FFFF. NUL is a character like
// others.
bool IsValidUtf8(std::string_view bytes);

// The same text with each malformed sequence replaced by U+FFFD.
std::string MakeValidUtf8(std::string_view bytes);

// One line or title of code page 932 (Shift JIS with the vendor extensions) as UTF-8. A byte that
// begins no character becomes U+FFFD; nothing else is swallowed with it.
std::string DecodeCodePage932(std::string_view bytes);

// The bytes of a file as text. A file that is valid UTF-8 is UTF-8, one that begins with the byte
// order mark of UTF-16 is that (the mark is dropped in both), any other one is code page 932. In
// such a file a line that is plainly UTF-8 is still read as UTF-8, so that a cut-off tail or one
// damaged byte does not garble the titles elsewhere in it.
std::string DecodeFile(std::string_view bytes);

// What DecodeFile does with bytes that are not valid UTF-8 as a whole, for callers who know that
// already and decode only the lines they need.
std::string DecodeMixed(std::string_view bytes);

// Text as the bytes of a file, such that DecodeFile(EncodeText(text)) is `text` for all valid UTF-8
// (malformed sequences are replaced first). Always UTF-8: bytes of code page 932 could by accident
// be valid UTF-8 (930 pairs of half-width katakana are) and would read back as something else.
std::string EncodeText(std::string_view text);

}  // namespace zento
