#include "support/unicode.h"

#include <gtest/gtest.h>
#include <string>

namespace {

TEST(Utf8Copy, CutsAtACharacter) {
  struct {
    const char* name;
    std::string text;
    size_t size;
    std::string kept;
  } rows[] = {
      {"fits exactly", "abc", 4, "abc"},
      {"cut behind ASCII loses one more", "abcdef", 4, "ab"},
      {"a 3-byte character that just fits", "あい", 4, "あ"},
      {"a 3-byte character cut by two", "abあ", 4, "ab"},
      {"a 4-byte character that is cut", "a😀", 5, "a"},
      {"a 6-byte form that just fits", "\xFC\x80\x80\x80\x80\x80x", 7, "\xFC\x80\x80\x80\x80\x80"},
      {"ASCII behind a character goes alone", "あab", 5, "あ"},
      {"0xFE and 0xFF are walked over", "ab\xFE\xFF\xFE", 5, "a"},
      {"no character at all", "\x80\x80\x80\x80", 4, ""},
      {"size 2", "abc", 2, ""},
      {"a long name", std::string(260, 'a'), 260, std::string(258, 'a')},
  };
  for (const auto& row : rows) {
    std::string dest(270, '#');
    EXPECT_EQ(utf8strlcpy(dest.data(), row.text.c_str(), row.size), row.kept.size()) << row.name;
    EXPECT_EQ(std::string(dest.c_str()), row.kept) << row.name;
    EXPECT_EQ(dest[row.size], '#') << row.name;
  }
  char dest[2] = "#";
  EXPECT_EQ(utf8strlcpy(dest, "abc", 0), 0u);
  EXPECT_STREQ(dest, "") << "size 0 still writes a terminator";
}

TEST(Utf32, DecodesUtf8) {
  struct {
    const char* name;
    std::string text;
    std::u32string characters;
    int result;
  } rows[] = {
      {"one of each length", "aéあ😀", U"aéあ😀", 0},         {"overlong, 3 bytes", "a\xE0\x9F\xBF", U"a", 2},
      {"overlong, 4 bytes", "a\xF0\x8F\xBF\xBF", U"a", 2},  {"cut after 3 of 4", "a\xF0\x9F\x98", U"a", 2},
      {"a third byte out of range", "a\xE3\x81z", U"a", 2},
  };
  for (const auto& row : rows) {
    char32_t dest[16];
    EXPECT_EQ(LCopyUTF32FromUTF8Native(dest, row.text.c_str(), 16), row.result) << row.name;
    EXPECT_EQ(std::u32string(dest), row.characters) << row.name;
  }
}

TEST(Utf32, EncodesUtf8AndDoesNotCountTheTerminator) {
  struct {
    const char* name;
    std::u32string characters;
    size_t size;
    std::string text;
    int result;
  } rows[] = {
      {"one of each length", U"aéあ😀", 10, "aéあ😀", 0},
      {"nothing behind the first that does not fit", U"あa", 2, "", 0},
      {"size 0", U"a", 0, "", 0},
      {"the borders", U"\x7F\x80\x7FF\x800\xFFFF\x10000\x10FFFF", 20,
       "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", 0},
      {"beyond Unicode", std::u32string{U'a', 0x110000, U'b', 0xFFFFFFFF}, 20, "a\uFFFDb\uFFFD", 2},
  };
  for (const auto& row : rows) {
    char dest[24];
    memset(dest, '#', sizeof dest);
    EXPECT_EQ(LCopyUTF8FromUTF32Native(dest, row.characters.c_str(), row.size), row.result) << row.name;
    EXPECT_EQ(std::string(dest), row.text) << row.name;
    EXPECT_EQ(dest[row.size + 1], '#') << row.name;
  }
}

TEST(Utf16, ComesFromUtf8AndGoesBack) {
  char16_t units[8];
  EXPECT_EQ(LCopyUnicodeFromUTF8(units, "aあ😀", 8), kUnicodeClean);
  EXPECT_EQ(std::u16string(units), u"aあ\xD83D\xDE00");
  EXPECT_EQ(LCopyUnicodeFromUTF8(units, "a\xFF", 8), kUnicodeIllegal);
  EXPECT_EQ(LCopyUnicodeFromUTF8(units, "あいう", 3), kUnicodeNoRoom);
  EXPECT_EQ(LCopyUnicodeFromUTF8(units, "a😀", 3), kUnicodeClean);
  EXPECT_EQ(std::u16string(units), u"a") << "half a pair is left out";
  LCopyUnicodeFromUTF32(units, std::u32string{0x110000, U'b'}.c_str(), 4);
  EXPECT_EQ(std::u16string(units), u"\uFFFDb") << "beyond Unicode";

  char text[10] = "#########";
  EXPECT_EQ(LCopyUTF8FromUnicode(text, u"aあ😀", 9), kUnicodeClean);
  EXPECT_STREQ(text, "aあ😀");
  EXPECT_EQ(LCopyUTF8FromUnicode(text, u"aあ😀", 8), kUnicodeClean);
  EXPECT_STREQ(text, "aあ") << "the terminator is within the size here";
  EXPECT_EQ(LCopyUTF8FromUnicode(text, u"bc", 0), kUnicodeNoRoom);
  EXPECT_STREQ(text, "aあ");
}

}  // namespace
