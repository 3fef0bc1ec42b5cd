// Settings that earlier versions kept under another domain id.

#include "platform/preferences.h"
#include "sites/store/settings.h"

namespace {

constexpr const char* kMigratedKey = "MigratedFromCapitalsToLowerCase";
/// The ids of old versions, the latest first: with capitals and blanks.
constexpr const char* kOldIds[] = {"com.Tessaly Soft.OrvaneFTP", "com.Tessaly Soft.OrvaneFTPJP"};

}  // namespace

bool LSettingsMigrateUpperCaseApplicationIDUserSettings(const char* oldId) {
  // Versions that wrote such ids never ran on this platform, so that no file of theirs is looked for: the old
  // domain can only be in the present store, copied there by hand.
  LStringListTemplate<char> keys;
  if (!platform::PreferencesCopyKeyList(oldId, [&keys](const char* key) { keys.Add(key); })) return false;
  platform::PreferencesCopyMultiple(oldId, keys.strings, [](const char* key, const char* value) {
    platform::PreferencesSetMultiple(kSettingsDomain, &key, &value, 1);
  });
  return platform::PreferencesSynchronize(kSettingsDomain);
}

void LSettingsMigrateUpperCaseUserSettings() {
  if (LUserSettingIsOn("Settings", kMigratedKey)) return;
  for (const char* oldId : kOldIds) {
    if (LSettingsMigrateUpperCaseApplicationIDUserSettings(oldId)) break;
  }
  LUserSettingSetString("Settings", kMigratedKey, "1");
}
