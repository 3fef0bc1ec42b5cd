#include "ftp/dir_iterator.h"
#include "wire/data_fixture.h"

namespace {

using testing::ElementsAre;

class DeleteTree : public DataTest {
 protected:
  LProcessResult Run(const char* directory = "old") {
    return ProcessFtpDeleteDirectoryAndFiles(process, session, directory);
  }
  void ExpectEnter(const std::string& directory, const std::string& parent) {
    server.Expect("PWD").Reply("257 \"" + parent + "\" is here");
    server.Expect("CWD " + directory).Reply("250 ok");
  }
  void ExpectLeave(const std::string& directory, const std::string& parent) {
    server.Expect("CWD " + parent).Reply("250 ok");
    server.Expect("RMD " + directory).Reply("250 ok");
  }
  void ExpectFacts(const std::string& facts) {
    ExpectPassive("A");
    server.Expect("TYPE A").Reply("200 ok");
    ExpectData("MLSD").DataSend(facts).Reply("226 Done");
  }
};
WIRE_SUITE(DeleteTree);

TEST_P(DeleteTree, RemovesFilesAndFoldersFromTheBottom) {
  Begin(Session::bHasMlsd);
  ExpectEnter("old", "/home");
  ExpectFacts("type=cdir; .\r\ntype=pdir; ..\r\ntype=file; a\r\ntype=dir; sub\r\n");
  server.Expect("DELE a").Reply("250 ok");
  ExpectEnter("sub", "/home/old");
  ExpectFacts("type=file; b\r\n");
  server.Expect("DELE b").Reply("250 ok");
  ExpectLeave("sub", "/home/old");
  ExpectLeave("old", "/home");
  EXPECT_EQ(Run(), LProcessResultOk);
  EXPECT_THAT(process.Statuses(),
              ElementsAre(std::pair(1, std::string("/home/old/aを削除中")), std::pair(1, "サブフォルダを確認中..."),
                          std::pair(1, "/home/old/sub/bを削除中")));
  // A quarter for each entry, the dots counted in the whole but not as done; the folder's own share lies in
  // its part.
  EXPECT_THAT(process.Progress(), ElementsAre(0.25, 0.5, 0.5));
  ExpectInStep();
}

TEST_P(DeleteTree, EndsAtTheFirstEntryThatStays) {
  const struct {
    const char* name;
    const char* facts;
    std::vector<Exchange> exchanges;  ///< Behind the listing.
    bool is_stopped;
    LProcessResult result;
  } rows[] = {
      {"empty", "", {{"CWD /home", "250 ok"}, {"RMD old", "250 ok"}}, false, LProcessResultOk},
      {"only the dots",
       "type=cdir; .\r\ntype=pdir; ..\r\n",
       {{"CWD /home", "250 ok"}, {"RMD old", "250 ok"}},
       false,
       LProcessResultOk},
      // No way back: the session is left in the folder.
      {"a file that stays", "type=file; a\r\ntype=file; b\r\n", {{"DELE a", "550 Busy"}}, false, LProcessResultFailed},
      {"the folder stays", "", {{"CWD /home", "250 ok"}, {"RMD old", "550 Not empty"}}, false, LProcessResultFailed},
      {"stopped between two", "type=file; a\r\ntype=file; b\r\n", {{"DELE a", "250 ok"}}, true, LProcessResultStopped},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    Restart();
    Begin(Session::bHasMlsd);
    ExpectEnter("old", "/home");
    ExpectFacts(row.facts);
    for (const Exchange& one : row.exchanges) server.Expect(one.command).Reply(one.reply);
    const size_t shown = process.Progress().size();
    if (row.is_stopped) StopWhen([this, shown] { return process.Progress().size() > shown; });
    EXPECT_EQ(Run(), row.result);
    EXPECT_EQ(LastCommand(), row.exchanges.back().command);
  }
}

TEST_P(DeleteTree, CountsAFolderThatCannotBeEnteredAsDeleted) {
  Begin();
  server.Expect("PWD").Reply("257 \"/home\"");
  server.Expect("CWD old").Reply("550 No");
  EXPECT_EQ(Run(), LProcessResultOk);
  ExpectInStep();
}

TEST_P(DeleteTree, AsksForATypeThatIsNotKnown) {
  Begin(Session::bHasMlsd | Session::bMlstType);
  ExpectEnter("old", "/home");
  ExpectFacts("size=1; a\r\nsize=1; sub\r\n");
  server.Expect("MLST a").ReplyLines({"250-", " type=file; a", "250 End"});
  server.Expect("DELE a").Reply("250 ok");
  server.Expect("MLST sub").ReplyLines({"250-", " type=dir; sub", "250 End"});
  ExpectEnter("sub", "/home/old");
  ExpectFacts("");
  ExpectLeave("sub", "/home/old");
  ExpectLeave("old", "/home");
  EXPECT_EQ(Run(), LProcessResultOk);
}

}  // namespace
