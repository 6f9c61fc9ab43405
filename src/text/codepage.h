#pragma once

#include <array>
#include <span>
#include <string>
#include <string_view>

// Text inside the program is UTF-8; this is where bytes of files become text and back. The same on
// every platform and in every locale.

namespace zento {

// Strictly: no overlong forms, no surrogates, nothing above U+10FFFF. NUL is a character like
// others.
bool IsValidUtf8(std::string_view bytes);

// IsValidUtf8 of a text that comes in pieces of any size.
class Utf8Stream {
 public:
  void Feed(std::string_view piece);
  // Whether all of it was.
  bool Finish() const { return valid_ && tail_.empty(); }

 private:
  bool valid_ = true;
  std::string tail_;  // a character that the pieces so far have begun without ending it
};

// The same text with each malformed sequence replaced by U+FFFD.
std::string MakeValidUtf8(std::string_view bytes);

// One line or title of code page 932 (Shift JIS with the vendor extensions) as UTF-8. A byte that
// begins no character becomes U+FFFD; nothing else is swallowed with it. On a system without a
// converter for the code page, each two-byte character becomes one U+FFFD.
std::string DecodeCodePage932(std::string_view bytes);

// By the system's converter: the UTF-16 unit of each pair of bytes in code page 932, U+FFFD where
// the pair is no character; empty when the system has no such converter. DecodeCodePage932 asks
// once for all pairs.
std::u16string ConvertPairs932(std::span<const std::array<char, 2>> pairs);

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
