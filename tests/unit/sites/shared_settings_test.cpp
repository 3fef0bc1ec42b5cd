#include "sites/store/shared_settings.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "support/environment.h"
#include "support/scratch_folder.h"
#include "support/xml_text.h"

namespace {

/// A home folder for each test.
class SharedSettings : public testing::Test {
 protected:
  static std::string Shared(const char* section, const char* key, const char* defaultValue) {
    char out[kTextSize];
    _LSharedSettingGetString(section, key, defaultValue, out);
    return out;
  }
  static std::string GetFrom(const std::string& file, const char* section, const char* key) {
    char out[kTextSize];
    LXMLSettingGetString(file.c_str(), section, key, "default", out);
    return out;
  }

  const std::string sharedFile = "data/OrvaneFTP/Shared/SharedSettings.xml";
  const std::string hiddenFile = ".tessalysoft/orvaneftp.xml";
  const ScratchFolder folder;
  const Environment home{"HOME", folder.Path()}, data{"XDG_DATA_HOME", folder.Path("data")};
};

TEST_F(SharedSettings, LieInTwoFilesOfOneForm) {
  EXPECT_TRUE(LSharedSettingSetString("Install", "Id", "1 < 2 & \"3\""));
  EXPECT_TRUE(LSharedSettingSetString("Install", "Count", "42"));
  EXPECT_TRUE(LSharedSettingSetString("Other", "Id", "値?"));
  EXPECT_TRUE(LSharedSettingSetString("Install", "Id", "5"));
  EXPECT_EQ(folder.Read(sharedFile),
            "<Install>\n\t<Id value=\"5\"/>\n\t<Count value=\"42\"/>\n</Install>\n"
            "<Other>\n\t<Id value=\"値?\"/>\n</Other>\n");
  EXPECT_TRUE(LUserHiddenSettingSetString("Install", "Id", "hidden"));
  EXPECT_EQ(folder.Read(hiddenFile), "<Install>\n\t<Id value=\"hidden\"/>\n</Install>\n");

  char out[kTextSize];
  EXPECT_TRUE(_LUserHiddenSettingGetString("Install", "Id", "", out));
  EXPECT_STREQ(out, "hidden");
  EXPECT_EQ(Shared("Other", "Id", ""), "値?");
  EXPECT_EQ(LSharedSettingGet<int>("Install", "Count", 7), 42);
  EXPECT_EQ(LSharedSettingGet<int>("Install", "None", 7), 7);
  EXPECT_EQ(LUserHiddenSettingGet<int>("Install", "Id", 7), 0) << "no number";
  EXPECT_EQ(LUserHiddenSettingGet<int>("Install", "Count", 7), 7);
}

TEST_F(SharedSettings, KeepEveryValueAndCutOnlyWhatIsGivenBack) {
  for (const char* value : {"", " ", "a?", "<>&\"'/=", "\xFF\xC3", "日本語", "&amp;", "line\nend", "-->"}) {
    EXPECT_TRUE(LSharedSettingSetString("S", "K", value));
    EXPECT_EQ(Shared("S", "K", "default"), value);
  }
  const std::string longValue(10 << 20, 'v');
  EXPECT_TRUE(LSharedSettingSetString("S", "K", longValue.c_str()));
  EXPECT_EQ(Shared("S", "K", ""), longValue.substr(0, 259));
  EXPECT_NE(folder.Read(sharedFile).find(longValue), std::string::npos) << "the file has it whole";
}

TEST_F(SharedSettings, AreFoundByTheFirstSectionAndKeyInTheirCase) {
  const std::string file =
      folder.Write("a.xml",
                   "<?xml version='1.0'?><!--Section--><Section><key value='lower'/><Key/><Key value='2'/></Section>"
                   "<Section><More value='3'/></Section><Text>Key</Text>");
  struct {
    const char *section, *key, *value;
  } rows[] = {
      {"Section", "key", "lower"},    {"Section", "Key", "default"}, {"section", "key", "default"},
      {"Section", "More", "default"}, {"Text", "Key", "default"},    {"", "", "default"},
  };
  for (const auto& row : rows) EXPECT_EQ(GetFrom(file, row.section, row.key), row.value);

  EXPECT_TRUE(LXMLSettingSetString(file.c_str(), "Section", "More", "4"));
  EXPECT_EQ(folder.Read("a.xml"),
            "<?xml version=\"1.0\"?>\n<!--Section-->\n"
            "<Section>\n\t<key value=\"lower\"/>\n\t<Key/>\n\t<Key value=\"2\"/>\n\t<More "
            "value=\"4\"/>\n</Section>\n"
            "<Section>\n\t<More value=\"3\"/>\n</Section>\n<Text>Key</Text>\n");
}

TEST_F(SharedSettings, AreEmptyInAFileThatCannotBeRead) {
  const std::string aFolder = folder.MakeFolder("folder");
  for (const std::string& file : {folder.Path("none.xml"), aFolder}) EXPECT_EQ(GetFrom(file, "S", "K"), "default");
  const std::string broken = folder.Write("broken.xml", "<S><K value='1'/></S></x><T><K value='2'/></T>");
  EXPECT_EQ(GetFrom(broken, "S", "K"), "1");
  EXPECT_EQ(GetFrom(broken, "T", "K"), "default") << "behind the error";
  EXPECT_FALSE(LXMLSettingSetString(aFolder.c_str(), "S", "K", "1"));
  EXPECT_FALSE(LXMLSettingSetString(folder.Path("none/a.xml").c_str(), "S", "K", "1"));
  LXMLDocument document;
  EXPECT_FALSE(LSharedSettingsLoad(document)) << "no file yet";
  EXPECT_TRUE(LSharedSettingsSave(ParsedXml("<S><K value='1'/></S><!--c-->").document));
  EXPECT_TRUE(LSharedSettingsLoad(document));
  EXPECT_EQ(XmlTree(document), "S[K(value=1)] !--['c']");
  std::filesystem::remove(folder.Path(sharedFile));
  EXPECT_FALSE(LSharedSettingsLoad(document));
  EXPECT_EQ(XmlTree(document), "") << "an absent file is an empty one";
}

TEST_F(SharedSettings, AreWholeForReadersWhileAnotherProcessWrites) {
  const std::string file = folder.Write("a.xml", "<S><K value='0'/></S>");
  const std::string filler(250, 'f');
  const pid_t writer = fork();
  if (writer == 0) {
    // A file that is being read refuses a write at once, and here it is read nearly all the time.
    int written = 0;
    for (int i = 0; i < 100000 && written < 50; ++i)
      written += LXMLSettingSetString(file.c_str(), "S", "K", filler.c_str());
    _exit(written > 0 ? 0 : 1);
  }
  int status = 0;
  while (waitpid(writer, &status, WNOHANG) == 0) {
    const std::string value = GetFrom(file, "S", "K");
    EXPECT_TRUE(value == "0" || value == filler) << value;
  }
  EXPECT_EQ(status, 0) << "nothing was written";
  EXPECT_EQ(GetFrom(file, "S", "K"), filler);
}

TEST_F(SharedSettings, LeaveADanglingLinkInTheirFoldersPlaceAlone) {
  std::filesystem::create_symlink(folder.Path("nowhere"), folder.Path(".tessalysoft"));
  EXPECT_FALSE(LUserHiddenSettingSetString("S", "K", "1"));
  EXPECT_FALSE(folder.Has("nowhere"));
}

}  // namespace
