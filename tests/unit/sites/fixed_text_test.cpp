// Every operation of the settings and accounts that fills a fixed text.
#include "sites/store/shared_settings.h"
#include "support/boundary_lengths.h"
#include "support/scratch_folder.h"
#include "support/settings_fixture.h"

namespace {

using Text = char[kTextSize];
using std::string;

class SettingTexts : public SettingsFixture {};

TEST_F(SettingTexts, OfKeysAndValues) {
  constexpr LSettingsUser kUser = kCFPreferencesCurrentUser;
  ExpectCutAtTheArray({
      {"a value", "", "",
       [](const string& x, Text& out) {
         LUserSettingSetString("Settings", "Value", x.c_str());
         EXPECT_TRUE(_LUserSettingGetString("Settings", "Value", "default", out));
       }},
      {"a default", "", "",
       [](const string& x, Text& out) { EXPECT_FALSE(_LUserSettingGetString("Settings", "Absent", x.c_str(), out)); }},
      {"_LSettingMakePrimaryKeyFromPath", "a", "",
       [](const string& x, Text& out) { _LSettingMakePrimaryKeyFromPath(out, ("b/a" + x + "/").c_str()); }},
      {"_LSettingFindRecord", "a", "",
       [](const string& x, Text& out) {
         LUserSettingDeleteSection("F");
         Put("F/r/a" + x, "");
         int index = 0;
         EXPECT_TRUE(_LSettingFindRecord(kUser, out, index, "F", "r"));
       }},
      {"_LSettingPlistGetNextKey", "a", "",
       [](const string& x, Text& out) {
         LUserSettingDeleteSection("N");
         Put("N/a" + x + "/f", "");
         EXPECT_TRUE(_LSettingPlistGetNextKey(kUser, "N/", "", out));
       }},
      {"_LSettingChangePrimaryKey", "C/n", "",
       [](const string& x, Text& out) {
         LUserSettingDeleteSection("C");
         Put("C/a/f", "");
         EXPECT_TRUE(_LSettingChangePrimaryKey(kUser, "C/a/", ("n" + x).c_str(), out));
       }},
      {"the domain of a program", "com.tessalysoft.", "",
       [](const string& x, Text& out) { LSettingGetCFPreferencesApplicationKeyLongForApplication(out, x.c_str()); }},
  });
}

TEST_F(SettingTexts, OfRecords) {
  const LUserSettingsListTemplate<LSharedSettingsRecord> list("L");
  const auto opened = [&list](const string& name) {
    LSharedSettingsRecord record;
    list.Open(record, name.c_str());
    return record;
  };
  ExpectCutAtTheArray({
      {"a record's name", "", "", [&](const string& x, Text& out) { TextCopy(out, opened(x).szPrimaryKey); }},
      {"a record's path", "L/", "/", [&](const string& x, Text& out) { TextCopy(out, opened(x).szKeyPath); }},
      {"a field by a path that is cut", "", "",
       [&](const string& x, Text& out) {
         EXPECT_TRUE(opened(x).SetString("f", x.c_str()));
         EXPECT_TRUE(opened(x).GetString("f", out));
       }},
      {"a list's path", "", "/",
       [](const string& x, Text& out) {
         TextCopy(out, LUserSettingsListTemplate<LSharedSettingsRecord>(x.c_str()).szKeyPath);
       }},
      {"a new primary key", "", "",
       [&](const string& x, Text& out) {
         LSharedSettingsRecord record = opened("unmarked");
         record.SetPrimaryKey(x.c_str());
         TextCopy(out, record.szPrimaryKey);
       }},
  });
}

TEST_F(SettingTexts, OfAccounts) {
  using Field = char(LFTPAccountSettings::*)[kTextSize];
  const struct {
    const char* name;
    Field field;
  } fields[] = {{"Server", &LFTPAccountSettings::szServer},
                {"Password", &LFTPAccountSettings::szPassword},
                {"Directory", &LFTPAccountSettings::szDirectory},
                {"LocalDirectory", &LFTPAccountSettings::szLocalDirectory},
                {"RecentRemoteDirectory", &LFTPAccountSettings::szRecentRemote},
                {"RecentLocalDirectory", &LFTPAccountSettings::szRecentLocal}};
  LUserSettingSetString("Settings", "CurrentServer", "host");
  LUserSettingSetString("Settings", "CurrentUser", "joe");
  const LSharedSettingsRecord site = OpenSite("label", "host", "0");
  site.SetString("UserName", "joe");
  std::vector<FixedTextFiller> fillers = {
      {"the label", "", "", [](const string& x, Text& out) { TextCopy(out, LFTPAccountSettings(x.c_str()).szKey); }},
      {"the user", "", "",
       [](const string& x, Text& out) { TextCopy(out, LFTPAccountSettings("label", x.c_str()).szUserName); }}};
  for (const auto& row : fields) {
    fillers.push_back({row.name, "", "", [&site, row](const string& x, Text& out) {
                         site.SetString(row.name, x.c_str());
                         LFTPAccountSettings account("label");
                         EXPECT_TRUE(account.Load());
                         TextCopy(out, account.*row.field);
                       }});
  }
  ExpectCutAtTheArray(fillers);
}

TEST_F(SettingTexts, OfTheFilesOfXml) {
  const ScratchFolder scratch;
  const string file = scratch.Path("a.xml");
  ExpectCutAtTheArray({
      {"a value", "", "",
       [&file](const string& x, Text& out) {
         EXPECT_TRUE(LXMLSettingSetString(file.c_str(), "S", "K", x.c_str()));
         EXPECT_TRUE(LXMLSettingGetString(file.c_str(), "S", "K", "default", out));
       }},
      {"a default", "", "",
       [&file](const string& x, Text& out) {
         EXPECT_FALSE(LXMLSettingGetString(file.c_str(), "S", "none", x.c_str(), out));
       }},
  });
}

}  // namespace
