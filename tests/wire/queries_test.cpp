#include "ftp/queries.h"

#include <cstdlib>
#include <ctime>

#include "support/environment.h"
#include "wire/data_fixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kFileLine[] = "-rw-r--r-- 1 anna staff 4096 Jan 15 2019 f.txt\r\n";
constexpr char kFolderLine[] = "drwxr-xr-x 2 anna staff 4096 Jan 15 2019 sub\r\n";
constexpr char kLinkLine[] = "lrwxrwxrwx 1 anna staff 1 Jan 15 2019 link\r\n";

class Queries : public DataTest {
 protected:
  LProcessResult AskSize(const char* name = "f.txt") { return ProcessFtpGetFileSize(process, session, name, size); }
  LProcessResult AskTime(const char* name = "f.txt") {
    return ProcessFtpGetFileModifiedTime(process, session, name, time);
  }
  LProcessResult AskType(const char* name) { return ProcessFtpIsDirectory(process, session, name, kind); }
  bool IsNow() const { return std::abs(time - (::time(nullptr) + kTokyo)) <= 5; }
  /// Runs a row's question on a fresh session.
  void Begin(uint32_t capabilities = 0) {
    Restart();
    DataTest::Begin(capabilities);
  }

  const TimeZone zone{"Asia/Tokyo"};
  static constexpr int kTokyo = 9 * 60 * 60;
  uint64_t size = 77;
  int64_t time = 77;
  signed char kind = 77;
};
WIRE_SUITE(Queries);

TEST_P(Queries, LearnTheFeaturesOnce) {
  const struct {
    std::vector<std::string> lines;
    uint32_t capabilities;
  } rows[] = {
      {{"211-Features", " MLST type*;size*;modify*;", "211 End"},
       Session::bMlstType | Session::bMlstSize | Session::bMlstModify},
      {{"211-Features", " MLST type;size;", "211 End"}, 0},
      {{"211-Features", " MLST size*;", " type*", "211 End"}, Session::bMlstSize},
      {{"211-Features", " SIZE", " MDTM", " MFMT", " MLSD", " UTF8", "211 End"},
       Session::bHasSize | Session::bHasMdtm | Session::bHasMfmt | Session::bHasMlsd | Session::bHasUtf8},
      {{"211-Features", " size", " utf8", "211 End"}, 0},
      {{"211-SIZE MDTM", "211 MFMT"}, Session::bHasSize | Session::bHasMdtm},
      {{"211 SIZE"}, Session::bHasSize},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.lines[1 % row.lines.size()]);
    Begin();
    session.uCapabilities = 0;
    server.Expect("FEAT").ReplyLines(row.lines);
    EXPECT_EQ(ProcessFtpCheckFeatures(process, session), LProcessResultOk);
    EXPECT_EQ(session.uCapabilities, row.capabilities | Session::bFeaturesKnown);
    EXPECT_EQ(ProcessFtpCheckFeatures(process, session), LProcessResultOk);
    ExpectInStep();
  }
}

TEST_P(Queries, AskForTheFeaturesAgainAfterAFailure) {
  Begin();
  session.uCapabilities = 0;
  for (int i = 0; i < 2; ++i) {
    server.Expect("FEAT").Reply("500 What");
    EXPECT_EQ(ProcessFtpCheckFeatures(process, session), LProcessResultOk);
    EXPECT_EQ(session.uCapabilities, Session::bHasSize);
  }
  EXPECT_THAT(Commands(), ElementsAre("FEAT", "FEAT"));
}

TEST_P(Queries, TakeTheSizeFromMlst) {
  const struct {
    std::vector<std::string> lines;
    LProcessResult result;
    uint64_t size;
  } rows[] = {
      {{"250-Listing", " Type=file;Size=123; f.txt", "250 End"}, LProcessResultOk, 123},
      {{"250-Listing", " sizd=123; f.txt", "250 End"}, LProcessResultOk, 123},
      {{"250-size=5;", " size=6; f.txt", "250 End"}, LProcessResultOk, 5},
      {{"250-Listing", " size=9999999999; f.txt", "250 End"}, LProcessResultOk, 9999999999},
      {{"250-Listing", " size=-2; f.txt", "250 End"}, LProcessResultFailed, 0},
      {{"550 Not there"}, LProcessResultOk, 0},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.lines.back());
    Begin(Session::bMlstSize | Session::bHasSize);
    server.Expect("MLST f.txt").ReplyLines(row.lines);
    EXPECT_EQ(AskSize(), row.result);
    EXPECT_EQ(size, row.size);
    ExpectInStep();
  }
}

TEST_P(Queries, TakeTheSizeFromTheNextRung) {
  Begin(Session::bMlstSize | Session::bHasSize | Session::bHasMlsd);
  // Refused, without the fact, -1: each leads on.
  server.Expect("MLST d/f.txt").Reply("500 What");
  server.Expect("TYPE I").Reply("200 ok");
  server.Expect("SIZE d/f.txt").Reply("213 42");
  EXPECT_EQ(session.GetFileSizeBytes64("d/f.txt"), 42u) << "without a process of the caller's";

  server.Expect("MLST d/f.txt").ReplyLines({"250-", " type=file; f.txt", "250 End"});
  server.Expect("TYPE I").Reply("250 but not 200");
  server.Expect("MLSD d").ReplyLines({"250-", "size=1; other", "type=file; f.txt", "Size=7; f.txt", "250 End"});
  EXPECT_EQ(AskSize("d/f.txt"), LProcessResultOk);
  EXPECT_EQ(size, 7u);

  server.Expect("MLST /f.txt").ReplyLines({"250-", " size=-1; f.txt", "250 End"});
  server.Expect("TYPE I").Reply("200 ok");
  server.Expect("SIZE /f.txt").Reply("213 -1");
  server.Expect("MLSD /").Reply("500 What");
  ExpectListing("LIST /f.txt", "-rw-r--r-- 1 a b 4096 Jan 15 2019 /F.TXT\r\n");
  EXPECT_EQ(AskSize("/f.txt"), LProcessResultOk);
  EXPECT_EQ(size, 4096u);
  ExpectInStep();
}

TEST_P(Queries, TakeTheSizeFromAListing) {
  const struct {
    const char* name;
    std::string lines;
    LProcessResult result;
  } rows[] = {
      {"found", kFileLine, LProcessResultOk},
      {"only the first line counts", std::string("total 8\r\n") + kFileLine, LProcessResultFailed},
      {"another name", kFolderLine, LProcessResultFailed},
      {"nothing", "", LProcessResultFailed},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    Begin(Session::bHasSize);
    server.Expect("TYPE I").Reply("200 ok");
    server.Expect("SIZE f.txt").Reply("550 No");
    ExpectListing("LIST f.txt", row.lines);
    EXPECT_EQ(AskSize(), row.result);
    EXPECT_EQ(size, row.result == LProcessResultOk ? 4096u : 0u);
    ExpectInStep();
  }
}

TEST_P(Queries, OfTheSizeEndWithAStop) {
  const std::vector<Exchange> ladder = {{"MLST f.txt", "500 What"},
                                        {"TYPE I", "200 ok"},
                                        {"SIZE f.txt", "500 What"},
                                        {"MLSD ", "500 What"},
                                        {"TYPE A", "500 What"}};
  ExpectStopsOnTheWay(Session::bMlstSize | Session::bHasSize | Session::bHasMlsd, ladder, [this] {
    const LProcessResult result = AskSize();
    EXPECT_EQ(size, 0u);
    ExpectInStep();
    return result;
  });
}

TEST_P(Queries, TakeTheTimeFromAStamp) {
  constexpr int64_t kStamp = 1609459199;  // 2020-12-31 23:59:59 UTC
  Begin(Session::bHasMdtm);
  server.Expect("MDTM f.txt").Reply("213 20201231235959");
  EXPECT_EQ(AskTime(), LProcessResultOk);
  EXPECT_EQ(time, kStamp);
  server.Expect("MDTM f.txt").Reply("213 20201231235959");
  EXPECT_EQ(session.GetFileDate("f.txt"), kStamp);

  Begin(Session::bHasMdtm | Session::bMlstModify | Session::bHasMlsd);
  server.Expect("MDTM d\\f.txt").Reply("550 No");
  server.Expect("MLST d\\f.txt").ReplyLines({"250-", " Modify=20201231235959.5;size=1; f.txt", "250 End"});
  EXPECT_EQ(AskTime("d\\f.txt"), LProcessResultOk);
  EXPECT_EQ(time, kStamp);

  server.Expect("MDTM d\\f.txt").Reply("213");
  server.Expect("MLST d\\f.txt").Reply("550 No");
  server.Expect("MLSD d").ReplyLines({"250-", "modify=20201231235959; f.txt", "250 End"});
  EXPECT_EQ(AskTime("d\\f.txt"), LProcessResultOk);
  EXPECT_EQ(time, kStamp);
  ExpectInStep();
}

/// Nobody can stop them.
TEST_P(Queries, ForADateEndTheSessionOfASilentServer) {
  gFtpTimeouts.replyMs = kShortMs;
  Begin(Session::bHasMdtm | Session::bSystKnown);
  server.Expect("MDTM f.txt").Silence();
  server.Expect("TYPE A").Silence();
  const int64_t first = session.GetFileDate("f.txt");
  EXPECT_FALSE(session.IsValid());
  EXPECT_EQ(AskTime(), LProcessResultFailed);
  EXPECT_NEAR(first, time, 60);
  EXPECT_NEAR(session.GetFileDate("g.txt"), time, 60);
}

TEST_P(Queries, TakeTheTimeFromAListing) {
  constexpr int64_t kDay = 1547478000;  // 2019-01-15 00:00 in Tokyo
  const struct {
    const char* name;
    const char* system;
    std::string command;
    std::string lines;
    LProcessResult result;
    int64_t time;  ///< 0: now.
  } rows[] = {
      {"Unix", "215 unix type: l8 and more", "LIST f.txt", kFileLine, LProcessResultOk, kDay},
      {"another system", "215 VMS", "LIST f.txt*", kFileLine, LProcessResultOk, kDay},
      {"no system", "500 What", "LIST f.txt*", kFileLine, LProcessResultOk, kDay},
      {"a name in other letters", "215 VMS", "LIST f.txt*", "-rw-r--r-- 1 a b 1 Jan 15 2019 F.txt\r\n",
       LProcessResultOk, 0},
      {"no line", "215 VMS", "LIST f.txt*", "", LProcessResultOk, 0},
      {"no listing", "215 VMS", "LIST f.txt*", "refused", LProcessResultFailed, 0},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    Begin();
    server.Expect("SYST").Reply(row.system);
    if (row.lines == "refused") {
      ExpectPassive("A");
      server.Expect(row.command).Reply("550 No");
    } else {
      ExpectListing(row.command, row.lines);
    }
    EXPECT_EQ(AskTime(), row.result);
    EXPECT_TRUE(row.time == 0 ? IsNow() : time == row.time);
    // The system is asked once.
    ExpectListing(row.command, kFileLine);
    EXPECT_EQ(AskTime(), LProcessResultOk);
    EXPECT_EQ(time, kDay);
    ExpectInStep();
  }
}

TEST_P(Queries, PutAWindowsServerIntoItsOwnStyle) {
  Begin();
  server.Expect("SYST").Reply("215 windows_nt");
  server.Expect("site dirstyle").Reply("200 MSDOS-like directory output is on");
  ExpectListing("LIST f.txt*", "01-15-19  03:04PM  12 f.txt\r\n");
  EXPECT_EQ(AskTime(), LProcessResultOk);
  EXPECT_EQ(time, 1547532240);  // 15:04 in Tokyo

  server.Expect("site dirstyle").Reply("200 msdos-like directory output is OFF");
  server.Expect("site dirstyle").Reply("200 MSDOS-like directory output is on");
  ExpectListing("LIST f.txt*", "");
  EXPECT_EQ(AskTime(), LProcessResultOk);
  EXPECT_TRUE(IsNow());
  ExpectInStep();
}

TEST_P(Queries, OfTheTimeEndWithAStop) {
  const std::vector<Exchange> ladder = {{"MDTM f.txt", "501 What"},    {"MLST f.txt", "501 What"},
                                        {"MLSD ", "501 What"},         {"SYST", "215 Windows_NT"},
                                        {"site dirstyle", "501 What"}, {"TYPE A", "501 What"}};
  ExpectStopsOnTheWay(Session::bHasMdtm | Session::bMlstModify | Session::bHasMlsd, ladder, [this] {
    const LProcessResult result = AskTime();
    EXPECT_TRUE(IsNow());
    ExpectInStep();
    return result;
  });
}

TEST_P(Queries, TakeTheTypeFromMlst) {
  const struct {
    const char* facts;
    signed char kind;
  } rows[] = {
      {" Type=file;size=1; x", kFtpKindFile},
      {" type=dir; x", kFtpKindDirectory},
      {" type=OS.unix=slink:/y; x", kFtpKindSymbolicLink},
      {" type=OS.unix=chr-1/2; x", kFtpKindDirectory},
      {" type=cdir; x", kFtpKindDirectory},
      {" type=; x", kFtpKindDirectory},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.facts);
    Begin(Session::bMlstType);
    server.Expect("MLST x").ReplyLines({"250-", row.facts, "250 End"});
    EXPECT_EQ(AskType("x"), LProcessResultOk);
    EXPECT_EQ(kind, row.kind);
    EXPECT_FALSE(session.Has(Session::bMlstTypeFailed));
  }
}

TEST_P(Queries, TakeTheTypeFromTheNextRung) {
  Begin(Session::bMlstType | Session::bHasMlsd);
  // Without the fact nothing is remembered; after a refusal the rung is left out.
  server.Expect("MLST x").ReplyLines({"250-", " size=1; x", "250 End"});
  server.Expect("MLSD x").ReplyLines({"250-", "250 End"});
  EXPECT_EQ(AskType("x"), LProcessResultOk);
  EXPECT_EQ(kind, kFtpKindDirectory);
  EXPECT_FALSE(session.Has(Session::bMlstTypeFailed));

  server.Expect("MLST f.txt").Reply("501 What");
  server.Expect("MLSD f.txt").Reply("501 Not a directory");
  ExpectListing("LIST .", std::string(kFolderLine) + kFileLine + kLinkLine);
  EXPECT_EQ(AskType("f.txt"), LProcessResultOk);
  EXPECT_EQ(kind, kFtpKindFile);
  EXPECT_TRUE(session.Has(Session::bMlstTypeFailed));
  EXPECT_TRUE(session.Has(Session::bMlsdFailed));

  for (const auto& [name, expected] : {std::pair("sub", kFtpKindDirectory), {"link", kFtpKindSymbolicLink}}) {
    ExpectListing("LIST .", "");
    ExpectListing("LIST ", std::string(kFolderLine) + kFileLine + kLinkLine);
    EXPECT_EQ(AskType(name), LProcessResultOk);
    EXPECT_EQ(kind, expected);
  }
  ExpectListing("LIST .", std::string(kFileLine) + "drwxr-xr-x 2 anna staff 1 Jan 15 2019 f.txt\r\n");
  EXPECT_EQ(AskType("f.txt"), LProcessResultOk);
  EXPECT_EQ(kind, kFtpKindDirectory) << "the last of two entries of one name";
  ExpectListing("LIST .", kFileLine);
  EXPECT_EQ(AskType("none"), LProcessResultFailed);
  EXPECT_EQ(kind, kFtpKindUnknown);
  ExpectListing("LIST .", "");
  ExpectListing("LIST ", "");
  EXPECT_EQ(AskType("none"), LProcessResultFailed);
  EXPECT_EQ(AskType(nullptr), LProcessResultFailed);
  EXPECT_EQ(kind, kFtpKindUnknown);
  ExpectInStep();
}

TEST_P(Queries, TakeAttributesOwnerAndGroup) {
  const std::string twoLines = std::string(kFolderLine) + kFileLine;
  const struct {
    const char* command;
    std::string lines;
    LProcessResult (*ask)(LProcessInterface&, Session&, const char*, char (&)[kTextSize]);
    const char* answer;
  } rows[] = {
      {"LIST", kFileLine, ProcessFtpGetFileAttribute, "-rw-r--r--"},
      {"LIST", kFileLine, ProcessFtpGetFileOwner, "anna"},
      {"LIST", kFileLine, ProcessFtpGetFileOwnerGroup, "staff"},
      // Joined without line ends, two lines hide the name.
      {"LIST", twoLines, ProcessFtpGetFileOwner, "staff"},
      {"LIST", twoLines, ProcessFtpGetFileAttribute, ""},
      {"MLSD f.txt", "type=file;UNIX.mode=0644; f.txt\r\n", ProcessFtpGetFileAttribute, "0644"},
      {"MLSD f.txt", "", ProcessFtpGetFileAttribute, ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.command + (" for " + std::string(row.answer)));
    Begin(row.command[0] == 'M' ? uint32_t{Session::bHasMlsd} : 0);
    ExpectListing(row.command, row.lines);
    EXPECT_EQ(row.ask(process, session, "f.txt", text), LProcessResultOk);
    EXPECT_STREQ(text, row.answer);
  }
  ExpectPassive("A");
  server.Expect("MLSD f.txt").Reply("501 Not a directory");
  EXPECT_EQ(ProcessFtpGetFileAttribute(process, session, "f.txt", text), LProcessResultFailed);
  ExpectInStep();
}

TEST_P(Queries, ReadAnAnswerThatComesAsData) {
  LStringListTemplate<char> lines;
  const auto ask = [&] { return ProcessFtpSendAndWaitForDataReply(process, session, "LIST\r\n", lines); };
  for (const bool secure : {false, true}) {
    SCOPED_TRACE(secure);
    BeginAs(secure, Session::bHasUtf8);
    server.Expect("OPTS UTF8 ON").Reply("500 What");
    ExpectListing("LIST", "one\r\n\r\ntwo\nthree");
    EXPECT_EQ(ask(), LProcessResultOk);
    EXPECT_THAT(std::vector<std::string>(lines.strings, lines.strings + lines.count),
                ElementsAre("one", "two", "three"));
    session.uCapabilities = Session::bFeaturesKnown;

    ExpectPassive("A");
    ExpectData("LIST").DataSend("one\r\n").Reply("451 Broken");
    EXPECT_EQ(ask(), LProcessResultFailed);
    EXPECT_EQ(lines.count, 1u);

    ExpectPassive("A");
    Step& refusal = server.Expect("LIST").Reply("550 No");
    if (secure) refusal.DataTls(false);  // Nobody waits for its side any more.
    EXPECT_EQ(ask(), LProcessResultFailed);
    EXPECT_EQ(lines.count, 0u);
    ExpectInStep();
  }
}

TEST_P(Queries, EndAnAnswerThatComesAsDataWithAStop) {
  gFtpTimeouts.dataCloseMs = kShortMs;
  LStringListTemplate<char> lines;
  Begin();
  ExpectPassive("A");
  ExpectData("LIST").DataPart("one\r\n");
  StopWhen([&] { return lines.count == 1; });
  EXPECT_EQ(ProcessFtpSendAndWaitForDataReply(process, session, "LIST\r\n", lines), LProcessResultStopped);
  EXPECT_EQ(lines.count, 1u);
}

}  // namespace
