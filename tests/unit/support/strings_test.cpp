#include "support/strings.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <string>

#include "support/boundary_lengths.h"

namespace {

using LongString = LStringLongTemplate<char>;

TEST(LongString, ReadsAsTheEmptyTextBeforeItIsGivenOne) {
  const LongString none;
  EXPECT_EQ(none.data, nullptr);
  EXPECT_STREQ(none.Text(), "");
  const LongString copied(none);
  EXPECT_EQ(copied.data, nullptr);
  LongString assigned("text");
  assigned = none;
  EXPECT_EQ(assigned.data, nullptr);
  EXPECT_EQ(assigned.length, 0u);
  EXPECT_EQ(assigned.capacity, 0u);
}

TEST(LongString, AllocatesExactlyWhatItIsGiven) {
  for (const size_t size : kBoundaries) {
    SCOPED_TRACE(size);
    const std::string text(size, 'x');
    LongString made(text.c_str());
    EXPECT_EQ(made.length, size);
    EXPECT_EQ(made.capacity, size + 1);
    LongString assigned;
    assigned.GrowToSize(1000);
    assigned = text.c_str();
    EXPECT_EQ(assigned.capacity, size + 1);
    made.GrowToSize(1000);
    const LongString copied(made);
    EXPECT_EQ(copied.capacity, size + 1);
    EXPECT_EQ(std::string(copied.Text()), text);
    made = *&made;
    EXPECT_EQ(made.capacity, size + 1);
    EXPECT_EQ(std::string(made.Text()), text);
  }
}

TEST(LongString, TakesItsOwnTailAsSource) {
  LongString text("one two");
  text = text.data + 4;
  EXPECT_STREQ(text.Text(), "two");
  text.Append(text.data + 1);
  EXPECT_STREQ(text.Text(), "twowo");
  text.Append(text);
  EXPECT_STREQ(text.Text(), "twowotwowo");
}

TEST(LongString, AppendGrowsByTheNeededAndTheOldCapacity) {
  struct {
    size_t before;
    size_t added;
    size_t capacity;
  } rows[] = {
      {0, 0, 1},     {0, 258, 260},  // 259 are needed, and 1 is there.
      {0, 259, 261}, {0, 260, 262}, {0, 261, 263}, {259, 1, 521}, {260, 0, 261}, {1000, 1, 2003},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.added);
    LongString text(std::string(row.before, 'a').c_str());
    text.Append(std::string(row.added, 'b').c_str());
    EXPECT_EQ(text.capacity, row.capacity);
    EXPECT_EQ(std::string(text.Text()), std::string(row.before, 'a') + std::string(row.added, 'b'));
  }
}

TEST(LongString, AppendToATextThatWasNeverGivenOne) {
  LongString nothing;
  nothing.Append(LongString());
  EXPECT_EQ(nothing.data, nullptr);
  nothing.Append("");
  EXPECT_EQ(nothing.capacity, 260u);
  EXPECT_STREQ(nothing.Text(), "");

  LongString bytes;
  for (int i = 0; i < 259; ++i) bytes.Append('c');
  EXPECT_EQ(bytes.capacity, 260u);
  bytes.Append('c');
  EXPECT_EQ(bytes.capacity, 521u);
  bytes.Append("abcdef", 3);
  EXPECT_EQ(bytes.length, 263u);
  EXPECT_STREQ(bytes.Text() + 258, "ccabc");
}

TEST(LongString, GrowsToASizeAndNeverShrinks) {
  LongString text("abc");
  EXPECT_TRUE(text.GrowToSize(3));
  EXPECT_EQ(text.capacity, 4u);
  EXPECT_TRUE(text.GrowToSize(500));
  EXPECT_EQ(text.capacity, 500u);
  EXPECT_TRUE(text.GrowToSize(100));
  EXPECT_EQ(text.capacity, 500u);
  EXPECT_STREQ(text.Text(), "abc");
}

TEST(Writer, GrowsFourfoldOnceTheTextFillsTheCapacity) {
  struct {
    size_t length;
    size_t capacity;
  } rows[] = {{0, 260}, {258, 260}, {259, 260}, {260, 1040}, {261, 1040}, {1039, 1040}, {1040, 4160}, {20000, 66560}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.length);
    const std::string text(row.length, 'w');
    LongString formatted;
    EXPECT_EQ(formatted.sprintf("%s", text.c_str()), row.length);
    EXPECT_EQ(formatted.capacity, row.capacity);
    EXPECT_EQ(std::string(formatted.Text()), text);

    LongString whole;
    LStringLongTemplateWriter<char> writer(whole);
    writer.Write(text.data(), text.size());
    EXPECT_EQ(whole.capacity, row.capacity) << "in one piece";
    EXPECT_EQ(whole.length, row.length);
  }
}

TEST(Writer, DropsTheLastByteAboveHalfAGigabyte) {
  LongString text;
  text.GrowToSize(0x20000001);
  text.length = text.capacity - 3;
  LStringLongTemplateWriter<char> writer(text);
  writer.Put('a');
  EXPECT_EQ(text.length, text.capacity - 2);
  writer.Put('b');
  writer.Put('c');
  writer.Put('d');
  writer.Write("efg", 3);
  EXPECT_EQ(text.length, text.capacity - 1);
  EXPECT_EQ(text.capacity, 0x20000001u);
  text.data[text.length] = 0;
  EXPECT_STREQ(text.data + text.length - 2, "ab");
}

TEST(Formatting, FollowsItsOwnRules) {
  const uint64_t large = 0xFEDCBA9876543210;
  struct {
    const char* name;
    const char* format;
    uint64_t word;
    const char* text;
  } rows[] = {
      {"plain bytes", "日本 text", 0, "日本 text"},
      {"percent sign", "100%%!", 0, "100%!"},
      {"a percent sign forgets what stands before it", "%05.3l%", 0, "%"},
      {"int", "%d|", 0xFFFFFFFF, "-1|"},
      {"an int is the low half of the word", "%d", large, "1985229328"},
      {"width with zeros", "%05i", 42, "00042"},
      {"precision", "%.2d:", 5, "05:"},
      {"unsigned", "%u", 0xFFFFFFFF, "4294967295"},
      {"hexadecimal", "%x%%", 0xBEEF, "beef%"},
      {"capital hexadecimal", "%4.3X", 0xF, " 00F"},
      {"octal", "%o", 8, "10"},
      {"character", "%c%%", 'A', "A%"},
      {"character with width", "%3c", 'A', "  A"},
      {"long", "%ld", static_cast<uint64_t>(-5000000000), "-5000000000"},
      {"long long", "%llu", large, "18364758544493064720"},
      {"size", "%zu", 5000000000, "5000000000"},
      {"length letters between the digits", "%1l2lX", large, "FEDCBA9876543210"},
      {"length letters may lead the width", "%l12d", 7, "           7"},
      {"unsigned long in the old manner", "%U", large, "18364758544493064720"},
      {"pointer", "%p", 0x1234, "0x1234"},
      {"a minus sign is a conversion", "[%-5d]", 7, "[5d]"},
      {"so is a plus sign", "[%+d]", 7, "[d]"},
      {"so is an asterisk", "[%*d]", 7, "[d]"},
      {"so is h", "[%hd]", 7, "[d]"},
      {"nothing behind the percent sign", "cut%", 0, "cut"},
      {"nothing behind the flags", "cut%05", 0, "cut"},
      {"what would store through the word shows nothing", "[%n]", 0, "[]"},
      {"an unknown conversion shows itself", "[%k]", 0, "[%k]"},
  };
  for (const auto& row : rows) {
    LongString text("before");
    EXPECT_EQ(text.sprintf(row.format, row.word), strlen(row.text)) << row.name;
    EXPECT_STREQ(text.Text(), row.text) << row.name;
  }
}

TEST(Formatting, TakesDoublesForTheFloatingConversions) {
  LongString text;
  text.sprintf("%f|%.1f|%e|%g|%6.2lf|%Lf|%d", 1.5, 2.25, 3.0, 0.125, 4.0, 5.0, uint64_t{6});
  EXPECT_STREQ(text.Text(), "1.500000|2.2|3.000000e+00|0.125|  4.00|5.000000|6");
}

TEST(Formatting, CopiesTheWholeTextWhateverWidthAndPrecisionSay) {
  LongString text;
  text.sprintf("<%5s%.10s%s%ls>", "ab", "0123456789ABCDEF", static_cast<const char*>(nullptr), "wide");
  EXPECT_STREQ(text.Text(), "<ab0123456789ABCDEFwide>");
  text.sprintf("%s=%d %s=%d", "a", uint64_t{1}, "b", uint64_t{2});
  EXPECT_STREQ(text.Text(), "a=1 b=2");
  EXPECT_EQ(text.sprintf(nullptr), 0u);
  EXPECT_STREQ(text.Text(), "");
}

TEST(Formatting, KeepsAnOverlongDirectiveWithinItsBuffers) {
  LongString text;
  EXPECT_EQ(text.sprintf("%0259d", uint64_t{7}), 259u);
  EXPECT_EQ(text.sprintf("%0260d", uint64_t{7}), 259u) << "the local buffer cuts";
  // 257 zeros are kept and the width behind them is dropped.
  text.sprintf((std::string("%") + std::string(257, '0') + "9d").c_str(), uint64_t{7});
  EXPECT_STREQ(text.Text(), "7");
  text.sprintf((std::string("%") + std::string(256, '0') + "9d").c_str(), uint64_t{7});
  EXPECT_STREQ(text.Text(), "000000007");
  text.sprintf((std::string("[%") + std::string(400, '9') + "d]").c_str(), uint64_t{7});
  EXPECT_STREQ(text.Text(), "[]") << "a width beyond an int is refused by the C library";
}

TEST(Formatting, AppendsAndCountsFromTheStart) {
  LongString text("abc");
  text.tsprintfappend("-%s", "def");
  tsprintfappend(text, "-%d", uint64_t{7});
  EXPECT_STREQ(text.Text(), "abc-def-7");
  EXPECT_EQ(text.capacity, 260u);
  EXPECT_EQ(sprintf(text, "%s", "new"), 3u);
  EXPECT_STREQ(text.Text(), "new");

  char buffer[8] = "#######";
  LFixedLengthStringWriterTemplate<char> writer(buffer);
  EXPECT_EQ(sprintf(writer, "%s", "abc"), 3u);
  EXPECT_STREQ(buffer, "abc####") << "terminated by the writer";
  EXPECT_EQ(tplwprintf(writer, "%s", "defghij"), 7u);
  writer.Terminate();
  EXPECT_STREQ(buffer, "abcdefg");
}

TEST(StringList, GrowsEightfoldAndStaysClosedByNull) {
  LStringListTemplate<char> list;
  EXPECT_EQ(list.capacity, 255u);
  EXPECT_EQ(list.strings[0], nullptr);
  struct {
    size_t count;
    size_t capacity;
  } rows[] = {{255, 255}, {256, 2047}, {2047, 2047}, {2048, 16383}};
  for (const auto& row : rows) {
    while (list.count < row.count) list.Add(std::to_string(list.count).c_str());
    EXPECT_EQ(list.capacity, row.capacity) << row.count;
    EXPECT_EQ(list.strings[row.count], nullptr);
    EXPECT_STREQ(list.strings[row.count - 1], std::to_string(row.count - 1).c_str());
  }
  EXPECT_STREQ(list.strings[0], "0");
  list.Clear();
  EXPECT_EQ(list.count, 0u);
  EXPECT_EQ(list.capacity, 16383u) << "the array stays";
  EXPECT_EQ(list.strings[0], nullptr);
}

TEST(StringList, TakesEveryKindOfText) {
  LStringListTemplate<char> list;
  list.Add(LongString("long"));
  list.Add(LongString());
  char* room = list.Add(size_t{4});
  EXPECT_STREQ(room, "");
  memcpy(room, "abc", 4);
  ASSERT_EQ(list.count, 3u);
  EXPECT_STREQ(list.strings[0], "long");
  EXPECT_STREQ(list.strings[1], "");
  EXPECT_STREQ(list.strings[2], "abc");
}

TEST(Trimming, RemovesAtBothEndsOnly) {
  struct {
    const char* text;
    const char* blanks;
    const char* whiteSpace;
    const char* formatting;
  } rows[] = {
      {"", "", "", ""},
      {"   ", "", "", "   "},
      {"\t\r\n", "\t\r\n", "", ""},
      {"  a b  ", "a b", "a b", "  a b  "},
      {"\t a \r\n", "\t a \r\n", "a", " a "},
      {" \x01 a\x1F", "\x01 a\x1F", "a", " \x01 a"},
      {" 日本\xFF ", "日本\xFF", "日本\xFF", " 日本\xFF "},
      {"\x7F x", "\x7F x", "\x7F x", "\x7F x"},
  };
  const auto trimmed = [](void (*trim)(char*), const char* text) {
    char buffer[kTextSize];
    TextCopy(buffer, text);
    trim(buffer);
    return std::string(buffer);
  };
  for (const auto& row : rows) {
    EXPECT_EQ(trimmed(LStringTrim, row.text), row.blanks);
    EXPECT_EQ(trimmed(LStringTrimWhiteSpace, row.text), row.whiteSpace);
    EXPECT_EQ(trimmed(LStringTrimFormatting, row.text), row.formatting);
  }
}

TEST(Searching, FoldsAsciiCaseOnly) {
  struct {
    const char* haystack;
    const char* needle;
    int at;  ///< -1 for no match.
  } rows[] = {
      {"Content-LENGTH: 5", "content-length", 0},
      {"aaAB", "aab", 1},
      {"abc", "abcd", -1},
      {"abc", "", 0},
      {"", "", 0},
      {"x[", "{", -1},
      {"あÀ", "à", -1},
      {"あÀ", "À", 3},
  };
  for (const auto& row : rows) {
    const char* match = stristrTemplate(row.haystack, row.needle);
    EXPECT_EQ(match ? static_cast<int>(match - row.haystack) : -1, row.at) << row.haystack;
  }
}

TEST(LowerCase, ReachesBeyondAsciiAndIsCutAtTheArray) {
  char text[kTextSize];
  TextCopy(text, "ABCÀÉ ＡＢ 日本");
  LCharsetsLowerCase(text);
  EXPECT_STREQ(text, "abcàé ａｂ 日本");
  // Each of these grows from 2 bytes to 3, and the last one that would be cut in two goes whole.
  std::string growing;
  for (int i = 0; i < 129; ++i) growing += "Ⱥ";
  TextCopy(text, growing.c_str());
  LCharsetsLowerCase(text);
  EXPECT_EQ(strlen(text), 258u);
  EXPECT_STREQ(text + 255, "ⱥ");

  TextCopy(text, "ABÀ");
  TextLowerAscii(text);
  EXPECT_STREQ(text, "abÀ");
}

}  // namespace
