#include "client/remote_paths.h"

#include <gtest/gtest.h>
#include <string>

#include "client/remote_pane.h"

namespace {

TEST(RemotePaths, TheFolderAbove) {
  const struct {
    const char* path;
    const char* up;
  } rows[] = {{"/a/b", "/a"}, {"/a", "/"},     {"/", "/"},   {"", "/"},
              {"name", "/"},  {"/a/b/", "/a"}, {"/a/", "/"}, {"C:\\a\\b\\", "C:\\a"}};
  for (const auto& row : rows) {
    char up[kTextSize];
    PaneUtils::GetUpPath(row.path, up, "/");
    EXPECT_STREQ(up, row.up) << row.path;
  }
}

TEST(RemotePaths, TheRemotePathOfALocalOne) {
  const struct {
    const char* localBase;
    const char* remoteBase;
    const char* local;
    const char* remote;
  } rows[] = {
      {"/home/anna", "/", "/home/anna/a.txt", "/a.txt"},
      {"/home/anna", "/upload", "/home/anna/a.txt", "/upload/a.txt"},
      {"/home/anna/", "/upload", "/home/anna/a.txt", "/upload/a.txt"},
      {"/home/anna", "/upload", "/home/anna/x/y.txt", "/upload/x/y.txt"},
      {"/home/anna", "/u", "/home/anna/x\\y.txt", "/u/x/y.txt"},
      {"/home/anna", "/u/", "/home/anna/a", "/u//a"},           // The base is taken as it is.
      {"/home/anna", "/u", "/tmp/otherplace/z", "/u/place/z"},  // As many bytes go as the base has, whatever they are.
      {"/home/anna", "/u", "/x", "/u/"},
  };
  for (const auto& row : rows) {
    char remote[kTextSize];
    RemotePathOfLocal(remote, row.localBase, row.remoteBase, row.local);
    EXPECT_STREQ(remote, row.remote) << row.local;
  }
}

TEST(RemotePaths, AreJoinedByOneSeparatorAndCutAtTheSizeOfAText) {
  const std::string name(300, 'x');
  char joined[kTextSize];
  for (const char* folder : {"/", "/a", "/a/"}) {
    RemoteJoin(joined, folder, "b");
    EXPECT_STREQ(joined, folder[1] ? "/a/b" : "/b") << folder;
  }
  RemoteJoin(joined, joined, name.c_str());  // Into the text that is read.
  EXPECT_EQ(joined, ("/a/b/" + name).substr(0, kTextSize - 1));
  RemotePathOfLocal(joined, "/l", "/remote", ("/l/" + name).c_str());
  EXPECT_EQ(joined, ("/remote/" + name).substr(0, kTextSize - 1));
}

TEST(RemotePaths, ANameThatLeadsElsewhereIsNotPlain) {
  EXPECT_TRUE(RemoteNameIsPlain("a b.txt"));
  for (const char* name : {"../x", "/etc/passwd", "a\\b", "x/", "", ".", ".."}) {
    EXPECT_FALSE(RemoteNameIsPlain(name)) << name;
  }
}

TEST(RemotePaths, SizesAreComparedAsTheyAreShown) {
  const struct {
    const char* a;
    const char* b;
    int sign;    ///< Ascending.
    bool turns;  ///< With the direction.
  } rows[] = {
      {"9 KB", "10 KB", -1, true}, {"1,000 KB", "999 KB", 1, true}, {"5 KB", "5 KB", 0, true},
      {"5 KB", "6 KB", -1, true},  {"", "1 KB", -1, false},         {"1 KB", "", 1, false},
      {"", "", 0, false},
  };
  const auto sign = [](int order) { return (order > 0) - (order < 0); };
  for (const auto& row : rows) {
    EXPECT_EQ(sign(RemoteCompareFileSizes(row.a, row.b, true)), row.sign) << row.a << " " << row.b;
    EXPECT_EQ(sign(RemoteCompareFileSizes(row.a, row.b, false)), row.turns ? -row.sign : row.sign)
        << row.a << " " << row.b;
  }
}

LFtpExpListItem ItemOf(int kind, const char* name) {
  LFtpExpListItem item = {};
  item.kind = kind;
  TextCopy(item.name, name);
  return item;
}

TEST(RemotePaths, FoldersComeBeforeAllElseAndNamesByTheirBytes) {
  const LFtpExpListItem folder = ItemOf(LFtpExpListItem::kFolder, "z");
  const LFtpExpListItem link = ItemOf(LFtpExpListItem::kSymbolicLink, "b");
  const LFtpExpListItem file = ItemOf(LFtpExpListItem::kFile, "a");
  const LFtpExpListItem upper = ItemOf(LFtpExpListItem::kFile, "B");
  EXPECT_EQ(LListArrayComparePtr(&folder, &file), -1);
  EXPECT_EQ(LListArrayComparePtr(&link, &folder), 1);
  EXPECT_EQ(LListArrayComparePtr(&file, &link), -1) << "a link stands among the files";
  EXPECT_EQ(LListArrayComparePtr(&upper, &file), -1);
  EXPECT_EQ(LListArrayComparePtr(&file, &file), -1) << "never equal";
}

}  // namespace
