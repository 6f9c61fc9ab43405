#pragma once

// The number forms of tables on the clipboard, for their hundred thousands of numbers: no
// allocation, no terminating NUL; each returns the position behind the last character. A table
// holds numbers only, or a spreadsheet would read text: NaN is written as 0, an infinity as the
// largest finite double of its sign. See text/format.h for the forms of track files.

namespace zento {

// PlainNumber, byte for byte. `out` has room for kLongestPlain characters.
inline constexpr int kLongestPlain = 24;  // "-1.2345678901234567E-308"
char* WritePlain(char* out, double value);

// "0.0000e+0", byte for byte what Format writes for every finite double. `out` has room for
// kLongestScientific4 characters.
inline constexpr int kLongestScientific4 = 12;  // "-1.2346e-308"
char* WriteScientific4(char* out, double value);

}  // namespace zento
