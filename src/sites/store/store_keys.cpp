#include "sites/store/store_keys.h"

#include "platform/preferences.h"
#include "sites/store/settings.h"

namespace {

thread_local int batchDepth = 0;
thread_local bool isBatchDirty = false;

const char* OrEmpty(const char* text) { return text ? text : ""; }

}  // namespace

void LSettingJoinPath(char (&out)[kJoinedPathSize], const char* section, const char* key) {
  const size_t length = strlen(section);
  const bool needsSlash = length == 0 || section[length - 1] != '/';
  TextFormat(out, "%s%s%s", section, needsSlash ? "/" : "", key);
}

bool _LSettingGetString(LSettingsUser, const char* section, const char* key, const char* defaultValue,
                        char (&out)[kTextSize]) {
  char path[kJoinedPathSize];
  LSettingJoinPath(path, section, key);
  // The arguments may lie in `out`: it is written only when they are of no more use.
  const auto take = [&out](const char* value) { TextCopy(out, value); };
  if (platform::PreferencesCopyValue(kSettingsDomain, path, take)) return true;
  TextCopy(out, defaultValue);
  return false;
}

bool _LSettingGetString(LSettingsUser, const char* section, const char* key, const char* defaultValue,
                        LStringLongTemplate<char>& out) {
  char path[kJoinedPathSize];
  LSettingJoinPath(path, section, key);
  const auto take = [&out](const char* value) { out = value; };
  if (platform::PreferencesCopyValue(kSettingsDomain, path, take)) return true;
  out = OrEmpty(defaultValue);
  return false;
}

bool _LSettingSetString(LSettingsUser, const char* section, const char* key, const char* value) {
  char path[kJoinedPathSize];
  LSettingJoinPath(path, section, key);
  return platform::PreferencesSetValue(kSettingsDomain, path, OrEmpty(value)) && LSettingSynchronise();
}

bool _LSettingDeleteItem(LSettingsUser, const char* section, const char* key) {
  char path[kJoinedPathSize];
  LSettingJoinPath(path, section, key);
  return platform::PreferencesSetValue(kSettingsDomain, path, nullptr) && LSettingSynchronise();
}

bool _LSettingTestKeyExists(LSettingsUser, const char* key) {
  return platform::PreferencesCopyValue(kSettingsDomain, key, [](const char*) {});
}

bool LSettingSynchronise() {
  if (batchDepth > 0) {
    isBatchDirty = true;
    return true;
  }
  return platform::PreferencesSynchronize(kSettingsDomain);
}

LSettingsBatch::LSettingsBatch() { ++batchDepth; }

LSettingsBatch::~LSettingsBatch() {
  if (--batchDepth > 0 || !isBatchDirty) return;
  isBatchDirty = false;
  LSettingSynchronise();  // A failure leaves the old values, as with any write; nobody is here to hear of it.
}
