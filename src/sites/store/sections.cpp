// Sections of the settings store: their markers, their removal, and the move to another name.

#include "platform/preferences.h"
#include "sites/store/settings.h"
#include "sites/store/store_keys.h"

void _LSettingMakePrimaryKeyFromPath(char (&out)[kTextSize], const char* path) {
  size_t end = strlen(path);
  if (end != 0 && path[end - 1] == '/') --end;
  size_t begin = end;
  while (begin != 0 && path[begin - 1] != '/') --begin;
  TextCopyPart(out, path + begin, end - begin);
}

bool _LSettingMakeParentKeyPath(LSettingsUser user, const char* path) {
  bool isWritten = true;
  bool isAnyMissing = false;
  const char* cursor = path;
  while (*cursor == '/') ++cursor;
  while ((cursor = strchr(cursor, '/')) != nullptr) {
    char level[kJoinedPathSize];
    TextCopyPart(level, path, static_cast<size_t>(cursor + 1 - path));
    while (*cursor == '/') ++cursor;
    if (_LSettingTestKeyExists(user, level)) continue;
    char name[kTextSize];
    _LSettingMakePrimaryKeyFromPath(name, level);
    isWritten = platform::PreferencesSetValue(kSettingsDomain, level, name) && isWritten;
    isAnyMissing = true;
  }
  return !isAnyMissing || (isWritten && LSettingSynchronise());
}

bool _LSettingDeleteSection(LSettingsUser, const char* path) {
  char prefix[kJoinedPathSize];
  LSettingJoinPath(prefix, path, "");
  bool isAnyRemoved = false;
  bool isWritten = true;
  const bool hasKeys = platform::PreferencesVisitKeys(kSettingsDomain, prefix, 0, [&](size_t, const char* key) {
    isWritten = platform::PreferencesSetValue(kSettingsDomain, key, nullptr) && isWritten;
    isAnyRemoved = true;
    return true;
  });
  if (isAnyRemoved) isWritten = LSettingSynchronise() && isWritten;
  return hasKeys && isWritten;
}

namespace {

/// Moves one key that begins with `oldPath` under `newPath`; the marker takes the new name for its value.
bool MoveKey(const char* key, const char* oldPath, const char* newPath, const char* newName) {
  const size_t oldLength = strlen(oldPath);
  LStringLongTemplate<char> value;
  if (strlen(key) == oldLength) {
    value = newName;
  } else {
    const auto take = [&value](const char* text) { value = text; };
    // Another process may have removed it since the list was made.
    if (!platform::PreferencesCopyValue(kSettingsDomain, key, take)) return true;
  }
  LStringLongTemplate<char> newKey(newPath);
  newKey.Append(key + oldLength);
  return platform::PreferencesSetValue(kSettingsDomain, key, nullptr) &&
         platform::PreferencesSetValue(kSettingsDomain, newKey, value);
}

/// The path up to and with the last "/" before its last component; false if it has one component only.
bool ParentOfPath(char (&out)[kTextSize], const char* path) {
  size_t end = strlen(path);
  if (end != 0 && path[end - 1] == '/') --end;
  while (end != 0 && path[end - 1] != '/') --end;
  TextCopyPart(out, path, end);
  return end != 0;
}

}  // namespace

bool _LSettingChangePrimaryKey(LSettingsUser, const char* path, const char* newName, char (&outPath)[kTextSize]) {
  char parent[kTextSize];
  char oldPath[kJoinedPathSize];
  TextCopy(oldPath, path);  // Both arguments may lie in the record that takes `outPath`.
  LStringLongTemplate<char> name(newName);
  outPath[0] = 0;
  if (name.IsEmpty() || !ParentOfPath(parent, oldPath)) return false;

  char newPath[kJoinedPathSize];
  TextFormat(newPath, "%s%s/", parent, name.Text());
  bool isAnyThere = false;
  bool isWritten = true;
  platform::PreferencesVisitKeys(kSettingsDomain, oldPath, 0, [&](size_t, const char* key) {
    isWritten = MoveKey(key, oldPath, newPath, name) && isWritten;
    isAnyThere = true;
    return true;
  });
  isWritten = LSettingSynchronise() && isWritten;
  TextFormat(outPath, "%s%s", parent, name.Text());
  return isAnyThere && isWritten;
}
