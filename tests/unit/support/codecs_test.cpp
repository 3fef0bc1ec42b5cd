#include "support/codecs.h"

#include <gtest/gtest.h>
#include <string>

namespace {

std::string Encoded(const std::string& data, unsigned flags) {
  LStringLongTemplate<char> out("what stood there before");
  LBase64Encode(data.data(), data.size(), out, flags);
  EXPECT_EQ(out.Text()[out.length], 0);
  EXPECT_EQ(Base64EncodeGetRequiredLength(data.size(), flags), out.length);
  return std::string(out.Text(), out.length);
}

std::string Decoded(const std::string& text) {
  LSizedArray<unsigned char> out;
  LBase64Decode(text.data(), text.size(), out);
  return std::string(out.data, out.data + out.size);
}

TEST(Base64, EncodesTheKnownVectors) {
  struct {
    const char* data;
    const char* padded;
    const char* bare;
  } rows[] = {
      {"", "", ""},
      {"f", "Zg==", "Zg"},
      {"fo", "Zm8=", "Zm8"},
      {"foo", "Zm9v", "Zm9v"},
      {"foob", "Zm9vYg==", "Zm9vYg"},
      {"fooba", "Zm9vYmE=", "Zm9vYmE"},
      {"foobar", "Zm9vYmFy", "Zm9vYmFy"},
      {"\xFB\xFF\xBF", "+/+/", "+/+/"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Encoded(row.data, 0), row.padded);
    EXPECT_EQ(Encoded(row.data, kBase64NoPadding), row.bare);
    EXPECT_EQ(Decoded(row.padded), row.data);
    EXPECT_EQ(Decoded(row.bare), row.data);
  }
}

TEST(Base64, BreaksALineBehindNineteenWholeGroupsOnly) {
  struct {
    size_t size;
    unsigned flags;
    size_t length;
    size_t breaks;
  } rows[] = {
      {56, 0, 76, 0},
      {57, 0, 78, 1},
      {58, kBase64NoPadding, 80, 1},
      {114, 0, 156, 2},
      {184, 0, 254, 3},  // The longest stored password that the settings read back whole.
      {192, 0, 262, 3},
      {192, kBase64NoLineBreaks, 256, 0},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.size);
    const std::string text = Encoded(std::string(row.size, 'x'), row.flags);
    EXPECT_EQ(text.size(), row.length);
    size_t breaks = 0;
    for (size_t at = 76; at < text.size(); at += 78) breaks += text.compare(at, 2, "\r\n") == 0;
    EXPECT_EQ(breaks, row.breaks);
    EXPECT_EQ(Decoded(text), std::string(row.size, 'x'));
  }
}

TEST(Base64, FillsABufferWithoutTerminatingIt) {
  char buffer[9] = "########";
  EXPECT_EQ(LBase64Encode("foo", 3, buffer, 0), 4u);
  EXPECT_STREQ(buffer, "Zm9v####");
}

TEST(Uri, EncodesPerByte) {
  LStringLongTemplate<char> out;
  LStringLongTemplateWriter<char> writer(out);
  LURIEncodeToWriterDirect(writer, "AZaz09!-._~ +%&=/?*'()日\x01\x7F\xFF@[`{");
  EXPECT_EQ(std::string(out.Text(), out.length),
            "AZaz09!-._~%20%2B%25%26%3D%2F%3F%2A%27%28%29%E6%97%A5%01%7F%FF%40%5B%60%7B");
}

TEST(Uri, DecodesUpToAStopInTheRawText) {
  struct {
    const char* name;
    const char* text;
    const char* stops;
    std::string decoded;
    size_t consumed;
  } rows[] = {
      {"empty", "", "", "", 0},
      {"plus and both cases of digits", "a+b%2f%2F", "", "a b//", 9},
      {"per byte", "%E6%97%a5", "", "日", 9},
      {"a byte that is no digit counts as 0", "%4g%g4%zA", "", "@\x04\x0A", 9},
      {"two zeros write nothing", "a%00b", "", "ab", 5},
      {"0 by a byte that is no digit is written", "a%0gb", "", std::string("a\0b", 3), 5},
      {"cut after the percent sign", "ab%", "", "ab", 3},
      {"cut after one digit", "ab%4", "", "ab", 4},
      {"the first of two stops", "a=b&c", "&=", "a", 1},
      {"no stop", "abc", "=&", "abc", 3},
      {"an encoded stop does not stop", "a%3Db&c", "=&", "a=b", 5},
      {"nor one that stands where digits should", "a%=&b", "=&", std::string("a\0b", 3), 5},
  };
  for (const auto& row : rows) {
    LStringLongTemplate<char> out;
    LStringLongTemplateWriter<char> writer(out);
    EXPECT_EQ(LURIDecodeToWriterDirect(writer, row.text, row.stops), row.consumed) << row.name;
    EXPECT_EQ(std::string(out.Text(), out.length), row.decoded) << row.name;
  }
}

}  // namespace
