#include "support/parsing.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

using Parser = LStringParserTemplate<char>;

TEST(Parser, ReadsAWordAndSkipsTheWhiteSpace) {
  struct {
    const char* text;
    const char* word;
    const char* rest;
  } rows[] = {
      {"", "", ""},
      {"one", "one", ""},
      {"one \t\r\n two", "one", "two"},
      {" two", "", "two"},
      {"one\x01two", "one", "two"},
      {"日本 x", "日本", "x"},
      {"a\x7F b", "a\x7F", "b"},
      {"one  ", "one", ""},
  };
  for (const auto& row : rows) {
    Parser parser(row.text);
    char word[kTextSize];
    parser.GetToWhiteSpaceAndSkip(word);
    EXPECT_STREQ(word, row.word);
    EXPECT_STREQ(parser.cursor, row.rest);
  }
}

TEST(Parser, ReadsALineAndSkipsOneLineEnd) {
  struct {
    const char* text;
    const char* line;
    const char* rest;
  } rows[] = {
      {"", "", ""},
      {"one", "one", ""},
      {"a\nb", "a", "b"},
      {"a\rb", "a", "b"},
      {"a\r\nb", "a", "b"},
      {"a\n\rb", "a", "b"},
      {"a\n\nb", "a", "\nb"},
      {"a\r\rb", "a", "\rb"},
      {"a\r\n\r\nb", "a", "\r\nb"},
      {"a b \t\n", "a b \t", ""},
      {"\nb", "", "b"},
  };
  for (const auto& row : rows) {
    Parser parser(row.text);
    char line[kTextSize];
    parser.GetToEndOfLineAndSkip(line);
    EXPECT_STREQ(line, row.line);
    EXPECT_STREQ(parser.cursor, row.rest);
  }
}

TEST(Parser, ReadsToAStringAndStaysOnIt) {
  struct {
    const char* text;
    const char* needle;
    const char* before;
    const char* rest;
  } rows[] = {
      {"a -> b", " -> ", "a", " -> b"}, {"abc", "x", "abc", ""}, {"abc", "a", "", "abc"},
      {"abc", "", "", "abc"},           {"", "x", "", ""},       {"ab", "abc", "ab", ""},
  };
  for (const auto& row : rows) {
    Parser parser(row.text);
    char before[kTextSize];
    parser.GetToString(row.needle, before);
    EXPECT_STREQ(before, row.before);
    EXPECT_STREQ(parser.cursor, row.rest);
  }
}

TEST(Parser, ConsumesWhatDoesNotFit) {
  const std::string text = std::string(1000, 'w') + "\nrest";
  char out[kTextSize];
  Parser word(text.c_str()), line(text.c_str()), needle(text.c_str());
  word.GetToWhiteSpaceAndSkip(out);
  EXPECT_STREQ(word.cursor, "rest");
  line.GetToEndOfLineAndSkip(out);
  EXPECT_STREQ(line.cursor, "rest");
  needle.GetToString("\nrest", out);
  EXPECT_STREQ(needle.cursor, "\nrest");
}

TEST(FreeReaders, StopWhereTheyShouldAndSayHowFarTheyCame) {
  struct {
    const char* text;
    size_t toLineEnd;
    size_t toMinus;
    size_t toArrow;  ///< The first of `-` and `>`.
  } rows[] = {
      {"", 0, 0, 0}, {"name", 4, 4, 4}, {"a > b - c", 9, 6, 2}, {"a\rb-", 1, 3, 3}, {"\n-", 0, 1, 1}, {"-x", 2, 0, 0},
  };
  for (const auto& row : rows) {
    const auto expectRead = [&](size_t consumed, const LStringLongTemplate<char>& out, size_t expected) {
      EXPECT_EQ(consumed, expected) << row.text;
      EXPECT_EQ(std::string(out.Text()), std::string(row.text, expected));
      EXPECT_EQ(out.capacity, 260u);
    };
    LStringLongTemplate<char> out("what stood there before");
    size_t consumed = LParseGetToEndOfLine(row.text, out);
    expectRead(consumed, out, row.toLineEnd);
    consumed = LParseGetToCharacter(row.text, '-', out);
    expectRead(consumed, out, row.toMinus);
    consumed = LParseGetToCharacters(row.text, "->", out);
    expectRead(consumed, out, row.toArrow);
  }
}

TEST(FreeReaders, GrowFourfold) {
  const std::string text(260, 'x');
  LStringLongTemplate<char> out;
  EXPECT_EQ(LParseGetToCharacter(text.c_str(), '\n', out), 260u);
  EXPECT_EQ(out.capacity, 1040u);
  EXPECT_EQ(out.Text(), text);

  LStringLongTemplate<char> written("> ");
  LStringLongTemplateWriter<char> writer(written);
  EXPECT_EQ(LParseGetToEndOfLine("line\r\n", writer), 4u);
  EXPECT_EQ(std::string(written.data, written.length), "> line");
}

TEST(CommaList, GivesItsItems) {
  struct {
    const char* name;
    const char* text;
    std::vector<std::string> items;
  } rows[] = {
      {"empty", "", {}},
      {"one", "a", {"a"}},
      {"white space around", "  a b \t, c ,d", {"  a b", "c", "d"}},
      {"an empty item between two commas", "a,,b", {"a", "", "b"}},
      {"a comma at the end closes its item", "a,", {"a"}},
      {"commas alone", ",,", {"", ""}},
      {"quoted with commas", "\"a, b\", \"c\",d", {"a, b", "c", "d"}},
      {"white space inside quotes stays", "\" a \",b", {" a ", "b"}},
      {"doubled quotes", R"("say ""yes"" now",b)", {"say \"yes\" now", "b"}},
      {"only quotes", R"("","""","""""")", {"", "\"", "\"\""}},
      {"what follows a quoted item is skipped", "\"a\"junk,b", {"a", "b"}},
      {"a quote inside an item is text", "a\"b,c", {"a\"b", "c"}},
      {"an open quote takes the rest", "\"a,b", {"a,b"}},
      {"an open doubled quote too", R"("a"",b)", {"a\",b"}},
      {"blank between commas", "a, ,b", {"a", "", "b"}},
  };
  for (const auto& row : rows) {
    LCommaSeparatedListIteratorTemplate<char> it(row.text);
    std::vector<std::string> items;
    for (it.Next(); !it.IsAtEnd() && items.size() < 20; it.Next()) items.emplace_back(it.Item().Text());
    EXPECT_EQ(items, row.items) << row.name;
    EXPECT_STREQ(it.Item().Text(), "") << row.name;
  }
}

int Sign(int value) { return (value > 0) - (value < 0); }

TEST(CompareLogical, OrdersNamesWithNumbers) {
  struct {
    const char* a;
    const char* b;
    int sign;
  } rows[] = {
      {"", "", 0},
      {"", "a", -1},
      {"file2", "file10", -1},
      {"FILE2", "file2", 0},
      {"b", "A", 1},
      {"a", "ab", -1},
      {"9", "10", -1},
      {"a1b2", "a1b10", -1},
      {"a01b2", "a1b10", -1},  // Leading zeros count only at the end.
      {"a01b2", "a1b2", 0},
      {"7", "007", -1},
      {"x007", "x07", 1},
      {"7a", "007a", 0},
      {"1", "a", -1},
      {"a", "1", 1},
      {"1.5", "1.10", -1},
      {"日", "a", -1},  // Bytes above 127 count as negative.
      {"\xE6\x97\xA5", "\xE6\x97\xA6", -1},
      {"[", "a", 1},            // Between the cases, after folding to capitals.
      {"3000000000", "1", -1},  // Only 32 bits are kept, and they are negative here.
      {"4294967296", "0", 1},   // Equal in those bits; the longer run then counts.
      {"4294967297a", "1a", 0},
      {"99999999999999999999", "0", -1},  // Beyond a long the largest is kept: -1.
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Sign(LStringCompareLogical(row.a, row.b)), row.sign) << row.a << " and " << row.b;
    EXPECT_EQ(Sign(LStringCompareLogical(row.b, row.a)), -row.sign) << row.b << " and " << row.a;
  }
  EXPECT_EQ(LStringCompareLogical("file2", "file10"), -8) << "the difference of the numbers";
}

}  // namespace
