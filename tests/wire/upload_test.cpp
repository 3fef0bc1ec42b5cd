#include <fcntl.h>
#include <sys/stat.h>

#include "ftp/transfer.h"
#include "wire/data_fixture.h"

namespace {

using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr size_t kBlock = FtpTransferProgress::kBlockSize;
/// More than the kernel holds for both ends of a connection.
constexpr size_t kMoreThanBuffers = 10u << 20;

class Upload : public DataTest {
 protected:
  LProcessResult Run(bool append = false) {
    return ProcessFtpUpload(process, session, "r.bin", folder.Path("l.bin").c_str(), &error, append);
  }
  void WriteLocal(const std::string& content) {
    const std::string path = folder.Write("l.bin", content);
    const timespec times[2] = {{1577934245, 0}, {1577934245, 0}};  // 2020-01-02 03:04:05 UTC
    ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
  }
  /// The server stands still until it has been sent a NOOP. Later ones are put off.
  Step& ExpectNoopInTheMiddle() {
    gFtpTimeouts.noopPeriodMs = 100;
    const size_t before = Commands().size();
    StopWhen([this, before] {
      if (Commands().size() > before && LastCommand() == "NOOP") gFtpTimeouts.noopPeriodMs = 60000;
      return false;
    });
    ExpectPassive("I");
    ExpectData("STOR r.bin").Delay(200).DataReceiveMeanwhile();
    return server.Expect("NOOP");
  }

  char error[kTextSize] = "untouched";
};
WIRE_SUITE(Upload);

TEST_P(Upload, SendsAFile) {
  for (const bool secure : {false, true}) {
    SCOPED_TRACE(secure);
    BeginAs(secure, Session::bHasMfmt);
    const std::string content = TestBytes(300 * kBlock + 7);
    WriteLocal(content);
    ExpectPassive("I");
    ExpectData("STOR r.bin").DataReceive().Reply("226 Done");
    server.Expect("MFMT 20200102030405 r.bin").Reply(secure ? "213 ok" : "500 What");
    EXPECT_EQ(Run(), LProcessResultOk);
    EXPECT_TRUE(server.Received().back() == content);
    EXPECT_STREQ(error, "");
    EXPECT_THAT(history.Messages(), IsEmpty());
    ExpectInStep();
  }
}

TEST_P(Upload, ShowsItsProgress) {
  Begin();
  for (const size_t blocks : {size_t{0}, size_t{4}, size_t{1000}}) {
    WriteLocal(TestBytes(blocks * kBlock));
    ExpectPassive("I");
    ExpectData("STOR r.bin").DataReceive().Reply("226 Done");
    EXPECT_EQ(Run(), LProcessResultOk);
    EXPECT_TRUE(server.Received().back() == TestBytes(blocks * kBlock));
  }
  const std::string doing = "ファイルをアップロードしています...";
  EXPECT_THAT(StatusesAt(0), ElementsAre(doing, doing, doing));
  const std::vector<std::string> items = StatusesAt(1);
  ASSERT_EQ(items.size(), 1u + 1 + 4 + 1 + 91);
  EXPECT_THAT(std::vector<std::string>(items.begin(), items.begin() + 9),
              ElementsAre("l.bin", "l.bin", "l.bin: 25%", "l.bin: 50%", "l.bin: 75%", "l.bin: 100%", "l.bin",
                          "l.bin:  0%", "l.bin:  1%"));
  EXPECT_EQ(items.back(), "l.bin: 90%");
}

TEST_P(Upload, ArrivesWholeHoweverLateTheServerReads) {
  for (const bool secure : {false, true}) {
    SCOPED_TRACE(secure);
    BeginAs(secure);
    // All of it fits into the kernel's buffers, and the server has something to say: closing at once with
    // that unread would throw the data away.
    WriteLocal(TestBytes(100 * kBlock));
    ExpectPassive("I");
    ExpectData("STOR r.bin").DataPart("unasked").Delay(150).DataReceive().Reply("226 Done");
    EXPECT_EQ(Run(), LProcessResultOk);
    EXPECT_TRUE(server.Received().back() == TestBytes(100 * kBlock));

    WriteLocal(TestBytes(kMoreThanBuffers));
    ExpectPassive("I");
    ExpectData("STOR r.bin").Delay(150).DataReceive().Reply("226 Done");
    EXPECT_EQ(Run(), LProcessResultOk);
    EXPECT_TRUE(server.Received().back() == TestBytes(kMoreThanBuffers));
  }
}

TEST_P(Upload, DoesNotWaitLongForAServerThatKeepsTheConnectionOpen) {
  gFtpTimeouts.dataCloseMs = kShortMs;
  for (const bool secure : {false, true}) {
    SCOPED_TRACE(secure);
    BeginAs(secure);
    WriteLocal(TestBytes(kBlock));
    ExpectPassive("I");
    ExpectData("STOR r.bin").DataReceive(kBlock).Reply("226 Done");
    LProcessResult result = LProcessResultFailed;
    EXPECT_LT(MillisecondsOf([&] { result = Run(); }), 2000);
    EXPECT_EQ(result, LProcessResultOk);
  }
}

TEST_P(Upload, IsWhatTheClosingReplySays) {
  const struct {
    const char* closing;  ///< Null for none.
    const char* size;     ///< What SIZE says when it is asked.
    LProcessResult result;
    const char* message;
  } rows[] = {
      {"226 Done", nullptr, LProcessResultOk, nullptr},
      {"350 Odd", nullptr, LProcessResultOk, nullptr},
      {nullptr, nullptr, LProcessResultOk, nullptr},
      {"426 Broken", "5", LProcessResultOk, nullptr},
      {"426 Broken", "4", LProcessResultFailed, nullptr},
      {"451 Disk", nullptr, LProcessResultFailed, "サーバーへのアップロード中にエラーが発生しました：Disk"},
      {"550 No", nullptr, LProcessResultFailed, "サーバーへのアップロード中にエラーが発生しました：No"},
      {"552 Quota", nullptr, LProcessResultFailed, nullptr},
      {"garbage", nullptr, LProcessResultFailed, nullptr},
  };
  gFtpTimeouts.closingReplyMs = kShortMs;
  Begin(Session::bHasSize);
  WriteLocal("12345");
  for (const auto& row : rows) {
    SCOPED_TRACE(row.closing ? row.closing : "silence");
    const size_t messages = history.Messages().size();
    ExpectPassive("I");
    Step& step = ExpectData("STOR r.bin").DataReceive();
    if (row.closing) step.Reply(row.closing);
    if (row.size) {
      server.Expect("TYPE I").Reply("200 ok");
      server.Expect("SIZE r.bin").Reply(std::string("213 ") + row.size);
    }
    EXPECT_EQ(Run(), row.result);
    EXPECT_EQ(history.Messages().size(), messages + (row.message ? 1 : 0));
    if (row.message) {
      EXPECT_EQ(history.Messages().back(), row.message);
    }
    ExpectInStep();
  }
}

TEST_P(Upload, RefusedWith550IsTriedOnceMore) {
  const struct {
    const char* first;
    const char* second;  ///< Null where nothing is tried again.
    LProcessResult result;
    const char* error;
  } rows[] = {
      {"550 Busy", "150 Now", LProcessResultOk, "Busy"},
      {"550 Busy", "550 Still busy", LProcessResultFailed, "Still busy"},
      {"553 Bad name", nullptr, LProcessResultFailed, "Bad name"},
      // A code below 300 is no error text, but no transfer either.
      {"250 Done already", nullptr, LProcessResultFailed, ""},
  };
  Begin();
  WriteLocal("12345");
  for (const auto& row : rows) {
    SCOPED_TRACE(row.first);
    ExpectPassive("I");
    server.Expect("STOR r.bin").Reply(row.first);
    if (row.second) {
      server.Expect("PASV").ReplyPassive();
      Step& again = server.Expect("STOR r.bin").Reply(row.second);
      if (row.result == LProcessResultOk) again.DataReceive().Reply("226 Done");
    }
    EXPECT_EQ(Run(), row.result);
    EXPECT_STREQ(error, row.error);
  }
  EXPECT_THAT(server.Received(), ElementsAre("12345"));
  ExpectInStep();
}

TEST_P(Upload, AppendsWhatTheServerLacks) {
  const struct {
    const char* remoteSize;
    const char* sent;
    const char* label;
  } rows[] = {{"3", "45", "l.bin: 100%"}, {"5", "", "l.bin"}, {"9", "", "l.bin"}, {"-2", "12345", "l.bin: 100%"}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.remoteSize);
    Begin(Session::bHasSize);
    WriteLocal("12345");
    ExpectPassive("I");
    server.Expect("APPE r.bin").Reply("150 ok");
    server.Expect("TYPE I").Reply("200 ok");
    server.Expect("SIZE r.bin").Reply(std::string("213 ") + row.remoteSize).DataReceive().Reply("226 Done");
    EXPECT_EQ(Run(true), LProcessResultOk);
    EXPECT_EQ(server.Received().back(), row.sent);
    EXPECT_EQ(StatusesAt(1).back(), row.label);
  }
  // A refused one is sent whole.
  ExpectPassive("I");
  server.Expect("APPE r.bin").Reply("502 What");
  server.Expect("PASV").ReplyPassive();
  ExpectData("STOR r.bin").DataReceive().Reply("226 Done");
  EXPECT_EQ(Run(true), LProcessResultOk);
  EXPECT_EQ(server.Received().back(), "12345");
}

TEST_P(Upload, FailsWithoutALocalFile) {
  Begin();
  EXPECT_EQ(Run(), LProcessResultFailed);
  EXPECT_THAT(Commands(), IsEmpty());
}

TEST_P(Upload, FailsWhenTheConnectionBreaks) {
  for (const bool secure : {false, true}) {
    SCOPED_TRACE(secure);
    BeginAs(secure);
    WriteLocal(TestBytes(kMoreThanBuffers));
    ExpectPassive("I");
    ExpectData("STOR r.bin").DataReceive(kBlock).DataReset();
    EXPECT_EQ(Run(), LProcessResultFailed);
  }
}

TEST_P(Upload, FailsWhenTheServerTakesNothing) {
  gFtpTimeouts.sendBlockMs = 300;
  Begin();
  WriteLocal(TestBytes(kMoreThanBuffers));
  ExpectPassive("I");
  ExpectData("STOR r.bin").AcceptData().Delay(1500);
  EXPECT_EQ(Run(), LProcessResultFailed);
}

TEST_P(Upload, SendsANoopInTheMiddle) {
  const struct {
    const char* reply;
    LProcessResult result;
  } rows[] = {{"200 Still here", LProcessResultOk}, {"451 Disk full", LProcessResultFailed}};
  WriteLocal(TestBytes(kMoreThanBuffers));
  for (const auto& row : rows) {
    SCOPED_TRACE(row.reply);
    Restart();
    Begin();
    Step& noop = ExpectNoopInTheMiddle();
    if (row.result == LProcessResultOk) noop.Reply(row.reply).DataReceive().Reply("226 Done");
    if (row.result == LProcessResultFailed) noop.Reply(row.reply);
    EXPECT_EQ(Run(), row.result);
    if (row.result == LProcessResultOk) {
      EXPECT_TRUE(server.Received().back() == TestBytes(kMoreThanBuffers));
    }
    ExpectInStep();
  }
}

/// Many servers look at the control connection only when the transfer is over.
TEST_P(Upload, StoppedInANoopLeavesTheSessionInStep) {
  WriteLocal(TestBytes(kMoreThanBuffers));
  const std::vector<std::string> rows[] = {{"226 Done", "200 Late"}, {"200 Late", "426 Broken"}};
  for (const auto& replies : rows) {
    SCOPED_TRACE(replies[0]);
    Restart();
    Begin();
    ExpectNoopInTheMiddle().DataReceive().ReplyLines(replies);
    const size_t before = Commands().size();
    StopWhen([this, before] { return Commands().size() > before && LastCommand() == "NOOP"; });
    EXPECT_EQ(Run(), LProcessResultStopped);
    process.OnQuestion(nullptr);
    process.StopAt(0);
    ExpectInStep();
  }
}

TEST_P(Upload, GathersRepliesThatComeLate) {
  const struct {
    const char* name;
    std::vector<std::string> replies;
    LProcessResult result;
  } rows[] = {
      {"closing reply first", {"226 Done", "200 Late"}, LProcessResultOk},
      {"closing reply last", {"200 Late", "226 Done"}, LProcessResultOk},
      {"full after all", {"226 Done", "451 Full"}, LProcessResultOk},  // No reply counts as success.
      {"broken off, not whole", {"200 Late", "426 Broken"}, LProcessResultFailed},
      {"nothing", {}, LProcessResultOk},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    gFtpTimeouts.noopReplyMs = kShortMs;
    gFtpTimeouts.lateReplyUploadMs = 500;
    Begin(Session::bHasSize);
    WriteLocal(TestBytes(kMoreThanBuffers));
    ExpectNoopInTheMiddle().Delay(300).DataReceive().ReplyLines(row.replies);
    if (row.result != LProcessResultOk) {
      server.Expect("TYPE I").Reply("200 ok");
      server.Expect("SIZE r.bin").Reply("213 1");
    }
    EXPECT_EQ(Run(), row.result);
    ExpectInStep();
  }
}

TEST_P(Upload, StoppedWhileDataGoIsAborted) {
  const struct {
    const char* name;
    std::vector<std::string> replies;
    LProcessResult result;
    const char* error;
  } rows[] = {
      {"aborted, then closed", {"426 Broken", "226 Abort done"}, LProcessResultStopped, ""},
      {"aborted, then silence", {"226 Abort done"}, LProcessResultStopped, ""},
      {"silence", {}, LProcessResultStopped, ""},
      {"no data connection", {"425 None", "226 Abort done"}, LProcessResultFailed, "None"},
      {"refused", {"500 What"}, LProcessResultFailed, "What"},
  };
  gFtpTimeouts.aborReplyMs = gFtpTimeouts.aborExtraReplyMs = kShortMs;
  gFtpTimeouts.closingReplyMs = gFtpTimeouts.lateReplyUploadMs = kShortMs;
  for (const bool secure : {false, true}) {
    for (const auto& row : rows) {
      SCOPED_TRACE(std::string(row.name) + (secure ? ", secure" : ""));
      Restart();
      BeginAs(secure, Session::bHasMfmt);
      WriteLocal(TestBytes(kMoreThanBuffers));
      ExpectPassive("I");
      ExpectData("STOR r.bin").DataReceive(kBlock);
      server.Expect("ABOR").DataClose().ReplyLines(row.replies);
      const size_t shown = process.Progress().size();
      StopWhen([this, shown] { return process.Progress().size() > shown + 1; });
      EXPECT_EQ(Run(), row.result);
      EXPECT_STREQ(error, row.error);
      EXPECT_EQ(LastCommand(), "ABOR");
    }
  }
}

TEST_P(Upload, StoppedInItsReplyLeavesTheSessionInStep) {
  gFtpTimeouts.aborReplyMs = 2 * kOverASliceMs;
  WriteLocal("12345");
  const auto begin = [this] {
    Begin();
    ExpectPassive("I");
  };
  ExpectStopsInItsReply("STOR r.bin", begin, [this] { return Run(); });
}

TEST_P(Upload, StoppedBeforeItBegan) {
  WriteLocal("12345");
  ExpectStopsOnTheWay(0, {{"TYPE I", "200 ok"}, {"PASV", ""}, {"STOR r.bin", "200 ok"}}, [this] { return Run(); });
}

}  // namespace
