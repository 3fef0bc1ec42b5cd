#include "platform/sqlite/database.h"

#include <sys/file.h>

#include "platform/clock.h"
#include "platform/file_io.h"

namespace platform {

namespace {

constexpr int kBusyTimeoutMs = 5000;
constexpr int kQuickTries = 100;
constexpr unsigned kLaterWaitMs = 3;

constexpr const char* kTable =
    "CREATE TABLE IF NOT EXISTS preferences("
    "domain TEXT NOT NULL, key TEXT NOT NULL, value TEXT NOT NULL, PRIMARY KEY(domain, key)) WITHOUT ROWID";

constexpr const char* kConnectionSettings =
    "PRAGMA trusted_schema=OFF; PRAGMA cell_size_check=ON; PRAGMA journal_mode=TRUNCATE; PRAGMA "
    "synchronous=FULL";

/// A value that stands already touches no page, so that its commit costs no write to the disk.
constexpr const char* kPutSql =
    "INSERT INTO preferences VALUES(?1,?2,?3) ON CONFLICT DO UPDATE SET value=excluded.value"
    " WHERE value IS NOT excluded.value";

/// In the order of Database::Statement.
constexpr const char* kSql[] = {
    "PRAGMA data_version",
    "SELECT key FROM preferences WHERE domain=?1",
    "SELECT value FROM preferences WHERE domain=?1 AND key=?2",
    kPutSql,
    "DELETE FROM preferences WHERE domain=?1 AND key=?2",
    "BEGIN IMMEDIATE",
    "BEGIN",
    "COMMIT",
    "ROLLBACK",
};

/// Errors that lie in the file's content. Any other may pass: a lock, a full disk, missing rights.
bool IsDamage(int result) {
  const int kind = result & 0xff;
  return kind == SQLITE_CORRUPT || kind == SQLITE_NOTADB || kind == SQLITE_FORMAT;
}

void Bind(sqlite3_stmt* statement, int position, std::string_view text) {
  // Cannot fail but for memory or an over-long text, and then the step behind it finds a NULL and fails.
  sqlite3_bind_text64(statement, position, text.data(), text.size(), SQLITE_STATIC, SQLITE_UTF8);
}

/// Called by the library while another process holds a lock; 0 gives up. It looks often: the library's own
/// waiting sleeps up to 100 ms, and finds a lock that the other takes again and again taken every time.
int WaitForLock(void* since, int tries) {
  int64_t& start = *static_cast<int64_t*>(since);
  if (tries == 0) start = ClockMonotonicMs();
  if (ClockMonotonicMs() - start >= kBusyTimeoutMs) return 0;
  ClockSleepMs(tries < kQuickTries ? 1 : kLaterWaitMs);
  return 1;
}

std::string ColumnText(sqlite3_stmt* statement) {
  const unsigned char* text = sqlite3_column_text(statement, 0);
  if (!text) return {};
  return std::string(reinterpret_cast<const char*>(text), static_cast<size_t>(sqlite3_column_bytes(statement, 0)));
}

}  // namespace

void Database::Close() {
  for (sqlite3_stmt*& statement : statements) {
    sqlite3_finalize(statement);
    statement = nullptr;
  }
  sqlite3_close(pHandle);
  pHandle = nullptr;
  if (counterFile >= 0) FileClose(counterFile);
  counterFile = -1;
  isVersionKnown = false;
}

int Database::Execute(const char* sql) { return sqlite3_exec(pHandle, sql, nullptr, nullptr, nullptr); }

int Database::Step(Statement statement) { return sqlite3_step(statements[statement]); }

/// Also lets go of the texts bound to the statement, which belong to the caller.
int Database::StepToEnd(Statement statement) {
  int result = SQLITE_ROW;
  while (result == SQLITE_ROW) result = Step(statement);
  sqlite3_reset(statements[statement]);
  sqlite3_clear_bindings(statements[statement]);
  return result == SQLITE_DONE ? SQLITE_OK : result;
}

// Opening

bool Database::EnsureOpen() {
  FileIdentity present;
  if (pHandle) {
    // Somebody may have removed the file, or kept it aside: what is written into the old one would be lost.
    if (StoreFileIdentify(path, present) && present == identity) return true;
    Close();
  }
  int result = Open();
  // The plain error while setting up tells of tables that are not ours.
  if (IsDamage(result) || result == SQLITE_ERROR) {
    KeepAside();
    result = Open();
  }
  if (result != SQLITE_OK) Close();
  return result == SQLITE_OK;
}

int Database::Open() {
  path = StoreFilePath();
  // Locked while it is checked: another process that keeps a damaged file aside waits until nobody is looking at
  // it, so that no connection reads one file and plays back the journal of the other.
  if (!StoreFileOpenInPlace(path, identity, counterFile)) return SQLITE_CANTOPEN;
  ++opening;
  // A file without write permission is opened for reading alone.
  int result = sqlite3_open_v2(path.c_str(), &pHandle, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
  if (result == SQLITE_OK) result = SetUp();
  if (counterFile >= 0) FileLock(counterFile, LOCK_UN);
  return result;
}

int Database::SetUp() {
  sqlite3_busy_handler(pHandle, &WaitForLock, &busySince);
  int result = Execute(kConnectionSettings);
  if (result == SQLITE_OK) result = CheckIntegrity();
  // A writable file that the library will only read has a header that no version ever wrote.
  const bool isReadOnly = result == SQLITE_OK && sqlite3_db_readonly(pHandle, "main") == 1;
  if (isReadOnly && StoreFileMayBeWritten(path)) result = SQLITE_CORRUPT;
  if (result == SQLITE_OK) result = Execute(kTable);
  for (int i = 0; result == SQLITE_OK && i < kStatementCount; ++i) {
    result = sqlite3_prepare_v3(pHandle, kSql[i], -1, SQLITE_PREPARE_PERSISTENT, &statements[i], nullptr);
  }
  return result;
}

/// Finds cut files and broken pages now, rather than in the middle of a write.
int Database::CheckIntegrity() {
  sqlite3_stmt* check = nullptr;
  int result = sqlite3_prepare_v2(pHandle, "PRAGMA quick_check(1)", -1, &check, nullptr);
  if (result == SQLITE_OK) result = sqlite3_step(check);
  if (result == SQLITE_ROW) result = ColumnText(check) == "ok" ? SQLITE_OK : SQLITE_CORRUPT;
  sqlite3_finalize(check);
  return result;
}

void Database::KeepAside() {
  Close();
  const std::string kept = StoreFileKeepAside(path, identity);
  if (!kept.empty()) damagedFile = kept;
}

bool Database::WithRetry(const std::function<int()>& work) {
  if (!EnsureOpen()) return false;
  int result = work();
  if (IsDamage(result)) {
    KeepAside();
    result = EnsureOpen() ? work() : SQLITE_CANTOPEN;
  }
  // After an error nothing of the connection is trusted, and opening looks at the file anew. Being busy is
  // none.
  if (result != SQLITE_OK && (result & 0xff) != SQLITE_BUSY) Close();
  return result == SQLITE_OK;
}

// Operations

bool Database::IsWritable() { return EnsureOpen() && sqlite3_db_readonly(pHandle, "main") == 0; }

bool Database::ReadVersion(DataVersion& version) {
  const bool isRead = (EnsureOpen() && IsUnchanged()) || WithRetry([this] { return ReadVersionLocked(); });
  if (isRead) version = knownVersion;
  return isRead;
}

bool Database::IsUnchanged() const {
  uint32_t present;
  return isVersionKnown && StoreFileReadCounter(counterFile, present) && present == counter;
}

/// The counter counts only when it is read under the same lock as the version: at other times it may belong
/// to a commit that is never completed.
int Database::ReadVersionLocked() {
  isVersionKnown = false;
  int result = StepToEnd(kBeginRead);
  if (result != SQLITE_OK) return result;
  result = Step(kVersion);
  if (result == SQLITE_ROW) {
    knownVersion = {opening, sqlite3_column_int64(statements[kVersion], 0)};
    isVersionKnown = StoreFileReadCounter(counterFile, counter);
  }
  const int end = StepToEnd(kVersion);
  StepToEnd(kEnd);
  return result == SQLITE_ROW ? SQLITE_OK : end;
}

bool Database::ReadKeys(const char* domain, std::vector<std::string>& keys) {
  return WithRetry([&] {
    keys.clear();
    Bind(statements[kKeys], 1, domain);
    int result = Step(kKeys);
    for (; result == SQLITE_ROW; result = Step(kKeys)) keys.push_back(ColumnText(statements[kKeys]));
    StepToEnd(kKeys);
    return result == SQLITE_DONE ? SQLITE_OK : result;
  });
}

bool Database::ReadValue(const char* domain, std::string_view key, std::string& value) {
  bool isFound = false;
  const bool isRead = WithRetry([&] {
    Bind(statements[kGet], 1, domain);
    Bind(statements[kGet], 2, key);
    const int result = Step(kGet);
    isFound = result == SQLITE_ROW;
    if (isFound) value = ColumnText(statements[kGet]);
    StepToEnd(kGet);
    return isFound || result == SQLITE_DONE ? SQLITE_OK : result;
  });
  return isRead && isFound;
}

bool Database::Commit(const char* domain, const PendingWrites& writes) {
  return WithRetry([&] { return CommitOnce(domain, writes); });
}

int Database::CommitOnce(const char* domain, const PendingWrites& writes) {
  int result = StepToEnd(kBegin);
  if (result != SQLITE_OK) return result;
  result = WriteAll(domain, writes);
  if (result == SQLITE_OK) result = StepToEnd(kEnd);
  // Some failures have rolled back already; a second time does no harm.
  if (result != SQLITE_OK) StepToEnd(kCancel);
  return result;
}

int Database::WriteAll(const char* domain, const PendingWrites& writes) {
  int result = SQLITE_OK;
  for (const auto& [key, value] : writes) {
    const Statement statement = value ? kPut : kRemove;
    Bind(statements[statement], 1, domain);
    Bind(statements[statement], 2, key);
    if (value) Bind(statements[statement], 3, *value);
    result = StepToEnd(statement);
    if (result != SQLITE_OK) break;
  }
  return result;
}

}  // namespace platform
