#include "ftp/commands.h"

#include "wire/wire_fixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Commands : public WireTest {
 protected:
  LProcessResult SendTraced(const std::string& command) {
    return ProcessFtpSendAndWaitForReplyNoTrace(process, session, command.c_str(), &code, &text);
  }
  LProcessResult SendMultiLine(const std::string& command) {
    const LProcessResult result = ProcessFtpSendAndWaitForReply(process, session, command.c_str(), list);
    lines.assign(list.strings, list.strings + list.count);
    return result;
  }

  LStringListTemplate<char> list;
  std::vector<std::string> lines;
};
WIRE_SUITE(Commands);

TEST_P(Commands, SucceedByTheCodeOfTheReply) {
  Connect();
  session.Set(LFileTransferProtocol::bFeaturesKnown);
  const struct {
    const char* code;
    bool plain;   ///< Succeeds in the plain form.
    bool traced;  ///< Succeeds in the tracing form.
  } rows[] = {
      {"200", true, true},   {"399", true, true},   {"125", true, false},  {"150", true, false},
      {"126", false, false}, {"151", false, false}, {"199", false, false}, {"400", false, false},
      {"550", false, false}, {"000", false, false}, {"999", false, false}, {"xyz", false, false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.code);
    server.Expect("STAT a").Reply(std::string(row.code) + " text");
    EXPECT_EQ(Send("STAT a\r\n"), row.plain ? LProcessResultOk : LProcessResultFailed);
    EXPECT_EQ(code, atoi(row.code));
    EXPECT_STREQ(text, "text");
    server.Expect("STAT b").Reply(std::string(row.code) + " text");
    EXPECT_EQ(SendTraced("STAT b\r\n"), row.traced ? LProcessResultOk : LProcessResultFailed);
    EXPECT_EQ(code, atoi(row.code));
  }
}

TEST_P(Commands, StandInTheHistoryWithTheirReplies) {
  Connect();
  server.Expect("CWD 日本").ReplyLines({"250-one", "250 two"});
  EXPECT_EQ(Send("CWD 日本\r\n"), LProcessResultOk);
  server.Expect("PASS secret").Reply("230 In");
  EXPECT_EQ(SendTraced("PASS secret\r\n"), LProcessResultOk);
  server.Expect("PASS ").Reply("230 In");
  EXPECT_EQ(SendTraced("PASS \r\n"), LProcessResultOk);
  EXPECT_THAT(history.Lines(), ElementsAre("コマンド: CWD 日本", "応答:  250 two", "コマンド: ******", "応答:  230 In",
                                           "コマンド: ", "応答:  230 In"));
}

TEST_P(Commands, TracedTellWhyTheyFailed) {
  Connect();
  server.Expect("PASS a").Reply("530 No");
  EXPECT_EQ(SendTraced("PASS a\r\n"), LProcessResultFailed);
  server.Expect("OPTS UTF8 ON").Reply("502 What");
  EXPECT_EQ(SendTraced("OPTS UTF8 ON\r\n"), LProcessResultFailed);
  EXPECT_THAT(history.Messages(), ElementsAre(kLogonRefused, "Reply Gave Unexpected Response: 502"));
  ExpectInStep();
}

TEST_P(Commands, TakeASecondReplyTo500WhileFeaturesAreUnknown) {
  Connect();
  server.Expect("SYST").ReplyLines({"500 What", "500 Really what"});
  EXPECT_EQ(Send("SYST\r\n"), LProcessResultFailed);
  EXPECT_EQ(code, 500);
  EXPECT_STREQ(text, "What");
  ExpectInStep();

  session.Set(LFileTransferProtocol::bFeaturesKnown);
  server.Expect("SYST").ReplyLines({"500 What", "200 In between"});
  EXPECT_EQ(Send("SYST\r\n"), LProcessResultFailed);
  server.Expect("NOOP").Silence();
  EXPECT_EQ(Send("NOOP\r\n"), LProcessResultOk);
  EXPECT_STREQ(text, "In between");
}

TEST_P(Commands, DoNotFailOnASecondReplyThatDoesNotCome) {
  Connect();
  gFtpTimeouts.extraReplyMs = kShortMs;
  server.Expect("SYST").Reply("500 What");
  EXPECT_EQ(Send("SYST\r\n"), LProcessResultFailed);
  EXPECT_EQ(code, 500);
  ExpectInStep();
}

TEST_P(Commands, TracedLeaveTheReplyOfAStoppedOne) {
  Connect();
  StopAfterCommands(1);
  server.Expect("PASS a").Delay(300).Reply("230 Late");
  EXPECT_EQ(SendTraced("PASS a\r\n"), LProcessResultStopped);
  LProcessInterfaceVoid unstoppable;
  EXPECT_EQ(ProcessFtpWaitForReplyTimeout(unstoppable, session, code, text, kAmpleMs), LProcessResultOk);
  EXPECT_STREQ(text, "Late");
}

TEST_P(Commands, FailOnAServerThatIsSilentOrGone) {
  Connect();
  gFtpTimeouts.replyMs = kShortMs;
  server.Expect("STAT").Silence();
  EXPECT_EQ(Send("STAT\r\n"), LProcessResultFailed);
  EXPECT_EQ(code, 0);
  EXPECT_STREQ(text, "");
  server.Expect("PASS a").Silence();
  EXPECT_EQ(SendTraced("PASS a\r\n"), LProcessResultFailed);
  server.Expect("FEAT").Close();
  EXPECT_EQ(SendMultiLine("FEAT\r\n"), LProcessResultFailed);
  EXPECT_THAT(lines, IsEmpty());
  session.CloseSocket();
  EXPECT_EQ(Send("STAT\r\n"), LProcessResultFailed);
  EXPECT_EQ(SendTraced("STAT\r\n"), LProcessResultFailed);
  EXPECT_EQ(SendMultiLine("STAT\r\n"), LProcessResultFailed);
}

TEST_P(Commands, MultiLineGiveAllButTheClosingLine) {
  const struct {
    const char* name;
    std::vector<std::string> reply;
    LProcessResult result;
    std::vector<std::string> lines;
  } rows[] = {
      {"features",
       {"211-Features:", " MDTM", " UTF8 \t", "211 End"},
       LProcessResultOk,
       {"211-Features:", " MDTM", " UTF8"}},
      {"one line", {"211 None"}, LProcessResultOk, {"211 None"}},
      {"other codes inside",
       {"250-a", "211 b", "250-c", "free", "2501", "250 d"},
       LProcessResultOk,
       {"250-a", "211 b", "250-c", "free", "2501"}},
      {"blank lines", {"250-a", "", " \t", "x", "250 d"}, LProcessResultOk, {"250-a", "x"}},
      {"refused", {"550 No such file"}, LProcessResultFailed, {"550 No such file"}},
      {"refused at length", {"550-No"}, LProcessResultFailed, {"550-No"}},
      {"preliminary", {"150 Data follow"}, LProcessResultFailed, {"150 Data follow"}},
      {"free text", {"hello"}, LProcessResultFailed, {"hello"}},
      {"short", {"25"}, LProcessResultFailed, {"25"}},
      {"blank first line", {" "}, LProcessResultFailed, {}},
      {"a long line", {"250-", std::string(10000, 'x'), "250 d"}, LProcessResultOk, {"250-", std::string(10000, 'x')}},
      // The blank behind the code is trimmed away with the rest of the line's end.
      {"closed by a code alone", {"250-a", "250 "}, LProcessResultFailed, {"250-a", "250"}},
  };
  Connect();
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    list.Add("former");
    if (row.reply.back() == "250 ") gFtpTimeouts.replyMs = 2 * kShortMs;
    server.Expect("MLST a").ReplyLines(row.reply);
    EXPECT_EQ(SendMultiLine("MLST a\r\n"), row.result);
    EXPECT_EQ(lines, row.lines);
  }
  const std::vector<std::string> logged = history.Lines();
  EXPECT_THAT(logged, testing::Each("コマンド: MLST a"));
  EXPECT_EQ(logged.size(), std::size(rows));
}

TEST_P(Commands, MultiLineReadNothingBehindARefusal) {
  Connect();
  server.Expect("MLST a").ReplyLines({"550-No", "550 Really"});
  EXPECT_EQ(SendMultiLine("MLST a\r\n"), LProcessResultFailed);
  EXPECT_EQ(ProcessFtpWaitForReplyTimeout(process, session, code, text, kAmpleMs), LProcessResultOk);
  EXPECT_STREQ(text, "Really");
}

TEST(SendableCommands, HaveTextAndOneLineEndBehindIt) {
  for (const char* command : {"CWD a\r\nDELE b\r\n", "CWD a\nDELE b\r\n", "CWD a\rDELE b\r\n", "CWD a\n\r\n",
                              "CWD a\r\r\n", "CWD a", "CWD a\r", "CWD a\n", "\r\n", "\n", ""}) {
    EXPECT_FALSE(FtpCommandIsSendable(command)) << testing::PrintToString(command);
  }
  EXPECT_TRUE(FtpCommandIsSendable("CWD a\r\n"));
}

TEST_P(Commands, ThatDoNotFitTheirBufferNeverGoOut) {
  Connect();
  const std::string longest(kFtpLongCommand - 1 - strlen("CWD \r\n"), 'd');
  server.Expect("CWD " + longest).Reply("250 ok");
  EXPECT_TRUE(session.SetCurrentDirectory(longest.c_str()));
  EXPECT_FALSE(session.SetCurrentDirectory((longest + "d").c_str()));
  EXPECT_FALSE(session.CreateDirectory((longest + "d").c_str()));
  // Cut short, this one would end in a line end and name another folder.
  EXPECT_FALSE(session.SetCurrentDirectory((longest + "\r\nmore").c_str()));
  EXPECT_THAT(history.Messages(), ElementsAre(kCommandTooLong, kCommandTooLong, kCommandTooLong));
  ExpectInStep();
}

TEST_P(Commands, ChangeAndTellTheDirectory) {
  Connect();
  server.Expect("CWD /a b").Reply("250 ok");
  EXPECT_TRUE(session.SetCurrentDirectory("/a b"));
  session.Set(LFileTransferProtocol::bFeaturesKnown);
  server.Expect("CWD x").Reply("550 No");
  EXPECT_FALSE(session.SetCurrentDirectory("x"));

  char path[kTextSize] = "former";
  server.Expect("PWD").Reply("257 \"/a b\" is it");
  EXPECT_TRUE(session.GetCurrentDirectory(path));
  EXPECT_STREQ(path, "/a b");
  for (const char* refusal : {"300 \"/x\"", "199 \"/x\"", "550 \"/x\""}) {
    server.Expect("PWD").Reply(refusal);
    EXPECT_FALSE(session.GetCurrentDirectory(path));
    EXPECT_STREQ(path, "");
  }
}

TEST_P(Commands, CreateADirectoryThatMayExist) {
  Connect();
  EXPECT_TRUE(session.CreateDirectory("/"));
  EXPECT_TRUE(session.CreateDirectory(""));
  const struct {
    const char* reply;
    bool made;
  } rows[] = {{"257 made", true}, {"399 x", true}, {"521 exists", true}, {"550 No", false}, {"150 x", false}};
  for (const auto& row : rows) {
    server.Expect("MKD new").Reply(row.reply);
    EXPECT_EQ(session.CreateDirectory("new"), row.made) << row.reply;
  }
  process.StopNow();
  EXPECT_EQ(ProcessFtpCreateDirectory(process, session, "new"), LProcessResultStopped);
  EXPECT_EQ(server.Commands().size(), std::size(rows));
}

}  // namespace
