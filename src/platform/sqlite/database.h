// The one SQLite connection behind the preference store, and its few statements.
//
// Durability: a rollback journal with full synchronisation. A process that is killed in the middle of a
// commit leaves a journal from which the next one restores the old state; two processes take turns through
// the library's file locks. (A write-ahead log would be quicker to write, but it cannot be read on a full or
// read-only disk, and not shared over a network file system.)
//
// Not locked: the store's lock guards it. Every operation opens the file first if need be, also when the path
// has come to lead to another file. A damaged file is kept aside and the operation done on a fresh one.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <sqlite3.h>
#include <string>
#include <string_view>
#include <vector>

#include "platform/sqlite/store_file.h"

namespace platform {

/// What waits for a commit: an absent value removes its key.
using PendingWrites = std::map<std::string, std::optional<std::string>>;

/// Tells one state of the committed data from another. Own commits do not change it.
struct DataVersion {
  uint64_t opening = 0;  ///< Counts the files opened; 0 before the first.
  int64_t commits = 0;
  bool operator==(const DataVersion&) const = default;
};

class Database {
 public:
  Database() = default;
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;
  ~Database() { Close(); }

  void Close();

  // Each is false when the data cannot be had now: no file, no rights, busy for too long, disk full.
  [[nodiscard]] bool IsWritable();
  [[nodiscard]] bool ReadVersion(DataVersion& version);
  [[nodiscard]] bool ReadKeys(const char* domain, std::vector<std::string>& keys);
  /// Also false when the key is absent.
  [[nodiscard]] bool ReadValue(const char* domain, std::string_view key, std::string& value);
  /// All or nothing.
  [[nodiscard]] bool Commit(const char* domain, const PendingWrites& writes);

  /// Path of the damaged file that was kept aside; emptied by the caller who has told the user.
  std::string damagedFile;

 private:
  enum Statement { kVersion, kKeys, kGet, kPut, kRemove, kBegin, kBeginRead, kEnd, kCancel, kStatementCount };

  bool EnsureOpen();
  bool IsUnchanged() const;
  int ReadVersionLocked();
  int Open();
  int SetUp();
  int CheckIntegrity();
  bool WithRetry(const std::function<int()>& work);
  void KeepAside();
  int Execute(const char* sql);
  int Step(Statement statement);
  int StepToEnd(Statement statement);
  int CommitOnce(const char* domain, const PendingWrites& writes);
  int WriteAll(const char* domain, const PendingWrites& writes);

  sqlite3* pHandle = nullptr;  ///< Null when no file is open.
  sqlite3_stmt* statements[kStatementCount] = {};
  std::string path;
  FileIdentity identity;
  uint64_t opening = 0;
  int64_t busySince = 0;  ///< When the present wait for another process's lock began, in milliseconds.

  // What was last read under the library's lock. While the counter in the file is the same, so is the
  // version: one look at the file instead of a transaction, which a walk over many keys would begin for each
  // name.
  int counterFile = -1;  ///< Open as long as the database.
  bool isVersionKnown = false;
  uint32_t counter = 0;
  DataVersion knownVersion;
};

}  // namespace platform
