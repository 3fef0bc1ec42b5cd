#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include "ftp/transfer.h"
#include "wire/data_fixture.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr size_t kBlock = FtpTransferProgress::kBlockSize;
constexpr unsigned kNoopMs = 250;  ///< Longer than a block takes in single bytes.

class Download : public DataTest {
 protected:
  LProcessResult Run() { return ProcessFtpDownload(process, session, "r.bin", folder.Path("l.bin").c_str(), &error); }
  /// The commands up to the size.
  void ExpectStart(size_t size) {
    ExpectPassive("I");
    ExpectSize("r.bin", size);
  }
  std::string Local() const { return folder.Read("l.bin"); }

  char error[kTextSize] = "untouched";
};
WIRE_SUITE(Download);

TEST_P(Download, FetchesAFile) {
  for (const bool secure : {false, true}) {
    SCOPED_TRACE(secure);
    BeginAs(secure, Session::bHasSize);
    const std::string content = TestBytes(300 * kBlock + 7);
    folder.Write("l.bin", "something longer that was there before");
    ExpectStart(content.size());
    ExpectData("RETR r.bin").DataSend(content).Reply("226 Done");
    EXPECT_EQ(Run(), LProcessResultOk);
    EXPECT_EQ(Local(), content);
    EXPECT_STREQ(error, "");
    EXPECT_THAT(history.Messages(), IsEmpty());
    ExpectInStep();
  }
  EXPECT_THAT(Commands(), ElementsAre("TYPE I", "PASV", "TYPE I", "SIZE r.bin", "RETR r.bin", "NOOP", "PBSZ 0",
                                      "PROT P", "TYPE I", "PASV", "TYPE I", "SIZE r.bin", "RETR r.bin", "NOOP"));
}

TEST_P(Download, ShowsEachBlockOfASmallFile) {
  Begin(Session::bHasSize);
  ExpectStart(4 * kBlock);
  ExpectData("RETR r.bin").DataSend(TestBytes(4 * kBlock)).Reply("226 Done");
  EXPECT_EQ(Run(), LProcessResultOk);
  EXPECT_THAT(StatusesAt(0), ElementsAre("ダウンロードの準備をしています...", "ファイルをダウンロードしています..."));
  if (one_byte) return;  // Single bytes are blocks of their own.
  EXPECT_THAT(StatusesAt(1),
              ElementsAre("r.bin", "r.bin:  0%", "r.bin: 25%", "r.bin: 50%", "r.bin: 75%", "r.bin: 100%"));
  EXPECT_THAT(process.Progress(), ElementsAre(0, 0.25, 0.5, 0.75, 1));
}

TEST_P(Download, OfAnEmptyFileOrAnUnknownSizeStaysAtZero) {
  for (const size_t size : {size_t{0}, 5 * kBlock}) {
    SCOPED_TRACE(size);
    Begin(Session::bMlstSize);
    ExpectPassive("I");
    server.Expect("MLST r.bin").Reply("550 Not there");
    ExpectData("RETR r.bin").DataSend(TestBytes(size)).Reply("226 Done");
    EXPECT_EQ(Run(), LProcessResultOk);
    EXPECT_EQ(Local(), TestBytes(size));
    EXPECT_EQ(StatusesAt(1).back(), "r.bin:  0%");
    EXPECT_EQ(process.Progress().back(), 0);
  }
}

TEST_P(Download, RefusedLeavesAnEmptyFile) {
  Begin(Session::bHasSize);
  folder.Write("l.bin", "old");
  ExpectStart(5);
  server.Expect("RETR r.bin").Reply("550 No such file");
  EXPECT_EQ(Run(), LProcessResultFailed);
  EXPECT_STREQ(error, "No such file");
  EXPECT_TRUE(folder.Has("l.bin"));
  EXPECT_EQ(Local(), "");
  ExpectInStep();
}

TEST_P(Download, FailsBeforeTheServerIsAskedWhenTheLocalFileIsNotToBeHad) {
  Begin();
  EXPECT_EQ(ProcessFtpDownload(process, session, "r.bin", folder.Path("none/l.bin").c_str(), &error),
            LProcessResultFailed);
  folder.Write("l.bin", "locked");
  const int fd = open(folder.Path("l.bin").c_str(), O_RDWR | O_CLOEXEC);
  ASSERT_EQ(flock(fd, LOCK_EX), 0);
  gFtpTimeouts.fileLockMs = 60;
  EXPECT_EQ(Run(), LProcessResultFailed);
  EXPECT_EQ(Local(), "locked");
  close(fd);
  EXPECT_THAT(Commands(), IsEmpty());
}

TEST_P(Download, ReturnsWhatThePreparationGave) {
  const struct {
    const char* refused;
    const char* reply;  ///< Null for an address at which nobody answers.
    const char* error;
  } rows[] = {{"PROT P", "534 Policy", kProtectionRefused},
              {"PROT P", "500 What", nullptr},
              {"PBSZ 0", "500 What", nullptr},
              {"TYPE I", "500 What", nullptr},
              {"PASV", "421 Full", nullptr},
              {"PASV", nullptr, nullptr}};
  BeginSecure();
  for (const auto& row : rows) {
    SCOPED_TRACE(row.refused);
    const size_t errors = process.Errors().size();
    for (const std::string command : {"PBSZ 0", "PROT P", "TYPE I", "PASV"}) {
      Step& step = server.Expect(command);
      if (command != row.refused) {
        step.Reply("200 ok");
        continue;
      }
      row.reply ? step.Reply(row.reply) : step.ReplyPassiveRefused();
      break;
    }
    EXPECT_EQ(Run(), LProcessResultFailed);
    EXPECT_EQ(process.Errors().size(), errors + (row.error ? 1 : 0));
    if (row.error) {
      EXPECT_EQ(process.Errors().back(), row.error);
    }
  }
  EXPECT_TRUE(folder.Has("l.bin"));
  ExpectInStep();
}

TEST_P(Download, IsWhatTheClosingReplySays) {
  const struct {
    const char* closing;  ///< Null for none.
    LProcessResult result;
    const char* error;
  } rows[] = {
      {"226 Done", LProcessResultOk, ""},         {"250 Done", LProcessResultOk, ""},
      {"350 Odd", LProcessResultOk, ""},          {"426 Broken", LProcessResultFailed, "Broken"},
      {"451 Disk", LProcessResultFailed, "Disk"}, {"150 Again", LProcessResultFailed, "Again"},
      {"garbage", LProcessResultFailed, "age"},   {nullptr, LProcessResultFailed, ""},
  };
  gFtpTimeouts.closingReplyMs = kShortMs;
  Begin(Session::bHasSize);
  for (const auto& row : rows) {
    SCOPED_TRACE(row.closing ? row.closing : "silence");
    ExpectStart(5);
    Step& step = ExpectData("RETR r.bin").DataSend("12345");
    if (row.closing) step.Reply(row.closing);
    EXPECT_EQ(Run(), row.result);
    EXPECT_STREQ(error, row.error);
    EXPECT_EQ(folder.Has("l.bin"), row.result == LProcessResultOk);
  }
}

TEST_P(Download, OfAConnectionThatBreaksIsDecidedByTheClosingReply) {
  for (const bool secure : {false, true}) {
    SCOPED_TRACE(secure);
    BeginAs(secure, Session::bHasSize);
    ExpectStart(5 * kBlock);
    ExpectData("RETR r.bin").DataPart(TestBytes(kBlock)).Delay(50).DataReset().Reply("426 Broken");
    EXPECT_EQ(Run(), LProcessResultFailed);
    EXPECT_FALSE(folder.Has("l.bin"));
    ExpectInStep();
  }
}

TEST_P(Download, TellsOfASecureStreamThatWasCutOff) {
  BeginSecure(Session::bHasSize);
  ExpectStart(5);
  ExpectData("RETR r.bin").DataPart("12345").DataCut().Reply("226 Done");
  EXPECT_EQ(Run(), LProcessResultOk);
  EXPECT_EQ(Local(), "12345");
  EXPECT_THAT(history.Messages(), ElementsAre(HasSubstr("TLSの終了通知なし")));
}

TEST_P(Download, DoesNotTrustAWrongCertificate) {
  BeginSecure(Session::bHasSize);
  server.UseTls(TestServerContext(TestCertificate::kWrongName));
  ExpectStart(5);
  server.Expect("RETR r.bin").Reply("150 ok").DataTls(false).DataCut().Reply("425 TLS failed");
  EXPECT_EQ(Run(), LProcessResultFailed);
  EXPECT_STREQ(error, "TLS failed");
  ExpectInStep();
}

TEST_P(Download, KeepsTheControlConnectionAlive) {
  gFtpTimeouts.noopPeriodMs = kNoopMs;
  Begin(Session::bHasSize);
  ExpectStart(3 * kBlock);
  ExpectData("RETR r.bin").DataPart(TestBytes(kBlock)).Delay(2 * kNoopMs).DataPart(TestBytes(kBlock));
  server.Expect("NOOP").Reply("200 Still here").DataSend(TestBytes(kBlock)).Reply("226 Done");
  EXPECT_EQ(Run(), LProcessResultOk);
  EXPECT_EQ(Local().size(), 3 * kBlock);
  ExpectInStep();
}

TEST_P(Download, GathersRepliesThatComeLate) {
  const struct {
    const char* name;
    std::vector<std::string> replies;
    LProcessResult result;
  } rows[] = {
      {"closing reply first", {"226 Done", "200 Late"}, LProcessResultOk},
      {"closing reply last", {"200 Late", "226 Done"}, LProcessResultOk},
      {"broken off", {"200 Late", "426 Broken"}, LProcessResultFailed},
      {"the last one counts", {"426 Broken", "226 Done"}, LProcessResultOk},
      {"no closing reply", {"200 Late", "250 Odd"}, LProcessResultFailed},
  };
  gFtpTimeouts.noopPeriodMs = kNoopMs;
  gFtpTimeouts.noopReplyMs = kShortMs;
  gFtpTimeouts.lateReplyDownloadMs = 500;
  Begin(Session::bHasSize);
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    gFtpTimeouts.noopPeriodMs = kNoopMs;
    ExpectStart(2 * kBlock);
    ExpectData("RETR r.bin").DataPart(TestBytes(kBlock)).Delay(2 * kNoopMs).DataPart(TestBytes(kBlock));
    // The period is put back by then, so that there is one NOOP only.
    const size_t before = Commands().size();
    StopWhen([this, before] {
      if (Commands().size() > before && LastCommand() == "NOOP") gFtpTimeouts.noopPeriodMs = 60000;
      return false;
    });
    server.Expect("NOOP").Delay(500).DataClose().ReplyLines(row.replies);
    EXPECT_EQ(Run(), row.result);
    EXPECT_EQ(folder.Has("l.bin"), row.result == LProcessResultOk);
    ExpectInStep();
  }
}

TEST_P(Download, StoppedWhileDataComeIsAborted) {
  const struct {
    const char* name;
    std::vector<std::string> replies;
    LProcessResult result;
    const char* error;
  } rows[] = {
      {"aborted, then closed", {"426 Broken", "226 Abort done"}, LProcessResultOk, ""},
      {"aborted, then silence", {"426 Broken"}, LProcessResultFailed, ""},
      {"complete at that moment", {"226 Done", "226 Abort done"}, LProcessResultOk, ""},
      {"refused", {"500 What", "226 Done"}, LProcessResultOk, "What"},
      {"silence", {}, LProcessResultFailed, ""},
  };
  gFtpTimeouts.aborReplyMs = kShortMs;
  gFtpTimeouts.closingReplyMs = kShortMs;
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    Restart();
    Begin(Session::bHasSize);
    ExpectStart(9 * kBlock);
    ExpectData("RETR r.bin").DataPart(TestBytes(2 * kBlock));
    server.Expect("ABOR").DataClose().ReplyLines(row.replies);
    StopWhen([this] { return folder.Has("l.bin") && Local().size() >= 2 * kBlock; });
    EXPECT_EQ(Run(), row.result);
    EXPECT_STREQ(error, row.error);
    EXPECT_EQ(folder.Has("l.bin"), row.result == LProcessResultOk);
    process.OnQuestion(nullptr);
    folder.Write("l.bin", "");
  }
}

TEST_P(Download, StoppedInANoopKeepsWhatCameAndTheSessionInStep) {
  gFtpTimeouts.dataCloseMs = kShortMs;
  gFtpTimeouts.noopPeriodMs = kNoopMs;
  Begin(Session::bHasSize);
  ExpectStart(9 * kBlock);
  ExpectData("RETR r.bin").DataPart(TestBytes(kBlock)).Delay(2 * kNoopMs).DataPart(TestBytes(kBlock));
  server.Expect("NOOP").Delay(kOverASliceMs).DataClose().ReplyLines({"426 Broken", "200 Late"});
  StopWhen([this] { return LastCommand() == "NOOP"; });
  EXPECT_EQ(Run(), LProcessResultStopped);
  EXPECT_GT(Local().size(), kBlock);
  process.OnQuestion(nullptr);
  process.StopAt(0);
  ExpectInStep();
}

TEST_P(Download, StoppedInItsReplyLeavesTheSessionInStep) {
  gFtpTimeouts.aborReplyMs = 2 * kOverASliceMs;
  const auto begin = [this] {
    Begin(Session::bHasSize);
    ExpectStart(9 * kBlock);
  };
  ExpectStopsInItsReply("RETR r.bin", begin, [this] { return Run(); });
}

TEST_P(Download, StoppedBeforeItBegan) {
  const std::vector<Exchange> way = {{"TYPE I", "200 ok"},
                                     {"PASV", ""},
                                     {"TYPE I", "200 ok", false},
                                     {"SIZE r.bin", "213 5", false},
                                     {"RETR r.bin", "200 ok"}};
  ExpectStopsOnTheWay(Session::bHasSize, way, [this] {
    const LProcessResult result = Run();
    EXPECT_TRUE(folder.Has("l.bin"));
    EXPECT_EQ(Local(), "");
    return result;
  });
}

}  // namespace
