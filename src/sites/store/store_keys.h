// The low level of the settings store: single keys, and the walks over keys that make records and lists of
// them. Any thread.
#pragma once

#include "support/strings.h"
#include "support/text.h"

/// Whose settings: always the present user's.
using LSettingsUser = const char*;
inline constexpr LSettingsUser kCFPreferencesCurrentUser = "kCFPreferencesCurrentUser";

/// Size of a path joined from a section and a key.
constexpr size_t kJoinedPathSize = 520;

/// `section` and `key` with one "/" between them, unless the section ends in one.
void LSettingJoinPath(char (&out)[kJoinedPathSize], const char* section, const char* key);

// Single keys. The readers are true when the key is there; otherwise `out` is the default.

bool _LSettingGetString(LSettingsUser user, const char* section, const char* key, const char* defaultValue,
                        char (&out)[kTextSize]);
bool _LSettingGetString(LSettingsUser user, const char* section, const char* key, const char* defaultValue,
                        LStringLongTemplate<char>& out);
bool _LSettingSetString(LSettingsUser user, const char* section, const char* key, const char* value);
bool _LSettingDeleteItem(LSettingsUser user, const char* section, const char* key);
/// The exact key, case included.
bool _LSettingTestKeyExists(LSettingsUser user, const char* key);

// Sections.

/// The last component of the path, after removing one trailing "/".
void _LSettingMakePrimaryKeyFromPath(char (&out)[kTextSize], const char* path);
/// Writes the marker of each level of the path that ends in "/" and has none yet.
bool _LSettingMakeParentKeyPath(LSettingsUser user, const char* path);
/// Removes every key under the path. False if the store holds no key at all, or cannot be written.
bool _LSettingDeleteSection(LSettingsUser user, const char* path);
/// Moves every key under `path`, which ends in "/", to the name `newName` in the same parent. `outPath` is
/// the new path without a trailing "/". True if there was anything to move.
bool _LSettingChangePrimaryKey(LSettingsUser user, const char* path, const char* newName, char (&outPath)[kTextSize]);

// Walks.

/// The first direct child of path/sub at or after position `index` of the key list, which is left on it.
bool _LSettingFindRecord(LSettingsUser user, char (&out)[kTextSize], int& index, const char* path, const char* sub);
/// The name after `previous` among the next-level names under `prefix`, in ascending order without regard to
/// case, each once; empty `previous` for the first. Fields and records come alike. False with an empty `out`
/// at the end.
bool _LSettingPlistGetNextKey(LSettingsUser user, const char* prefix, const char* previous, char (&out)[kTextSize]);

/// Makes the writes so far durable; under an LSettingsBatch, leaves that to its end.
bool LSettingSynchronise();
