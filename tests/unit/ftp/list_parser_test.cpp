// Whole lines of listings: what each reading accepts, what it makes of them, and what falls away.
#include "ftp/list_parser.h"

#include <cstdio>
#include <cstring>
#include <gtest/gtest.h>
#include <string>

namespace {

using Parser = LFTPListInfoParser;
using Info = Parser::FTPNativeFileInfo;

constexpr Parser::LocalDate kToday = {2021, 6, 15};

/// kind|attributes|owner|group|size|date, with the time if it is known|name
std::string Describe(const Info& info) {
  const auto& date = info.lastModified;
  char when[80];
  snprintf(when, sizeof when, "%d-%d-%d%s", date.year, date.month, date.day, date.dateKnown ? "" : "?");
  char clock[40] = "";
  if (date.timeKnown) snprintf(clock, sizeof clock, " %02d:%02d", date.hour, date.minute);
  const char* kind = info.isDirectory ? "dir" : info.isSymbolicLink ? "link" : "file";
  return std::string(kind) + "|" + info.attributes + "|" + info.owner + "|" + info.group + "|" +
         std::to_string(info.size) + "|" + when + clock + "|" + info.name;
}

struct Row {
  const char* line;
  const char* expected;  ///< As Describe tells it.
};

std::string ReadStrict(const char* line) {
  Info info;
  return Parser::ParseAsUnixStrict(line, info, kToday) ? Describe(info) : "refused";
}

std::string ReadTolerant(const char* line) {
  Info info;
  return Parser::ParseAsUnix(line, strlen(line), info, kToday) ? Describe(info) : "refused";
}

std::string ReadDos(const char* line) {
  Info info;
  return Parser::ParseAsDos(line, strlen(line), info) ? Describe(info) : "refused";
}

std::string ReadAny(const char* line) {
  Info info;
  memset(info.name, 'x', sizeof info.name - 1);  // What is left of an earlier line must not shine through.
  info.isDirectory = true;
  const bool read = Parser::GetFileInfo(line, info, kToday);
  EXPECT_STREQ("", info.linkTarget) << line;
  return read ? Describe(info) : "refused";
}

template <size_t N>
void Check(std::string (*read)(const char*), const Row (&rows)[N]) {
  for (const Row& row : rows) EXPECT_EQ(row.expected, read(row.line)) << row.line;
}

TEST(ListParser, GoodLinesOfServers) {
  Check(ReadAny,
        {
            // vsftpd, ProFTPD, Pure-FTPd
            {"drwxr-xr-x    2 ftp      ftp          4096 Jan 15 10:30 pub",
             "dir|drwxr-xr-x|ftp|ftp|4096|2021-1-15 10:30|pub"},
            {"-rw-r--r--   1 1000     1000      5242880 Dec 31 23:59 \xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E.txt",
             "file|-rw-r--r--|1000|1000|5242880|2020-12-31 23:59|\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E.txt"},
            {"-rw-r--r--   1 owner    group           0 Feb 29  2020 a b.txt",
             "file|-rw-r--r--|owner|group|0|2020-2-29|a b.txt"},
            {"lrwxrwxrwx   1 root     root            1 Mar  3 08:05 x -> y",
             "link|lrwxrwxrwx|root|root|1|2021-3-3 08:05|x -> y"},
            // Solaris, with an access control list
            {"-rw-r--r--+  1 user     staff         512 Sep 15  2019 acl",
             "file|-rw-r--r--+|user|staff|512|2019-9-15|acl"},
            // A device file has two numbers where the size stands
            {"brw-r-----   1 root     disk       8,   1 Apr  1 12:00 sda1",
             "file|brw-r-----||root disk 8,|1|2021-4-1 12:00|sda1"},
            // Microsoft IIS with Unix directory style
            {"-rwxrwxrwx   1 owner    group          1024 Jun 14  9:05 iis.txt",
             "file|-rwxrwxrwx||owner group|1024|2021-6-14 09:05|iis.txt"},
            // Microsoft IIS with DOS directory style
            {"01-15-21  03:04PM       <DIR>          sub", "dir||||0|2021-1-15 15:04|sub"},
            {"12-25-99  12:30AM                1,234 x", "file||||1234|1999-12-25 00:30|x"},
            // NetPresenz for the Mac
            {"drwxrwxrwx               folder        2 May 10  1996 network", "dir|drwxrwxrwx||2|2|1996-5-10|network"},
            {"-------r--         326  1391972  1392298 Nov 22  1995 MegaPhone.sit",
             "file|-------r--|1391972|1392298|1392298|1995-11-22|MegaPhone.sit"},
            // NetWare: a blank behind the type letter
            {"d [R----F--] supervisor            512       Jan 16 18:53    login",
             "dir|d [R----F-||supervisor|512|2021-1-16 18:53|login"},
            {"- [R----F--] rhesus             214059       Oct 20 15:27    cx.exe",
             "file|- [R----F-||rhesus|214059|2020-10-20 15:27|cx.exe"},
            // Hellsoft for NetWare
            {"-[R----F-]  1 supervis       214059       Oct 20 15:27    cx.exe",
             "file|-[R----F-]||supervis|214059|2020-10-20 15:27|cx.exe"},
            // Some home routers leave the group out
            {"-rw-r--r--   1 root         1234 May 20 10:15 router.cfg",
             "file|-rw-r--r--||root|1234|2021-5-20 10:15|router.cfg"},
            // WS_FTP and others with a domain, so with a blank, in the owner
            {"-rw-r--r--   1 domain users  group        77 Mar 12 01:02 file",
             "file|-rw-r--r--||domain users group|77|2021-3-12 01:02|file"},
            // Japanese BSD servers: the month character in EUC-JP, Shift JIS, UTF-8
            {"-rw-r--r--  1 user group 2048 7\xB7\xEE 15 10:30 euc",
             "file|-rw-r--r--||user group|2048|2020-7-15 10:30|euc"},
            {"-rw-r--r--  1 user group 2048 2\x8C\x8E 15 10:30 sjis",
             "file|-rw-r--r--|user|group|2048|2021-2-15 10:30|sjis"},
            {"-rw-r--r--  1 user group 2048 12\xE6\x9C\x88 15\xE6\x97\xA5 10:30 utf8",
             "file|-rw-r--r--||user group|2048|2020-12-15 10:30|utf8"},
            {"-rw-r--r--  1 user group 2048 3\xE6\x9C\x88 5\xE6\x97\xA5 2010\xE5\xB9\xB4 utf8",
             "file|-rw-r--r--||user group|2048|2010-3-5|utf8"},
            {"-rw-r--r--  1 user group 2048 2010\xE5\xB9\xB4 3\xE6\x9C\x88 5\xE6\x97\xA5 utf8",
             "file|-rw-r--r--||user group|2048|2010-3-5|utf8"},
            // Serv-U in German, wu-ftpd in French, in ISO 8859-1; ProFTPD in Russian, in Windows-1251
            {"-rw-r--r--  1 user group 9 M\xE4rz 7 2003 a", "file|-rw-r--r--|user|group|9|2003-3-7|a"},
            {"-rw-r--r--  1 user group 9 ao\xFBt 7 2003 a", "file|-rw-r--r--|user|group|9|2003-8-7|a"},
            {"-rw-r--r--  1 user group 9 \xF4\xE5\xE2 7 2003 a", "file|-rw-r--r--|user|group|9|2003-2-7|a"},
        });
}

TEST(ListParser, IgnoredLines) {
  for (const char* line : {"total 8", "total 0", "", " ", "\r\n", "-", "d", "./sub:", "sub:", "Directory of C:\\",
                           "ls: cannot open directory '.': Permission denied", "  3 File(s)          1,234 bytes",
                           "226 Transfer complete.", "type=file;size=3;modify=20210101000000; facts.txt"}) {
    EXPECT_EQ("refused", ReadAny(line)) << line;
  }
  Info info;
  snprintf(info.name, sizeof info.name, "old");
  info.size = 7;
  EXPECT_FALSE(Parser::GetFileInfo("-rw-r--r-- 1 user group 12 Jan 99 10:30 x", info, kToday));
  EXPECT_EQ("file||||0|0-0-0?|", Describe(info)) << "a refused line leaves an empty record";
}

TEST(ListParser, BadLines) {
  for (const char* line : {
           "xrw-r--r-- 1 user group 12 Jan 15 10:30 x",   // no such type letter
           "-rw-r--r-- 1 user group 12 Jan 15 10:30",     // no name
           "-rw-r--r-- 1 user group 12 Jan 32 10:30 x",   // no such day
           "-rw-r--r-- 1 user group 12 Foo 15 10:30 x",   // no such month
           "-rw-r--r-- 1 user group big Jan 15 10:30 x",  // no size
           "-rw-r--r-- 1 user group",                     // cut off
           "01-15-21 03:04PM <DIR>",                      // DOS, no name
           "01-15-21 25:04 <DIR> x",                      // DOS, no such hour
           "20210115 10:30 12 x",                         // DOS, a date without separators
       }) {
    EXPECT_EQ("refused", ReadAny(line)) << line;
  }
}

TEST(ListParser, StrictColumns) {
  Check(ReadStrict,
        {
            {"-rw-r--r-- 1 u g 5 Jun 15 00:00 today", "file|-rw-r--r--|u|g|5|2021-6-15 00:00|today"},
            {"\t-rw-r--r--\t1\tu\tg\t5\tJUNE\t1\t23:59\tname", "file|-rw-r--r--|u|g|5|2021-6-1 23:59|name"},
            // One blank ends the time; the others are the name's own
            {"-rw-r--r-- 1 u g 5 Jan 1 10:30   two before ", "file|-rw-r--r--|u|g|5|2021-1-1 10:30|  two before "},
            {"-rw-r--r-- 1 u g 5 Jan 1  1999  x", "file|-rw-r--r--|u|g|5|1999-1-1| x"},
            {"-rw-r--r-- 1 u g 5 Jan 1 10:30 marked*", "file|-rw-r--r--|u|g|5|2021-1-1 10:30|marked*"},
            {"drwxr-xr-x 1 u g 5 Jan 1 10:30 marked/", "dir|drwxr-xr-x|u|g|5|2021-1-1 10:30|marked/"},
            {"s 1 u g 18446744073709551615 Jan 1 10:3 x", "file|s|u|g|18446744073709551615|2021-1-1 10:03|x"},
            // Only the place of the colon is looked at
            {"- 1 u g 5 Jan 1 ab:cd x", "file|-|u|g|5|2021-1-1 00:00|x"},
            {"- 1 u g 5 Jan 1 10:30:59 x", "file|-|u|g|5|2021-1-1 10:30|x"},
            {"- 1 u g 5 Jan 1 0000 x", "file|-|u|g|5|0-1-1|x"},
            {"x 1 u g 5 Jan 1 10:30 x", "refused"},
            {"- 1a u g 5 Jan 1 10:30 x", "refused"},
            {"- 1 u g 5K Jan 1 10:30 x", "refused"},
            {"- 1 u 1234 Jan 15 10:30 x", "refused"},  // a column is missing
            {"- 1 u g 5 01 15 10:30 x", "refused"},    // a month in digits is left to the tolerant reading
            {"- 1 u g 5 Jan 0 10:30 x", "refused"},
            {"- 1 u g 5 Jan 32 10:30 x", "refused"},
            {"- 1 u g 5 Jan 5, 10:30 x", "refused"},
            {"- 1 u g 5 Jan 1 1:30 x", "refused"},
            {"- 1 u g 5 Jan 1 19999 x", "refused"},
            {"- 1 u g 5 Jan 1 10:30", "refused"},
            {"- 1 u g 5 Jan 1 10:30 ", "refused"},
        });
}

TEST(ListParser, LongNamesAreCut) {
  const std::string name(300, 'n');
  EXPECT_EQ("file|-|u|g|5|2021-1-1 10:30|" + name.substr(0, 259), ReadAny(("- 1 u g 5 Jan 1 10:30 " + name).c_str()));
  EXPECT_EQ("file|-rw||u|5|2021-1-1 10:30|" + name.substr(0, 259), ReadAny(("-rw 1 u 5 Jan 1 10:30 " + name).c_str()));
  EXPECT_EQ("file||||5|2021-1-1 10:30|" + name.substr(0, 259), ReadAny(("01-01-21 10:30 5 " + name).c_str()));
}

TEST(ListParser, TolerantLeadingColumns) {
  Check(ReadTolerant, {
                          {"-rw 1 u 5 Jan 1 10:30 x", "file|-rw||u|5|2021-1-1 10:30|x"},
                          {"-rw 1 77 g 5 Jan 1 10:30 x", "file|-rw|77|g|5|2021-1-1 10:30|x"},  // a numeric owner
                          // The rights behind a single type letter lose two characters, the blank counted
                          {"d rwx g 512 Jan 1 10:30 x", "dir|d r||g|512|2021-1-1 10:30|x"},
                          {"d rw g 512 Jan 1 10:30 x", "dir|d ||g|512|2021-1-1 10:30|x"},
                          {"l r g 512 Jan 1 10:30 x", "link|l||g|512|2021-1-1 10:30|x"},
                          {"d", "refused"},
                          // No link count: the token is a first part of the group, and no owner is looked for
                          {"-rw a 77 5000 Jan 1 10:30 x", "file|-rw||a 77|5000|2021-1-1 10:30|x"},
                          // The protocol behind the rights: a numeric owner may follow
                          {"-rw-FTP a 77 g 5000 Jan 1 10:30 x", "file|-rw-FTP|77|a g|5000|2021-1-1 10:30|x"},
                          {"-FTS a 77 g 5000 Jan 1 10:30 x", "file|-FTS|77|a g|5000|2021-1-1 10:30|x"},
                          {"-TCP a 77 g 5000 Jan 1 10:30 x", "file|-TCP|77|a g|5000|2021-1-1 10:30|x"},
                          {"-SSH a 77 g 5000 Jan 1 10:30 x", "file|-SSH|77|a g|5000|2021-1-1 10:30|x"},
                          {"-ftp a 77 g 5000 Jan 1 10:30 x", "file|-ftp||a 77 g|5000|2021-1-1 10:30|x"},
                          // "folder" counts only for a directory
                          {"drwx folder 12 May 10 1996 x", "dir|drwx||12|12|1996-5-10|x"},
                          {"drwx folder g 1234 May 10 1996 x", "dir|drwx||folder g|1234|1996-5-10|x"},
                          {"-rwx folder 12 May 10 1996 x", "file|-rwx||folder 12|0|1996-5-10|x"},
                      });
}

TEST(ListParser, TolerantSize) {
  Check(ReadTolerant,
        {
            // A short month behind the group: the group is the size, read from the start of the text
            {"-rw 1 1234 5678 Jan 1 10:30 x", "file|-rw|1234|5678|5678|2021-1-1 10:30|x"},
            {"-rw 1 12ab Jan 1 10:30 x", "file|-rw||12ab|12|2021-1-1 10:30|x"},
            {"-rw a 5678 Jan 1 10:30 x", "file|-rw||a 5678|0|2021-1-1 10:30|x"},
            // Three digits are no month
            {"-rw 1 u 123 June 1 10:30 x", "file|-rw||u|123|2021-6-1 10:30|x"},
            {"-rw 1 u g 1.5M Jan 1 10:30 x", "file|-rw||u g|157286|2021-1-1 10:30|x"},
            // A size of three characters with a unit is taken for the month, and all behind it shifts
            {"-rw 1 u 15K Jan 1 10:30 x", "file|-rw||u|0|1-1-15|10:30 x"},
            // Owner and group of many words
            {"-rw 1 a word or more 99 Jan 1 10:30 x", "file|-rw||a or word more|99|2021-1-1 10:30|x"},
            // A size glued to the text in front of it
            {"-rw 1 u group1234 Jan 1 10:30 x", "file|-rw||u group|1234|2021-1-1 10:30|x"},
            {"-rw 1 a word group7 Jan 1 10:30 x", "file|-rw||a Jan group|7|2021-1-1 10:30|x"},
            {"-rw 1 a word two group1234 Jan 1 10:30 x", "file|-rw||a two Jan group|1234|2021-1-1 10:30|x"},
            // Digits at the end of the date token: one fewer of them than the text in front is long
            {"-rw 1 u g1 sept9 1 10:30 x", "file|-rw||u sep|9|2020-9-1 10:30|x"},
            {"-rw 1 u g1 1-15 10:30 x", "file|-rw||u 1|1|2021-1-15 10:30|x"},
            {"-rw 1 u group1234 2021-Jan-15 10:30 x", "file|-rw||u 2021-Jan|15|2021-1-15 10:30|x"},
            {"-rw 1 u group nothing that could be a size", "refused"},
        });
}

struct DateRow {
  const char* columns;   ///< Of a file, from the date to the name.
  const char* expected;  ///< "date|name", or "refused".
};

template <size_t N>
void CheckDates(const DateRow (&rows)[N]) {
  for (const DateRow& row : rows) {
    const std::string refused = "refused";
    const std::string expected = row.expected == refused ? refused : std::string("file|-rw||u g|5|") + row.expected;
    EXPECT_EQ(expected, ReadTolerant((std::string("-rw 1 u g 5 ") + row.columns).c_str())) << row.columns;
  }
}

TEST(ListParser, TolerantDatesWithDashes) {
  CheckDates({
      // With the year first and a month in digits, the month stands last
      {"2021-Jan-15 10:30 x", "2021-1-15 10:30|x"},
      {"2021-15-03 10:30 x", "2021-3-15 10:30|x"},
      {"2021-03-05 10:30 x", "2021-5-3 10:30|x"},
      {"2021-03-15 10:30 x", "refused"},
      {"15-03-21 10:30 x", "21-3-15 10:30|x"},
      {"03-15-21 10:30 x", "21-3-15 10:30|x"},
      {"12-12-2021 10:30 x", "2021-12-12 10:30|x"},
      {"15-Jan-2021 10:30 x", "2021-1-15 10:30|x"},
      {"Jan-15-2021 10:30 x", "2021-1-15 10:30|x"},
      {"Jan-5-2021 10:30 x", "2021-1-5 10:30|x"},
      {"-15-03 10:30 x", "refused"},
      {"15-Mar 10:30 x", "2021-3-15 10:30|x"},
      {"Mar-15 1999 x", "1999-3-15|x"},
      {"-15 10:30 x", "refused"},
      // The date has its year, so what is no time begins the name; but a point makes a time of it
      {"2021-Jan-15 name with blanks", "2021-1-15|name with blanks"},
      {"2021-Jan-15 a.b rest", "2021-1-15 00:00|rest"},
      {"2021-Jan-15 name.txt", "refused"},
      {"2021-Jan-15 10.30 x", "2021-1-15 10:30|x"},
      {"2021-Jan-15 10-30 x", "2021-1-15 10:30|x"},
  });
}

TEST(ListParser, TolerantDatesWithSlashes) {
  CheckDates({
      {"15/03/2021 10:30 x", "2021-3-15 10:30|x"},
      {"03/15/2021 10:30 x", "2021-3-15 10:30|x"},
      {"2021/03/15 10:30 x", "2021-3-15 10:30|x"},
      {"2021/15/03 10:30 x", "2021-3-15 10:30|x"},
      {"1/15/2021 10:30 x", "refused"},
      {"03/15 10:30 x", "2021-3-15 10:30|x"},
      {"15/Mar 10:30 x", "2021-3-15 10:30|x"},
      {"15/03 10:30 x", "refused"},
      {"01-Mar/2021 10:30 x", "refused"},  // A dash goes before a slash
  });
}

TEST(ListParser, TolerantDatesInColumns) {
  CheckDates({
      {"Jan 5 1999 x", "1999-1-5|x"},
      {"5 Jan 1999 x", "1999-1-5|x"},
      {"01 15 10:30 x", "2021-1-15 10:30|x"},
      {"Jan. 15. 10.30 x", "2021-1-15 10:30|x"},
      {"Jan 5 10-30 x", "2021-1-5 10:30|x"},
      {"Jan 5 0 x", "refused"},
      {"Jan 0 1999 x", "refused"},
      {"Jan , 1999 x", "refused"},
      {"... 15 10:30 x", "refused"},
      // A comma behind the day: a time may follow the year
      {"Jan 5, 2001 x", "2001-1-5|x"},
      {"Jan 5, 2001 10:30 x", "2001-1-5 10:30|x"},
      {"Jan 5, 2001 23:59 x", "2001-1-5 23:59|x"},
      {"Jan 5, 2001 24:00 x", "2001-1-5|24:00 x"},
      {"Jan 5, 2001 10:60 x", "2001-1-5|10:60 x"},
      {"Jan 5, 2001 1:30 x", "2001-1-5|1:30 x"},
      {"Jan 5 2001 10:30 x", "2001-1-5|10:30 x"},
      {"Jan 5., 2001 10:30 x", "2001-1-5|10:30 x"},
      {"Jan 5,. 2001 10:30 x", "2001-1-5|10:30 x"},
      {"15 Jan, 2001 10:30 x", "2001-1-15|10:30 x"},
      {"Jan 5, 2001 ", "refused"},
      // The year first
      {"2001 01 15 x", "2001-1-15|x"},
      {"1001 12 31 x", "1001-12-31|x"},
      {"1000 12 31 x", "refused"},
      {"2001 13 15 x", "refused"},
      {"2001 01 32 x", "refused"},
      {"2001 01 10:30 x", "2001-1-0 10:30|x"},
      // A mark behind the digits, in any script
      {"12\x80 5\x81z 10:30 x", "2020-12-5 10:30|x"},
      {"13\x80 5 10:30 x", "refused"},
      {"0\x80 5 10:30 x", "refused"},
      {"\x80 5 10:30 x", "refused"},
      {"12th 5 10:30 x", "refused"},
  });
}

TEST(ListParser, TolerantNames) {
  CheckDates({
      {"Jan 1 10:30   blanks  kept ", "2021-1-1 10:30|blanks  kept "},
      {"Jan 1 10:30 program*", "2021-1-1 10:30|program"},
      {"Jan 1 10:30 a*b/", "2021-1-1 10:30|a*b"},
      {"Jan 1 10:30 pipe|*/\r\n", "2021-1-1 10:30|pipe"},
      {"Jan 1 10:30 x -> y/", "2021-1-1 10:30|x -> y"},
      {"Jan 1 10:30 **", "2021-1-1 10:30|"},
      {"Jan 1 10:30 ", "2021-1-1 10:30|"},
      {"Jan 1 10:30", "refused"},
      {"Jan 1", "refused"},
  });
}

TEST(ListParser, DosLines) {
  Check(ReadDos, {
                     {"31.12.20 10:30 5 x", "file||||5|2020-12-31 10:30|x"},
                     {"2021-12-31  23:59  1,234,567  two  words ", "file||||1234567|2021-12-31 23:59|two  words "},
                     {"NOV-30-1999 12:00AM <DIR> up\r\n", "dir||||0|1999-11-30 00:00|up"},
                     {"01-15-21 03:04PM <dir> sub", "file||||0|2021-1-15 15:04|sub"},
                     {"01-15-21 03:04PM <JUNCTION> sub", "file||||0|2021-1-15 15:04|sub"},
                     {"01-15-21 03:04PM <DIR> marked/", "dir||||0|2021-1-15 15:04|marked/"},
                     {"01-15-21 03:04PM <DIR> ", "dir||||0|2021-1-15 15:04|"},
                     {"01-15-21 03:04PM <DIR>", "refused"},
                     {"01-15-21 03:04PM", "refused"},
                     {"01-15-21", "refused"},
                     {"01-15-21 noon 5 x", "refused"},
                     {"dec-15-21 10:30 5 x", "refused"},  // begins with a permission letter
                     {"", "refused"},
                 });
}

TEST(ListParser, YearOfADateWithoutOne) {
  const struct {
    int month, day;
    Parser::LocalDate today;
    int year;
  } rows[] = {
      {6, 15, {2024, 6, 1}, 2023},  {6, 15, {2024, 6, 15}, 2024}, {6, 16, {2024, 6, 15}, 2023},
      {5, 31, {2024, 6, 1}, 2024},  {7, 1, {2024, 6, 30}, 2023},  {12, 31, {2024, 1, 1}, 2023},
      {1, 1, {2024, 12, 31}, 2024}, {2, 29, {2024, 2, 28}, 2023},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(row.year, Parser::YearOf(row.month, row.day, row.today)) << row.month << "/" << row.day;
    Info info;
    char line[100];
    snprintf(line, sizeof line, "- 1 u g 5 %d\x8C\x8E %d 10:30 x", row.month, row.day);
    ASSERT_TRUE(Parser::ParseAsUnixStrict(line, info, row.today));
    EXPECT_EQ(row.year, info.lastModified.year);
  }
}

TEST(ListParser, PlainFormsTakeTheDayFromTheClock) {
  const Parser::LocalDate today = Parser::LocalToday();
  ASSERT_GE(today.year, 2024);
  char line[100];
  snprintf(line, sizeof line, "- 1 u g 5 %d\x8C\x8E %d 10:30 x", today.month, today.day);
  Info info;
  ASSERT_TRUE(Parser::GetFileInfo(line, info));
  EXPECT_EQ(today.year, info.lastModified.year);
  if (today.month == 12 && today.day == 31) return;
  ASSERT_TRUE(Parser::GetFileInfo("- 1 u g 5 Dec 31 10:30 x", info));
  EXPECT_EQ(today.year - 1, info.lastModified.year);
}

TEST(ListParser, ModeFactOfAnMlsdLine) {
  const struct {
    const char* line;
    const char* attributes;  ///< Null: none found.
  } rows[] = {
      {"type=file;unix.mode=0644; x", "0644"},  // ProFTPD
      {"type=file;mode=0644;", "0644"},
      {"unix.mode=0755", "0755"},
      {"mode=;", ""},
      {"mode=", nullptr},
      {"MODE=0644;", nullptr},
      {"type=file;size=3; model=5", nullptr},
      {"mode=a;mode=b;", "a"},
  };
  for (const auto& row : rows) {
    char attributes[kTextSize] = "untouched";
    EXPECT_EQ(row.attributes != nullptr, LFTPGetMLSDAttributesFromLine(row.line, attributes)) << row.line;
    EXPECT_STREQ(row.attributes ? row.attributes : "untouched", attributes) << row.line;
  }
  char attributes[kTextSize];
  ASSERT_TRUE(LFTPGetMLSDAttributesFromLine(("mode=" + std::string(400, '7')).c_str(), attributes));
  EXPECT_EQ(259U, strlen(attributes));
}

}  // namespace
