#include "platform/folders.h"

#include <gtest/gtest.h>
#include <map>
#include <stdlib.h>
#include <string>

#include "support/scratch_folder.h"

namespace {

using platform::Folder;

std::string PathOf(Folder folder) {
  char out[platform::kFixedText];
  const bool found = platform::FolderPath(folder, out);
  EXPECT_EQ(found, out[0] != 0);
  return out;
}

/// Variables as a test sets them; the former values come back afterwards.
class FoldersTest : public testing::Test {
 protected:
  ~FoldersTest() override {
    for (const auto& [name, value] : former) {
      if (value) {
        setenv(name.c_str(), value->c_str(), 1);
      } else {
        unsetenv(name.c_str());
      }
    }
  }

  void Set(const char* name, const char* value) {
    if (!former.count(name)) {
      const char* old = getenv(name);
      former[name] = old ? std::optional<std::string>(old) : std::nullopt;
    }
    if (value) {
      setenv(name, value, 1);
    } else {
      unsetenv(name);
    }
  }

  ScratchFolder scratch;

 private:
  std::map<std::string, std::optional<std::string>> former;
};

TEST_F(FoldersTest, BaseFoldersComeFromTheirVariables) {
  Set("HOME", "/home/hana");
  Set("XDG_DATA_HOME", "/srv/data//");
  Set("XDG_CACHE_HOME", "relative/is/ignored");
  Set("XDG_CONFIG_HOME", nullptr);
  EXPECT_EQ(PathOf(Folder::kHome), "/home/hana");
  EXPECT_EQ(PathOf(Folder::kData), "/srv/data");
  EXPECT_EQ(PathOf(Folder::kApplications), "/srv/data/applications");
  EXPECT_EQ(PathOf(Folder::kCaches), "/home/hana/.cache");
  EXPECT_EQ(PathOf(Folder::kConfig), "/home/hana/.config");
  Set("XDG_DATA_HOME", "");
  EXPECT_EQ(PathOf(Folder::kData), "/home/hana/.local/share");
}

TEST_F(FoldersTest, HomeComesFromTheUserDatabaseWithoutItsVariable) {
  Set("HOME", nullptr);
  EXPECT_EQ(PathOf(Folder::kHome)[0], '/');
}

TEST_F(FoldersTest, PathsThatDoNotFitAreNotFound) {
  for (const size_t length : {258u, 259u, 260u, 261u}) {
    const std::string path = "/" + std::string(length - 1, 'x');
    Set("XDG_DATA_HOME", path.c_str());
    EXPECT_EQ(PathOf(Folder::kData), length <= 259 ? path : "") << length;
  }
}

TEST_F(FoldersTest, UserDirectoriesComeFromTheDesktopsFile) {
  Set("HOME", "/home/hana");
  Set("XDG_CONFIG_HOME", scratch.Path().c_str());
  const struct {
    const char* name;
    const char* file;
    const char* documents;
  } rows[] = {
      {"below home", "XDG_DOCUMENTS_DIR=\"$HOME/書類\"\n", "/home/hana/書類"},
      {"absolute", "XDG_DOCUMENTS_DIR=\"/data/docs/\"\n", "/data/docs"},
      {"home itself, which means none of its own", "XDG_DOCUMENTS_DIR=\"$HOME/\"\n", "/home/hana"},
      {"escaped bytes", "XDG_DOCUMENTS_DIR=\"$HOME/a\\\"b\\\\c\"\n", "/home/hana/a\"b\\c"},
      {"blanks around", "  XDG_DOCUMENTS_DIR = \"/docs\" \n", "/docs"},
      {"the last line counts", "XDG_DOCUMENTS_DIR=\"/one\"\nXDG_DOCUMENTS_DIR=\"/two\"\n", "/two"},
      {"no last line end", "XDG_DOCUMENTS_DIR=\"/docs\"", "/docs"},
      {"comment", "# XDG_DOCUMENTS_DIR=\"/docs\"\n", ""},
      {"another key", "XDG_DOCUMENTS_DIR2=\"/docs\"\nXDG_MUSIC_DIR=\"/music\"\n", ""},
      {"relative", "XDG_DOCUMENTS_DIR=\"docs\"\n", ""},
      {"another variable", "XDG_DOCUMENTS_DIR=\"$HOMER/docs\"\n", ""},
      {"no closing quote", "XDG_DOCUMENTS_DIR=\"/docs\n", ""},
      {"no quotes", "XDG_DOCUMENTS_DIR=/docs\n", ""},
      {"no file content", "", ""},
  };
  for (const auto& row : rows) {
    scratch.Write("user-dirs.dirs", row.file);
    EXPECT_EQ(PathOf(Folder::kDocuments), row.documents) << row.name;
    EXPECT_EQ(PathOf(Folder::kDownloads), "") << row.name;
  }
}

TEST_F(FoldersTest, TheSystemsProgramStartersLieInTheFirstDataFolderThatHasAny) {
  scratch.MakeFolder("second/applications");
  const std::string list = "relative:" + scratch.Path("first") + "::" + scratch.Path("second/");
  Set("XDG_DATA_DIRS", list.c_str());
  EXPECT_EQ(PathOf(Folder::kSystemApplications), scratch.Path("second/applications"));
  Set("XDG_DATA_DIRS", scratch.Path("first").c_str());
  EXPECT_EQ(PathOf(Folder::kSystemApplications), "");
}

TEST_F(FoldersTest, TheProgramsFolderHoldsThisProgram) {
  EXPECT_TRUE(std::filesystem::exists(PathOf(Folder::kProgram) + "/unit_platform"));
}

}  // namespace
