#include "support/parsing.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

using Parser = LStringParserTemplate<char>;

TEST(Parser, ReadsWordsLinesAndUpToAString) {
  constexpr auto kWord = +[](Parser& parser, char(&out)[kTextSize]) { parser.GetToWhiteSpaceAndSkip(out); };
  constexpr auto kLine = +[](Parser& parser, char(&out)[kTextSize]) { parser.GetToEndOfLineAndSkip(out); };
  constexpr auto kArrow = +[](Parser& parser, char(&out)[kTextSize]) { parser.GetToString("->", out); };
  const std::string much(1000, 'w');
  struct {
    void (*read)(Parser&, char (&)[kTextSize]);
    std::string text;
    std::string taken;
    const char* rest;
  } rows[] = {
      {kWord, "one \t\r\n two", "one", "two"},
      {kWord, much + " rest", much.substr(0, 259), "rest"},
      {kLine, "a b \t\n", "a b \t", ""},
      {kLine, "a\r\n\r\nb", "a", "\r\nb"},
      {kLine, "a\n\rb", "a", "b"},
      {kLine, "a\n\nb", "a", "\nb"},
      {kLine, "a\r\rb", "a", "\rb"},
      {kLine, much + "\nrest", much.substr(0, 259), "rest"},
      {kArrow, "a -> b", "a ", "-> b"},
      {kArrow, much + "->", much.substr(0, 259), "->"},
  };
  for (const auto& row : rows) {
    Parser parser(row.text.c_str());
    char out[kTextSize];
    row.read(parser, out);
    EXPECT_EQ(out, row.taken) << row.text;
    EXPECT_STREQ(parser.cursor, row.rest) << row.text;
  }
}

TEST(CommaList, GivesItsItems) {
  struct {
    const char* name;
    const char* text;
    std::vector<std::string> items;
  } rows[] = {
      {"empty", "", {}},
      {"white space around", "  a b \t, c ,d", {"  a b", "c", "d"}},
      {"an empty item between two commas", "a,,b", {"a", "", "b"}},
      {"a comma at the end closes its item", "a,", {"a"}},
      {"quoted with commas", "\" a, b\", \"c\",d", {" a, b", "c", "d"}},
      {"doubled quotes", R"("say ""yes"" now",b)", {"say \"yes\" now", "b"}},
      {"only quotes", R"("","""","""""")", {"", "\"", "\"\""}},
      {"what follows a quoted item is skipped", "\"a\"junk,b", {"a", "b"}},
      {"a quote inside an item is text", "a\"b,c", {"a\"b", "c"}},
      {"an open doubled quote takes the rest", R"("a"",b)", {"a\",b"}},
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
      {"file2", "file10", -1},
      {"FILE2", "file2", 0},
      {"a", "ab", -1},
      {"a01b2", "a1b10", -1},  // Leading zeros count only at the end.
      {"a01b2", "a1b2", 0},
      {"x007", "x07", 1},
      {"7a", "007a", 0},
      {"a", "1", 1},
      {"日", "a", -1},          // Bytes above 127 count as negative.
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
