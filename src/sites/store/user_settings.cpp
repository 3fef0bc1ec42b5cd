// Settings of the present user: this program's, by section and key, and those of its maker's other programs.

#include <charconv>
#include <limits>
#include <system_error>
#include <type_traits>

#include "platform/preferences.h"
#include "sites/store/settings.h"
#include "support/files.h"
#include "support/log.h"

bool _LUserSettingGetString(const char* section, const char* key, const char* defaultValue, char (&out)[kTextSize]) {
  return _LSettingGetString(kCFPreferencesCurrentUser, section, key, defaultValue, out);
}

bool _LUserSettingGetString(const char* section, const char* key, const char* defaultValue,
                            LStringLongTemplate<char>& out) {
  return _LSettingGetString(kCFPreferencesCurrentUser, section, key, defaultValue, out);
}

bool LUserSettingSetString(const char* section, const char* key, const char* value) {
  return _LSettingSetString(kCFPreferencesCurrentUser, section, key, value);
}

// As the C library's conversions, but the same in every locale and defined for every text: what is no number
// gives 0, and a whole number that is too large the nearest one.
template <typename T>
T LSettingNumberFromText(const char* text) {
  text += strspn(text, " \t\n\v\f\r");
  if (text[0] == '+' && text[1] != '-') ++text;
  T number = 0;
  const std::from_chars_result result = std::from_chars(text, text + strlen(text), number);
  if constexpr (std::is_integral_v<T>) {
    using Limits = std::numeric_limits<T>;
    if (result.ec == std::errc::result_out_of_range) return *text == '-' ? Limits::min() : Limits::max();
  }
  return number;
}

template int LSettingNumberFromText<int>(const char*);
template long LSettingNumberFromText<long>(const char*);
template double LSettingNumberFromText<double>(const char*);

template <typename T>
T LUserSettingGet(const char* section, const char* key, T defaultValue) {
  char text[kTextSize];
  _LUserSettingGetString(section, key, "", text);
  return text[0] == 0 ? defaultValue : LSettingNumberFromText<T>(text);
}

template int LUserSettingGet<int>(const char*, const char*, int);
template long LUserSettingGet<long>(const char*, const char*, long);
template double LUserSettingGet<double>(const char*, const char*, double);

bool LUserSettingSetTimeT(const char* section, const char* key, time_t value) {
  char text[kTextSize];
  TextFormat(text, "%lld", static_cast<long long>(value));
  return LUserSettingSetString(section, key, text);
}

bool LUserSettingDeleteItem(const char* section, const char* key) {
  const LSettingsBatch batch;
  char twin[kJoinedPathSize];
  TextFormat(twin, "__%s", key);
  const bool isDeleted = _LSettingDeleteItem(kCFPreferencesCurrentUser, section, key);
  return _LSettingDeleteItem(kCFPreferencesCurrentUser, section, twin) && isDeleted;
}

bool LUserSettingDeleteSection(const char* path) { return _LSettingDeleteSection(kCFPreferencesCurrentUser, path); }

bool LUserSettingTestExists(LSettingsUser user, const char* section, const char* key) {
  char path[kJoinedPathSize];
  LSettingJoinPath(path, section, key);
  return _LSettingTestKeyExists(user, path);
}

bool LUserSettingTestKeyFullPathExists(LSettingsUser user, const char* key) {
  return _LSettingTestKeyExists(user, key);
}

bool LUserSettingIsOn(const char* section, const char* key) {
  char text[kTextSize];
  _LUserSettingGetString(section, key, "", text);
  return LSettingIsOn(text);
}

void LSettingGetCFPreferencesApplicationKeyLongForApplication(char (&out)[kTextSize], const char* name) {
  char domain[kTextSize];
  TextFormat(domain, "com.tessalysoft.%s", name);
  LCharsetsLowerCase(domain);
  TextCopy(out, domain);
}

bool LSettingForApplicationSetString(const char* application, const char* key, const char* value) {
  char domain[kTextSize];
  LSettingGetCFPreferencesApplicationKeyLongForApplication(domain, application);
  return platform::PreferencesSetValue(domain, key, value ? value : "") && platform::PreferencesSynchronize(domain);
}

bool LSettingForApplicationSetBool(const char* application, const char* key, bool value) {
  return LSettingForApplicationSetString(application, key, LSettingFromBool(value));
}

bool LSettingsTakeDamagedStore(char (&out)[kTextSize]) { return platform::PreferencesTakeDamagedFile(out); }

void LSettingsLogDamagedStore() {
  char kept[kTextSize];
  if (!LSettingsTakeDamagedStore(kept)) return;
  // The name first: the pane cuts what is long, and the folder is the same for every copy.
  char name[kTextSize];
  char folder[kTextSize];
  LFile::_GetFileFromPath(name, kept);
  LFile::_GetFolderFromPath(folder, kept);
  LOGERRORF("設定ファイルが壊れていたため「%s」として保管し、新しく作成しました。フォルダ: %s", name, folder);
}
