// The test of a site's settings, up to each verdict.
#include "ftp/connection_test.h"

#include "ftp/logon.h"
#include "ftp/permissions.h"
#include "support/files.h"
#include "wire/data_fixture.h"

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr char kNoLogon[] = "入力したユーザー名（anna）またはパスワードではログインできません。";
constexpr char kLogonGood[] = "ログイン詳細に問題はありません。\r\n";
constexpr char kNoDirectory[] = "ディレクトリを「/www」に変更できません。";
constexpr char kDirectoryGood[] = "ディレクトリを変更できました。\r\n";
constexpr char kNoPwd[] = "現在のディレクトリを入手できません。\r\n";
constexpr char kPwdGood[] = "現在のディレクトリ: /www\r\n";
constexpr char kListed[] = "含まれるファイル数： sub a b.txt\r\n";
constexpr char kListedNone[] = "含まれるファイル数：[ファイル無し]\r\n";
constexpr char kUploaded[] = "ファイルのアップロードが完了しました。\r\n";
constexpr char kNotUploaded[] = " サーバーにアップロードできません。";
constexpr char kDeleted[] = "ファイルを削除しました。\r\n";
constexpr char kNotDeleted[] = "サーバーから削除できません。";

constexpr char kThreeEntries[] =
    "drwxr-xr-x 2 a g 0 Jan  1 2020 .\r\n"
    "drwxr-xr-x 2 a g 0 Jan  1 2020 ..\r\n"
    "drwxr-xr-x 2 a g 0 Jan  1 2020 sub\r\n"
    "-rw-r--r-- 1 a g 1 Jan  1 2020 a b.txt\r\n";

class ConnectionTest : public DataTest {
 protected:
  ConnectionTest() {
    address = server.Address();
    test.server = address.c_str();
    test.user = "anna";
    test.password = "secret";
    test.directory = "/www";
  }

  /// The server's side of a test, up to and with the command that `refused` begins.
  void Script(const std::string& refused) {
    awaited = refused;
    server.Greet("220 Ready");
    if (!Answer("USER anna", "331 Password")) return;
    if (!Answer("PASS secret", "230 In")) return;
    if (test.directory[0] && !Answer("CWD /www", "250 There")) return;
    if (!Answer("PWD", "257 \"/www\" is it")) return;
    server.Expect("FEAT").Reply("211 None");
    server.Expect("TYPE A").Reply("200 ok");
    if (refused == "PASV") {
      server.Expect("PASV").ReplyPassiveRefused();
    } else {
      server.Expect("PASV").ReplyPassive();
      Step& list = server.Expect("LIST");
      if (stalled == "LIST") return;
      if (refused == "LIST") {
        list.Reply("550 No");
      } else {
        list.Reply("150 Here").DataSend(kThreeEntries).Reply("226 Done");
      }
    }
    server.Expect("TYPE I").Reply("200 ok");
    server.Expect("PASV").ReplyPassive();
    if (!Answer("STOR _ftptest", "150 Go", "553 No")) return;
    (void)Answer("DELE _ftptest", "250 Gone");
  }
  std::vector<int> States() const {
    return {test.serverState, test.logonState,  test.changeDirectoryState, test.currentDirectoryState,
            test.listState,   test.uploadState, test.deleteState};
  }
  std::string ServerGood() const { return "サーバー「" + address + "」は問題ありません。\r\n"; }

  std::string address;
  std::string stalled;  ///< The command that stays without an answer.
  ProcessSecureFtpTestReadWrite test;

 private:
  /// False if the test ends here.
  bool Answer(const std::string& command, const std::string& good, const std::string& bad = "550 No") {
    const bool isRefused = !awaited.empty() && command.rfind(awaited, 0) == 0;
    Step& step = server.Expect(command);
    if (command == stalled) return false;
    step.Reply(isRefused ? bad : good);
    if (!isRefused && command.rfind("STOR", 0) == 0) step.DataReceive().Reply("226 Done");
    return !isRefused;
  }

  std::string awaited;
};
WIRE_SUITE(ConnectionTest);

TEST_P(ConnectionTest, StopsAtWhatTheServerRefuses) {
  struct Row {
    const char* refused;
    int outcome;
    std::vector<int> states;
    std::vector<const char*> report;  ///< Behind the good word on the server.
  };
  const Row rows[] = {
      {"PASS", 3, {2, 1, 0, 0, 0, 0, 0}, {kNoLogon}},
      {"CWD", 4, {2, 2, 1, 0, 0, 0, 0}, {kLogonGood, kNoDirectory}},
      {"PWD", 5, {2, 2, 2, 1, 0, 0, 0}, {kLogonGood, kDirectoryGood, kNoPwd}},
      {"STOR", 6, {2, 2, 2, 2, 2, 1, 0}, {kLogonGood, kDirectoryGood, kPwdGood, kListed, kNotUploaded}},
      {"DELE", 7, {2, 2, 2, 2, 2, 2, 1}, {kLogonGood, kDirectoryGood, kPwdGood, kListed, kUploaded, kNotDeleted}},
      {"", 1, {2, 2, 2, 2, 2, 2, 2}, {kLogonGood, kDirectoryGood, kPwdGood, kListed, kUploaded, kDeleted}},
      // A listing that the server refuses is an empty one.
      {"LIST", 1, {2, 2, 2, 2, 2, 2, 2}, {kLogonGood, kDirectoryGood, kPwdGood, kListedNone, kUploaded, kDeleted}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.refused);
    Script(row.refused);
    EXPECT_EQ(Process(process, test), LProcessResultOk);
    EXPECT_TRUE(server.WaitUntilDone());
    EXPECT_EQ(test.outcome, row.outcome);
    EXPECT_EQ(States(), row.states);
    std::string report = ServerGood();
    for (const char* part : row.report) report += part;
    EXPECT_EQ(test.report.Text(), report);
    EXPECT_STREQ(test.currentDirectory, test.currentDirectoryState == 2 ? "/www" : "");
  }
  EXPECT_THAT(process.Errors(), IsEmpty());
}

TEST_P(ConnectionTest, TellsWhatItIsAboutAndSendsASmallFile) {
  Script("");
  EXPECT_EQ(Process(process, test), LProcessResultOk);
  EXPECT_THAT(server.Received(), ElementsAre("Test"));
  char folderOfFiles[kTextSize];
  LFile::GetTempFolder(folderOfFiles);
  for (const auto& entry : std::filesystem::directory_iterator(folderOfFiles)) {
    EXPECT_NE(entry.path().filename().string().substr(0, 1), "0") << "the local file is left: " << entry.path();
  }
  EXPECT_THAT(test.folders.strings[0], testing::StrEq("sub"));
  EXPECT_THAT(test.files.strings[0], testing::StrEq("a b.txt"));
  std::vector<std::string> items;
  for (const std::string& status : StatusesAt(1)) {
    if (status.find("...") != std::string::npos) items.push_back(status);
  }
  EXPECT_THAT(items,
              ElementsAre("サーバーをテスト中...", "ログイン...", "デイレクトリを変更...", "ディレクトリを入手...",
                          "リストを入手...", "テストをアップロード中...", "ファイルを削除しています ..."));
  EXPECT_EQ(StatusesAt(0).front(), "FTPをテスト中...");
  for (const double step : {0.01, 0.1, 0.2, 0.3, 0.4, 0.5, 0.8, 0.9, 1.0}) {
    EXPECT_THAT(process.Progress(), testing::Contains(step));
  }
}

TEST_P(ConnectionTest, AServerWithoutAnAddress) {
  for (const char* host : {"no.such.host.invalid", "0.0.0.0", "no.such.host.invalid:2121"}) {
    SCOPED_TRACE(host);
    test.server = host;
    EXPECT_EQ(Process(process, test), LProcessResultOk);
    EXPECT_EQ(test.outcome, 2);
    EXPECT_THAT(States(), ElementsAre(1, 0, 0, 0, 0, 0, 0));
    EXPECT_EQ(test.report.Text(), "「" + std::string(host) + "」サーバーに接続できません。");
  }
}

TEST_P(ConnectionTest, WithoutADirectoryThatStageIsPassed) {
  test.directory = "";
  Script("PWD");
  EXPECT_EQ(ProcessTestReadOnly(process, session, test), LProcessResultOk);
  EXPECT_THAT(Commands(), ElementsAre("USER anna", "PASS secret", "PWD"));
  EXPECT_THAT(States(), ElementsAre(2, 2, 2, 1, 0, 0, 0));
  EXPECT_EQ(test.report.Text(), ServerGood() + kLogonGood + kNoPwd);
}

TEST_P(ConnectionTest, APassiveFailureIsToldAndTheTestGoesOn) {
  Script("PASV");
  EXPECT_EQ(Process(process, test), LProcessResultOk);
  EXPECT_EQ(test.outcome, 1);
  EXPECT_THAT(States(), ElementsAre(2, 2, 2, 2, 1, 2, 2));
  EXPECT_THAT(test.report.Text(), HasSubstr("[ファイル無し]\r\nパッシブ接続に失敗しました！\r\nhttps://"));
}

TEST_P(ConnectionTest, NamesTwentyEntries) {
  test.directory = "";
  server.Greet("220 Ready");
  server.Expect("USER anna").Reply("230 In");
  server.Expect("PWD").Reply("257 \"/\"");
  server.Expect("FEAT").ReplyLines({"211-Features", " MLST type*;size;", " MLSD", "211 End"});
  server.Expect("TYPE A").Reply("200 ok");
  server.Expect("PASV").ReplyPassive();
  server.Expect("TYPE A").Reply("200 ok");
  std::string facts = "type=cdir; .\r\nsize=0; untyped\r\ntype=dir; sub\r\n";
  std::string names = " untyped sub";
  std::vector<std::string> files;
  for (int i = 3; i <= 21; ++i) {
    const std::string name = "file" + std::to_string(i);
    facts += "type=file;size=1; " + name + "\r\n";
    if (i > 20) break;
    files.push_back(name);
    names += " " + name;
  }
  files.emplace_back("[その他...]");
  server.Expect("MLSD").Reply("150 Here").DataSend(facts).Reply("226 Done");
  // The listing does not tell what this one is.
  server.Expect("MLST untyped").ReplyLines({"250-Listing", " type=dir; untyped", "250 End"});
  EXPECT_EQ(ProcessTestReadOnly(process, session, test), LProcessResultOk);
  EXPECT_EQ(test.outcome, 1);
  EXPECT_THAT(test.report.Text(), testing::EndsWith("含まれるファイル数：" + names + "\r\n"));
  EXPECT_THAT(std::vector<std::string>(test.folders.strings, test.folders.strings + test.folders.count),
              ElementsAre("untyped", "sub"));
  EXPECT_THAT(std::vector<std::string>(test.files.strings, test.files.strings + test.files.count),
              ElementsAreArray(files));
}

TEST_P(ConnectionTest, AStopLeavesTheTestUnfinished) {
  struct Row {
    const char* command;
    LProcessResult result;
    int outcome;
  };
  const Row rows[] = {
      {"USER anna", LProcessResultStopped, 0},
      // A password that was stopped counts as refused.
      {"PASS secret", LProcessResultOk, 3},
      {"CWD /www", LProcessResultStopped, 0},
      {"PWD", LProcessResultStopped, 0},
      {"LIST", LProcessResultStopped, 0},
      // The part that changes nothing ran to its end.
      {"STOR _ftptest", LProcessResultOk, 0},
      {"DELE _ftptest", LProcessResultOk, 0},
  };
  gFtpTimeouts.drainReplyMs = 200;
  for (const Row& row : rows) {
    SCOPED_TRACE(row.command);
    stalled = row.command;
    const size_t before = Commands().size();
    RecordingInterface stopping;
    stopping.OnQuestion([&] {
      if (Commands().size() > before && LastCommand() == stalled) stopping.StopNow();
    });
    Script("");
    EXPECT_EQ(Process(stopping, test), row.result);
    EXPECT_EQ(test.outcome, row.outcome);
    EXPECT_EQ(LastCommand(), stalled);
  }
}

class ReadPermissions : public DataTest {};
WIRE_SUITE(ReadPermissions);

TEST_P(ReadPermissions, AreReadFromWhateverTheServerTells) {
  struct Row {
    const char* attributes;
    bool mayRead;
  };
  const Row rows[] = {
      {"", true},  // Not told.
      {"---x--x--x", false},
      {"--w-r-----", true},
      {"0111", false},
      {"0114", true},
      {"04711", true},  // Set-user-id behind the leading digit.
      {"00711", true},  // Others are what stands from the fourth digit on.
      {"7", false},     // Too short to be told apart.
      {"el", false},    // Permissions of another kind, none of which is "r".
      {"adfr", true},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.attributes);
    Begin(Session::bHasMlsd);
    server.Expect("CWD /the/folder").Reply("550 No matter");
    ExpectPassive("A");
    const std::string facts = row.attributes[0] ? "UNIX.mode=" + std::string(row.attributes) + ";" : "";
    ExpectData("MLSD a file").DataSend("type=file;" + facts + " a file\r\n").Reply("226 Done");
    const size_t before = history.Messages().size();
    EXPECT_EQ(FTPTestUserHasReadPermissions(process, session, "/the/folder/a file"), row.mayRead);
    const std::vector<std::string> messages = history.Messages();
    ASSERT_EQ(messages.size(), before + !row.mayRead);
    if (!row.mayRead) {
      EXPECT_EQ(messages.back(), "このユーザーには「a file」を表示またはダウンロードする権限がありません。");
    }
  }
  EXPECT_THAT(process.Statuses(), testing::Contains(std::make_pair(0, std::string("アクセス許可の取得中 "))));
  EXPECT_EQ(process.Indeterminate().size(), 2 * std::size(rows));
}

TEST_P(ReadPermissions, ARefusedQuestionCountsAsReadable) {
  Begin(Session::bHasMlsd);
  ExpectPassive("A");
  server.Expect("MLSD file").Reply("550 No");
  EXPECT_TRUE(FTPTestUserHasReadPermissions(process, session, "file"));
  EXPECT_THAT(Commands(), testing::Not(testing::Contains(HasSubstr("CWD"))));
}

}  // namespace
