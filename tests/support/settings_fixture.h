// Verbs for tests of the settings store, on a store of their own.
#pragma once

#include <string>
#include <vector>

#include "platform/preferences.h"
#include "sites/store/accounts.h"
#include "sites/store/settings.h"
#include "support/preference_folder.h"

class SettingsFixture : public PreferenceFolder {
 protected:
  static constexpr const char* kAbsent = "(absent)";

  /// Writes a key as it stands, past all joining and marking.
  static void Put(const std::string& key, const std::string& value) {
    platform::PreferencesSetValue(kSettingsDomain, key.c_str(), value.c_str());
    platform::PreferencesSynchronize(kSettingsDomain);
  }

  static std::string Raw(const std::string& key, const char* domain = kSettingsDomain) {
    std::string value = kAbsent;
    platform::PreferencesCopyValue(domain, key.c_str(), [&value](const char* text) { value = text; });
    return value;
  }

  /// All keys with their values, "key=value", in the store's order.
  static std::vector<std::string> All() {
    std::vector<std::string> all;
    platform::PreferencesCopyKeyList(kSettingsDomain, [&all](const char* key) { all.push_back(key); });
    for (std::string& key : all) key += "=" + Raw(key);
    return all;
  }

  static std::vector<std::string> Walk(const AccountList& list) {
    std::vector<std::string> names;
    for (AccountIterator it(list); !it.IsAtEnd(); it.Advance()) names.emplace_back(it.szName);
    return names;
  }

  static LSharedSettingsRecord Open(const std::string& path) {
    LSharedSettingsRecord record;
    TextCopy(record.szKeyPath, path.c_str());
    _LSettingMakePrimaryKeyFromPath(record.szPrimaryKey, path.c_str());
    return record;
  }

  static LSharedSettingsRecord OpenSite(const char* label, const char* server, const char* key) {
    LSharedSettingsRecord record;
    AccountsOpenServer(label, server).Open(record, key);
    return record;
  }

  static std::string Field(const LSharedSettingsRecord& record, const char* field) {
    LStringLongTemplate<char> value;
    record.GetString(field, kAbsent, value);
    return value.Text();
  }

  static std::string Setting(const char* key) {
    LStringLongTemplate<char> value;
    _LUserSettingGetString("Settings", key, kAbsent, value);
    return value.Text();
  }
};

using Texts = std::vector<std::string>;
