// Whole states of the preference store for tests of its durability: a generation is a set of keys and values
// that a save writes all at once, and that differs from every other one in each value.
#pragma once

#include <map>
#include <string>

#include "platform/preferences.h"
#include "sites/store/settings.h"

using StoreContent = std::map<std::string, std::string>;

constexpr int kNoGeneration = -1;  ///< A mixture, or damage.
constexpr int kLastGeneration = 2;

/// Generation 0 is the empty store. The values are of all sizes, so that a save changes, frees and adds pages
/// of the file; some keys come and go.
inline StoreContent StoreGeneration(int generation) {
  StoreContent content;
  if (generation == 0) return content;
  const std::string mark = "generation " + std::to_string(generation) + " ";
  for (int i = 0; i < 8; ++i) {
    if (i / 2 % 2 == 1 && i % 2 != generation % 2) continue;
    const size_t size = static_cast<size_t>((i * i * 397 + generation * 1013) % 6000);
    content["Settings/Key" + std::to_string(i)] = mark + std::string(size, static_cast<char>('a' + i));
  }
  return content;
}

/// Writes the generation over any other one. True if it is durable.
[[nodiscard]] inline bool SaveStoreGeneration(int generation) {
  const StoreContent content = StoreGeneration(generation);
  for (int other = 1; other <= kLastGeneration; ++other) {
    for (const auto& [key, value] : StoreGeneration(other)) {
      if (content.count(key) == 0) platform::PreferencesSetValue(kSettingsDomain, key.c_str(), nullptr);
    }
  }
  bool isSet = true;
  for (const auto& [key, value] : content) {
    isSet = platform::PreferencesSetValue(kSettingsDomain, key.c_str(), value.c_str()) && isSet;
  }
  return platform::PreferencesSynchronize(kSettingsDomain) && isSet;
}

/// The generation that the store holds, key for key and byte for byte.
inline int StoredGeneration() {
  StoreContent content;
  platform::PreferencesCopyKeyList(kSettingsDomain, [&content](const char* key) { content[key]; });
  for (auto& [key, value] : content) {
    platform::PreferencesCopyValue(kSettingsDomain, key.c_str(), [&value = value](const char* text) { value = text; });
  }
  for (int generation = 0; generation <= kLastGeneration; ++generation) {
    if (content == StoreGeneration(generation)) return generation;
  }
  return kNoGeneration;
}
