// The settings store: sections, records and lists, modelled on the flat keys of the platform's preference
// store.
//
// A key looks like a path, `Section/Sub/Field`; a value is always a text. Numbers are decimal, booleans "1"
// and "0". A section has no entry of its own, so each level of a record's path has a marker: the key
// `FTPAccounts/label/` with the value `label`. Names of a level are told apart and ordered without regard to
// ASCII case.
//
// Nothing is kept in memory: each call asks the store, and each write is durable when the call returns. Any
// thread. Reading never fails: an absent key gives the default. Writing fails only with the disk, and then
// old values stand. Paths are 260-byte texts in records and 520-byte texts when joined; longer ones are cut.
#pragma once

#include <ctime>

#include "sites/store/records.h"
#include "support/program.h"
#include "support/strings.h"
#include "support/text.h"

constexpr const char* kSettingsDomain = kPreferenceDomain;

// Settings of this program, by section and key. A section may end in "/" or not.

/// True when the key is there; otherwise `out` is the default. The fixed form cuts a long value.
bool _LUserSettingGetString(const char* section, const char* key, const char* defaultValue, char (&out)[kTextSize]);
bool _LUserSettingGetString(const char* section, const char* key, const char* defaultValue,
                            LStringLongTemplate<char>& out);
bool LUserSettingSetString(const char* section, const char* key, const char* value);
/// For int, long and double: the value as a decimal number; an absent or empty one gives the default.
template <typename T>
T LUserSettingGet(const char* section, const char* key, T defaultValue);
/// The number rule of the above: leading blanks and a sign, then decimal digits; what is no number gives 0.
template <typename T>
T LSettingNumberFromText(const char* text);
bool LUserSettingSetTimeT(const char* section, const char* key, time_t value);
/// Removes the key and its protected twin.
bool LUserSettingDeleteItem(const char* section, const char* key);
bool LUserSettingDeleteSection(const char* path);
bool LUserSettingTestExists(LSettingsUser user, const char* section, const char* key);
bool LUserSettingTestKeyFullPathExists(LSettingsUser user, const char* key);

/// Keeps the text where a glance at the file does not read it, under the key "__" + `key`.
bool LUserSettingSetPassword(const char* section, const char* key, const char* text);
/// Absent gives empty. The third argument is not used.
bool LUserSettingGetPassword(const char* section, const char* key, const char* ignored, char (&out)[kTextSize]);

/// The usual rule for booleans: on when not empty and not beginning with "0".
inline bool LSettingIsOn(const char* value) { return value[0] != 0 && value[0] != '0'; }
/// The other rule, for settings that are on until they are switched off: an absent value is on.
inline bool LSettingIsOnOrAbsent(const char* value) { return value[0] != '0'; }
inline const char* LSettingFromBool(bool value) { return value ? "1" : "0"; }
/// The setting by the usual rule.
bool LUserSettingIsOn(const char* section, const char* key);

/// While one exists, writes of its thread are seen at once but made durable together, when the last one goes:
/// for many writes that belong together.
class LSettingsBatch {
 public:
  LSettingsBatch();
  LSettingsBatch(const LSettingsBatch&) = delete;
  LSettingsBatch& operator=(const LSettingsBatch&) = delete;
  ~LSettingsBatch();
};

// Settings of another program of the same maker, in its own domain. `key` is the whole key.

/// The domain "com.tessalysoft.NAME" in lower case.
void LSettingGetCFPreferencesApplicationKeyLongForApplication(char (&out)[kTextSize], const char* name);
bool LSettingForApplicationSetString(const char* application, const char* key, const char* value);
bool LSettingForApplicationSetBool(const char* application, const char* key, bool value);

// At the start of the program.

/// Copies the settings kept under an old domain id, which stays as it is. False if there are none.
bool LSettingsMigrateUpperCaseApplicationIDUserSettings(const char* oldId);
/// The same for each id the program ever had, once for each user.
void LSettingsMigrateUpperCaseUserSettings();

/// True once after the preference file was found damaged and replaced; `out` is the path it was kept under.
bool LSettingsTakeDamagedStore(char (&out)[kTextSize]);
/// Says so in the history, if it was.
void LSettingsLogDamagedStore();
