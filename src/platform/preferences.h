// The preference store: a flat map of text to text for each domain, for the present user on this host.
//
// Several processes may use one domain at once. A write is seen by the next read in this process at once, is
// durable after PreferencesSynchronize, and is then seen by others. Main thread and workers alike.
// A store that cannot be opened reads as empty; writing to it reports false.
#pragma once

#include <functional>

namespace platform {

/// Calls `visit` with each key of the domain, in no order that may be relied on. False if there is none.
bool PreferencesCopyKeyList(const char* domain, const std::function<void(const char* key)>& visit);
/// Calls `take` with the value, valid during the call; false if the key is absent.
bool PreferencesCopyValue(const char* domain, const char* key, const std::function<void(const char* value)>& take);
/// A null `value` removes the key.
bool PreferencesSetValue(const char* domain, const char* key, const char* value);
/// Makes all writes to the domain durable.
bool PreferencesSynchronize(const char* domain);
/// Calls `visit` with each key that is present and its value.
bool PreferencesCopyMultiple(const char* domain, const char* const* nullTerminatedKeys,
                             const std::function<void(const char* key, const char* value)>& visit);
/// Sets `count` pairs; a null value removes its key.
bool PreferencesSetMultiple(const char* domain, const char* const* keys, const char* const* values, int count);

}  // namespace platform
