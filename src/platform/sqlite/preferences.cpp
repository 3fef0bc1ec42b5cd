#include "platform/preferences.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <mutex>
#include <utility>

#include "platform/sqlite/database.h"
#include "platform/sqlite/key_index.h"

namespace platform {

namespace {

/// One domain: what waits to be written, and the index of its keys, the waiting ones counted in.
struct Domain {
  PendingWrites pending;
  /// Shared with visits under way, which go on with the keys of their beginning; null until the first use.
  std::shared_ptr<KeyIndex> index;
  DataVersion version;  ///< Of the committed keys in the index.
};

struct Store {
  std::mutex mutex;  ///< Guards all below. Never held while a visitor runs.
  Database database;
  std::map<std::string, Domain, std::less<>> domains;
};

/// Lives as long as the process: a worker may still read while static objects are destroyed.
Store& TheStore() {
  static Store* store = new Store;
  return *store;
}

Domain& DomainOf(Store& store, const char* name) { return store.domains[name]; }

void ApplyToIndex(KeyIndex& index, const std::string& key, bool isPresent) {
  if (isPresent) {
    index.Insert(key);
  } else {
    index.Remove(key);
  }
}

/// The index to be changed: a copy of its own if a visit still reads the present one.
KeyIndex& IndexToWrite(Domain& domain) {
  if (domain.index.use_count() > 1) domain.index = std::make_shared<KeyIndex>(*domain.index);
  return *domain.index;
}

/// The index as of now, read again if another process has written. Null if the store cannot be read.
std::shared_ptr<const KeyIndex> CurrentIndex(Store& store, const char* name) {
  Domain& domain = DomainOf(store, name);
  DataVersion version;
  if (!store.database.ReadVersion(version)) return nullptr;
  if (domain.index && domain.version == version) return domain.index;
  std::vector<std::string> keys;
  if (!store.database.ReadKeys(name, keys)) return nullptr;
  auto fresh = std::make_shared<KeyIndex>();
  fresh->Assign(std::move(keys));
  for (const auto& [key, value] : domain.pending) ApplyToIndex(*fresh, key, value.has_value());
  domain.index = fresh;
  domain.version = version;
  return fresh;
}

/// The index for one visit, null if the store cannot be read. It is let go of under the store's lock, so that
/// who holds the lock and finds no visit knows that the last one, on another thread, has read to its end.
class Visit {
 public:
  explicit Visit(const char* domain) {
    Store& store = TheStore();
    const std::lock_guard lock(store.mutex);
    index = CurrentIndex(store, domain);
  }
  Visit(const Visit&) = delete;
  Visit& operator=(const Visit&) = delete;
  ~Visit() {
    const std::lock_guard lock(TheStore().mutex);
    index = nullptr;
  }
  explicit operator bool() const { return index != nullptr; }
  const KeyIndex* operator->() const { return index.get(); }

 private:
  std::shared_ptr<const KeyIndex> index;
};

bool ReadValue(const char* name, std::string_view key, std::string& value) {
  Store& store = TheStore();
  const std::lock_guard lock(store.mutex);
  const Domain& domain = DomainOf(store, name);
  const auto pending = domain.pending.find(std::string(key));
  if (pending == domain.pending.end()) return store.database.ReadValue(name, key, value);
  if (pending->second) value = *pending->second;
  return pending->second.has_value();
}

}  // namespace

bool PreferencesCopyKeyList(const char* domain, const std::function<void(const char*)>& visit) {
  const Visit index(domain);
  if (!index || index->Keys().empty()) return false;
  for (const std::string& key : index->Keys()) visit(key.c_str());
  return true;
}

bool PreferencesCopyValue(const char* domain, const char* key, const std::function<void(const char*)>& take) {
  std::string value;
  if (!ReadValue(domain, key, value)) return false;
  take(value.c_str());
  return true;
}

bool PreferencesSetValue(const char* name, const char* key, const char* value) {
  Store& store = TheStore();
  const std::lock_guard lock(store.mutex);
  if (!store.database.IsWritable()) return false;
  Domain& domain = DomainOf(store, name);
  std::optional<std::string>& pending = domain.pending[key];
  pending.reset();
  if (value) pending = value;
  if (domain.index) ApplyToIndex(IndexToWrite(domain), key, value != nullptr);
  return true;
}

bool PreferencesSynchronize(const char* name) {
  Store& store = TheStore();
  const std::lock_guard lock(store.mutex);
  Domain& domain = DomainOf(store, name);
  if (domain.pending.empty()) return true;
  const bool isCommitted = store.database.Commit(name, domain.pending);
  domain.pending.clear();
  if (!isCommitted) domain.index = nullptr;
  return isCommitted;
}

bool PreferencesCopyMultiple(const char* domain, const char* const* keys,
                             const std::function<void(const char*, const char*)>& visit) {
  bool isAnyThere = false;
  for (; *keys; ++keys) {
    std::string value;
    if (!ReadValue(domain, *keys, value)) continue;
    isAnyThere = true;
    visit(*keys, value.c_str());
  }
  return isAnyThere;
}

bool PreferencesSetMultiple(const char* domain, const char* const* keys, const char* const* values, int count) {
  bool isSet = true;
  for (int i = 0; i < count; ++i) isSet = PreferencesSetValue(domain, keys[i], values[i]) && isSet;
  return isSet;
}

bool PreferencesVisitKeys(const char* domain, const char* prefix, size_t from,
                          const std::function<bool(size_t, const char*)>& visit) {
  const Visit index(domain);
  if (!index || index->Keys().empty()) return false;
  const std::vector<std::string>& keys = index->Keys();
  for (size_t i = std::max(from, index->FirstWithPrefix(prefix)); i < keys.size(); ++i) {
    if (!KeyIndex::StartsWith(keys[i], prefix) || !visit(i, keys[i].c_str())) break;
  }
  return true;
}

bool PreferencesNextName(const char* domain, const char* prefix, const char* previous, char (&out)[kFixedText]) {
  char name[kFixedText] = {};  // `previous` may lie in `out`.
  if (const Visit index(domain); index) {
    const std::string_view next = index->NextName(prefix, previous, kFixedText - 1);
    next.copy(name, next.size());
  }
  memcpy(out, name, sizeof out);
  return out[0] != 0;
}

size_t PreferencesKeyCount(const char* domain) {
  const Visit index(domain);
  return index ? index->Keys().size() : 0;
}

bool PreferencesTakeDamagedFile(char (&out)[kFixedText]) {
  Store& store = TheStore();
  const std::lock_guard lock(store.mutex);
  std::string& file = store.database.damagedFile;
  memset(out, 0, sizeof out);
  file.copy(out, kFixedText - 1);
  file.clear();
  return out[0] != 0;
}

void PreferencesClose() {
  Store& store = TheStore();
  const std::lock_guard lock(store.mutex);
  store.domains.clear();
  store.database.Close();
}

}  // namespace platform
