#include "app/folder_history.h"

#include <gtest/gtest.h>
#include <string>

#include "app/local_pane.h"

namespace {

TEST(FolderHistory, IsEmptyAtFirst) {
  LExplorerFolderHistory history;
  EXPECT_FALSE(history.IsBackAccessible());
  EXPECT_FALSE(history.IsForwardAccessible());
  EXPECT_EQ(history.Back(), nullptr);
  EXPECT_EQ(history.Forward(), nullptr);
  history.Add("");
  EXPECT_FALSE(history.IsBackAccessible());
}

TEST(FolderHistory, TheSameFolderTwiceIsOneEntry) {
  LExplorerFolderHistory history;
  for (const char* path : {"/a", "/a", "/b", "/b"}) history.Add(path);
  EXPECT_STREQ(history.Back(), "/a");
  EXPECT_FALSE(history.IsBackAccessible());
}

TEST(FolderHistory, BackThenAnotherFolderDropsTheForwardPart) {
  LExplorerFolderHistory history;
  for (const char* path : {"/a", "/b", "/c"}) history.Add(path);
  EXPECT_STREQ(history.Back(), "/b");
  EXPECT_STREQ(history.Back(), "/a");
  EXPECT_TRUE(history.IsForwardAccessible());
  history.Add("/d");
  EXPECT_FALSE(history.IsForwardAccessible());
  EXPECT_STREQ(history.Back(), "/a");
  EXPECT_STREQ(history.Forward(), "/d");
}

TEST(FolderHistory, TheEleventhFolderPushesTheOldestOut) {
  LExplorerFolderHistory history;
  for (int i = 0; i < 11; ++i) history.Add(("/" + std::to_string(i)).c_str());
  for (int i = 9; i >= 1; --i) EXPECT_EQ(std::string(history.Back()), "/" + std::to_string(i));
  EXPECT_FALSE(history.IsBackAccessible());
  EXPECT_EQ(history.Back(), nullptr);
  for (int i = 2; i <= 10; ++i) EXPECT_EQ(std::string(history.Forward()), "/" + std::to_string(i));
}

TEST(FolderHistory, StaysRightOverManyRounds) {
  LExplorerFolderHistory history;
  for (int i = 0; i < 57; ++i) history.Add(("/" + std::to_string(i)).c_str());
  int steps = 0;
  std::string last;
  while (const char* path = history.Back()) {
    last = path;
    ++steps;
  }
  EXPECT_EQ(steps, 9);
  EXPECT_EQ(last, "/47");
}

TEST(LocalSizes, AreComparedByLengthAndUnorderedAtEqualLength) {
  EXPECT_EQ(LocalCompareFileSizes("999 KB", "1,000 KB", true), -1);
  EXPECT_EQ(LocalCompareFileSizes("999 KB", "1,000 KB", false), 1);
  EXPECT_EQ(LocalCompareFileSizes("12 KB", "11 KB", true), 1);
  EXPECT_EQ(LocalCompareFileSizes("11 KB", "12 KB", true), 1);
  EXPECT_EQ(LocalCompareFileSizes("11 KB", "11 KB", true), 0);
  for (const bool ascending : {true, false}) {
    EXPECT_EQ(LocalCompareFileSizes("", "1 KB", ascending), -1);
    EXPECT_EQ(LocalCompareFileSizes("1 KB", "", ascending), 1);
    EXPECT_EQ(LocalCompareFileSizes("", "", ascending), 0);
  }
}

}  // namespace
