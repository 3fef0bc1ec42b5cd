#include <gtest/gtest.h>
#include <string>

#include "ftp/dir_iterator.h"
#include "ftp/facts.h"
#include "support/environment.h"

namespace {

using Item = LFileTransferProtocol::DirIterator::Item;

/// A zone without summer time, so that an offset of now and of then are the same.
class ListingRules : public testing::Test {
 private:
  const TimeZone zone{"Asia/Tokyo"};
};

TEST_F(ListingRules, ReadFactsLines) {
  const struct {
    const char* line;
    const char* name;
    bool typeKnown, directory, link;
    int64_t size;  ///< -1: not known.
    bool modified;
    const char* attributes;
  } rows[] = {
      {"type=dir;modify=20200102030405; My Folder", "My Folder", true, true, false, -1, true, ""},
      {"Type=File;Size=12;Modify=20200102030405.123;UNIX.mode=0644; A b.TXT", "A b.TXT", true, false, false, 12, true,
       "0644"},
      {"type=OS.unix=slink:/target;size=3; link", "link", true, true, true, 3, false, ""},
      {"type=OS.unix=socket; sock", "sock", true, true, false, -1, false, ""},
      {"type=OS.unix; odd", "odd", true, true, false, -1, false, ""},
      {"type=cdir; .", ".", true, true, false, -1, false, ""},
      {"type=pdir; ..", "..", true, true, false, -1, false, ""},
      {"size=18446744073709551615; huge", "huge", false, false, false, INT64_MAX, false, ""},
      {"type=file;   blanks in front are dropped", "blanks in front are dropped", true, false, false, -1, false, ""},
      {"type=file;noblank", "type=file;noblank", true, false, false, -1, false, ""},
      {"x", "x", false, false, false, -1, false, ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.line);
    Item item;
    ASSERT_TRUE(FtpItemFromFactsLine(row.line, "*", item));
    EXPECT_STREQ(item.name, row.name);
    EXPECT_EQ(item.typeKnown, row.typeKnown);
    EXPECT_EQ(item.isDirectory, row.directory);
    EXPECT_EQ(item.isSymbolicLink, row.link);
    EXPECT_EQ(item.sizeKnown, row.size != -1);
    if (row.size != -1) {
      EXPECT_EQ(item.size, static_cast<uint64_t>(row.size));
    }
    EXPECT_EQ(item.modifiedKnown, row.modified);
    if (row.modified) {
      EXPECT_EQ(item.modified, 1577934245) << "2020-01-02 03:04:05 UTC";
    }
    EXPECT_STREQ(item.attributes, row.attributes);
    EXPECT_TRUE(item.attributesKnown && item.ownerKnown && item.groupKnown);
  }
}

/// A CWD without a name, as a walk would send it, means the start directory to some servers.
TEST_F(ListingRules, NothingWithoutANameIsAnEntry) {
  Item item;
  EXPECT_FALSE(FtpItemFromFactsLine("type=dir; ", "*", item));
  EXPECT_FALSE(FtpItemFromListingLine("01-02-20  03:04AM       <DIR>           ", "*", item));
}

TEST_F(ListingRules, ReadListingLines) {
  Item item;
  ASSERT_TRUE(FtpItemFromListingLine("-rw-r--r-- 1 anna staff 4096 Jan 15 2019 a b.txt", "*", item));
  EXPECT_STREQ(item.name, "a b.txt");
  EXPECT_STREQ(item.attributes, "-rw-r--r--");
  EXPECT_EQ(item.size, 4096u);
  EXPECT_EQ(item.modified, 1547478000) << "2019-01-15 00:00 by the clock of this machine";
  ASSERT_TRUE(FtpItemFromListingLine("lrwxrwxrwx 1 anna staff 1 Jan 15 2019 x -> y", "*", item));
  EXPECT_STREQ(item.name, "x -> y");
  EXPECT_TRUE(item.isSymbolicLink);
  EXPECT_FALSE(FtpItemFromListingLine("total 8", "*", item));
}

TEST_F(ListingRules, MatchWithoutRegardToCase) {
  const struct {
    const char* pattern;
    const char* name;
    bool matches;
  } rows[] = {{"*.TXT", "a.txt", true}, {"a?", "AB", true}, {"?.txt", "ab.txt", false}};
  Item item;
  for (const auto& row : rows) {
    EXPECT_EQ(FtpNameMatches(row.pattern, row.name), row.matches) << row.pattern;
    const std::string facts = std::string("type=file; ") + row.name;
    EXPECT_EQ(FtpItemFromFactsLine(facts.c_str(), row.pattern, item), row.matches) << row.pattern;
    const std::string line = std::string("-rw-r--r-- 1 a b 1 Jan 15 2019 ") + row.name;
    EXPECT_EQ(FtpItemFromListingLine(line.c_str(), row.pattern, item), row.matches) << row.pattern;
  }
}

TEST_F(ListingRules, TakeStampsAsTheyCome) {
  const struct {
    const char* stamp;
    int64_t time;
  } rows[] = {
      {"20201231235959", 1609459199},
      {"20201231235959.999", 1609459199},
      {"202012312359", 1609459140},
      {"99", 912384000},  // Month 0 and day 0 carry back.
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.stamp);
    int64_t time = 1;
    FtpTimeFromStamp(row.stamp, time);
    EXPECT_EQ(time, row.time);
  }
}

TEST_F(ListingRules, FindFacts) {
  char value[kTextSize] = "untouched";
  EXPECT_TRUE(FtpFactValue("a=1;size=12;b=2", "size=", value));
  EXPECT_STREQ(value, "12");
  EXPECT_FALSE(FtpFactValue("Size=12", "size=", value));
  EXPECT_EQ(FtpNumber("12abc"), 12);
  EXPECT_EQ(FtpNumber("-1"), -1);
  EXPECT_EQ(FtpNumber("x"), 0);
}

}  // namespace
