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
      "a\x02"
      "b\tc  d e\r\n";
  const unsigned long length = strlen(line);
  unsigned long position = 0;
  std::vector<std::string> tokens;
  unsigned long size = 0;
  while (const char* token = Parser::GetNextToken(line, length, size, position, false)) {
    tokens.emplace_back(token, size);
  }
  // Other control bytes are skipped in front of a token but do not end one.
  EXPECT_EQ((std::vector<std::string>{"a\x02"
                                      "b",
                                      "c", "d", "e"}),
            tokens);

  position = 7;
  const char* rest = Parser::GetNextToken(line, length, size, position, true);
  ASSERT_NE(nullptr, rest);
  EXPECT_EQ("d e\r\n", std::string(rest, size));
  EXPECT_EQ(length, position);
  EXPECT_EQ(nullptr, Parser::GetNextToken(line, length, size, position, true));
}

TEST(ListFields, Numbers) {
  EXPECT_EQ(12, Parser::strntoi("12ab", 4));
  EXPECT_EQ(123, Parser::strntoi("12345", 3)) << "no more than the given characters";
  EXPECT_EQ(-5, Parser::strntoi(" -5", 3));
  EXPECT_EQ(0, Parser::strntoi("ab", 2));
  EXPECT_EQ(0, Parser::strntoi("12", 0));
  EXPECT_EQ(5000000000ULL, Parser::strntoi64("5000000000x", 11));
  EXPECT_EQ(0U, Parser::strntoi64("x5", 2));
  EXPECT_EQ(1U, Parser::strntoi64((std::string(258, '0') + "1999").c_str(), 262)) << "259 characters are read";
}

TEST(ListFields, Sizes) {
  const struct {
    const char* text;
    long long value;  ///< -1: refused.
  } rows[] = {
      {"0", 0},
      {"1234", 1234},
      {"5000000000", 5000000000},
      {"", -1},
      {"K", 0},
      {"t", 0},
      {"1K", 1024},
      {"1k", 1024},
      {"2M", 2097152},
      {"3g", 3221225472},
      {"1T", 1099511627776},
      {"1t", 1099511627776},
      {"2.5K", 256},
      {"1.5M", 157286},
      {"1.25K", 128},
      {"1.K", 102},
      {"0.5G", 53687091},
      {".5K", -1},
      {".K", -1},
      {"1.2.3K", -1},
      {"1B", -1},
      {"5.", -1},
      {"1.5", -1},
      {"1,5K", -1},
      {"-1K", -1},
      {"1KK", -1},
      {"Jan", -1},
      {"10:30", -1},
  };
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
      {"1/5/2021", "2021-1-5"},
      {"12-31-99", "1999-12-31"},
      {"12-31-49", "2049-12-31"},
      {"12-31-50", "1950-12-31"},
      {"12-31-120", "2020-12-31"},
      {"12-31-999", "2899-12-31"},
      {"12-31-1000", "1000-12-31"},
      {"12-31-", "2000-12-31"},
      {"12-31-20-9", "2020-12-31"},
      {"12-32-20", nullptr},
      {"12-0-20", nullptr},
      {"12-31", nullptr},
      {"12", nullptr},
      {"12-", nullptr},
      // Day first: a point behind it, or a number that can be no month
      {"31.12.20", "2020-12-31"},
      {"01.12.20", "2020-12-1"},
      {"13-12-20", "2020-12-13"},
      {"31/1/1998", "1998-1-31"},
      {"32.12.20", nullptr},
      {"31.13.20", nullptr},
      {"31-13-20", nullptr},
      {"99-12-20", "2020-12-99"},
      // Year first
      {"2021-12-31", "2021-12-31"},
      {"2021.12.31", "2021-12-31"},
      {"1900/1/1", "1900-1-1"},
      {"1899-12-31", nullptr},
      {"2021-13-31", nullptr},
      {"2021-0-31", nullptr},
      {"2021-12-32", nullptr},
      {"2021-12-", nullptr},
      // A month name first
      {"DEC-31-99", "1999-12-31"},
      {"dez/31/99", "1999-12-31"},
      {"Smarch-13-99", nullptr},
      {"0-1-20", nullptr},
      {"00.1.20", nullptr},
      {"123-1-20", nullptr},
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
  } rows[] = {
      {"03:04", 3, 4},
      {"3:4", 3, 4},
      {"23:59", 23, 59},
      {"24:00", 24, 0},
      {"25:00", -1, 0},
      {"10:60", -1, 0},
      {"10:", 10, 0},
      {":30", -1, 0},
      {"1030", -1, 0},
      {"10", -1, 0},
      {"", -1, 0},
      {"x10:30", -1, 0},
      {"1x:30", -1, 0},
      {"03:04PM", 15, 4},
      {"11:59P", 23, 59},
      {"12:30PM", 12, 30},
      {"13:30PM", 13, 30},
      {"12:30AM", 0, 30},
      {"03:04AM", 3, 4},
      {"12:30pm", 0, 30},
      {"03:04pm", 3, 4},
      {"12:30:15", 0, 30},
      {"99999999999:00", -1, 0},
  };
  for (const auto& row : rows) {
    LastModified date;
    ASSERT_EQ(row.hour >= 0, Parser::ParseTime(row.text, strlen(row.text), date)) << row.text;
    EXPECT_EQ(row.hour >= 0, date.timeKnown) << row.text;
    if (row.hour < 0) continue;
    EXPECT_EQ(row.hour, date.hour) << row.text;
    EXPECT_EQ(row.minute, date.minute) << row.text;
  }
}

/// Turns UTF-8 with characters below U+0800 into a single-byte encoding, `shift` subtracted from each of
/// them.
std::string ToSingleByte(const std::string& text, unsigned shift) {
  std::string bytes;
  for (size_t i = 0; i < text.size(); ++i) {
    const auto lead = static_cast<unsigned char>(text[i]);
    if (lead < 0x80) {
      bytes += text[i];
      continue;
    }
    const auto tail = static_cast<unsigned char>(text[++i]);
    bytes += static_cast<char>(((lead & 0x1FU) << 6 | (tail & 0x3FU)) - shift);
  }
  return bytes;
}

/// The table as people write it: "key month" pairs in one text.
class MonthList {
 public:
  void Add(const std::string& pairs) {
    size_t start = 0;
    while (start < pairs.size()) {
      const size_t blank = pairs.find(' ', start);
      size_t end = pairs.find(' ', blank + 1);
      if (end == std::string::npos) end = pairs.size();
      rows.emplace_back(pairs.substr(start, blank - start), std::stoi(pairs.substr(blank + 1, end - blank - 1)));
      start = end + 1;
    }
  }
  void AddNumbersWith(const char* mark) {
    for (int month = 1; month <= 12; ++month) rows.emplace_back(std::to_string(month) + mark, month);
  }
  std::vector<std::pair<std::string, int>> rows;
};

TEST(ListFields, MonthTable) {
  constexpr unsigned kLatin1 = 0;
  constexpr unsigned kWindows1251 = 0x350;
  MonthList list;
  list.Add("jan 1 feb 2 mar 3 apr 4 may 5 jun 6 june 6 jul 7 july 7 aug 8 sep 9 sept 9 oct 10 nov 11 dec 12");
  for (int month = 1; month <= 9; ++month) {
    list.rows.emplace_back("0" + std::to_string(month), month);
    list.rows.emplace_back(std::to_string(month), month);
  }
  list.Add("10 10 11 11 12 12");
  list.Add(ToSingleByte("mrz 3 m\u00E4r 3 m\u00E4rz 3 mai 5 juni 6 juli 7 okt 10 dez 12", kLatin1));
  list.Add(
      ToSingleByte("j\u00E4n 1 janv 1 f\u00E9b 2 f\u00E9v 2 fev 2 f\u00E9vr 2 fevr 2 mars 3 mrs 3 avr 4 juin 6 "
                   "juil 7 jui 7 ao\u00FB 8 ao\u00FBt 8 aout 8 d\u00E9c 12 dec 12",
                   kLatin1));
  list.Add("gen 1 mag 5 giu 6 lug 7 ago 8 set 9 ott 10 dic 12");
  list.Add("ene 1 fbro 2 mzo 3 ab 4 abr 4 agto 8 sbre 9 obre 9 nbre 9 dbre 9");
  list.Add("sty 1 lut 2 kwi 4 maj 5 cze 6 lip 7 sie 8 wrz 9 pa 10 lis 11 gru 12");
  list.Add(ToSingleByte("янв 1 фев 2 мар 3 апр 4 май 5 июн 6 июл 7 авг 8 сен 9 окт 10 ноя 11 дек 12", kWindows1251));
  list.Add("mrt 3 mei 5 out 10");
  list.AddNumbersWith("\x8C\x8E");
  list.AddNumbersWith("\xC6\xD4");
  list.AddNumbersWith("\xBF\xF9");
  list.Add(
      ToSingleByte("tammi 1 helmi 2 maalis 3 huhti 4 touko 5 kes\u00E4 6 hein\u00E4 7 elo 8 syys 9 loka 10 "
                   "marras 11 joulu 12",
                   kLatin1));
  list.Add("jan1 1 feb2 2 mar3 3 apr4 4 may5 5 jun6 6 jul7 7 aug8 8 sep9 9 sept9 9 oct0 10 nov1 11 dec2 12");
  list.Add("avg 8");
  ASSERT_EQ(168U, list.rows.size());

  const Parser::Month* row = Parser::mMonths;
  for (const auto& [key, month] : list.rows) {
    ASSERT_NE(0, row->number) << "the table ends before " << key;
    EXPECT_EQ(key, row->key);
    EXPECT_EQ(month, row->number) << key;
    EXPECT_EQ(month, Parser::GetMonth(key.c_str())) << key;
    ++row;
  }
  EXPECT_EQ(0, row->number) << "rows behind the last";
}

TEST(ListFields, MonthsAreFoundByteForByte) {
  for (const char* key : {"", "Jan", "ja", "janu", "13", "001", "0", "f\xC3\xA9v", "1\x8C"}) {
    EXPECT_EQ(0, Parser::GetMonth(key)) << key;
  }
  EXPECT_EQ(9, Parser::GetMonthOfToken("SEPTember", 4));
  EXPECT_EQ(3, Parser::GetMonthOfToken("M\xE4RZ", 4));
  EXPECT_EQ(0, Parser::GetMonthOfToken("M\xC4RZ", 4)) << "only ASCII letters are lower-cased";
}

}  // namespace
