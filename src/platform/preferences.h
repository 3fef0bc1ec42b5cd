// The preference store: a flat map of text to text for each domain, for the present user on this host.
//
// Several processes may use one domain at once. A write is seen by the next read in this process at once, is
// durable after PreferencesSynchronize, and is then seen by others. Main thread and workers alike.
// Keys are compared byte for byte; a prefix, and the order of keys, disregard ASCII case. The order is the
// same in every call as long as nobody writes, and puts "/" before any other byte, so that what lies under
// one name is together.
//
// A store that cannot be opened reads as empty; writing to it reports false. Writes that could not be made
// durable are dropped, and the old values stand; only a disk that fails when all is written, and merely the
// last synchronising is missing, leaves the new ones. A file that is damaged is kept aside and a fresh one
// begun.
//
// A visitor may call back into the store; it sees the keys as they were when the call began.
#pragma once

#include <cstddef>
#include <functional>

#include "platform/text_service.h"

namespace platform {

/// Calls `visit` with each key of the domain, in the order above. False if there is none.
bool PreferencesCopyKeyList(const char* domain, const std::function<void(const char* key)>& visit);
/// Calls `take` with the value, valid during the call; false if the key is absent.
bool PreferencesCopyValue(const char* domain, const char* key, const std::function<void(const char* value)>& take);
/// A null `value` removes the key.
bool PreferencesSetValue(const char* domain, const char* key, const char* value);
/// Makes all writes to the domain durable: all of them, or none on false.
bool PreferencesSynchronize(const char* domain);
/// Calls `visit` with each key that is present and its value.
bool PreferencesCopyMultiple(const char* domain, const char* const* nullTerminatedKeys,
                             const std::function<void(const char* key, const char* value)>& visit);
/// Sets `count` pairs; a null value removes its key.
bool PreferencesSetMultiple(const char* domain, const char* const* keys, const char* const* values, int count);

// The same key list, read through its order: what makes a walk over many keys cheap.

/// Calls `visit` with each key that starts with `prefix` and the key's position in the key list, beginning at
/// position `from`, until it returns false. True if the domain has any key.
bool PreferencesVisitKeys(const char* domain, const char* prefix, size_t from,
                          const std::function<bool(size_t position, const char* key)>& visit);
/// The name after `previous` among the names under `prefix`. A name is what follows the prefix in a key, up
/// to the next "/", cut to `out`; an empty one does not count. Names that differ only by case are one. An
/// empty `previous` asks for the first. False, with an empty `out`, if there is none.
bool PreferencesNextName(const char* domain, const char* prefix, const char* previous, char (&out)[kFixedText]);
/// Positions in the key list; the end of PreferencesVisitKeys.
size_t PreferencesKeyCount(const char* domain);

/// True once after a damaged file was kept aside; `out` is then its new path.
bool PreferencesTakeDamagedFile(char (&out)[kFixedText]);
/// Lets go of the file; writes that were not synchronised are dropped. The next call of any operation opens
/// it again, where the user's folders then are. For a process that is about to fork, and for tests.
void PreferencesClose();

}  // namespace platform
