#include "platform/folders.h"

#include <gtest/gtest.h>
#include <string>

#include "support/environment.h"
#include "support/scratch_folder.h"

namespace {

using platform::Folder;

std::string PathOf(Folder folder) {
  char out[platform::kFixedText];
  const bool found = platform::FolderPath(folder, out);
  EXPECT_EQ(found, out[0] != 0);
  return out;
}

TEST(Folders, BaseFoldersComeFromTheirVariables) {
  const Environment home("HOME", "/home/hana");
  const Environment data("XDG_DATA_HOME", "/srv/data//");
  const Environment caches("XDG_CACHE_HOME", "relative/is/ignored");
  const Environment config("XDG_CONFIG_HOME", nullptr);
  EXPECT_EQ(PathOf(Folder::kHome), "/home/hana");
  EXPECT_EQ(PathOf(Folder::kData), "/srv/data");
  EXPECT_EQ(PathOf(Folder::kApplications), "/srv/data/applications");
  EXPECT_EQ(PathOf(Folder::kCaches), "/home/hana/.cache");
  EXPECT_EQ(PathOf(Folder::kConfig), "/home/hana/.config");
  const Environment noData("XDG_DATA_HOME", "");
  EXPECT_EQ(PathOf(Folder::kData), "/home/hana/.local/share");
}

TEST(Folders, HomeComesFromTheUserDatabaseWithoutItsVariable) {
  const Environment home("HOME", nullptr);
  EXPECT_EQ(PathOf(Folder::kHome)[0], '/');
}

TEST(Folders, PathsThatDoNotFitAreNotFound) {
  for (const size_t length : {258u, 259u, 260u, 261u}) {
    const std::string path = "/" + std::string(length - 1, 'x');
    const Environment data("XDG_DATA_HOME", path);
    EXPECT_EQ(PathOf(Folder::kData), length <= 259 ? path : "") << length;
  }
}

TEST(Folders, UserDirectoriesComeFromTheDesktopsFile) {
  const ScratchFolder scratch;
  const Environment home("HOME", "/home/hana");
  const Environment config("XDG_CONFIG_HOME", scratch.Path());
  const struct {
    const char* name;
    const char* file;
    const char* documents;
  } rows[] = {
      {"below home", "XDG_DOCUMENTS_DIR=\"$HOME/書類\"\n", "/home/hana/書類"},
      {"home itself, which means none of its own", "XDG_DOCUMENTS_DIR=\"$HOME/\"\n", "/home/hana"},
      {"escaped bytes", "XDG_DOCUMENTS_DIR=\"$HOME/a\\\"b\\\\c\"\n", "/home/hana/a\"b\\c"},
      {"blanks around", "  XDG_DOCUMENTS_DIR = \"/docs\" \n", "/docs"},
      {"the last line counts", "XDG_DOCUMENTS_DIR=\"/one\"\nXDG_DOCUMENTS_DIR=\"/two\"\n", "/two"},
      {"comment", "# XDG_DOCUMENTS_DIR=\"/docs\"\n", ""},
      {"another key", "XDG_DOCUMENTS_DIR2=\"/docs\"\nXDG_MUSIC_DIR=\"/music\"\n", ""},
      {"relative", "XDG_DOCUMENTS_DIR=\"docs\"\n", ""},
      {"another variable", "XDG_DOCUMENTS_DIR=\"$HOMER/docs\"\n", ""},
      {"no closing quote", "XDG_DOCUMENTS_DIR=\"/docs\n", ""},
  };
  for (const auto& row : rows) {
    scratch.Write("user-dirs.dirs", row.file);
    EXPECT_EQ(PathOf(Folder::kDocuments), row.documents) << row.name;
    EXPECT_EQ(PathOf(Folder::kDownloads), "") << row.name;
  }
}

TEST(Folders, TheSystemsProgramStartersLieInTheFirstDataFolderThatHasAny) {
  const ScratchFolder scratch;
  scratch.MakeFolder("second/applications");
  const std::string list = "relative:" + scratch.Path("first") + "::" + scratch.Path("second/");
  const Environment both("XDG_DATA_DIRS", list);
  EXPECT_EQ(PathOf(Folder::kSystemApplications), scratch.Path("second/applications"));
  const Environment one("XDG_DATA_DIRS", scratch.Path("first"));
  EXPECT_EQ(PathOf(Folder::kSystemApplications), "");
}

TEST(Folders, TheProgramsFolderHoldsThisProgram) {
  EXPECT_TRUE(std::filesystem::exists(PathOf(Folder::kProgram) + "/unit_platform"));
}

}  // namespace
