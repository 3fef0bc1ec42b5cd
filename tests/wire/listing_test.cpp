#include "wire/data_fixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kFacts[] =
    "type=cdir;modify=20200102030405; .\r\n"
    "type=dir;modify=20200102030405;UNIX.mode=0755; My Folder\r\n"
    "type=file;size=12; a.txt\r\n";
constexpr char kLines[] =
    "total 8\r\n"
    "drwxr-xr-x 2 anna staff 4096 Jan 15 2019 sub\r\n"
    "-rw-r--r-- 1 anna staff 12 Jan 15 2019 a.txt\r\n";

class Listing : public DataTest {
 protected:
  LProcessResult Load(const char* pattern = "*") { return iterator._LoadList(process, session, pattern); }
  std::vector<std::string> Names() { return NamesOf(iterator); }
  /// The way to MLSD.
  void ExpectMlsdStart() {
    ExpectPassive("A");
    server.Expect("TYPE A").Reply("200 ok");
  }

  Session::DirIterator iterator;
};
WIRE_SUITE(Listing);

TEST_P(Listing, ByMlsd) {
  Begin(Session::bHasMlsd | Session::bHasUtf8);
  server.Expect("OPTS UTF8 ON").Reply("502 What");
  ExpectMlsdStart();
  ExpectData("MLSD").DataSend(kFacts).Reply("226 Done");
  EXPECT_EQ(Load(), LProcessResultOk);
  EXPECT_THAT(Commands(), ElementsAre("OPTS UTF8 ON", "TYPE A", "PASV", "TYPE A", "MLSD"));
  EXPECT_THAT(Names(), ElementsAre(".", "My Folder", "a.txt"));
  iterator.Next();
  EXPECT_TRUE(iterator.IsDirectory());
  EXPECT_FALSE(iterator.IsSymbolicLink());
  EXPECT_TRUE(iterator.Current()->modifiedKnown);
  EXPECT_STREQ(iterator.Current()->attributes, "0755");
  iterator.Next();
  EXPECT_FALSE(iterator.IsDirectory());
  EXPECT_EQ(iterator.Current()->size, 12u);
  EXPECT_FALSE(iterator.Current()->modifiedKnown);
  iterator.Next();
  EXPECT_EQ(iterator.Current(), nullptr);
  EXPECT_STREQ(iterator.Name(), "");
  EXPECT_FALSE(iterator.IsDirectory());
  EXPECT_FALSE(iterator.IsPassiveFailure());
  ExpectInStep();
}

TEST_P(Listing, ByList) {
  for (const bool secure : {false, true}) {
    SCOPED_TRACE(secure);
    BeginAs(secure);
    ExpectListing("LIST", kLines);
    EXPECT_EQ(Load(), LProcessResultOk);
    EXPECT_THAT(Names(), ElementsAre("sub", "a.txt"));
    EXPECT_TRUE(iterator.IsDirectory());
    ExpectInStep();
  }
  EXPECT_THAT(Commands(),
              ElementsAre("TYPE A", "PASV", "LIST", "NOOP", "PBSZ 0", "PROT P", "TYPE A", "PASV", "LIST", "NOOP"));
}

TEST_P(Listing, FirstAsksForTheFeatures) {
  Connect();
  server.Expect("FEAT").ReplyLines({"211-Features", " MLSD", " UTF8", "211 End"});
  server.Expect("OPTS UTF8 ON").Reply("200 ok");
  ExpectMlsdStart();
  ExpectData("MLSD").DataSend(kFacts).Reply("226 Done");
  EXPECT_EQ(Load("*.TXT"), LProcessResultOk);
  EXPECT_THAT(Names(), ElementsAre("a.txt"));
}

TEST_P(Listing, SecuresMlsdWhicheverWayTheServerDoesIt) {
  const struct {
    const char* name;
    TestCertificate certificate;
    bool before;  ///< The server's TLS comes before its answer.
  } rows[] = {
      {"TLS before the answer", TestCertificate::kGood, true},
      {"TLS behind the answer", TestCertificate::kGood, false},
      {"TLS 1.2 before the answer", TestCertificate::kTls12, true},
      {"TLS 1.2 behind the answer", TestCertificate::kTls12, false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    BeginSecure(Session::bHasMlsd);
    server.UseTls(TestServerContext(row.certificate));
    ExpectMlsdStart();
    Step& step = server.Expect("MLSD");
    row.before ? step.DataTls().Delay(50).Reply("150 ok") : step.Delay(50).Reply("150 ok").DataTls();
    step.DataSend(kFacts).Reply("226 Done");
    LProcessResult result = LProcessResultFailed;
    // Neither kind of server costs a wait for the other.
    EXPECT_LT(MillisecondsOf([&] { result = Load(); }), 1000);
    EXPECT_EQ(result, LProcessResultOk);
    EXPECT_EQ(iterator.Count(), 3u);
    ExpectInStep();
  }
}

TEST_P(Listing, IsEmptyIfTheServerNeverSecuresTheConnection) {
  gFtpTimeouts.dataHandshakeMs = 300;
  BeginSecure(Session::bHasMlsd);
  ExpectMlsdStart();
  server.Expect("MLSD").Reply("150 ok").AcceptData().Delay(700).DataCut().Reply("425 TLS failed");
  EXPECT_EQ(Load(), LProcessResultOk);
  EXPECT_THAT(Names(), IsEmpty());
  ExpectInStep();
}

TEST_P(Listing, ByListOnTheSameConnectionAfterARefusedMlsd) {
  for (const bool secure : {false, true}) {
    SCOPED_TRACE(secure);
    BeginAs(secure, Session::bHasMlsd);
    ExpectMlsdStart();
    Step& refusal = server.Expect("MLSD");
    if (secure) refusal.DataTls();
    refusal.Reply("500 What");
    server.Expect("LIST").Reply("150 ok").DataSend(kLines).Reply("226 Done");
    EXPECT_EQ(Load(), LProcessResultOk);
    EXPECT_THAT(Names(), ElementsAre("sub", "a.txt"));
    ExpectInStep();
  }
}

TEST_P(Listing, RefusedIsEmptyAndNoError) {
  Begin(Session::bHasMlsd);
  ExpectListing("LIST", kLines);
  session.Set(Session::bMlsdFailed);
  EXPECT_EQ(Load(), LProcessResultOk);
  EXPECT_EQ(iterator.Count(), 2u);
  // A second list replaces the first.
  session.uCapabilities &= ~static_cast<uint32_t>(Session::bMlsdFailed);
  ExpectMlsdStart();
  server.Expect("MLSD").Reply("550 No");
  server.Expect("LIST").Reply("550 No");
  EXPECT_EQ(Load(), LProcessResultOk);
  EXPECT_THAT(Names(), IsEmpty());
  EXPECT_EQ(iterator.Current(), nullptr);
  ExpectInStep();
}

TEST_P(Listing, MayHaveNoLineOrNoLineEnd) {
  using namespace std::string_literals;
  const std::string head = "-rw-r--r-- 1 a b 12 Jan 15 2019 ";
  const struct {
    std::string lines;
    std::vector<std::string> names;
  } rows[] = {
      {"", {}},
      {head + "last", {"last"}},
      {head + "one\r\r\n\n\0"s + head + "two\r\n", {"one", "two"}},
      // A line that is too long loses its end, not its neighbours.
      {head + std::string(600, 'x') + "\r\n" + head + "two\r\n",
       {std::string(kTextSize - 1 - head.size(), 'x'), "two"}},
  };
  Begin();
  for (const auto& row : rows) {
    ExpectListing("LIST", row.lines);
    EXPECT_EQ(Load(), LProcessResultOk);
    EXPECT_EQ(Names(), row.names);
  }
}

TEST_P(Listing, ThatBreaksOffKeepsWhatCame) {
  const std::string half = std::string(kLines) + "-rw-r--r-- 1 a b 12 Jan 15 2019 half";
  gFtpTimeouts.dataCloseMs = kShortMs;
  Begin();
  ExpectPassive("A");
  ExpectData("LIST").DataPart(kLines).Delay(50).DataReset().Reply("426 Broken");
  EXPECT_EQ(Load(), LProcessResultOk);
  EXPECT_EQ(iterator.Count(), 2u);

  gFtpTimeouts.listingLineMs = kShortMs;
  ExpectPassive("A");
  ExpectData("LIST").DataPart(half).Delay(600).Reply("226 Done");
  EXPECT_EQ(Load(), LProcessResultOk);
  EXPECT_THAT(Names(), ElementsAre("sub", "a.txt", "half"));

  gFtpTimeouts.closingReplyMs = kShortMs;
  ExpectPassive("A");
  ExpectData("LIST").DataSend(kLines);
  EXPECT_EQ(Load(), LProcessResultFailed);
  EXPECT_EQ(iterator.Count(), 2u);
}

TEST_P(Listing, OfManyEntriesIsFast) {
  Begin(Session::bHasMlsd);
  std::string facts;
  for (int i = 0; i < 20000; ++i) facts += "type=file;size=12; entry" + std::to_string(i) + "\r\n";
  ExpectMlsdStart();
  ExpectData("MLSD").DataSend(facts).Reply("226 Done");
  EXPECT_EQ(Load(), LProcessResultOk);
  EXPECT_EQ(iterator.Count(), 20000u);
  // The window is pumped for each piece and not for each line.
  EXPECT_LT(process.Questions(), 5000);
}

TEST_P(Listing, StoppedWhileLinesComeKeepsThem) {
  gFtpTimeouts.dataCloseMs = kShortMs;
  Begin();
  ExpectPassive("A");
  ExpectData("LIST").DataPart(kLines + std::string("-rw-r--r-- 1 a b 12 Jan 15 2019 half"));
  StopWhen([this] { return iterator.Count() == 2; });
  EXPECT_EQ(Load(), LProcessResultStopped);
  EXPECT_THAT(Names(), ElementsAre("sub", "a.txt"));
}

TEST_P(Listing, StoppedBeforeItBegan) {
  Begin();
  server.Expect("TYPE A").Delay(kOverASliceMs).Reply("200 ok");
  StopAfterCommands(1);
  Session::DirIteratorAllFiles stopped(process, session);
  EXPECT_TRUE(stopped.IsStopped());
  EXPECT_FALSE(stopped.IsLoaded());

  process.OnQuestion(nullptr);
  process.StopAt(0);
  ExpectListing("LIST", kLines);
  Session::DirIteratorAllFiles loaded(process, session);
  EXPECT_FALSE(loaded.IsStopped());
  EXPECT_TRUE(loaded.IsLoaded());
  EXPECT_EQ(loaded.Count(), 2u);
}

TEST_P(Listing, KeepsTheOldListWhenNoConnectionCanBeMade) {
  BeginSecure();
  ExpectListing("LIST", kLines);
  EXPECT_EQ(Load(), LProcessResultOk);

  server.Expect("PBSZ 0").Reply("200 ok");
  server.Expect("PROT P").Reply("534 Policy");
  EXPECT_EQ(Load(), LProcessResultFailed);
  EXPECT_THAT(process.Errors(), ElementsAre(kProtectionRefused));
  EXPECT_FALSE(iterator.IsPassiveFailure());

  ExpectProtection();
  server.Expect("TYPE A").Reply("200 ok");
  server.Expect("PASV").ReplyPassiveRefused();
  EXPECT_EQ(Load(), LProcessResultFailed);
  EXPECT_TRUE(iterator.IsPassiveFailure());
  EXPECT_STREQ(iterator.Name(), "sub");

  ExpectListing("LIST", kLines);
  EXPECT_EQ(Load(), LProcessResultOk);
  EXPECT_FALSE(iterator.IsPassiveFailure());
}

TEST_P(Listing, AsksForATypeThatIsNotKnownOnce) {
  Begin(Session::bMlstType | Session::bHasMlsd);
  ExpectMlsdStart();
  ExpectData("MLSD").DataSend("size=1; a\r\nsize=1; b\r\nsize=1; c\r\n").Reply("226 Done");
  Session::DirIteratorAllFiles all(process, session);
  server.Expect("MLST a").ReplyLines({"250-", " type=OS.unix=slink:; a", "250 End"});
  EXPECT_TRUE(all.IsDirectory());
  // The other field was not filled by the first question.
  EXPECT_FALSE(all.IsSymbolicLink());
  all.Next();
  server.Expect("MLST b").ReplyLines({"250-", " type=OS.unix=slink:; b", "250 End"});
  EXPECT_TRUE(all.IsSymbolicLink());
  EXPECT_FALSE(all.IsDirectory());
  all.Next();
  server.Expect("MLST c").Delay(kOverASliceMs).Reply("250 ok");
  StopAfterCommands(Commands().size() + 1);
  EXPECT_FALSE(all.IsDirectory());
  EXPECT_TRUE(all.IsStopped());
}

TEST_P(Listing, TellsWhetherANameIsThere) {
  Begin();
  for (const auto& [name, found] : {std::pair("sub", true), {"a.txt", true}, {"A.TXT", false}, {"none", false}}) {
    ExpectListing("LIST", kLines);
    EXPECT_EQ(session.ContainDirectory(name), found);
  }
  EXPECT_FALSE(session.ContainDirectory(""));
  EXPECT_FALSE(session.ContainDirectory(nullptr));
  ExpectInStep();
}

}  // namespace
