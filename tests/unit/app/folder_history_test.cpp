#include "app/folder_history.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <string>

#include "app/local_pane.h"

namespace {

TEST(FolderHistory, HoldsTheLastTenFolders) {
  for (const int folders : {0, 1, 10, 11, 57}) {
    SCOPED_TRACE(folders);
    LExplorerFolderHistory history;
    history.Add("");  // Is none.
    for (int i = 1; i <= folders; ++i) history.Add(("/" + std::to_string(i)).c_str());
    const int oldest = std::max(1, folders - 9);
    for (int i = folders - 1; i >= oldest; --i) EXPECT_EQ(std::string(history.Back()), "/" + std::to_string(i));
    EXPECT_FALSE(history.IsBackAccessible());
    EXPECT_EQ(history.Back(), nullptr);
    for (int i = oldest + 1; i <= folders; ++i) EXPECT_EQ(std::string(history.Forward()), "/" + std::to_string(i));
    if (folders < 10) {  // In a full ring the oldest entry is the one behind the newest.
      EXPECT_EQ(history.Forward(), nullptr);
    }
  }
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
