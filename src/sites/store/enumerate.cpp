// The walks over the key list.

#include "platform/preferences.h"
#include "sites/store/settings.h"
#include "sites/store/store_keys.h"

namespace {

/// The name of a direct child: no "/" but one at its very end, which is no part of it. That "/" alone is the
/// marker of a level without a name, and a child.
bool IsDirectChild(const char* rest, size_t& length) {
  length = strcspn(rest, "/");
  return rest[0] != 0 && (rest[length] == 0 || rest[length + 1] == 0);
}

}  // namespace

bool _LSettingFindRecord(LSettingsUser, char (&out)[kTextSize], int& index, const char* path, const char* sub) {
  char full[kJoinedPathSize];
  if (sub[0] == 0) {
    TextCopy(full, path);
  } else {
    LSettingJoinPath(full, path, sub);
  }
  out[0] = 0;
  if (full[0] == 0) return false;
  TextAppend(full, "/");
  const size_t prefix = strlen(full);
  bool isFound = false;
  platform::PreferencesVisitKeys(kSettingsDomain, full, static_cast<size_t>(index), [&](size_t at, const char* key) {
    size_t length;
    isFound = IsDirectChild(key + prefix, length);
    if (!isFound) return true;
    TextCopyPart(out, key + prefix, length);
    index = static_cast<int>(at);
    return false;
  });
  if (!isFound) index = static_cast<int>(platform::PreferencesKeyCount(kSettingsDomain));
  return isFound;
}

bool _LSettingPlistGetNextKey(LSettingsUser, const char* prefix, const char* previous, char (&out)[kTextSize]) {
  return platform::PreferencesNextName(kSettingsDomain, prefix, previous, out);
}
