// Every operation of the settings and accounts that fills a fixed text.
#include "support/boundary_lengths.h"
#include "support/settings_fixture.h"

namespace {

using Text = char[kTextSize];
using std::string;

class SettingTexts : public SettingsFixture {};

TEST_F(SettingTexts, OfKeysAndValues) {
  constexpr LSettingsUser kUser = kCFPreferencesCurrentUser;
  ExpectCutAtTheArray({
      {"_LSettingMakePrimaryKeyFromPath", "a", "",
       [](const string& x, Text& out) { _LSettingMakePrimaryKeyFromPath(out, ("b/a" + x + "/").c_str()); }},
      {"_LSettingFindRecord", "a", "",
       [](const string& x, Text& out) {
         LUserSettingDeleteSection("F");
         Put("F/r/a" + x, "");
         int index = 0;
         EXPECT_TRUE(_LSettingFindRecord(kUser, out, index, "F", "r"));
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
  ExpectCutAtTheArray(
      {{"the label", "", "", [](const string& x, Text& out) { TextCopy(out, LFTPAccountSettings(x.c_str()).szKey); }},
       {"the user", "", "",
        [](const string& x, Text& out) { TextCopy(out, LFTPAccountSettings("label", x.c_str()).szUserName); }}});
}

}  // namespace
