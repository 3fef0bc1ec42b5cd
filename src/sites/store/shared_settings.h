// The few values that do not live in the preference store, in two small XML files: shared ones, and hidden
// ones of the user.
//
//   SharedSettings.xml  folder "Shared" of the program's data folder
//   orvaneftp.xml       folder ".tessalysoft" of the home folder
//
// A section is an element, a key an element in it, and the value its attribute "value"; both are told apart
// by case, and must be names of XML. Nothing is kept in memory. A file that is absent or cannot be read is
// empty, and a value that cannot be written is dropped in silence: two copies of the program that write at
// once are not waited for. Any thread.
#pragma once

#include "support/text.h"
#include "support/xml.h"

/// The folders of the two files, made if they are missing.
void GetSharedFolder(char (&out)[kTextSize]);
void GetUserHiddenFolder(char (&out)[kTextSize]);

// Both getters are true when the value is there; otherwise `out` is the default. Long values are cut.

bool LXMLSettingGetString(const char* file, const char* section, const char* key, const char* defaultValue,
                          char (&out)[kTextSize]);
/// False if the value was dropped.
bool LXMLSettingSetString(const char* file, const char* section, const char* key, const char* value);

bool _LSharedSettingGetString(const char* section, const char* key, const char* defaultValue, char (&out)[kTextSize]);
bool LSharedSettingSetString(const char* section, const char* key, const char* value);
/// For int: the value as a decimal number; an absent or empty one gives the default.
template <typename T>
T LSharedSettingGet(const char* section, const char* key, T defaultValue);

bool _LUserHiddenSettingGetString(const char* section, const char* key, const char* defaultValue,
                                  char (&out)[kTextSize]);
bool LUserHiddenSettingSetString(const char* section, const char* key, const char* value);
template <typename T>
T LUserHiddenSettingGet(const char* section, const char* key, T defaultValue);

// The shared file as a whole. Both are false if it could not be opened.

bool LSharedSettingsSave(const LXMLDocument& document);
bool LSharedSettingsLoad(LXMLDocument& document);
