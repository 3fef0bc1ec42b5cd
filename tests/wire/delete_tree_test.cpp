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

TEST_P(DeleteTree, RemovesAnEmptyFolderWithOneCommand) {
  Begin(Session::bHasMlsd);
  for (const char* facts : {"", "type=cdir; .\r\ntype=pdir; ..\r\n"}) {
    ExpectEnter("old", "/");
    ExpectFacts(facts);
    ExpectLeave("old", "/");
    EXPECT_EQ(Run(), LProcessResultOk);
  }
}

TEST_P(DeleteTree, CountsAFolderThatCannotBeEnteredAsDeleted) {
  Begin();
  server.Expect("PWD").Reply("257 \"/home\"");
  server.Expect("CWD old").Reply("550 No");
  EXPECT_EQ(Run(), LProcessResultOk);
  ExpectInStep();
}

TEST_P(DeleteTree, EndsAtTheFirstEntryThatStays) {
  Begin(Session::bHasMlsd);
  ExpectEnter("old", "/home");
  ExpectFacts("type=dir; sub\r\ntype=file; a\r\n");
  ExpectEnter("sub", "/home/old");
  ExpectFacts("type=file; b\r\n");
  server.Expect("DELE b").Reply("550 Busy");
  EXPECT_EQ(Run(), LProcessResultFailed);
  // No way back: the session is left in the folder.
  EXPECT_EQ(LastCommand(), "DELE b");
}

TEST_P(DeleteTree, ReturnsWhatTheRemovalGave) {
  Begin(Session::bHasMlsd);
  ExpectEnter("old", "/home");
  ExpectFacts("");
  server.Expect("CWD /home").Reply("250 ok");
  server.Expect("RMD old").Reply("550 Not empty");
  EXPECT_EQ(Run(), LProcessResultFailed);
}

TEST_P(DeleteTree, StopsBetweenTwoEntries) {
  Begin(Session::bHasMlsd);
  ExpectEnter("old", "/home");
  ExpectFacts("type=file; a\r\ntype=file; b\r\n");
  server.Expect("DELE a").Reply("250 ok");
  StopWhen([this] { return process.Progress().size() == 1; });
  EXPECT_EQ(Run(), LProcessResultStopped);
  EXPECT_EQ(LastCommand(), "DELE a");
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
