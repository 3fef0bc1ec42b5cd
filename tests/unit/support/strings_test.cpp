#include "support/strings.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <string>

#include "support/boundary_lengths.h"

namespace {

using LongString = LStringLongTemplate<char>;

TEST(LongString, ReadsAsTheEmptyTextBeforeItIsGivenOne) {
  const LongString none;
  EXPECT_STREQ(none.Text(), "");
  LongString text("text");
  text = none;
  EXPECT_EQ(text.data, nullptr);
  text.Append(LongString());
  EXPECT_EQ(text.data, nullptr);
  text.Append("");
  EXPECT_STREQ(text.Text(), "");
}

TEST(LongString, EachWayOfFillingGrowsByItsRule) {
  const struct {
    const char* name;
    void (*fill)(LongString&, const std::string&);  ///< Puts the text behind what is there.
    size_t before, given, capacity;
  } rows[] = {
      {"assigned", [](LongString& out, const std::string& x) { out = x.c_str(); }, 0, 0, 1},
      {"assigned", [](LongString& out, const std::string& x) { out = x.c_str(); }, 0, 260, 261},
      {"appended", [](LongString& out, const std::string& x) { out.Append(x.c_str()); }, 0, 258, 260},
      {"appended", [](LongString& out, const std::string& x) { out.Append(x.c_str()); }, 0, 261, 262},
      {"appended", [](LongString& out, const std::string& x) { out.Append(x.c_str()); }, 1000, 1, 2003},
      {"appended, a part", [](LongString& out, const std::string& x) { out.Append((x + "!").c_str(), x.size()); }, 259,
       3, 523},
      {"appended, a byte", [](LongString& out, const std::string& x) { out.Append(x[0]); }, 259, 1, 521},
      {"grown", [](LongString& out, const std::string&) { EXPECT_TRUE(out.GrowToSize(500)); }, 3, 0, 500},
      {"grown less than it is", [](LongString& out, const std::string&) { EXPECT_TRUE(out.GrowToSize(2)); }, 3, 0, 4},
      {"formatted", [](LongString& out, const std::string& x) { out.sprintf("%s", x.c_str()); }, 0, 259, 260},
      {"formatted", [](LongString& out, const std::string& x) { out.sprintf("%s", x.c_str()); }, 0, 260, 1040},
      {"formatted", [](LongString& out, const std::string& x) { out.sprintf("%s", x.c_str()); }, 0, 20000, 66560},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(std::string(row.name) + ' ' + std::to_string(row.given));
    const std::string given(row.given, 'b'), whole = std::string(row.before, 'a') + given;
    LongString text;
    if (row.before != 0) text = std::string(row.before, 'a').c_str();
    row.fill(text, given);
    EXPECT_EQ(std::string(text.Text()), whole);
    EXPECT_EQ(text.length, whole.size());
    EXPECT_EQ(text.capacity, row.capacity);
    EXPECT_EQ(LongString(text).capacity, whole.size() + 1) << "a copy has no room to spare";
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
      {"int", "%d|", 0xFFFFFFFF, "-1|"},
      {"an int is the low half of the word", "%d", large, "1985229328"},
      {"character with width", "%3c", 'A', "  A"},
      {"length letters may lead the width", "%l12d", 7, "           7"},
      {"unsigned long in the old manner", "%U", large, "18364758544493064720"},
      {"pointer", "%p", 0x1234, "0x1234"},
      {"a minus sign is a conversion", "[%-5d]", 7, "[5d]"},
      {"nothing behind the percent sign", "cut%", 0, "cut"},
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

TEST(StringList, GrowsAndStaysClosedByNull) {
  LStringListTemplate<char> list;
  EXPECT_EQ(list.strings[0], nullptr);
  list.Add(LongString("long"));
  list.Add(LongString());
  memcpy(list.Add(size_t{4}), "abc", 4);
  EXPECT_STREQ(list.strings[0], "long");
  EXPECT_STREQ(list.strings[1], "");
  EXPECT_STREQ(list.strings[2], "abc");
  for (const size_t count : {255u, 256u, 2048u}) {
    while (list.count < count) list.Add(std::to_string(list.count).c_str());
    EXPECT_EQ(list.strings[count], nullptr);
    EXPECT_STREQ(list.strings[count - 1], std::to_string(count - 1).c_str());
    EXPECT_STREQ(list.strings[0], "long");
  }
  list.Clear();
  EXPECT_EQ(list.count, 0u);
  EXPECT_EQ(list.strings[0], nullptr);
}

TEST(Trimming, RemovesAtBothEndsOnly) {
  struct {
    const char* text;
    const char* blanks;
    const char* whiteSpace;
    const char* formatting;
  } rows[] = {
      {"", "", "", ""},
      {"\t\r\n", "\t\r\n", "", ""},
      {"  a b  ", "a b", "a b", "  a b  "},
      {"\t a \r\n", "\t a \r\n", "a", " a "},
      {" \x01 a\x1F", "\x01 a\x1F", "a", " \x01 a"},
      {" 日本\xFF ", "日本\xFF", "日本\xFF", " 日本\xFF "},
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
      {"abc", "", 0},
      {"x[", "{", -1},
      {"あÀ", "à", -1},
      {"あÀ", "À", 3},
  };
  for (const auto& row : rows) {
    const char* match = stristrTemplate(row.haystack, row.needle);
    EXPECT_EQ(match ? static_cast<int>(match - row.haystack) : -1, row.at) << row.haystack;
  }
}

TEST(LowerCase, OfAsciiAlone) {
  char text[kTextSize] = "ABÀ";
  TextLowerAscii(text);
  EXPECT_STREQ(text, "abÀ");
}

}  // namespace
