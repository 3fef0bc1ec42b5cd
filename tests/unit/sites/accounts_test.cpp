#include "sites/store/accounts.h"

#include "support/settings_fixture.h"

namespace {

class Accounts : public SettingsFixture {
 protected:
  static void SetCurrent(const char* label, const char* server, const char* user) {
    LUserSettingSetString("Settings", "Current", label);
    LUserSettingSetString("Settings", "CurrentServer", server);
    LUserSettingSetString("Settings", "CurrentUser", user);
  }

  static void AddUser(const char* label, const char* server, const char* key, const char* user) {
    const LSettingsBatch batch;
    const LSharedSettingsRecord site = OpenSite(label, server, key);
    site.SetString("Server", server);
    site.SetString("UserName", user);
    site.SetString("Directory", (std::string("/of/") + user).c_str());
  }

  static void AddUsers(const char* label, const char* server, int count) {
    for (int i = 0; i < count; ++i) AddUser(label, server, std::to_string(i).c_str(), User(i).c_str());
  }

  static std::string User(int number) { return "user" + std::to_string(number); }

  static std::string Key(const char* label, const char* server, const std::string& user) {
    char key[kTextSize] = "before";
    GetUserKey(label, server, user.c_str(), key);
    return key;
  }
};

TEST_F(Accounts, LoadTheDefaultsOfAbsentFields) {
  AddUser("label", "host", "0", "joe");
  OpenSite("label", "host", "0").DeleteRecord();
  Put("FTPAccounts/label/host/0/UserName", "joe");
  SetCurrent("label", "host", "joe");
  LFTPAccountSettings site("label", "given");
  EXPECT_STREQ(site.szUserName, "given");
  ASSERT_TRUE(site.Load());
  EXPECT_STREQ(site.szLabel, "label");
  EXPECT_STREQ(site.szServer, "");
  EXPECT_STREQ(site.szUserName, "joe");
  EXPECT_STREQ(site.szPassword, "");
  for (const char* folder : {site.szDirectory, site.szLocalDirectory, site.szRecentRemote, site.szRecentLocal}) {
    EXPECT_STREQ(folder, "/");
  }
  EXPECT_FALSE(site.bRemember || site.bUseSSL || site.bImplicit || site.bSFTP);
  EXPECT_TRUE(site.bUseRecentRemote && site.bUseRecentLocal);
}

TEST_F(Accounts, ReadEachFlagByItsOwnRule) {
  AddUser("label", "host", "0", "joe");
  SetCurrent("label", "host", "joe");
  const LSharedSettingsRecord record = OpenSite("label", "host", "0");
  for (const char* value : {"", "0", "00", "1", "x"}) {
    for (const char* field : {"RemP", "UseExplicitSSL", "UseSFTP", "UseRecentRemote", "UseRecentLocal"}) {
      record.SetString(field, value);
    }
    LFTPAccountSettings site("label");
    ASSERT_TRUE(site.Load());
    const bool isOn = value[0] != 0 && value[0] != '0';
    EXPECT_EQ(site.bRemember, isOn) << value;
    EXPECT_EQ(site.bUseSSL, isOn) << value;
    EXPECT_EQ(site.bSFTP, isOn) << value;
    EXPECT_EQ(site.bUseRecentRemote, value[0] != '0') << value;
    EXPECT_EQ(site.bUseRecentLocal, value[0] != '0') << value;
  }
}

TEST_F(Accounts, TurnThePairOfSecurityFlagsBothWays) {
  const struct {
    const char *isExplicit, *isImplicit;
    bool useSSL, implicit;
    const char *savedExplicit, *savedImplicit;
  } cases[] = {{"0", "0", false, false, "0", "0"},
               {"1", "0", true, false, "1", "0"},
               {"0", "1", true, true, "0", "1"},
               {"1", "1", true, true, "0", "1"}};
  AddUser("label", "host", "0", "joe");
  SetCurrent("label", "host", "joe");
  const LSharedSettingsRecord record = OpenSite("label", "host", "0");
  for (const auto& row : cases) {
    record.SetString("UseExplicitSSL", row.isExplicit);
    record.SetString("UseImplicitSSL", row.isImplicit);
    LFTPAccountSettings site("label");
    ASSERT_TRUE(site.Load());
    EXPECT_EQ(site.bUseSSL, row.useSSL);
    EXPECT_EQ(site.bImplicit, row.implicit);
    site.Save();
    EXPECT_EQ(Field(record, "UseExplicitSSL"), row.savedExplicit);
    EXPECT_EQ(Field(record, "UseImplicitSSL"), row.savedImplicit);
  }
}

TEST_F(Accounts, SaveEveryFieldAtKeyZeroWhicheverWasLoaded) {
  AddUsers("label", "host:2121", 2);
  SetCurrent("label", "host:2121", "user1");
  LFTPAccountSettings site("label");
  ASSERT_TRUE(site.Load());
  EXPECT_STREQ(site.szUserName, "user1");
  TextCopy(site.szPassword, "secret");
  TextCopy(site.szLocalDirectory, "/home/joe");
  TextCopy(site.szRecentRemote, "/r");
  TextCopy(site.szRecentLocal, "/l");
  site.bSFTP = true;
  site.bUseRecentLocal = false;
  for (const bool isRemembered : {false, true}) {
    site.bRemember = isRemembered;
    site.Save();
    platform::PreferencesClose();
    const LSharedSettingsRecord saved = OpenSite("label", "host:2121", "0");
    const std::pair<const char*, const char*> expected[] = {{"Server", "host:2121"},
                                                            {"UserName", "user1"},
                                                            {"Password", isRemembered ? "secret" : ""},
                                                            {"RemP", isRemembered ? "1" : "0"},
                                                            {"Directory", "/of/user1"},
                                                            {"LocalDirectory", "/home/joe"},
                                                            {"RecentRemoteDirectory", "/r"},
                                                            {"RecentLocalDirectory", "/l"},
                                                            {"UseRecentRemote", "1"},
                                                            {"UseRecentLocal", "0"},
                                                            {"UseExplicitSSL", "0"},
                                                            {"UseImplicitSSL", "0"},
                                                            {"UseSFTP", "1"}};
    for (const auto& [field, value] : expected) EXPECT_EQ(Field(saved, field), value) << field;
    EXPECT_EQ(Walk(AccountList(saved)).size(), std::size(expected));
  }
  EXPECT_EQ(Field(OpenSite("label", "host:2121", "1"), "UserName"), "user1");
}

TEST_F(Accounts, LoadByTheCurrentServerAndTheExactUser) {
  AddUser("label", "one", "0", "joe");
  AddUser("label", "two", "0", "Joe");
  AddUser("label", "two", "1", "joe");
  const struct {
    const char *label, *server, *user;
    bool isLoaded;
    const char* directory;
  } cases[] = {{"label", "one", "joe", true, "/of/joe"}, {"label", "two", "joe", true, "/of/joe"},
               {"label", "two", "Joe", true, "/of/Joe"}, {"label", "two", "JOE", true, "/"},
               {"LABEL", "two", "Joe", true, "/"},  // Found by the walk, which disregards case; its fields are not.
               {"label", "gone", "joe", true, "/"},      {"", "one", "joe", false, ""}};
  for (const auto& row : cases) {
    SetCurrent("whatever", row.server, row.user);
    LFTPAccountSettings site(row.label);
    EXPECT_EQ(site.Load(), row.isLoaded);
    EXPECT_STREQ(site.szDirectory, row.directory) << row.label << row.server << row.user;
  }
}

TEST_F(Accounts, TakeTheCountForTheKeyPastNine) {
  AddUsers("label", "host", 11);  // They are walked 0, 1, 10, 2.
  const std::pair<int, const char*> cases[] = {{0, "/of/user0"}, {1, "/of/user1"}, {10, "/of/user2"}, {2, "/of/user3"}};
  for (const auto& [user, directory] : cases) {
    SetCurrent("label", "host", User(user).c_str());
    LFTPAccountSettings site("label");
    ASSERT_TRUE(site.Load());
    EXPECT_STREQ(site.szDirectory, directory);
  }
}

TEST_F(Accounts, FindTheKeyOfAUser) {
  EXPECT_EQ(Key("label", "host", "user0"), "");
  AddUsers("label", "host", 3);
  EXPECT_EQ(Key("label", "host", "user0"), "0");
  EXPECT_EQ(Key("label", "host", "user2"), "2");
  EXPECT_EQ(Key("label", "host", "USER0"), "");
  EXPECT_EQ(Key("label", "other", "user0"), "");
  OpenSite("label", "host", "1").DeleteRecord();
  EXPECT_EQ(Key("label", "host", "user2"), "") << "the keys tried are counted, and key 1 is not there";
  AddUsers("many", "host", 11);
  EXPECT_EQ(Key("many", "host", "user10"), "2");
  EXPECT_EQ(Key("many", "host", "user9"), "10");
}

TEST_F(Accounts, StoreRecentFoldersOfTheCurrentSite) {
  AddUsers("label", "host", 2);
  const auto recent = [](const char* key) {
    const LSharedSettingsRecord site = OpenSite("label", "host", key);
    return Field(site, "RecentLocalDirectory") + " " + Field(site, "RecentRemoteDirectory");
  };
  SetCurrent("label", "host", "user1");
  LFTPAccountSettings::StoreRecentDirectories("/local", "");
  EXPECT_EQ(recent("1"), "/local (absent)");
  LFTPAccountSettings::StoreRecentDirectories("", "/remote");
  EXPECT_EQ(recent("1"), "/local /remote");
  EXPECT_EQ(recent("0"), "(absent) (absent)");

  const size_t keys = All().size();
  const char* const others[][3] = {{"", "host", "user1"},       {"label", "", "user1"},     {"label", "host", ""},
                                   {"label", "host", "nobody"}, {"label", "gone", "user1"}, {"gone", "host", "user1"}};
  for (const auto& [label, server, user] : others) {
    SetCurrent(label, server, user);
    LFTPAccountSettings::StoreRecentDirectories("/x", "/y");
    LFTPAccountSettings::UpdateUploadCount(1);
  }
  EXPECT_EQ(All().size(), keys);
  EXPECT_EQ(recent("1"), "/local /remote");
}

TEST_F(Accounts, CountTransfersOfTheCurrentSite) {
  AddUsers("label", "host", 2);
  SetCurrent("label", "host", "user1");
  const LSharedSettingsRecord site = OpenSite("label", "host", "1");
  LFTPAccountSettings::UpdateUploadCount(3);
  LFTPAccountSettings::UpdateUploadCount(4);
  LFTPAccountSettings::UpdateDownloadCount(2);
  EXPECT_EQ(Field(site, "UploadCount"), "7");
  EXPECT_EQ(Field(site, "DownloadCount"), "2");
  EXPECT_EQ(Field(OpenSite("label", "host", "0"), "UploadCount"), kAbsent);
  site.SetString("UploadCount", "9223372036854775807");
  LFTPAccountSettings::UpdateUploadCount(1);
  EXPECT_EQ(Field(site, "UploadCount"), "9223372036854775807");
}

TEST_F(Accounts, CountARunWithUploadsOnce) {
  for (const char* reset : {"", "0"}) {
    LUserSettingSetString("Settings", "CurrentRunHadUpload", reset);
    LFTPAccountSettings::UpdateRunsWithUploads();
    LFTPAccountSettings::UpdateRunsWithUploads();
  }
  EXPECT_EQ(Setting("RunsWithUploads"), "2");
  EXPECT_EQ(Setting("CurrentRunHadUpload"), "1");
}

TEST_F(Accounts, CountLabels) {
  EXPECT_EQ(AccountsNumSites(), 0);
  AddUsers("a", "one", 2);
  AddUser("a", "two", "0", "joe");
  AddUser("b", "one", "0", "joe");
  AddUser("B", "two", "0", "joe");
  EXPECT_EQ(AccountsNumSites(), 2);
}

// The old layout

class OldLayout : public SettingsFixture {
 protected:
  static void AddFlat(const std::string& label, const std::vector<std::pair<std::string, std::string>>& fields) {
    for (const auto& [field, value] : fields) Put("FTPAccounts/" + label + "/" + field, value);
  }
};

TEST_F(OldLayout, LosesEverySecondLabel) {
  for (const int count : {0, 1, 5, 6}) {
    LUserSettingDeleteSection(kAccountsSection);
    for (int i = 1; i <= count; ++i) AddFlat("site" + std::to_string(i), {{"Server", "host"}});
    AccountsRewriteOldLayout();
    Texts kept;
    for (int i = 2; i <= count; i += 2) kept.push_back("site" + std::to_string(i));
    EXPECT_EQ(Walk(LUserSettingsListTemplate<LSharedSettingsRecord>(kAccountsSection)), kept) << count;
  }
}

TEST_F(OldLayout, MovesTheFieldsUnderServerAndKey) {
  AddFlat("a", {{"Server", "goes"}});
  AddFlat("b", {{"Server", "ftp.example.com"},
                {"UserName", "joe"},
                {"Password", "secret"},
                {"RemP", "yes"},
                {"UseExplicitSSL", "1"},
                {"UseRecentLocal", "1"},
                {"UploadCount", "12"}});
  AccountsRewriteOldLayout();
  platform::PreferencesClose();

  const LSharedSettingsRecord site = OpenSite("b", "ftp.example.com", "0");
  const std::pair<const char*, const char*> expected[] = {{"Server", "ftp.example.com"},
                                                          {"UserName", "joe"},
                                                          {"Password", "secret"},
                                                          {"RemP", "1"},
                                                          {"Directory", "/"},
                                                          {"LocalDirectory", ""},
                                                          {"UseExplicitSSL", "1"},
                                                          {"UseImplicitSSL", "0"},
                                                          {"UseSFTP", "0"},
                                                          {"UseRecentRemote", "0"},
                                                          {"UseRecentLocal", "0"},
                                                          {"UploadCount", "12"}};
  for (const auto& [field, value] : expected) EXPECT_EQ(Field(site, field), value) << field;
  EXPECT_EQ(Walk(AccountList(site)).size(), std::size(expected));
  EXPECT_EQ(Raw("FTPAccounts/b/ftp.example.com/"), "ftp.example.com");
  EXPECT_EQ(Raw("FTPAccounts/b/ftp.example.com/0/"), "0");
  EXPECT_EQ(Raw("FTPAccounts/b/UploadCount"), "12") << "what was flat stays beside the server";
}

TEST_F(OldLayout, ForgetsPasswordsThatWereNotToBeRememberedAndWhatHasNoServer) {
  AddFlat("a", {{"Server", "goes"}});
  AddFlat("b", {{"Server", "host"}, {"Password", "secret"}, {"RemP", "0"}});
  AddFlat("c", {{"Server", "goes"}});
  AddFlat("d", {{"UserName", "joe"}, {"0/x", "from an old move"}});
  AddFlat("e", {{"Server", "goes"}});
  AddFlat("f", {{"Server", "host"}, {"Password", "secret"}});
  AccountsRewriteOldLayout();
  for (const char* label : {"b", "f"}) {
    EXPECT_EQ(Raw(std::string("FTPAccounts/") + label + "/Password"), "") << label;
    EXPECT_EQ(Field(OpenSite(label, "host", "0"), "Password"), "") << label;
  }
  EXPECT_EQ(Raw("FTPAccounts/d/UserName"), "joe");
  for (const std::string& pair : All()) {
    EXPECT_EQ(pair.find("FTPAccounts/d//"), std::string::npos) << pair;
    EXPECT_EQ(pair.find("FTPAccounts/d/0/"), std::string::npos) << pair;
  }
}

TEST_F(OldLayout, RenumbersRecordsNamedByTheirUsers) {
  AddFlat("a", {{"Server", "goes"}});
  for (const char* user : {"alice", "bob"}) {
    const LSharedSettingsRecord site = OpenSite("b", "10.0.0.1", user);
    site.SetString("UserName", user);
    site.SetString("Domain", "OFFICE");
  }
  AccountsRewriteOldLayout();
  EXPECT_EQ(Field(OpenSite("b", "10.0.0.1", "0"), "UserName"), "alice");
  EXPECT_EQ(Field(OpenSite("b", "10.0.0.1", "1"), "UserName"), "bob");
  EXPECT_EQ(Raw("FTPAccounts/b/10.0.0.1/1/"), "1");
  EXPECT_EQ(Walk(AccountsOpenServer("b", "10.0.0.1")), (Texts{"0", "1"}));
}

}  // namespace
