// Servers that mean harm: names that are no names, numbers that are no numbers, answers without an end.
#include "ftp/commands.h"
#include "ftp/queries.h"
#include "wire/data_fixture.h"

namespace {

using testing::ElementsAre;
using Item = LFileTransferProtocol::DirIterator::Item;

class HostileServer : public DataTest {
 protected:
  LProcessResult Load() { return iterator._LoadList(process, session, "*"); }
  /// The process is stopped after some time, which a stream without an end does not bring by itself.
  void StopAfter(int ms) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(ms);
    StopWhen([end] { return std::chrono::steady_clock::now() > end; });
  }

  static constexpr long kASecondMs = 1000;

  Session::DirIterator iterator;
};
WIRE_SUITE(HostileServer);

TEST_P(HostileServer, NamesComeAndGoAsTheyAre) {
  const std::string names[] = {"a/b",         "..\\..\\c",    "..",    "../../etc/passwd",    "/",   "\x01\x1b[31m",
                               "\x7f\x08",    "\xff\xfe\xfd", "\xc3(", "\xe2\x80\xaegpj.exe", "-rf", "$(reboot);`",
                               "%s%n%99999d", "\"quoted\"\"", "x*?[a]"};
  std::string lines;
  std::string facts;
  for (const std::string& name : names) {
    lines += "-rw-r--r-- 1 a b 12 Jan 15 2019 " + name + "\r\n";
    facts += "type=file;size=12; " + name + "\r\n";
  }
  for (const bool isFacts : {false, true}) {
    SCOPED_TRACE(isFacts);
    Begin(isFacts ? uint32_t{Session::bHasMlsd} : 0);
    ExpectPassive("A");
    if (isFacts) server.Expect("TYPE A").Reply("200 ok");
    ExpectData(isFacts ? "MLSD" : "LIST").DataSend(isFacts ? facts : lines).Reply("226 Done");
    EXPECT_EQ(Load(), LProcessResultOk);
    EXPECT_THAT(NamesOf(iterator), testing::ElementsAreArray(names));
    for (const std::string& name : names) {
      server.Expect("CWD " + name).Reply("250 ok");
      EXPECT_TRUE(session.SetCurrentDirectory(name.c_str()));
    }
  }
}

TEST_P(HostileServer, PassiveNumbersOutOfRangeLeadNowhere) {
  const char* const replies[] = {"(256,256,256,256,1,1)",
                                 "(300,2,3,4,1,1)",
                                 "(-1,-1,-1,-1,-1,-1)",
                                 "(127,0,0,1,99999,99999)",
                                 "(127,0,0,1,-1,0)",
                                 "(127,0,0,1,0,0)",
                                 "(99999999999999999999,0,0,1,1,99999999999999999999)"};
  Begin();
  for (const char* reply : replies) {
    SCOPED_TRACE(reply);
    server.Expect("TYPE A").Reply("200 ok");
    server.Expect("PASV").Reply(std::string("227 Passive ") + reply);
    LProcessResult result = LProcessResultOk;
    EXPECT_LT(MillisecondsOf([&] { result = Load(); }), kASecondMs);
    EXPECT_EQ(result, LProcessResultFailed);
  }
  ExpectInStep();
}

TEST_P(HostileServer, AStopEndsAListingWithoutAnEnd) {
  server.AllowUnusedSteps();
  gFtpTimeouts.dataCloseMs = 2000;
  for (const bool secure : {false, true}) {
    for (const char* endless : {"-rw-r--r-- 1 a b 12 Jan 15 2019 one\r\n", "no line end, ", "\r\n"}) {
      SCOPED_TRACE(endless);
      Restart();
      BeginAs(secure);
      ExpectPassive("A");
      ExpectData("LIST").DataForever(endless);
      StopAfter(300);
      LProcessResult result = LProcessResultOk;
      EXPECT_LT(MillisecondsOf([&] { result = Load(); }), 300 + kASecondMs);
      EXPECT_EQ(result, LProcessResultStopped);
    }
  }
}

/// `ask` waits for an answer that never ends: it fails when its time is up, and a stop ends it sooner.
struct EndlessRow {
  const char* name;
  const char* bytes;
};
constexpr EndlessRow kEndless[] = {{"continuation lines", "211-more\r\n"},
                                   {"blank lines", "\r\n"},
                                   {"indented lines", " 211 more\r\n"},
                                   {"one line", "no line end "}};

TEST_P(HostileServer, AReplyWithoutAnEndHasAnEnd) {
  if (one_byte) return;  // This server sends as it likes.
  gFtpTimeouts.drainReplyMs = kShortMs;
  gFtpTimeouts.replyMs = kShortMs;
  for (const bool secure : {false, true}) {
    for (const EndlessRow& row : kEndless) {
      for (const bool multiLine : {false, true}) {
        for (const bool stopped : {false, true}) {
          SCOPED_TRACE(row.name + std::string(secure ? ", secure" : "") + (multiLine ? ", all lines" : "") +
                       (stopped ? ", stopped" : ""));
          Restart();
          BeginAs(secure);
          server.Expect("STAT").RawForever(row.bytes);
          if (stopped) StopAfter(100);
          LStringListTemplate<char> lines;
          LProcessResult result = LProcessResultOk;
          EXPECT_LT(MillisecondsOf([&] {
                      result = multiLine ? ProcessFtpSendAndWaitForReply(process, session, "STAT\r\n", lines)
                                         : Send("STAT\r\n");
                    }),
                    2 * kASecondMs);
          // A first line that is blank or indented is an answer already, and a bad one.
          const bool isOver = multiLine && row.bytes[0] <= ' ';
          EXPECT_EQ(result, stopped && !isOver ? LProcessResultStopped : LProcessResultFailed);
        }
      }
    }
  }
}

TEST_P(HostileServer, SizesThatAreNoneAreNotTaken) {
  const struct {
    const char* reply;
    LProcessResult result;
    uint64_t size;
  } rows[] = {
      {"213 -2", LProcessResultFailed, 0},
      {"213 -99999999999999999999999", LProcessResultFailed, 0},
      {"213 9223372036854775807", LProcessResultOk, 9223372036854775807u},
      {"213 9223372036854775808", LProcessResultOk, 9223372036854775807u},
      {"213 99999999999999999999999", LProcessResultOk, 9223372036854775807u},
      {"213 many", LProcessResultOk, 0},
      {"213 ", LProcessResultOk, 0},
  };
  Begin(Session::bHasSize);
  for (const auto& row : rows) {
    SCOPED_TRACE(row.reply);
    server.Expect("TYPE I").Reply("200 ok");
    server.Expect("SIZE a").Reply(row.reply);
    uint64_t size = 77;
    EXPECT_EQ(ProcessFtpGetFileSize(process, session, "a", size), row.result);
    EXPECT_EQ(size, row.size);
  }
}

/// Dates are reckoned on, however odd: nothing is refused, and nothing runs out of a calendar's years.
TEST(HostileListing, SizesAndDatesOutOfAllBoundsAreRead) {
  constexpr int64_t kFirst = -62167219200 - 366 * 86400;  ///< A year before the year 0.
  constexpr int64_t kLast = 253402300800 + 9 * 366 * 86400;
  const struct {
    const char* facts;
    int64_t size;
  } rows[] = {
      {"size=-5;modify=20200229000000; a", -5},
      {"size=99999999999999999999999;modify=20210229000000; a", 9223372036854775807},
      {"size=-99999999999999999999999;modify=; a", -9223372036854775807 - 1},
      {"size=;modify=abcdefghijklmn; a", 0},
      {"size=0x10;modify=99999999999999; a", 0},
      {"size=1;modify=-1-1-1-1-1-1-1; a", 1},
      {"size=1;modify=20200101000000.999999999999; a", 1},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.facts);
    Item item;
    ASSERT_TRUE(FtpItemFromFactsLine(row.facts, "*", item));
    EXPECT_STREQ(item.name, "a");
    EXPECT_EQ(static_cast<int64_t>(item.size), row.size);
    EXPECT_GT(item.modified, kFirst);
    EXPECT_LT(item.modified, kLast);
  }
  for (const char* line : {"-rw-r--r-- 1 a b 99999999999999999999999 Feb 31 2019 a", "-rw-r--r-- 1 a b -5 Jan 1 0000 a",
                           "-rw-r--r-- 1 a b 5 Jan 1 99:99 a", "99-99-9999 99:99AM 5 a", "01-01-00 12:00AM -5 a",
                           "-rw-r--r-- 1 a b 5T Jan 1 9999 a", "-rw-r--r-- 1 a b 99999999T 9999-99-99 12:00 a"}) {
    SCOPED_TRACE(line);
    Item item;
    if (!FtpItemFromListingLine(line, "*", item)) continue;
    EXPECT_GT(item.modified, kFirst);
    EXPECT_LT(item.modified, kLast);
  }
}

}  // namespace
