#include "sites/dialogs/site_record.h"

#include "sites/dialogs/site_walk.h"
#include "sites/store/settings.h"

namespace {

constexpr const char* kAnonymous = "anonymous";

void ReadList(const LSharedSettingsRecord& record, const char* name, LStringListTemplate<char>& entries) {
  LSharedSettingsRecord list;
  list.OpenUnder(record, name);
  char field[32];
  LStringLongTemplate<char> value;
  for (int i = 0; TextFormat(field, "%d", i), list.GetString(field, value); ++i) entries.Add(value);
}

void WriteList(const LSharedSettingsRecord& record, const char* name, const LStringListTemplate<char>& entries) {
  LSharedSettingsRecord list;
  list.OpenUnder(record, name);
  _LSettingMakeParentKeyPath(list.user, list.szKeyPath);
  for (size_t i = 0; i < entries.count; ++i) {
    char field[32];
    TextFormat(field, "%zu", i);
    list.SetString(field, entries.strings[i]);
  }
}

/// The walk goes on twice for each entry that goes, so every second one stays.
void ClearLabel(const char* label) {
  for (AccountIterator server(AccountsOpenLabel(label)); !server.IsAtEnd(); server.Advance()) {
    server.record.DeleteRecord();
    server.Advance();
  }
}

/// The list that the edited record goes to, and the name of its user.
AccountList TargetOf(const SiteEdit& edit, char (&user)[kTextSize]) {
  TextCopy(user, edit.user[0] ? edit.user : kAnonymous);
  if (edit.IsNew() || edit.user[0]) return AccountsOpenServer(edit.label, edit.server);
  // An edited site whose user was emptied goes to the section of that name, outside the accounts.
  return LUserSettingsListTemplate<LSharedSettingsRecord>(kAnonymous);
}

/// A changed user or label makes a new key, which is the first, whatever lies there.
void KeyOf(const AccountList& keys, const SiteEdit& edit, const char* user, char (&key)[kTextSize]) {
  const bool isNewKey =
      !edit.IsNew() && edit.user[0] && (strcmp(edit.user, edit.oldUser) != 0 || strcmp(edit.label, edit.oldLabel) != 0);
  for (int number = 0;; ++number) {
    TextFormat(key, "%d", number);
    if (isNewKey || !keys.TestSubRecordExists(key)) return;
    if (edit.IsNew()) continue;
    LSharedSettingsRecord record;
    keys.Open(record, key);
    char name[kTextSize];
    record.GetString("UserName", name);
    if (strcmp(name, user) == 0) return;
  }
}

/// Whether the record is still there, and in that list.
bool LiesIn(const AccountList& keys, const LSharedSettingsRecord& record) {
  LSharedSettingsRecord same;
  keys.Open(same, record.szPrimaryKey);
  return record.szPrimaryKey[0] && strcmp(same.szKeyPath, record.szKeyPath) == 0 &&
         keys.TestSubRecordExists(record.szPrimaryKey);
}

}  // namespace

void SiteBookmarks::Read(const LSharedSettingsRecord& record) {
  ReadList(record, "LocalBookmarks", local);
  ReadList(record, "RemoteBookmarks", remote);
}

void SiteBookmarks::Write(const LSharedSettingsRecord& record) const {
  WriteList(record, "LocalBookmarks", local);
  WriteList(record, "RemoteBookmarks", remote);
}

void FindSite(LSharedSettingsRecord& record, const char* label, const char* server, const char* user) {
  AccountIterator keys(AccountsOpenServer(label, server));
  for (; !keys.IsAtEnd(); keys.Advance()) {
    char name[kTextSize];
    keys.record.GetString("UserName", name);
    if (strcmp(name, user[0] ? user : kAnonymous) == 0) break;
  }
  record = keys.record;
}

void PlaceSite(LSharedSettingsRecord& record, const SiteEdit& edit, char (&user)[kTextSize]) {
  const LSettingsBatch batch;
  ClearLabel(edit.label);
  if (!edit.IsNew() && strcmp(edit.label, edit.oldLabel) != 0) {
    if (record.szKeyPath[0]) record.DeleteRecord();
    RemoveEmptySite(edit.oldLabel, edit.oldServer);
  }
  const AccountList keys = TargetOf(edit, user);
  char key[kTextSize];
  KeyOf(keys, edit, user, key);
  // A record that is still where it was takes its other fields along.
  if (!LiesIn(keys, record)) keys.Open(record, key);
  if (strcmp(record.szPrimaryKey, key) != 0) record.SetPrimaryKey(key);
}

void WriteSite(const LSharedSettingsRecord& record, const SiteFields& fields) {
  const LSettingsBatch batch;
  record.SetString("Server", fields.szServer);
  record.SetString("UserName", fields.szUserName);
  record.SetPassword("Password", fields.bRemember ? fields.szPassword : "");
  record.SetString("UseRecentRemote", LSettingFromBool(fields.bUseRecentRemote));
  record.SetString("Directory", fields.szDirectory);
  record.SetString("UseRecentLocal", LSettingFromBool(fields.bUseRecentLocal));
  record.SetString("LocalDirectory", fields.szLocalDirectory);
  char recent[kTextSize];
  record.GetString("RecentLocalDirectory", recent);
  if (!recent[0]) record.SetString("RecentLocalDirectory", fields.szLocalDirectory);
  record.SetString("UseExplicitSSL", LSettingFromBool(fields.iProtection == kProtectionExplicit));
  record.SetString("UseImplicitSSL", LSettingFromBool(fields.iProtection == kProtectionImplicit));
  record.SetString("UseSFTP", LSettingFromBool(fields.iProtection == kProtectionSFTP));
  record.SetString("RemP", LSettingFromBool(fields.bRemember));
}
