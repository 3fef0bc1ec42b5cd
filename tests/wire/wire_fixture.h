// What all tests of the wire start from: a scripted server, a session, a process that records, the history,
// and short time-outs. Every test runs twice: with replies as they are, and cut into segments of one byte.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ftp/protocol.h"
#include "ftp/timeouts.h"
#include "support/history_file.h"
#include "support/recording_interface.h"
#include "support/scripted_server.h"

constexpr char kLogonRefused[] =
    "ユーザーログインに失敗しました。ユーザー名とパスワードが正しいことを確認してください。";
constexpr char kProtectionRefused[] =
    "このFTPサーバーは接続に必要な保護されたモードでのデータ転送をサポートしていません。";
constexpr char kCommandTooLong[] = "コマンドが長すぎるため送信しませんでした。";

class WireTest : public testing::TestWithParam<bool> {
 protected:
  /// Long enough for any reply that comes at all.
  static constexpr unsigned kAmpleMs = 4000;
  /// For what does not come: one slice of the sockets.
  static constexpr unsigned kShortMs = 200;

  WireTest() : former_timeouts(gFtpTimeouts) { SetTimeouts(kAmpleMs); }
  ~WireTest() override {
    gFtpTimeouts = former_timeouts;
    ScriptedServer::one_byte_segments = false;
  }

  /// All that wait for the server.
  static void SetTimeouts(unsigned ms) {
    FtpTimeouts& table = gFtpTimeouts;
    for (unsigned* limit :
         {&table.sendMs, &table.sendNoTraceMs, &table.sendMultiLineMs, &table.sendDirectMs, &table.replyMs,
          &table.drainReplyMs, &table.extraReplyMs, &table.connectMs, &table.greetingMs, &table.logonHandshakeMs}) {
      *limit = ms;
    }
  }

  /// For the next row of a table: no connection, and nothing that stops.
  void Restart() {
    session.CloseSocket();
    process.OnQuestion(nullptr);
    process.StopAt(0);
  }
  /// A plain connection on which the server has nothing to say yet.
  void Connect() {
    server.Accept();
    ConnectToGreeting();
  }
  /// For a script that holds the connection already.
  void ConnectToGreeting() {
    ASSERT_EQ(ProcessConnect<char>(process, session, server.Address().c_str(), 21, kAmpleMs, false), LProcessResultOk);
  }
  /// The process is stopped as soon as the server has got so many commands.
  void StopAfterCommands(size_t count) {
    process.OnQuestion([this, count] {
      if (server.Commands().size() >= count) process.StopNow();
    });
  }
  LProcessResult Send(const std::string& command) {
    return ProcessFtpSendAndWaitForReply(process, session, command.c_str(), &code, &text);
  }
  /// The session is in step if the next command gets the next reply.
  void ExpectInStep() {
    server.Expect("NOOP").Reply("200 In step");
    LProcessInterfaceVoid unstoppable;
    char reply[kTextSize];
    EXPECT_EQ(ProcessFtpSendAndWaitForReply(unstoppable, session, "NOOP\r\n", nullptr, &reply), LProcessResultOk);
    EXPECT_STREQ(reply, "In step");
  }

  const bool one_byte = ScriptedServer::one_byte_segments = GetParam();  ///< Before the server is made.
  ScriptedServer server;
  LFileTransferProtocol session;
  RecordingInterface process;
  HistoryFile history;
  unsigned short code = 9999;
  char text[kTextSize] = "untouched";
  const FtpTimeouts former_timeouts;
};

inline std::string SegmentsName(const testing::TestParamInfo<bool>& parameter) {
  return parameter.param ? "OneByte" : "Whole";
}

#define WIRE_SUITE(name) INSTANTIATE_TEST_SUITE_P(Segments, name, testing::Bool(), SegmentsName)
