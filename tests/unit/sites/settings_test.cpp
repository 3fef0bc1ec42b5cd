#include "sites/store/settings.h"

#include <climits>
#include <clocale>
#include <thread>

#include "support/history_file.h"
#include "support/settings_fixture.h"

namespace {

class Settings : public SettingsFixture {};

TEST_F(Settings, JoinSectionAndKeyWithOneSlash) {
  const struct {
    const char *section, *key, *joined;
  } cases[] = {
      {"Settings/", "FtpRetry", "Settings/FtpRetry"},
      {"a/b", "c/", "a/b/c/"},
      {"a//", "b", "a//b"},
      {"", "b", "/b"},
      {"a", "", "a/"},
  };
  for (const auto& row : cases) {
    char joined[kJoinedPathSize];
    LSettingJoinPath(joined, row.section, row.key);
    EXPECT_STREQ(joined, row.joined);
    LUserSettingSetString(row.section, row.key, "value");
    EXPECT_EQ(Raw(row.joined), "value");
    Put(row.joined, "");
  }
  char joined[kJoinedPathSize];
  LSettingJoinPath(joined, std::string(400, 's').c_str(), std::string(400, 'k').c_str());
  EXPECT_EQ(std::string(joined), std::string(400, 's') + "/" + std::string(118, 'k'));
}

TEST_F(Settings, KeepValuesOfAnyLengthAndCutThemByBytes) {
  for (const size_t length : {0, 258, 261, 5000, 10 << 20}) {
    const std::string value = std::string(length, 'v') + "あ";
    EXPECT_TRUE(LUserSettingSetString("Settings", "Value", value.c_str()));
    char fixed[kTextSize];
    LStringLongTemplate<char> whole;
    EXPECT_TRUE(_LUserSettingGetString("Settings", "Value", "default", fixed));
    EXPECT_TRUE(_LUserSettingGetString("Settings", "Value", "default", whole));
    EXPECT_EQ(fixed, value.substr(0, 259));
    EXPECT_TRUE(whole.Text() == value) << length;
  }
}

TEST_F(Settings, GiveTheDefaultOnlyForAnAbsentKey) {
  char fixed[kTextSize];
  LStringLongTemplate<char> whole;
  const std::string longDefault(300, 'd');
  EXPECT_FALSE(_LUserSettingGetString("Settings", "Key", longDefault.c_str(), whole));
  EXPECT_EQ(whole.Text(), longDefault);
  EXPECT_FALSE(_LUserSettingGetString("Settings", "Key", nullptr, fixed));
  EXPECT_STREQ(fixed, "");

  LUserSettingSetString("Settings", "Key", "");
  EXPECT_TRUE(_LUserSettingGetString("Settings", "Key", "default", fixed));
  EXPECT_STREQ(fixed, "");
  EXPECT_FALSE(_LUserSettingGetString("settings", "Key", "case counts", fixed));
}

TEST_F(Settings, ReadBooleansByTwoRules) {
  const struct {
    const char* value;
    bool isOn, isOnOrAbsent;
  } cases[] = {{"", false, true}, {"0", false, false}, {"01", false, false},
               {"1", true, true}, {"no", true, true},  {" 0", true, true}};
  for (const auto& row : cases) {
    EXPECT_EQ(LSettingIsOn(row.value), row.isOn) << row.value;
    EXPECT_EQ(LSettingIsOnOrAbsent(row.value), row.isOnOrAbsent) << row.value;
    LUserSettingSetString("Settings", "Flag", row.value);
    EXPECT_EQ(LUserSettingIsOn("Settings", "Flag"), row.isOn) << row.value;
  }
  EXPECT_FALSE(LUserSettingIsOn("Settings", "Absent"));
}

TEST_F(Settings, ReadNumbersInDecimal) {
  const struct {
    const char* text;
    int asInt;
    long asLong;
    double asDouble;
  } cases[] = {
      {"", -7, -7, -7},  // The default.
      {" \t+12", 12, 12, 12},
      {"-12.75", -12, -12, -12.75},
      {"0x10", 0, 0, 0},
      {"12abc", 12, 12, 12},
      {"1e3", 1, 1, 1000},
      {"+-5", 0, 0, 0},
      {"2147483648", INT_MAX, 2147483648L, 2147483648.0},
      {"-99999999999999999999", INT_MIN, LONG_MIN, -99999999999999999999.0},
  };
  const char* const locale = setlocale(LC_NUMERIC, "de_DE.UTF-8");
  for (const auto& row : cases) {
    LUserSettingSetString("Settings", "Number", row.text);
    EXPECT_EQ(LUserSettingGet<int>("Settings", "Number", -7), row.asInt) << row.text;
    EXPECT_EQ(LUserSettingGet<long>("Settings", "Number", -7), row.asLong) << row.text;
    EXPECT_EQ(LUserSettingGet<double>("Settings", "Number", -7), row.asDouble) << row.text;
  }
  if (locale) setlocale(LC_NUMERIC, "C");
  EXPECT_EQ(LUserSettingGet<int>("Settings", "Absent", 5), 5);
  LUserSettingSetTimeT("Settings", "Time", 253402300799);
  EXPECT_EQ(Setting("Time"), "253402300799");
}

TEST_F(Settings, DeleteAnItemWithItsTwinAndNothingElse) {
  for (const char* key : {"Proxy", "__Proxy", "Proxy2", "proxy"}) LUserSettingSetString("Settings", key, "x");
  EXPECT_TRUE(LUserSettingDeleteItem("Settings", "Proxy"));
  EXPECT_EQ(All(), (Texts{"Settings/proxy=x", "Settings/Proxy2=x"}));
  EXPECT_TRUE(LUserSettingDeleteItem("Settings", "Proxy"));
}

TEST_F(Settings, DeleteASectionWithoutRegardToCase) {
  const Texts kept = {"A=1", "A b/x=1", "Ab/x=1", "x/A/y=1"};
  for (const bool hasSlash : {false, true}) {
    for (const std::string& pair : kept) Put(pair.substr(0, pair.find('=')), "1");
    for (const char* key : {"A/", "A/x", "a/Y", "A//z", "A/b/c/"}) Put(key, "1");
    EXPECT_TRUE(LUserSettingDeleteSection(hasSlash ? "a/" : "a"));
    EXPECT_EQ(All(), kept);
  }
  EXPECT_TRUE(LUserSettingTestKeyFullPathExists(kCFPreferencesCurrentUser, "Ab/x"));
  EXPECT_FALSE(LUserSettingTestKeyFullPathExists(kCFPreferencesCurrentUser, "ab/x"));
  EXPECT_TRUE(LUserSettingTestExists(kCFPreferencesCurrentUser, "Ab/", "x"));
  EXPECT_FALSE(LUserSettingTestExists(kCFPreferencesCurrentUser, "Ab", "X"));
}

TEST_F(Settings, MakeTheMarkersOfEachLevel) {
  const struct {
    const char* path;
    Texts made;
  } cases[] = {
      {"FTPAccounts/label/server/0/",
       {"FTPAccounts/=FTPAccounts", "FTPAccounts/label/=label", "FTPAccounts/label/server/=server",
        "FTPAccounts/label/server/0/=0"}},
      {"a/b", {"a/=a"}},  // Without a "/" at its end the last component is a field.
      {"a//b/", {"a/=a", "a//b/=b"}},
      {"a/b//", {"a/=a", "a/b/=b"}},
      {"//a/", {"//a/=a"}},
      {"a", {}},
      {"", {}},
  };
  for (const auto& row : cases) {
    EXPECT_TRUE(_LSettingMakeParentKeyPath(kCFPreferencesCurrentUser, row.path));
    EXPECT_EQ(All(), row.made) << row.path;
    for (const std::string& made : row.made) {
      platform::PreferencesSetValue(kSettingsDomain, made.substr(0, made.find('=')).c_str(), nullptr);
    }
  }
  Put("a/", "kept as it is");
  _LSettingMakeParentKeyPath(kCFPreferencesCurrentUser, "a/A/");
  EXPECT_EQ(All(), (Texts{"a/=kept as it is", "a/A/=A"}));
}

TEST_F(Settings, FindRecordsDirectlyUnderAPath) {
  for (const char* key : {"P/s/", "P/s/field", "P/s/child/", "P/s/child/deep", "P/s//", "P/sx/f", "p/S/Other"}) {
    Put(key, "x");
  }
  const struct {
    const char *path, *sub;
    Texts found;
  } cases[] = {
      {"P", "s", {"", "child", "field", "Other"}},  // "P/s//" is a child without a name.
      {"P/s", "", {"", "child", "field", "Other"}},
      {"P/s/", "", {}},  // The next character after the path would have to be a second "/".
      {"P/s", "child", {"deep"}},
      {"P", "", {"s"}},  // By its marker; "P/sx" has none.
      {"P", "none", {}},
      {"", "", {}},
  };
  for (const auto& row : cases) {
    Texts found;
    char out[kTextSize];
    int index = 0;
    while (_LSettingFindRecord(kCFPreferencesCurrentUser, out, index, row.path, row.sub)) {
      found.emplace_back(out);
      ++index;
    }
    EXPECT_STREQ(out, "");
    EXPECT_EQ(found, row.found) << row.path << " " << row.sub;
  }
}

TEST_F(Settings, RenameWithAllThatLiesUnderneath) {
  for (const char* key : {"L/", "L/old/", "L/old/Field", "L/OLD/Upper", "L/old/Sub/", "L/old/Sub/x", "L/older/y"}) {
    Put(key, std::string("v:") + key);
  }
  char out[kTextSize];
  EXPECT_TRUE(_LSettingChangePrimaryKey(kCFPreferencesCurrentUser, "L/old/", "new", out));
  EXPECT_STREQ(out, "L/new");
  EXPECT_EQ(All(), (Texts{"L/=v:L/", "L/new/=new", "L/new/Field=v:L/old/Field", "L/new/Sub/=v:L/old/Sub/",
                          "L/new/Sub/x=v:L/old/Sub/x", "L/new/Upper=v:L/OLD/Upper", "L/older/y=v:L/older/y"}));

  const Texts before = All();
  EXPECT_FALSE(_LSettingChangePrimaryKey(kCFPreferencesCurrentUser, "L/new/", "", out));
  EXPECT_STREQ(out, "");
  EXPECT_FALSE(_LSettingChangePrimaryKey(kCFPreferencesCurrentUser, "L/", "x", out));
  EXPECT_STREQ(out, "");
  EXPECT_FALSE(_LSettingChangePrimaryKey(kCFPreferencesCurrentUser, "L/none/", "x", out));
  EXPECT_TRUE(_LSettingChangePrimaryKey(kCFPreferencesCurrentUser, "L/new/", "new", out));
  EXPECT_EQ(All(), before);
  EXPECT_TRUE(_LSettingChangePrimaryKey(kCFPreferencesCurrentUser, "L/new/", "NEW", out));
  EXPECT_EQ(Raw("L/NEW/Field"), "v:L/old/Field");
  EXPECT_EQ(All().size(), before.size());
}

TEST_F(Settings, WriteIntoTheDomainOfAnotherProgram) {
  EXPECT_TRUE(LSettingForApplicationSetString("OtherProgram", "Settings/Text", "value"));
  EXPECT_TRUE(LSettingForApplicationSetBool("OtherProgram", "Settings/On", true));
  EXPECT_EQ(Raw("Settings/Text", "com.tessalysoft.otherprogram"), "value");
  EXPECT_EQ(Raw("Settings/On", "com.tessalysoft.otherprogram"), "1");
  EXPECT_TRUE(All().empty());
}

TEST_F(Settings, MigrateOldIdsOnce) {
  constexpr const char* kOld = "com.Tessaly Soft.OrvaneFTP";
  EXPECT_FALSE(LSettingsMigrateUpperCaseApplicationIDUserSettings(kOld));
  LSettingsMigrateUpperCaseUserSettings();
  EXPECT_EQ(All(), (Texts{"Settings/MigratedFromCapitalsToLowerCase=1"}));

  platform::PreferencesSetValue(kOld, "FTPAccounts/a/", "a");
  platform::PreferencesSynchronize(kOld);
  LSettingsMigrateUpperCaseUserSettings();
  EXPECT_EQ(All().size(), 1u) << "it ran again";
  LUserSettingDeleteItem("Settings", "MigratedFromCapitalsToLowerCase");
  LSettingsMigrateUpperCaseUserSettings();
  platform::PreferencesClose();
  EXPECT_EQ(All(), (Texts{"FTPAccounts/a/=a", "Settings/MigratedFromCapitalsToLowerCase=1"}));
  EXPECT_EQ(Raw("FTPAccounts/a/", kOld), "a");
}

TEST_F(Settings, BecomeDurableTogetherInABatch) {
  LUserSettingSetString("Settings", "a", "old");
  {
    const LSettingsBatch outer;
    {
      const LSettingsBatch inner;
      LUserSettingSetString("Settings", "a", "new");
    }
    EXPECT_EQ(Setting("a"), "new");
    // What a kill here would leave.
    OtherProcess reader([] { return Setting("a") == "old"; });
    LUserSettingSetString("Settings", "a", "newer");
    LUserSettingSetString("Settings", "b", "new");
    reader.Start();
    EXPECT_TRUE(reader.Finish());
  }
  platform::PreferencesClose();
  EXPECT_EQ(All(), (Texts{"Settings/a=newer", "Settings/b=new"}));
}

TEST_F(Settings, AreWrittenByThreadsAtOnce) {
  const auto write = [](const char* section) {
    for (int i = 0; i < 50; ++i) {
      LUserSettingSetString(section, std::to_string(i).c_str(), "x");
      char name[kTextSize];
      EXPECT_TRUE(_LSettingPlistGetNextKey(kCFPreferencesCurrentUser, section, "", name));
    }
  };
  std::thread one(write, "one/");
  std::thread two(write, "two/");
  write("three/");
  one.join();
  two.join();
  platform::PreferencesClose();
  EXPECT_EQ(All().size(), 150u);
}

TEST_F(Settings, SayInTheHistoryWhereADamagedFileIsKept) {
  HistoryFile history;
  LUserSettingSetString("Settings", "x", "1");
  LSettingsLogDamagedStore();
  EXPECT_TRUE(history.Lines().empty()) << "a sound file is no news";
  platform::PreferencesClose();
  WriteFile(StoreFile(), "no database");
  EXPECT_TRUE(LUserSettingSetString("Settings", "x", "new"));
  LSettingsLogDamagedStore();
  LSettingsLogDamagedStore();
  ASSERT_EQ(history.Lines().size(), 1u);
  const std::vector<std::string> kept = FilesNamed("damaged");
  ASSERT_EQ(kept.size(), 1u);
  EXPECT_EQ(ReadFile(kept[0]), "no database");
  EXPECT_EQ(history.Lines()[0], "設定ファイルが壊れていたため「" + kept[0].substr(StoreFolder().size() + 1) +
                                    "」として保管し、新しく作成しました。フォルダ: " + StoreFolder());
  EXPECT_EQ(Setting("x"), "new");
}

// Two running copies of the program that save at once

/// The store lies in memory: thousands of commits would measure the disk, and the two meet each other more often
/// without it.
class SettingsOfTwoCopies : public SettingsFixture {
 protected:
  static constexpr int kSaves = 1000;

  ~SettingsOfTwoCopies() override { platform::PreferencesClose(); }

 private:
  const ScratchFolder memory{"/dev/shm"};
  const Environment config{"XDG_CONFIG_HOME", memory.Path()};
};

TEST_F(SettingsOfTwoCopies, LoseNoSave) {
  const auto saveAll = [](const char* section) {
    return [section] {
      bool isSaved = true;
      for (int i = 0; i < kSaves; ++i) {
        isSaved = LUserSettingSetString(section, std::to_string(i).c_str(), std::to_string(i * 7).c_str()) && isSaved;
        // A key that both write holds one of the two values at any time, never neither.
        isSaved = isSaved && LUserSettingSetString("Both", "last", section);
      }
      return isSaved;
    };
  };
  OtherProcess one(saveAll("One"));
  OtherProcess two(saveAll("Two"));
  one.Start();
  two.Start();
  int seen = 0;
  EXPECT_TRUE(one.Finish());
  EXPECT_TRUE(two.Finish());
  for (const char* section : {"One", "Two"}) {
    for (int i = 0; i < kSaves; ++i) {
      const std::string key = std::string(section) + "/" + std::to_string(i);
      if (Raw(key) == std::to_string(i * 7)) ++seen;
    }
  }
  EXPECT_EQ(seen, 2 * kSaves);
  EXPECT_EQ(All().size(), 2u * kSaves + 1);
}

}  // namespace
