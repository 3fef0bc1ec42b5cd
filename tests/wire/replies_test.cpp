#include "ftp/commands.h"
#include "wire/wire_fixture.h"

namespace {

using testing::ElementsAre;

class Replies : public WireTest {
 protected:
  LProcessResult Wait(unsigned ms = kAmpleMs) {
    return ProcessFtpWaitForReplyTimeout(process, session, code, text, ms);
  }
};
WIRE_SUITE(Replies);

struct ReplyRow {
  const char* name;
  std::string bytes;
  unsigned short code;
  std::string text;
  std::string logged;
  /// The sockets take a carriage return at the end of a segment for a half of a line end.
  bool needs_whole_segment = false;
};

const ReplyRow kReplies[] = {
    {"one line", "220 Ready\r\n", 220, "Ready", "220 Ready"},
    {"only the closing line counts", "220-Welcome\r\n220-more\r\n220 Ready\r\n", 220, "Ready", "220 Ready"},
    {"an indented line", "220-Welcome\r\n 220 not yet\r\n220 Ready\r\n", 220, "Ready", "220 Ready"},
    {"blank lines", "\r\n\n220-a\r\n\r\n220 Ready\r\n", 220, "Ready", "220 Ready"},
    {"a continuation of another code", "220-a\r\n221-b\r\n230 In\r\n", 230, "In", "230 In"},
    {"free text closes the reply", "230-x\r\nfree text\r\n", 0, " text", "free text"},
    {"carriage return inside a line", "220-a\r220 Ready\r\n", 220, "Ready", "220 Ready", true},
    {"zero byte inside a line", std::string("220-a") + '\0' + "220 Ready\r\n", 220, "Ready", "220 Ready"},
    {"text behind a carriage return is dropped", "220 Ready\r221 Bye\r\n", 220, "Ready", "220 Ready", true},
    {"code alone", "226\r\n", 226, "", "226"},
    {"blank in front of the text", "257  \"/\"\r\n", 257, " \"/\"", "257  \"/\""},
    {"too short for a continuation", "22-\r\n", 22, "", "22-"},
    {"bytes of no text", "\xff\xfe\xfd\r\n", 0, "", "\xff\xfe\xfd"},
};

TEST_P(Replies, EndAtTheFirstLineThatIsNoContinuation) {
  for (const ReplyRow& row : kReplies) {
    if (one_byte && row.needs_whole_segment) continue;
    SCOPED_TRACE(row.name);
    const HistoryFile lines;
    server.Accept().Raw(row.bytes);
    ConnectToGreeting();
    EXPECT_EQ(Wait(), LProcessResultOk);
    EXPECT_EQ(code, row.code);
    EXPECT_EQ(text, row.text);
    EXPECT_THAT(lines.Lines(), ElementsAre("応答:  " + row.logged));
  }
}

TEST_P(Replies, AreCutAt259Bytes) {
  for (const size_t size : {258u, 259u, 260u, 300u, 10000u}) {
    SCOPED_TRACE(size);
    server.Accept().ReplyLongLine("220 ", size).Reply("221 Next");
    ConnectToGreeting();
    EXPECT_EQ(Wait(), LProcessResultOk);
    EXPECT_EQ(code, 220);
    EXPECT_EQ(strlen(text), std::min<size_t>(size, 259) - 4);
    EXPECT_EQ(Wait(), LProcessResultOk);
    EXPECT_EQ(code, 221);
  }
  // A long continuation is one still when its end has been dropped.
  server.Accept().ReplyLongLine("220-", 300).Reply("220 Ready");
  ConnectToGreeting();
  EXPECT_EQ(Wait(), LProcessResultOk);
  EXPECT_STREQ(text, "Ready");
}

TEST_P(Replies, HaveTheWholeTimeForEachLine) {
  server.Accept().Reply("220-a").Delay(150).Reply("220-b").Delay(150).Reply("220-c").Delay(150).Reply("220 d");
  ConnectToGreeting();
  EXPECT_EQ(Wait(2 * kShortMs), LProcessResultOk);
  EXPECT_STREQ(text, "d");
}

struct EndRow {
  const char* name;
  std::string bytes;
  void (*end)(ScriptedServer::Step&);
  LProcessResult result;
  unsigned short code;
};

TEST_P(Replies, MayNotCome) {
  const EndRow rows[] = {
      {"silence", "", [](ScriptedServer::Step& step) { step.Silence(); }, LProcessResultFailed, 0},
      {"silence behind a continuation", "220-a\r\n", [](ScriptedServer::Step& step) { step.Silence(); },
       LProcessResultFailed, 0},
      {"close", "", [](ScriptedServer::Step& step) { step.Close(); }, LProcessResultFailed, 0},
      {"reset", "", [](ScriptedServer::Step& step) { step.Delay(50).Reset(); }, LProcessResultFailed, 0},
      {"close behind a continuation", "220-a\r\n", [](ScriptedServer::Step& step) { step.Close(); },
       LProcessResultFailed, 0},
      {"the stream's last line needs no end", "220 Rea", [](ScriptedServer::Step& step) { step.Close(); },
       LProcessResultOk, 220},
  };
  for (const EndRow& row : rows) {
    SCOPED_TRACE(row.name);
    TextCopy(text, "former");
    code = 1;
    row.end(server.Accept().Raw(row.bytes));
    ConnectToGreeting();
    EXPECT_EQ(Wait(kShortMs), row.result);
    EXPECT_EQ(code, row.code);
    EXPECT_STREQ(text, row.code == 0 ? "" : "Rea");
  }
}

TEST(QuotedPath, LiesBetweenTheFirstTwoQuotes) {
  const struct {
    const char* reply;
    std::string path;
  } rows[] = {
      {"\"/pub\" is current", "/pub"},
      {"\"/a\"\"b\" doubled", "/a"},
      {"\"/no end", "/no end"},
      {"no quote at all", ""},
      {"", ""},
  };
  for (const auto& row : rows) {
    char path[kTextSize] = "former";
    FtpQuotedPath(row.reply, path);
    EXPECT_EQ(path, row.path) << row.reply;
  }
  char path[kTextSize];
  FtpQuotedPath(("\"" + std::string(300, 'p')).c_str(), path);
  EXPECT_EQ(path, std::string(259, 'p'));
}

}  // namespace
