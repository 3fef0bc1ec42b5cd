// The rights of a remote file between text and digits, and what a link's row says.
#include <gtest/gtest.h>

#include "client/permission_rules.h"
#include "client/remote_pane.h"
#include "client/remote_paths.h"

namespace {

struct Digits {
  const char* text;
  int owner, group, others;
};

TEST(Permissions, AreReadFromMasksAndOctalTexts) {
  constexpr Digits kRows[] = {
      {"drwxr-xr-x", 7, 5, 5},
      {"-rw-r-----", 6, 4, 0},
      {"-rwsr-Sr-t", 6, 4, 4},  // Other letters add nothing.
      {"-rw-r--r--+", 6, 4, 4},
      {"0755", 7, 5, 5},
      {"100644", 0, 0, 644 & 0xFF},  // The first is skipped, and all from the third on is one number.
      {"rwx", 0, 0, 0},
      {"755", 0, 0, 0},
      {"07x5", 0, 0, 0},
      {"", 0, 0, 0},
  };
  for (const Digits& row : kRows) {
    unsigned char owner = 9, group = 9, others = 9;
    LFtpList::ConvertRemoteFileAttributesToValues(row.text, owner, group, others);
    EXPECT_EQ(owner, row.owner) << row.text;
    EXPECT_EQ(group, row.group) << row.text;
    EXPECT_EQ(others, row.others) << row.text;
  }
}

TEST(Permissions, AreShownByHowGreatADigitIs) {
  const struct {
    unsigned char owner, group, others;
    char first;
    bool numeric;
    const char* text;
  } kRows[] = {
      {7, 5, 5, 'd', false, "drwxr--r--"}, {6, 4, 0, '-', false, "-rw-r-----"}, {1, 2, 3, '-', false, "----------"},
      {7, 5, 5, '0', true, "0755"},        {0, 4, 4, '0', true, "044"},         {0, 0, 0, '-', true, "00"},
  };
  for (const auto& row : kRows) {
    char text[kTextSize];
    LFtpList::ConvertValuesToRemoteFileAttributes(text, row.owner, row.group, row.others, row.first, row.numeric);
    EXPECT_STREQ(text, row.text);
  }
}

TEST(Links, LeadToWhatStandsBeforeTheFirstMinusOrArrow) {
  const char* rows[][2] = {{"www -> /srv/www", "www"}, {"www", "www"},   {"old-site -> /srv", "old"},
                           {"  a > b", "a"},           {"->target", ""}, {"日本 -> 語", "日本"}};
  for (const auto& row : rows) {
    char target[kTextSize];
    RemoteLinkTarget(target, row[0]);
    EXPECT_STREQ(target, row[1]);
  }
}

TEST(Names, LoseBlanksFirstAndCapitalsAfter) {
  char name[kTextSize];
  RemoteCleanName(name, "My File A.TXT", true, false);
  EXPECT_STREQ(name, "My_File_A.TXT");
  RemoteCleanName(name, "My File A.TXT", true, true);
  EXPECT_STREQ(name, "my_file_a.txt");
}

}  // namespace
