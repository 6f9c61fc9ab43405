#include "text/codepage.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "text/lines.h"

namespace zento {
namespace {

using namespace std::string_literals;

constexpr const char* kReplacement = "\uFFFD";

TEST(Utf8, IsValidatedStrictly) {
  for (const std::string& good : {""s, "a\0b"s, "μA/cm²"s, "酸素還元"s, "\U0001F9EA"s,
                                  "\xED\x9F\xBF"s, "\xF4\x8F\xBF\xBF"s}) {
    EXPECT_TRUE(IsValidUtf8(good)) << good;
    EXPECT_EQ(MakeValidUtf8(good), good);
  }
  for (const char* bad : {"\xC0\x80", "\xE0\x9F\xBF", "\xED\xA0\x80", "\xF0\x8F\xBF\xBF",
                          "\xF4\x90\x80\x80", "\x80", "12345678\xE6\x96", "\xFF"}) {
    EXPECT_FALSE(IsValidUtf8(bad)) << bad;
    EXPECT_TRUE(IsValidUtf8(MakeValidUtf8(bad))) << bad;
  }
}

TEST(Utf8, ReplacesOnlyWhatIsMalformed) {
  EXPECT_EQ(MakeValidUtf8("a\xFF"
                          "b"),
            "a"s + kReplacement + "b");
  EXPECT_EQ(MakeValidUtf8("\xE9\x85"
                          "b"),
            kReplacement + "b"s);
  EXPECT_EQ(MakeValidUtf8("\xF0\x9F\xA7"), kReplacement);
  EXPECT_EQ(MakeValidUtf8("\xC3\xE9\x85\xB8"), kReplacement + "酸"s);
}

TEST(CodePage932, HoldsKanjiKanaAndVendorCharacters) {
  EXPECT_EQ(DecodeCodePage932("\x8E\x5F\x91\x66\x8A\xD2\x8C\xB3"), "酸素還元");
  EXPECT_EQ(DecodeCodePage932("\xB6\xC0\xB6\xC5 \x83\x7D\x83\x43 1"), "ｶﾀｶﾅ マイ 1");
  EXPECT_EQ(DecodeCodePage932("\x5C\x7E\x81\x5F\x81\x60"), "\\~＼～");
  EXPECT_EQ(DecodeCodePage932("\x87\x40\xFA\x40\xED\x40\xFC\x4B"), "①ⅰ纊黑");
  EXPECT_EQ(DecodeCodePage932("\xF0\x40\xF9\xFC"), "\uE000\uE757");
  EXPECT_EQ(DecodeCodePage932("\x83\xCA"
                              "A"),
            "μA");
}

TEST(CodePage932, SwallowsNothingBehindABadByte) {
  EXPECT_EQ(DecodeCodePage932("\x83\r\n"), kReplacement + "\r\n"s);
  EXPECT_EQ(DecodeCodePage932("\x85\x40"), kReplacement + "@"s);
  EXPECT_EQ(DecodeCodePage932("\x80\xA0\xFF"
                              "1"),
            "\uFFFD\uFFFD\uFFFD1");
  EXPECT_EQ(DecodeCodePage932("5\x8E"), "5"s + kReplacement);
}

TEST(DecodeFile, TellsUtf8FromTheCodePage) {
  EXPECT_EQ(DecodeFile("\xEF\xBB\xBFZENTO\r\n"), "ZENTO\r\n");
  EXPECT_EQ(DecodeFile("Title=酸素\r\nne= 4"), "Title=酸素\r\nne= 4");
  EXPECT_EQ(DecodeFile("Title=\x8E\x5F\x91\x66\r\nne= 4"), "Title=酸素\r\nne= 4");
  EXPECT_EQ(DecodeFile("a\0b"s), "a\0b"s);
}

TEST(DecodeFile, ReadsWhatSpreadsheetsCallUnicodeText) {
  EXPECT_EQ(DecodeFile("\xFF\xFE"
                       "0\0\t\0\x78\x91\x3E\xD8\xEA\xDD"s),
            "0\t酸\U0001F9EA");
  EXPECT_EQ(DecodeFile("\xFE\xFF"
                       "\0"
                       "0\x91\x78\xD8\x3E\xDD\xEA"s),
            "0酸\U0001F9EA");
  // Half a pair, at the end and before something else, and half a unit.
  EXPECT_EQ(DecodeFile("\xFF\xFE\x3E\xD8"
                       "a\0\xEA\xDD\x3E\xD8"s),
            kReplacement + "a"s + kReplacement + kReplacement);
  EXPECT_EQ(DecodeFile("\xFF\xFE"
                       "a\0b"s),
            "a" + std::string(kReplacement));
}

TEST(DecodeFile, KeepsTitlesReadableBesideDamage) {
  // A file in UTF-8 that was cut off in the middle of a character, and one with a bad byte.
  EXPECT_EQ(DecodeFile("Title=酸素\r\nTitle=還\xE5\x85"), "Title=酸素\r\nTitle=還"s + kReplacement);
  EXPECT_EQ(DecodeFile("Title=酸素\r\nx\xFFy\r\n"), "Title=酸素\r\nx"s + kReplacement + "y\r\n");
  // Half-width katakana that by accident are UTF-8, in a file that elsewhere is not.
  EXPECT_EQ(DecodeFile("Title=\xC3\xBD\xC4\r\nTitle=\xC3\xBD\r\n"), "Title=ﾃｽﾄ\r\nTitle=ﾃｽ\r\n");
}

TEST(EncodeText, ReadsBackAsItWas) {
  for (const std::string& text :
       {"ﾃｽ"s, "ﾃｽﾄ 酸素 μA ²"s, "\uFEFF title"s, "\uE000~\\‾¥"s, "\U0001F9EA"s, "a\0b"s, ""s}) {
    EXPECT_EQ(DecodeFile(EncodeText(text)), text);
  }
  // Every pair of half-width katakana, alone in a file.
  for (char32_t first = 0xFF61; first <= 0xFF9F; ++first) {
    for (char32_t second = 0xFF61; second <= 0xFF9F; ++second) {
      std::string text;
      for (const char32_t c : {first, second}) {
        text += {'\xEF', static_cast<char>(0x80 | (c >> 6 & 0x3F)),
                 static_cast<char>(0x80 | (c & 0x3F))};
      }
      ASSERT_EQ(DecodeFile(EncodeText(text)), text);
    }
  }
  EXPECT_EQ(EncodeText("a\xFF"), "a"s + kReplacement);
}

std::vector<std::string> Lines(std::string_view text) {
  std::vector<std::string> lines;
  LineReader reader(text);
  for (std::string_view line; reader.Next(line);) lines.emplace_back(line);
  return lines;
}

TEST(LineReader, AcceptsEveryLineEnd) {
  const std::vector<std::string> expected = {"a", "", "b"};
  EXPECT_EQ(Lines("a\r\n\r\nb\r\n"), expected);
  EXPECT_EQ(Lines("a\n\nb"), expected);
  EXPECT_EQ(Lines("a\r\rb"), expected);
  EXPECT_EQ(Lines("a\r\r\n\r\r\nb\r\r\n"), expected);
  EXPECT_EQ(Lines("a\n\r\nb\r"), expected);
  EXPECT_EQ(Lines("a\r\r\rb\n"), (std::vector<std::string>{"a", "", "", "b"}));
  EXPECT_EQ(Lines("a\0b\n"s), (std::vector<std::string>{"a\0b"s}));
  EXPECT_EQ(Lines("\r"), std::vector<std::string>{""});
  EXPECT_TRUE(Lines("").empty());
}

TEST(LineReader, KnowsWhatIsLeft) {
  LineReader reader("a\r\nb\rc\n");
  std::string_view line;
  ASSERT_TRUE(reader.Next(line));
  EXPECT_EQ(reader.rest(), "b\rc\n");
  ASSERT_TRUE(reader.Next(line));
  EXPECT_EQ(reader.rest(), "c\n");
}

TEST(LineReader, IsLinearInLoneLineEnds) {
  EXPECT_EQ(Lines(std::string(3000000, '\r')).size(), 3000000U);
  EXPECT_EQ(Lines(std::string(3000000, '\r') + "x").size(), 3000001U);
}

}  // namespace
}  // namespace zento
