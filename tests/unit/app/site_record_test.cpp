// Where an edited site goes in the store, and what goes with it.
#include "sites/dialogs/site_record.h"

#include <gmock/gmock.h>

#include "sites/dialogs/site_menu.h"
#include "support/settings_fixture.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

class SiteRecords : public SettingsFixture {
 protected:
  static void Keep(const char* label, const char* server, const char* user, const char* key = "0") {
    const LSharedSettingsRecord record = OpenSite(label, server, key);
    record.SetString("Server", server);
    record.SetString("UserName", user);
    record.SetString("RecentRemoteDirectory", "/recent");
  }

  /// Edits as the sheet does; the path of the record afterwards.
  static std::string Edit(const SiteEdit& edit) {
    LSharedSettingsRecord record;
    if (!edit.IsNew()) FindSite(record, edit.oldLabel, edit.oldServer, edit.oldUser);
    SiteFields fields = {};
    PlaceSite(record, edit, fields.szUserName);
    TextCopy(fields.szServer, edit.server);
    WriteSite(record, fields);
    return record.szKeyPath;
  }

  /// All sites, "label/server/key user".
  static Texts Sites() {
    Texts all;
    WalkSites([&](const SiteRecord& site, const LSharedSettingsRecord& record) {
      all.push_back(std::string(site.label) + "/" + site.server + "/" + record.szPrimaryKey + " " + site.user);
      return false;
    });
    return all;
  }
};

TEST_F(SiteRecords, EditsByCase) {
  const struct {
    const char* name;
    SiteEdit edit;
    const char* path;
    Texts sites;
  } rows[] = {
      {"new", {"", "", "", "会社", "a.jp", ""}, "FTPAccounts/会社/a.jp/0/", {"s/a.jp/0 anna", "会社/a.jp/0 anonymous"}},
      {"nothing changed", {"s", "a.jp", "anna", "s", "a.jp", "anna"}, "FTPAccounts/s/a.jp/0/", {"s/a.jp/0 anna"}},
      {"another user", {"s", "a.jp", "anna", "s", "a.jp", "ben"}, "FTPAccounts/s/a.jp/0/", {"s/a.jp/0 ben"}},
      {"another server", {"s", "a.jp", "anna", "s", "b.jp", "anna"}, "FTPAccounts/s/b.jp/0/", {"s/b.jp/0 anna"}},
      {"another label", {"s", "a.jp", "anna", "t", "a.jp", "anna"}, "FTPAccounts/t/a.jp/0/", {"t/a.jp/0 anna"}},
      {"label and user", {"s", "a.jp", "anna", "t", "a.jp", "ben"}, "FTPAccounts/t/a.jp/0/", {"t/a.jp/0 ben"}},
      {"the user emptied", {"s", "a.jp", "anna", "s", "a.jp", ""}, "anonymous/0/", {}},
      {"not there", {"s", "a.jp", "karl", "s", "a.jp", "karl"}, "FTPAccounts/s/a.jp/0/", {"s/a.jp/0 karl"}},
  };
  for (const auto& row : rows) {
    LUserSettingDeleteSection(kAccountsSection);
    LUserSettingDeleteSection("anonymous");
    Keep("s", "a.jp", "anna");
    EXPECT_EQ(Edit(row.edit), row.path) << row.name;
    EXPECT_EQ(Sites(), row.sites) << row.name;
    EXPECT_EQ(AccountsNumSites(), row.edit.IsNew() ? 2 : 1) << row.name;
    if (row.sites.empty()) {
      EXPECT_EQ(Raw("anonymous/0/UserName"), "anonymous");
      EXPECT_EQ(Raw("anonymous/0/Server"), "a.jp");
    }
  }
}

TEST_F(SiteRecords, EverySecondServerOfTheLabelGoes) {
  for (const char* server : {"a.jp", "b.jp", "c.jp", "d.jp"}) Keep("s", server, "anna");
  Edit({"s", "b.jp", "anna", "s", "b.jp", "anna"});
  EXPECT_THAT(Sites(), ElementsAre("s/b.jp/0 anna", "s/d.jp/0 anna"));
}

TEST_F(SiteRecords, ARecordThatStaysKeepsItsOtherFields) {
  Keep("s", "a.jp", "karl");
  Keep("s", "b.jp", "anna");
  Edit({"s", "b.jp", "anna", "s", "b.jp", "anna"});
  EXPECT_EQ(Field(OpenSite("s", "b.jp", "0"), "RecentRemoteDirectory"), "/recent");
  // A changed user goes to the first key, with what he had.
  Edit({"s", "b.jp", "anna", "s", "b.jp", "ben"});
  Keep("s", "a.jp", "karl");
  Keep("s", "b.jp", "anna", "1");
  Edit({"s", "b.jp", "anna", "s", "b.jp", "cleo"});
  EXPECT_THAT(Sites(), ElementsAre("s/b.jp/0 cleo"));
}

TEST_F(SiteRecords, ANewLabelLeavesTheOtherUsersOfTheOld) {
  Keep("s", "a.jp", "anna");
  Keep("s", "a.jp", "ben", "1");
  Edit({"s", "a.jp", "anna", "t", "a.jp", "anna"});
  EXPECT_THAT(Sites(), ElementsAre("s/a.jp/1 ben", "t/a.jp/0 anna"));
}

TEST_F(SiteRecords, BookmarksComeBackInTheirOrder) {
  for (int i = 0; i < 11; ++i) {
    Put("FTPAccounts/s/a.jp/0/LocalBookmarks/" + std::to_string(i), "/l" + std::to_string(i));
  }
  Put("FTPAccounts/s/a.jp/0/RemoteBookmarks/0", "/r");
  Put("FTPAccounts/s/a.jp/0/RemoteBookmarks/2", "/behind a gap");
  SiteBookmarks bookmarks;
  bookmarks.Read(OpenSite("s", "a.jp", "0"));
  LUserSettingDeleteSection(kAccountsSection);
  bookmarks.Write(OpenSite("s", "a.jp", "0"));
  EXPECT_EQ(Raw("FTPAccounts/s/a.jp/0/LocalBookmarks/10"), "/l10");
  EXPECT_EQ(Raw("FTPAccounts/s/a.jp/0/LocalBookmarks/"), "LocalBookmarks");
  EXPECT_EQ(Raw("FTPAccounts/s/a.jp/0/RemoteBookmarks/0"), "/r");
  EXPECT_EQ(Raw("FTPAccounts/s/a.jp/0/RemoteBookmarks/2"), kAbsent);
}

TEST_F(SiteRecords, TheFieldsByWhatTheSheetHolds) {
  const struct {
    int protection;
    bool remember;
    const char *isExplicit, *isImplicit, *isSftp, *password;
  } rows[] = {
      {kProtectionNone, true, "0", "0", "0", "geheim"},
      {kProtectionExplicit, false, "1", "0", "0", ""},
      {kProtectionImplicit, true, "0", "1", "0", "geheim"},
      {kProtectionSFTP, true, "0", "0", "1", "geheim"},
  };
  for (const auto& row : rows) {
    LUserSettingDeleteSection(kAccountsSection);
    SiteFields fields = {};
    TextCopy(fields.szPassword, "geheim");
    TextCopy(fields.szLocalDirectory, "/home");
    fields.bRemember = row.remember;
    fields.bUseRecentLocal = true;
    fields.iProtection = row.protection;
    const LSharedSettingsRecord site = OpenSite("s", "a.jp", "0");
    WriteSite(site, fields);
    EXPECT_EQ(Field(site, "UseExplicitSSL"), row.isExplicit);
    EXPECT_EQ(Field(site, "UseImplicitSSL"), row.isImplicit);
    EXPECT_EQ(Field(site, "UseSFTP"), row.isSftp);
    EXPECT_EQ(Field(site, "Password"), row.password);
    EXPECT_EQ(Field(site, "UseRecentRemote"), "0");
    EXPECT_EQ(Field(site, "UseRecentLocal"), "1");
    EXPECT_EQ(Field(site, "RecentLocalDirectory"), "/home");
  }
}

TEST_F(SiteRecords, APathWithoutRoomIsKnown) {
  const std::string server = "ftp.example.com:2121";
  EXPECT_TRUE(SiteFitsStore(std::string(200, 'x').c_str(), server.c_str()));
  for (size_t length = 0; length < kTextSize; ++length) {
    const std::string label(length, 'x');
    if (!SiteFitsStore(label.c_str(), server.c_str())) continue;
    LSharedSettingsRecord bookmarks;
    bookmarks.OpenUnder(OpenSite(label.c_str(), server.c_str(), "9999"), "RemoteBookmarks");
    EXPECT_EQ(std::string(bookmarks.szKeyPath), "FTPAccounts/" + label + "/" + server + "/9999/RemoteBookmarks/");
  }
  EXPECT_FALSE(SiteFitsStore(std::string(259, 'x').c_str(), server.c_str()));
}

// The menus of sites

TEST_F(SiteRecords, AMenuCountsTheWalkAndEndsInTheRowForANewSite) {
  for (const int base : {5000, 6000}) {
    LPopupMenu empty;
    CreateSiteMenu(empty, base);
    EXPECT_EQ(empty.Count(), 1u);
  }
  Keep("b", "a.jp", "anna");
  Keep("A", "a.jp", "anna");
  Keep("A", "a.jp", "ben", "1");
  LPopupMenu menu;
  CreateSiteMenu(menu, 6000);
  EXPECT_EQ(menu.Count(), 5u);
  SiteRecord site;
  ASSERT_TRUE(SiteByIndex(1, site));
  EXPECT_STREQ(site.label, "A");
  EXPECT_STREQ(site.user, "ben");
  EXPECT_FALSE(SiteByIndex(3, site));
  EXPECT_FALSE(SiteByIndex(-1, site));
}

TEST_F(SiteRecords, TheCurrentSiteIsMatchedWithoutRegardToCase) {
  Put("Settings/Current", "Firma");
  Put("Settings/CurrentServer", "a.jp");
  Put("Settings/CurrentUser", "Anna");
  EXPECT_TRUE(SiteMatches(CurrentSite(), "FIRMA", "A.JP", "anna"));
  EXPECT_FALSE(SiteMatches(CurrentSite(), "FIRMA", "A.JP", "ann"));
  SiteRecord site = {"Firma", "a.jp", "Anna"};
  EXPECT_TRUE(SiteIsCurrent(site));
  TextCopy(site.user, "anna");
  EXPECT_FALSE(SiteIsCurrent(site)) << "what is connected is compared exactly";
}

}  // namespace
