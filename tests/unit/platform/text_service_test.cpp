#include "platform/text_service.h"

#include <gtest/gtest.h>
#include <string>

namespace {

std::string Lower(const std::string& text) {
  char out[platform::kFixedText];
  platform::TextLowerCase(text.c_str(), out);
  return out;
}

TEST(TextService, LowerCasesAndKeepsWhatIsNotUtf8) {
  struct {
    const char* name;
    const char* text;
    const char* lower;
  } rows[] = {
      {"ASCII", "READ.ME [1]", "read.me [1]"},
      {"other scripts", "ÀÉÐ ДЖ ΑΒ ＡＺ 日本", "àéð дж αβ ａｚ 日本"},
      {"outside the first plane", "\xF0\x90\x90\x80", "\xF0\x90\x90\xA8"},
      {"bytes of another encoding between", "A\x83\x65\x83XÀ\xFF", "a\x83\x65\x83xà\xFF"},
      {"a cut character", "A\xE3\x81", "a\xE3\x81"},
      {"an overlong form", "A\xE0\x81\x81Z", "a\xE0\x81\x81z"},
      {"a surrogate", "A\xED\xA0\x80Z", "a\xED\xA0\x80z"},
  };
  for (const auto& row : rows) EXPECT_EQ(Lower(row.text), row.lower) << row.name;
}

TEST(TextService, CutsAtAWholeCharacter) {
  struct {
    const char* name;
    size_t letters;  ///< Capital letters before the tail.
    const char* tail;
    const char* lower;
  } rows[] = {
      {"fits", 256, "あ", "あ"},
      {"cut by one byte", 257, "あ", ""},
      {"stray bytes are cut anywhere", 258, "\x80\x80\x80", "\x80"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Lower(std::string(row.letters, 'A') + row.tail), std::string(row.letters, 'a') + row.lower) << row.name;
  }
}

}  // namespace
