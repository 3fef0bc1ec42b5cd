#include "ftp/data_connection.h"

#include "wire/data_fixture.h"

namespace {

class DataConnection : public DataTest {
 protected:
  /// Opens the connection; the server's side of the story is the step that is given back.
  Step& Open(bool secure = false) {
    BeginAs(secure);
    server.Expect("PASV").ReplyPassive();
    Step& step = server.Expect("NOOP");
    if (secure) step.DataTls();
    EXPECT_EQ(ProcessFtpPassive(process, session, address), LProcessResultOk);
    EXPECT_EQ(data.Open(process, address), LProcessResultOk);
    return step;
  }
  /// Lets the server work through its side.
  void Begin(bool secure = false) {
    EXPECT_EQ(ProcessSendString(process, session, "NOOP\r\n", kAmpleMs), LProcessResultOk);
    if (secure) data.FinishTls(process);
  }
  LProcessResult ReceiveLine() { return data.ReceiveLine(process, line, gFtpTimeouts.listingLineMs); }

  char address[kTextSize];
  FtpDataConnection data;
  LStringLongTemplate<char> line;
};
WIRE_SUITE(DataConnection);

TEST_P(DataConnection, GivesLines) {
  Open().DataSend("one\r\ntwo\n\r\na\rb\r\nlast\r");
  Begin();
  for (const char* expected : {"one", "two", "", "a\rb", "last"}) {
    EXPECT_EQ(ReceiveLine(), LProcessResultOk);
    EXPECT_STREQ(line.Text(), expected);
  }
  EXPECT_EQ(ReceiveLine(), LProcessResultFailed);
}

TEST_P(DataConnection, MovesLargePiecesWithFewQuestions) {
  constexpr size_t kSize = 8u << 20;
  for (const bool secure : {false, true}) {
    SCOPED_TRACE(secure);
    const std::string content = TestBytes(kSize);
    Open(secure).DataSend(content);
    Begin(secure);
    const int before = process.Questions();
    std::string received;
    size_t count = 0;
    while (data.Receive(process, data.Piece(), FtpDataConnection::kPieceSize, count, kAmpleMs) == LProcessResultOk) {
      ASSERT_LE(count, FtpDataConnection::kPieceSize);
      received.append(data.Piece(), count);
    }
    EXPECT_TRUE(received == content);
    // One for each block of 1024 bytes would be 8192.
    EXPECT_LT(process.Questions() - before, 2000);
  }
}

TEST_P(DataConnection, ClosesAtOnceWhereNothingWasMoved) {
  Open().AcceptData().Delay(500);
  Begin();
  EXPECT_LT(MillisecondsOf([this] { data.Close(process); }), 200);
}

TEST_P(DataConnection, ClosesWithinItsBoundWhenTheServerGoesOnSending) {
  Open().DataPart(TestBytes(4u << 20)).Delay(200).DataPart(TestBytes(4u << 20)).DataClose();
  Begin();
  gFtpTimeouts.dataCloseMs = kShortMs;
  size_t count = 0;
  ASSERT_EQ(data.Receive(process, data.Piece(), 1, count, kAmpleMs), LProcessResultOk);
  StopWhen([] { return true; });  // A stop does not cut the order short, nor make it longer.
  EXPECT_LT(MillisecondsOf([this] { data.Close(process); }), 2000);
}

TEST_P(DataConnection, TriesARefusedAddressTwice) {
  BeginAs(false);
  server.Expect("PASV").ReplyPassiveRefused();
  ASSERT_EQ(ProcessFtpPassive(process, session, address), LProcessResultOk);
  int questions = process.Questions();
  EXPECT_EQ(data.Open(process, address), LProcessResultFailed);
  const int once = process.Questions() - questions;
  questions = process.Questions();
  EXPECT_EQ(data.OpenInTwoTries(process, address), LProcessResultFailed);
  EXPECT_EQ(process.Questions() - questions, 2 * once);
  process.StopNow();
  questions = process.Questions();
  EXPECT_EQ(data.OpenInTwoTries(process, address), LProcessResultStopped);
  EXPECT_LE(process.Questions() - questions, once);
}

}  // namespace
