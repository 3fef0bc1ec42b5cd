// Work on real folders and files.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <set>
#include <string>
#include <sys/stat.h>
#include <sys/statfs.h>
#include <sys/xattr.h>
#include <unistd.h>

#include "support/environment.h"
#include "support/file_trouble.h"
#include "support/files.h"
#include "support/scratch_folder.h"

namespace {

using Text = char[kTextSize];
using std::set;
using std::string;

class FilesFoldersTest : public testing::Test {
 protected:
  ~FilesFoldersTest() override { umask(formerMask); }

  void Link(const string& target, const string& name) {
    ASSERT_EQ(symlink(target.c_str(), scratch.Path(name).c_str()), 0);
  }
  unsigned ModeOf(const string& name) { return ::ModeOf(scratch.Path(name)); }
  string P(const string& name) { return scratch.Path(name); }

  ScratchFolder scratch;

 private:
  const mode_t formerMask = umask(022);
};

TEST_F(FilesFoldersTest, ExistenceCountsLinksThatLeadNowhere) {
  scratch.Write("file", "");
  Link("nowhere", "link");
  EXPECT_TRUE(LFile::TestFileExists(scratch.Path().c_str()));
  EXPECT_TRUE(LFile::TestFileExists(P("file").c_str()));
  EXPECT_TRUE(LFile::TestFileExists(P("link").c_str()));
  EXPECT_FALSE(LFile::TestFileExists(P("none").c_str()));
  EXPECT_FALSE(LFile::TestFileExists(P("file/below").c_str()));
  EXPECT_FALSE(LFile::TestFileExists(""));
}

TEST_F(FilesFoldersTest, SubfoldersAreSeenThroughLinksAndSpellings) {
  scratch.MakeFolder("a/b/c");
  Link("a/b", "link");
  const struct {
    string folder;
    string path;
    bool within;
  } rows[] = {
      {P("a"), P("a"), true},      {P("a/b"), P("a"), false},
      {P("a"), P("./a//b"), true}, {P("a/b"), P("link/c"), true},
      {P("a"), P("ab"), false},    {P("a"), P("a/b/new/x"), true},  // What is not there yet lies where it would.
      {"/tmp", P("a"), true},      {"/", P("a"), false},
      {P("a"), "", false},         {"", P("a"), false},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(LFile::IsSubFolder(row.folder.c_str(), row.path.c_str()), row.within) << row.folder << ' ' << row.path;
  }
}

TEST_F(FilesFoldersTest, FreeSpaceIsTheVolumes) {
  struct statfs root {};
  ASSERT_EQ(statfs("/", &root), 0);
  EXPECT_GT(LFile::GetDriveFreeSpace(scratch.Path().c_str()), 0u);
  const double expected = static_cast<double>(root.f_bfree) * static_cast<double>(root.f_bsize);
  // Others may write meanwhile.
  EXPECT_NEAR(static_cast<double>(LFile::GetDriveFreeSpace(P("none").c_str())), expected, expected / 10);
}

TEST_F(FilesFoldersTest, FolderTreesAreMadeOnce) {
  EXPECT_TRUE(LFile::CreateFolderTree(P("a/b/c").c_str()));
  EXPECT_EQ(ModeOf("a/b/c"), 0755u);
  EXPECT_FALSE(LFile::CreateFolderTree(P("a/b/c").c_str())) << "it was there";
  EXPECT_FALSE(LFile::CreateFolderTree(""));
  scratch.Write("file", "");
  EXPECT_FALSE(LFile::CreateFolderTree(P("file/x/y").c_str()));
}

TEST_F(FilesFoldersTest, DeletingATreeSparesWhatLinksLeadTo) {
  scratch.Write("kept/file", "kept");
  scratch.Write("tree/a/b/file", "x");
  scratch.Write("tree/.hidden", "x");
  scratch.Write("tree/x\\/a", "x");  // No separator in a local name.
  Link("../kept", "tree/link");
  Link("nowhere", "tree/dangling");
  Link("kept", "toplink");
  EXPECT_FALSE(LFile::DeleteFolderAndFiles(P("tree").c_str())) << "the files alone";
  EXPECT_EQ(scratch.Names("tree"), (set<string>{"a", "x\\"}));
  scratch.Write("tree/.hidden", "x");
  Link("../kept", "tree/link");
  EXPECT_TRUE(LFile::DeleteFolderTree(P("tree").c_str()));
  EXPECT_TRUE(LFile::DeleteFolderTree(P("toplink").c_str()));
  for (const char* none : {"kept/file", "none"}) EXPECT_FALSE(LFile::DeleteFolderTree(P(none).c_str())) << none;
  EXPECT_FALSE(LFile::DeleteFolderTree(""));
  EXPECT_EQ(scratch.Names(), set<string>{"kept"});
  EXPECT_EQ(scratch.Read("kept/file"), "kept");
}

/// Makes a folder whose path has `length` bytes; returns its name below the scratch folder.
string MakeDeepFolder(const ScratchFolder& scratch, size_t length) {
  string deep = string(100, 'd') + "/";
  deep += string(length - scratch.Path(deep).size(), 'e');
  scratch.MakeFolder(deep);
  return deep;
}

// Cut at 259 bytes, the path of an entry is that of its neighbour, or that of the folder itself and so
// without end.
TEST_F(FilesFoldersTest, EntriesWhosePathWouldBeCutAreLeftAlone) {
  for (const size_t length : {253u, 257u, 258u, 259u}) {
    const string deep = MakeDeepFolder(scratch, length);
    scratch.Write(deep + "/first6", "");
    std::filesystem::create_directories(scratch.Path(deep) + "/folder/below");
    EXPECT_FALSE(LFile::DeleteFolderTree(scratch.Path(deep).c_str())) << length;
    EXPECT_EQ(scratch.Names(deep), (set<string>{"first6", "folder"})) << length;
    EXPECT_FALSE(LFile::SetFolderSecurityAllAccess(scratch.Path(deep).c_str())) << length;
    EXPECT_FALSE(LFile::CopyFolderFiles(scratch.Path(deep).c_str(), P("copy").c_str())) << length;
    EXPECT_TRUE(std::filesystem::is_empty(P("copy"))) << length;
  }
  const string deep = MakeDeepFolder(scratch, 253);
  scratch.Write("from/other6", "other");
  scratch.Write("from/other", "short");
  EXPECT_FALSE(LFile::CopyFolderFiles(P("from").c_str(), scratch.Path(deep).c_str()));
  EXPECT_EQ(scratch.Names(deep), (set<string>{"first6", "folder", "other"}));
  EXPECT_EQ(scratch.Read(deep + "/other"), "short");
}

TEST_F(FilesFoldersTest, OnlyDeletingAlwaysOpensLockedFolders) {
  scratch.Write("tree/locked/file", "");
  ASSERT_EQ(chmod(P("tree/locked").c_str(), 0500), 0);
  const RightsHold hold;
  EXPECT_FALSE(LFile::DeleteFolderTree(P("tree").c_str()));
  EXPECT_TRUE(scratch.Has("tree/locked/file"));
  EXPECT_TRUE(LFile::DeleteFolderTreeAlways(P("tree").c_str()));
  EXPECT_FALSE(scratch.Has("tree"));
}

TEST_F(FilesFoldersTest, ACopyHasBytesModeTimesAndAttributes) {
  const string from = scratch.Write("from", string(200000, 'x') + "end");
  ASSERT_EQ(chmod(from.c_str(), 0640), 0);
  const timespec times[2] = {{1000000000, 5}, {1100000000, 6}};
  const bool marks = setxattr(from.c_str(), "user.note", "hello", 5, 0) == 0;
  ASSERT_EQ(utimensat(AT_FDCWD, from.c_str(), times, 0), 0);
  EXPECT_TRUE(LFile::CopyFile(from.c_str(), P("to").c_str()));
  EXPECT_EQ(scratch.Read("to"), scratch.Read("from"));
  EXPECT_EQ(ModeOf("to"), 0640u);
  struct stat status {};
  ASSERT_EQ(stat(P("to").c_str(), &status), 0);
  EXPECT_EQ(status.st_mtim.tv_sec, 1100000000);
  EXPECT_EQ(status.st_mtim.tv_nsec, 6);
  if (marks) {
    char value[16];
    EXPECT_EQ(getxattr(P("to").c_str(), "user.note", value, sizeof value), 5);
  }
}

TEST_F(FilesFoldersTest, AnOldFileIsReplacedInOneStepOrStays) {
  const string from = scratch.Write("from", "new");
  scratch.Write("old", "old");
  const int reader = open(P("old").c_str(), O_RDONLY | O_CLOEXEC);
  EXPECT_TRUE(LFile::CopyFile(from.c_str(), P("old").c_str()));
  EXPECT_EQ(scratch.Read("old"), "new");
  char held[8] = {};
  EXPECT_EQ(read(reader, held, sizeof held), 3);
  EXPECT_STREQ(held, "old") << "who had it open keeps the old file";
  close(reader);

  scratch.Write("target", "target");
  Link("target", "link");
  EXPECT_TRUE(LFile::CopyFile(P("link").c_str(), P("linked").c_str()));
  EXPECT_EQ(std::filesystem::read_symlink(P("linked")), "target") << "a link is copied as one";
  EXPECT_TRUE(LFile::CopyFile(from.c_str(), P("link").c_str()));
  EXPECT_EQ(scratch.Read("target"), "target") << "a link is replaced, not followed";
  EXPECT_EQ(scratch.Read("link"), "new");

  scratch.Write("folder/x", "");
  EXPECT_FALSE(LFile::CopyFile(from.c_str(), P("folder").c_str()));
  EXPECT_FALSE(LFile::CopyFile(P("none").c_str(), P("old").c_str()));
  EXPECT_EQ(scratch.Read("old"), "new");
  EXPECT_TRUE(LFile::CopyFile(from.c_str(), from.c_str()));
  EXPECT_EQ(scratch.Read("from"), "new");
  ASSERT_EQ(mkfifo(P("pipe").c_str(), 0600), 0);
  for (const char* none : {"none", "pipe"}) {
    EXPECT_TRUE(LFile::CopyFile(P(none).c_str(), P("to").c_str())) << "without an old file a copy is called done";
  }
  EXPECT_EQ(scratch.Names(), (set<string>{"from", "old", "target", "link", "linked", "folder", "pipe"}))
      << "nothing is left over";
}

TEST_F(FilesFoldersTest, FoldersAreCopiedAndOpenedWithAllBelow) {
  scratch.Write("from/a/b/file", "1");
  scratch.Write("from/.hidden", "2");
  scratch.Write("to/there/.hidden", "old");
  Link("a", "from/link");
  EXPECT_TRUE(LFile::CopyFolderFiles(P("from").c_str(), P("to/there").c_str()));
  EXPECT_TRUE(LFile::CopyFolderFiles(P("from").c_str(), P("new/one").c_str()));
  for (const string to : {"to/there", "new/one"}) {
    EXPECT_EQ(scratch.Read(to + "/a/b/file"), "1");
    EXPECT_EQ(scratch.Read(to + "/.hidden"), "2");
    EXPECT_EQ(std::filesystem::read_symlink(P(to + "/link")), "a");
  }
  EXPECT_FALSE(LFile::CopyFolderFiles(P("from/.hidden").c_str(), P("x").c_str()));
  EXPECT_FALSE(LFile::CopyFolderFiles(P("from").c_str(), P("from/.hidden").c_str()));

  // Access for all stays in the tree.
  Link("../../from/.hidden", "new/one/out");
  EXPECT_TRUE(LFile::SetFolderSecurityAllAccess(P("new").c_str()));
  for (const char* name : {"new", "new/one/a", "new/one/a/b/file"}) EXPECT_EQ(ModeOf(name), 0777u) << name;
  EXPECT_EQ(ModeOf("from/.hidden"), 0644u);
}

template <typename Iterator, typename... Arguments>
set<string> NamesOf(const Arguments&... arguments) {
  set<string> names;
  Iterator iterator;
  if (!iterator.Open(arguments...)) return names;
  do {
    names.insert(iterator.Name());
  } while (iterator.Next());
  EXPECT_STREQ(iterator.Name(), "");
  EXPECT_FALSE(iterator.Next());
  return names;
}

TEST_F(FilesFoldersTest, IteratorsGiveMatchingNames) {
  for (const char* name : {"readme.txt", "NOTES.TXT", ".hidden", "__MACOSX", "__MACOSX.txt", "a*b", "axb"}) {
    scratch.Write(name, "");
  }
  scratch.MakeFolder("folder");
  using Matching = LFile::FolderIterator;
  const char* root = scratch.Path().c_str();
  EXPECT_EQ(NamesOf<Matching>(root, "*.TXT"), (set<string>{"readme.txt", "NOTES.TXT"}));
  EXPECT_EQ(NamesOf<Matching>(root), (set<string>{"readme.txt", "NOTES.TXT", ".hidden", "a*b", "axb", "folder"}));
  EXPECT_EQ(NamesOf<Matching>(P("readme.txt").c_str()), set<string>{"readme.txt"});
  EXPECT_EQ(NamesOf<Matching>(P("*.txt").c_str()), set<string>{}) << "a path holds no wildcards";
  EXPECT_EQ(NamesOf<Matching>(root, "*.none"), set<string>{});
  EXPECT_EQ(NamesOf<Matching>(P("readme.txt").c_str(), "*"), set<string>{});
  EXPECT_EQ(NamesOf<Matching>(P("folder").c_str()), set<string>{});
  EXPECT_EQ(NamesOf<LFile::FolderIteratorAllFiles>(P("folder").c_str()), (set<string>{".", ".."}));
  EXPECT_EQ(NamesOf<LFile::FolderIteratorAllFiles>(root).size(), 10u);
}

class SpecialFoldersTest : public FilesFoldersTest {
 private:
  const Environment home{"HOME", scratch.Path()}, data{"XDG_DATA_HOME", nullptr}, caches{"XDG_CACHE_HOME", nullptr},
      config{"XDG_CONFIG_HOME", nullptr};
};

TEST_F(SpecialFoldersTest, WithoutANameTheFallbackIsMade) {
  Text out;
  LFile::GetUserDocumentsFolder(out);
  EXPECT_EQ(out, P("Documents"));
  LFile::GetUserDownloadFolder(out);
  EXPECT_EQ(out, P("Downloads"));
  EXPECT_EQ(scratch.Names(), (set<string>{"Documents", "Downloads"}));
  LFile::GetUserSpecialFolder(out, platform::Folder::kDocuments, "One/Two");
  EXPECT_TRUE(scratch.Has("One/Two"));
  scratch.Write(".config/user-dirs.dirs", "XDG_DOWNLOAD_DIR=\"$HOME/取得\"\n");
  LFile::GetUserDownloadFolder(out);
  EXPECT_EQ(out, P("取得"));
  EXPECT_FALSE(scratch.Has("取得")) << "a named one is taken as it is";
}

TEST_F(SpecialFoldersTest, TheProgramsFoldersAreMade) {
  Text out;
  LFile::GetUserDataFolderAppSubFolder("Logs", out);
  EXPECT_EQ(out, P(".local/share/OrvaneFTP/Logs"));
  EXPECT_TRUE(scratch.Has(".local/share/OrvaneFTP/Logs"));
  EXPECT_EQ(ModeOf(".local/share"), 0700u) << "a base folder that no program had made yet";
  LFile::GetTempFolder(out);
  EXPECT_EQ(out, P(".cache"));
  EXPECT_TRUE(scratch.Has(".cache"));
}

}  // namespace
