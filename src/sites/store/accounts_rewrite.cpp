// The rewrite of the old layout of sites, whose fields lay flat under `FTPAccounts/<label>/`.
//
// Passes over all labels, in the order of a walk. Fields that lie directly under a label are names of its
// second level for a walk, as servers are, and they stay where they are.

#include <initializer_list>

#include "sites/store/accounts.h"
#include "sites/store/settings.h"

namespace {

using LabelList = LUserSettingsListTemplate<LSharedSettingsRecord>;

void WriteBackAsFlag(const LSharedSettingsRecord& record, const char* field) {
  char value[kTextSize];
  record.GetString(field, value);
  record.SetString(field, LSettingFromBool(LSettingIsOn(value)));
}

void WriteBack(const LSharedSettingsRecord& record, const char* field, const char* defaultValue) {
  char value[kTextSize];
  record.GetString(field, defaultValue, value);
  record.SetString(field, value);
}

void Normalise(const LSharedSettingsRecord& label) {
  char remember[kTextSize];
  char password[kTextSize];
  label.GetString("RemP", remember);
  label.GetPassword("Password", "", password);
  WriteBack(label, "Server", "");
  WriteBack(label, "UserName", "");
  WriteBack(label, "Directory", "/");
  WriteBack(label, "LocalDirectory", "");
  for (const char* flag : {"RemP", "UseExplicitSSL", "UseImplicitSSL", "UseSFTP"}) WriteBackAsFlag(label, flag);
  label.SetPassword("Password", LSettingIsOn(remember) ? password : "");
  label.SetString("UseRecentRemote", "0");
  label.SetString("UseRecentLocal", "0");
}

void NormaliseAll() {
  for (AccountIterator label{LabelList(kAccountsSection)}; !label.IsAtEnd(); label.Advance()) Normalise(label.record);
}

/// Deletes every second label: the walk goes on twice for each one that goes. Layouts old enough to come here
/// are meant to lose them.
void DeleteEverySecond() {
  for (AccountIterator label{LabelList(kAccountsSection)}; !label.IsAtEnd(); label.Advance()) {
    label.record.DeleteRecord();
    label.Advance();
  }
}

void Renumber(const AccountList& server, LSharedSettingsRecord& record) {
  // The test asks under the name of the record rather than its path, so that it does not find the field.
  if (record.TestFieldExists("Domain")) {
    char domain[kTextSize];
    char user[kTextSize];
    char joined[kTextSize];
    record.GetString("Domain", domain);
    record.GetString("UserName", user);
    TextFormat(joined, "%s/%s", domain, user);
    record.SetString("UserName", joined);
  }
  char key[kTextSize] = "0";
  for (int number = 1; server.TestSubRecordExists(key); ++number) TextFormat(key, "%d", number);
  record.SetPrimaryKey(key);
}

void RenumberAll() {
  for (AccountIterator label{LabelList(kAccountsSection)}; !label.IsAtEnd(); label.Advance()) {
    for (AccountIterator server{AccountList(label.record)}; !server.IsAtEnd(); server.Advance()) {
      const AccountList keys(server.record);
      for (AccountIterator key(keys); !key.IsAtEnd(); key.Advance()) Renumber(keys, key.record);
    }
  }
}

void Move(const LSharedSettingsRecord& label) {
  char server[kTextSize];
  label.GetString("Server", server);
  LSharedSettingsRecord serverRecord;
  LSharedSettingsRecord target;
  serverRecord.OpenUnder(label, server);
  target.OpenUnder(serverRecord, "0");
  for (AccountIterator name{AccountList(label)}; !name.IsAtEnd(); name.Advance()) {
    LStringLongTemplate<char> value;
    // A name without a value of its own is a level, not a field.
    if (!label.GetString(name.szName, value)) continue;
    _LSettingSetString(target.user, target.szKeyPath, name.szName, value);
  }
  char marker[kJoinedPathSize];
  LSettingJoinPath(marker, server, "");
  _LSettingSetString(label.user, label.szKeyPath, marker, server);
  _LSettingSetString(serverRecord.user, serverRecord.szKeyPath, "0/", "0");
}

void MoveAll() {
  for (AccountIterator label{LabelList(kAccountsSection)}; !label.IsAtEnd(); label.Advance()) Move(label.record);
}

void NumberFirstRecords() {
  for (AccountIterator label{LabelList(kAccountsSection)}; !label.IsAtEnd(); label.Advance()) {
    const AccountIterator server{AccountList(label.record)};
    if (server.IsAtEnd()) continue;
    AccountIterator first{AccountList(server.record)};
    if (!first.IsAtEnd()) first.record.SetPrimaryKey("0");
  }
}

/// What the move leaves of a label that has no server.
void DeleteLeftovers() {
  for (AccountIterator label{LabelList(kAccountsSection)}; !label.IsAtEnd(); label.Advance()) {
    label.record.DeleteSubRecord("0");
    char path[kJoinedPathSize];
    TextFormat(path, "%s/%s//", kAccountsSection, label.szName);
    _LSettingDeleteSection(label.record.user, path);
  }
}

}  // namespace

void AccountsRewriteOldLayout() {
  const LSettingsBatch batch;
  NormaliseAll();
  DeleteEverySecond();
  RenumberAll();
  MoveAll();
  NumberFirstRecords();
  DeleteLeftovers();
}
