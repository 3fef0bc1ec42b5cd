#include "sites/store/accounts.h"

#include "sites/store/settings.h"

namespace {

/// The triple of the current site; each part may be empty.
struct CurrentSite {
  char szLabel[kTextSize];
  char szServer[kTextSize];
  char szUser[kTextSize];

  CurrentSite() {
    _LUserSettingGetString("Settings", "Current", "", szLabel);
    _LUserSettingGetString("Settings", "CurrentServer", "", szServer);
    _LUserSettingGetString("Settings", "CurrentUser", "", szUser);
  }
  bool IsComplete() const { return szLabel[0] && szServer[0] && szUser[0]; }
};

/// Walks on to the first record of that user name; returns the records passed, counted from 0.
int AdvanceToUser(AccountIterator& keys, const char* user) {
  int passed = 0;
  for (; !keys.IsAtEnd(); keys.Advance(), ++passed) {
    char name[kTextSize];
    keys.record.GetString("UserName", name);
    if (strcmp(name, user) == 0) break;
  }
  return passed;
}

/// The record of the current site; false if there is none, or the site is not saved.
bool OpenCurrentRecord(LSharedSettingsRecord& record) {
  const CurrentSite current;
  if (!current.IsComplete()) return false;
  AccountIterator keys(AccountsOpenServer(current.szLabel, current.szServer));
  AdvanceToUser(keys, current.szUser);
  record = keys.record;
  return record.szKeyPath[0] != 0;
}

/// Whatever stands in the store: a sum that does not fit leaves the counter.
long Sum(long counter, int n) {
  long sum;
  return __builtin_add_overflow(counter, n, &sum) ? counter : sum;
}

/// Adds to a counter of the current site.
void AddToCounter(const char* field, int n) {
  LSharedSettingsRecord record;
  if (!OpenCurrentRecord(record)) return;
  char text[kTextSize];
  record.GetString(field, text);
  TextFormat(text, "%ld", Sum(LSettingNumberFromText<long>(text), n));
  record.SetString(field, text);
}

bool IsFieldOn(const LSharedSettingsRecord& record, const char* field) {
  char value[kTextSize];
  record.GetString(field, value);
  return LSettingIsOn(value);
}

bool IsFieldOnOrAbsent(const LSharedSettingsRecord& record, const char* field) {
  char value[kTextSize];
  record.GetString(field, value);
  return LSettingIsOnOrAbsent(value);
}

}  // namespace

LFTPAccountSettings::LFTPAccountSettings(const char* label) { TextCopy(szKey, label); }

LFTPAccountSettings::LFTPAccountSettings(const char* label, const char* user) : LFTPAccountSettings(label) {
  TextCopy(szUserName, user);
}

bool LFTPAccountSettings::Load() {
  if (szKey[0] == 0) return false;
  const CurrentSite current;
  const AccountList server = AccountsOpenServer(szKey, current.szServer);
  AccountIterator keys(server);
  // The count stands for the key, which holds while keys follow each other from 0 and stay below 10.
  const int passed = AdvanceToUser(keys, current.szUser);
  char key[kTextSize] = {};
  if (!keys.IsAtEnd()) TextFormat(key, "%d", passed);
  LSharedSettingsRecord record;
  server.Open(record, key);
  TextCopy(szLabel, szKey);
  LoadFields(record);
  return true;
}

void LFTPAccountSettings::LoadFields(const LSharedSettingsRecord& record) {
  record.GetString("Server", szServer);
  record.GetString("UserName", szUserName);
  record.GetPassword("Password", "", szPassword);
  record.GetString("Directory", "/", szDirectory);
  record.GetString("LocalDirectory", "/", szLocalDirectory);
  record.GetString("RecentRemoteDirectory", "/", szRecentRemote);
  record.GetString("RecentLocalDirectory", "/", szRecentLocal);
  bRemember = IsFieldOn(record, "RemP");
  bImplicit = IsFieldOn(record, "UseImplicitSSL");
  bUseSSL = bImplicit || IsFieldOn(record, "UseExplicitSSL");
  bSFTP = IsFieldOn(record, "UseSFTP");
  bUseRecentRemote = IsFieldOnOrAbsent(record, "UseRecentRemote");
  bUseRecentLocal = IsFieldOnOrAbsent(record, "UseRecentLocal");
}

void LFTPAccountSettings::Save() const {
  const LSettingsBatch batch;
  LSharedSettingsRecord record;
  AccountsOpenServer(szLabel, szServer).Open(record, "0");
  record.SetString("Server", szServer);
  record.SetString("UserName", szUserName);
  record.SetPassword("Password", bRemember ? szPassword : "");
  record.SetString("RemP", LSettingFromBool(bRemember));
  record.SetString("Directory", szDirectory);
  record.SetString("LocalDirectory", szLocalDirectory);
  record.SetString("RecentRemoteDirectory", szRecentRemote);
  record.SetString("RecentLocalDirectory", szRecentLocal);
  record.SetString("UseRecentRemote", LSettingFromBool(bUseRecentRemote));
  record.SetString("UseRecentLocal", LSettingFromBool(bUseRecentLocal));
  record.SetString("UseExplicitSSL", LSettingFromBool(bUseSSL && !bImplicit));
  record.SetString("UseImplicitSSL", LSettingFromBool(bUseSSL && bImplicit));
  record.SetString("UseSFTP", LSettingFromBool(bSFTP));
}

void LFTPAccountSettings::StoreRecentDirectories(const char* local, const char* remote) {
  LSharedSettingsRecord record;
  if (!OpenCurrentRecord(record)) return;
  const LSettingsBatch batch;
  if (local && local[0]) record.SetString("RecentLocalDirectory", local);
  if (remote && remote[0]) record.SetString("RecentRemoteDirectory", remote);
}

void LFTPAccountSettings::UpdateUploadCount(int n) { AddToCounter("UploadCount", n); }

void LFTPAccountSettings::UpdateDownloadCount(int n) { AddToCounter("DownloadCount", n); }

void LFTPAccountSettings::UpdateRunsWithUploads() {
  if (LUserSettingIsOn("Settings", "CurrentRunHadUpload")) return;
  const LSettingsBatch batch;
  char runs[kTextSize];
  TextFormat(runs, "%ld", Sum(LUserSettingGet<long>("Settings", "RunsWithUploads", 0), 1));
  LUserSettingSetString("Settings", "RunsWithUploads", runs);
  LUserSettingSetString("Settings", "CurrentRunHadUpload", "1");
}

AccountList AccountsOpenServer(const char* label, const char* server) {
  const LUserSettingsListTemplate<LSharedSettingsRecord> labels(kAccountsSection);
  LSharedSettingsRecord record;
  labels.Open(record, label);
  const AccountList servers(record);
  servers.Open(record, server);
  return AccountList(record);
}

void GetUserKey(const char* label, const char* server, const char* user, char (&out)[kTextSize]) {
  const AccountList keys = AccountsOpenServer(label, server);
  int index = 1;
  char key[kTextSize] = "0";
  // The walk goes 0, 1, 10, 2, while the keys tried are counted up: past "9" the two part.
  for (AccountIterator it(keys); !it.IsAtEnd(); it.Advance()) {
    char name[kTextSize];
    it.record.GetString("UserName", name);
    if (keys.TestSubRecordExists(key) && strcmp(name, user) == 0) {
      TextCopy(out, key);
      return;
    }
    TextFormat(key, "%d", index++);
  }
  out[0] = 0;
}

int AccountsNumSites() {
  const LUserSettingsListTemplate<LSharedSettingsRecord> labels(kAccountsSection);
  int count = 0;
  for (AccountIterator it(labels); !it.IsAtEnd(); it.Advance()) ++count;
  return count;
}
