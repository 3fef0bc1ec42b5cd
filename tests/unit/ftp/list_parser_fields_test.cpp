// The fields of listing lines: tokens, numbers, sizes, short dates, times and the month table.
#include <cstdio>
#include <cstring>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "ftp/list_parser.h"

namespace {

using Parser = LFTPListInfoParser;
using LastModified = Parser::FTPNativeFileInfo::LastModified;

TEST(ListFields, Tokens) {
  const char line[] =
      " \x01"
      "x\x02y\tc  d e\r\n";
  const unsigned long length = strlen(line);
  unsigned long position = 0;
  std::vector<std::string> tokens;
  unsigned long size = 0;
  while (const char* token = Parser::GetNextToken(line, length, size, position, false)) {
    tokens.emplace_back(token, size);
  }
  // Other control bytes are skipped in front of a token but do not end one.
  EXPECT_EQ((std::vector<std::string>{"x\x02y", "c", "d", "e"}), tokens);

  position = 7;
  const char* rest = Parser::GetNextToken(line, length, size, position, true);
  ASSERT_NE(nullptr, rest);
  EXPECT_EQ("d e\r\n", std::string(rest, size));
  EXPECT_EQ(length, position);
  EXPECT_EQ(nullptr, Parser::GetNextToken(line, length, size, position, true));
}

TEST(ListFields, Numbers) {
  EXPECT_EQ(123, Parser::strntoi("12345", 3)) << "no more than the given characters";
  EXPECT_EQ(-5, Parser::strntoi(" -5x", 4));
  EXPECT_EQ(0, Parser::strntoi("12", 0));
  EXPECT_EQ(5000000000ULL, Parser::strntoi64("5000000000x", 11));
  EXPECT_EQ(0U, Parser::strntoi64("x5", 2));
  EXPECT_EQ(1U, Parser::strntoi64((std::string(258, '0') + "1999").c_str(), 262)) << "259 characters are read";
}

TEST(ListFields, Sizes) {
  const struct {
    const char* text;
    long long value;  ///< -1: refused.
  } rows[] = {{"0", 0},
              {"5000000000", 5000000000},
              {"", -1},
              {"K", 0},
              {"1k", 1024},
              {"2M", 2097152},
              {"3g", 3221225472},
              {"2.5K", 256},
              {"1.25K", 128},
              {"1.K", 102},
              {"1T", 1099511627776},
              {".5K", -1},
              {"1.2.3K", -1},
              {"1B", -1},
              {"1.5", -1},
              {"1,5K", -1},
              {"-1K", -1},
              {"1KK", -1},
              {"Jan", -1}};
  for (const auto& row : rows) {
    unsigned long long value = 99;
    EXPECT_EQ(row.value >= 0, Parser::ParseSize(row.text, strlen(row.text), value)) << row.text;
    EXPECT_EQ(row.value >= 0 ? static_cast<unsigned long long>(row.value) : 99U, value) << row.text;
  }
  unsigned long long value = 0;
  EXPECT_TRUE(Parser::ParseSize("12\0zz", 5, value)) << "a zero byte ends the digits";
  EXPECT_EQ(12U, value);
}

TEST(ListFields, ShortDates) {
  const struct {
    const char* text;
    const char* expected;  ///< Null: refused.
  } rows[] = {
      // Month first
      {"01-15-21", "2021-1-15"},
      {"12-31-99", "1999-12-31"},
      {"12-31-49", "2049-12-31"},
      {"12-31-50", "1950-12-31"},
      {"12-31-120", "2020-12-31"},
      {"12-31-1000", "1000-12-31"},
      {"12-31-", "2000-12-31"},
      {"12-32-20", nullptr},
      {"12-0-20", nullptr},
      {"12-31", nullptr},
      // Day first: a point behind it, or a number that can be no month
      {"31.12.20", "2020-12-31"},
      {"13-12-20", "2020-12-13"},
      {"31/1/1998", "1998-1-31"},
      {"32.12.20", nullptr},
      {"99-12-20", "2020-12-99"},
      // Year first
      {"2021-12-31", "2021-12-31"},
      {"1900/1/1", "1900-1-1"},
      {"1899-12-31", nullptr},
      {"2021-13-31", nullptr},
      {"2021-12-32", nullptr},
      {"2021-12-", nullptr},
      // A month name first
      {"dez/31/99", "1999-12-31"},
      {"Smarch-13-99", nullptr},
      {"12345-1-20", nullptr},
      {"-1-20", nullptr},
      {"", nullptr},
  };
  for (const auto& row : rows) {
    LastModified date;
    ASSERT_EQ(row.expected != nullptr, Parser::ParseShortDate(row.text, strlen(row.text), date)) << row.text;
    EXPECT_EQ(row.expected != nullptr, date.dateKnown) << row.text;
    if (!row.expected) continue;
    char read[64];
    snprintf(read, sizeof read, "%d-%d-%d", date.year, date.month, date.day);
    EXPECT_STREQ(row.expected, read) << row.text;
  }
}

TEST(ListFields, Times) {
  const struct {
    const char* text;
    int hour, minute;  ///< An hour of -1: refused.
  } rows[] = {{"03:04", 3, 4},          {"24:00", 24, 0},   {"25:00", -1, 0},   {"10:60", -1, 0},
              {"10:", 10, 0},           {":30", -1, 0},     {"1030", -1, 0},    {"", -1, 0},
              {"x10:30", -1, 0},        {"03:04PM", 15, 4}, {"11:59P", 23, 59}, {"12:30PM", 12, 30},
              {"13:30PM", 13, 30},      {"12:30AM", 0, 30}, {"12:30pm", 0, 30}, {"12:30:15", 0, 30},
              {"99999999999:00", -1, 0}};
  for (const auto& row : rows) {
    LastModified date;
    ASSERT_EQ(row.hour >= 0, Parser::ParseTime(row.text, strlen(row.text), date)) << row.text;
    EXPECT_EQ(row.hour >= 0, date.timeKnown) << row.text;
    if (row.hour < 0) continue;
    EXPECT_EQ(row.hour, date.hour) << row.text;
    EXPECT_EQ(row.minute, date.minute) << row.text;
  }
}

TEST(ListFields, MonthsAreFoundByteForByte) {
  const struct {
    const char* key;
    int month;
  } rows[] = {
      {"jan", 1},          {"sept", 9},      {"09", 9},        {"9", 9}, {"m\xE4rz", 3},    {"dez", 12},  // German
      {"f\xE9vr", 2},      {"ao\xFB", 8},                                                                 // French
      {"giu", 6},          {"ene", 1},   // Italian, Spanish
      {"dbre", 9},         {"pa", 10},   // The first is Spanish for December; the second is cut Polish.
      {"\xEC\xE0\xE9", 5},               // Russian, in Windows-1251
      {"mei", 5},          {"out", 10},  // Dutch, Portuguese
      {"12\x8C\x8E", 12},  {"1\xC6\xD4", 1}, {"7\xBF\xF9", 7},  // Shift JIS, GBK, EUC-KR
      {"kes\xE4", 6},      {"joulu", 12},                       // Finnish
      {"oct0", 10},        {"jan1", 1},      {"avg", 8},       {"", 0},  {"Jan", 0},        {"ja", 0},
      {"janu", 0},         {"13", 0},        {"001", 0},       {"0", 0}, {"f\xC3\xA9v", 0}, {"1\x8C", 0},
  };
  for (const auto& row : rows) EXPECT_EQ(row.month, Parser::GetMonth(row.key)) << row.key;
  EXPECT_EQ(9, Parser::GetMonthOfToken("SEPTember", 4));
  EXPECT_EQ(3, Parser::GetMonthOfToken("M\xE4RZ", 4));
  EXPECT_EQ(0, Parser::GetMonthOfToken("M\xC4RZ", 4)) << "only ASCII letters are lower-cased";
}

}  // namespace
