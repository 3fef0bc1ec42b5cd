#include "sites/store/records.h"

#include "sites/store/settings.h"

bool LSharedSettingsRecord::GetString(const char* field, const char* defaultValue, char (&out)[kTextSize]) const {
  return _LSettingGetString(user, szKeyPath, field, defaultValue, out);
}

bool LSharedSettingsRecord::GetString(const char* field, const char* defaultValue,
                                      LStringLongTemplate<char>& out) const {
  return _LSettingGetString(user, szKeyPath, field, defaultValue, out);
}

bool LSharedSettingsRecord::GetString(const char* field, char (&out)[kTextSize]) const {
  return GetString(field, "", out);
}

bool LSharedSettingsRecord::GetString(const char* field, LStringLongTemplate<char>& out) const {
  return GetString(field, "", out);
}

bool LSharedSettingsRecord::SetString(const char* field, const char* value) const {
  const LSettingsBatch batch;  // Markers and field become durable together.
  return _LSettingMakeParentKeyPath(user, szKeyPath) && _LSettingSetString(user, szKeyPath, field, value);
}

bool LSharedSettingsRecord::SetPassword(const char* field, const char* text) const { return SetString(field, text); }

bool LSharedSettingsRecord::GetPassword(const char* field, const char* defaultValue, char (&out)[kTextSize]) const {
  return GetString(field, defaultValue, out);
}

bool LSharedSettingsRecord::DeleteField(const char* field) const {
  return _LSettingDeleteItem(user, szPrimaryKey, field);
}

bool LSharedSettingsRecord::TestFieldExists(const char* field) const {
  char key[kJoinedPathSize];
  LSettingJoinPath(key, szPrimaryKey, field);
  return _LSettingTestKeyExists(user, key);
}

bool LSharedSettingsRecord::TestSubRecordExists(const char* name) const {
  char child[kTextSize];
  int index = 0;
  return _LSettingFindRecord(user, child, index, szKeyPath, name);
}

bool LSharedSettingsRecord::DeleteRecord() const { return _LSettingDeleteSection(user, szKeyPath); }

bool LSharedSettingsRecord::DeleteSubRecord(const char* name) const {
  char path[kJoinedPathSize];
  LSettingJoinPath(path, szKeyPath, name);
  return _LSettingDeleteSection(user, path);
}

void LSharedSettingsRecord::SetPrimaryKey(const char* name) {
  char marker[kJoinedPathSize];
  LSettingJoinPath(marker, szKeyPath, "");
  char newName[kTextSize];
  TextCopy(newName, name);
  if (_LSettingTestKeyExists(user, marker)) _LSettingChangePrimaryKey(user, marker, newName, szKeyPath);
  TextCopy(szPrimaryKey, newName);
}

void LSharedSettingsRecord::OpenUnder(const LSharedSettingsRecord& parent, const char* name) {
  char path[kJoinedPathSize];
  LSettingJoinPath(path, parent.szKeyPath, name);
  user = parent.user;
  TextCopy(szPrimaryKey, name);
  TextCopy(szKeyPath, path);
  TextAppend(szKeyPath, "/");
}
