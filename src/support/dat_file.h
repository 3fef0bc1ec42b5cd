// Small stores of texts in files: sections of keys and values, one line each.
//
//   [section]
//   key=value
//   (an empty line closes the section)
//
// Lines end in a carriage return and a line feed. Names, keys and values are fixed texts; a value ends at its
// first line end. What was changed in memory is written by Save, at latest when the process ends.
#pragma once

#include <ctime>
#include <mutex>
#include <sys/types.h>

#include "support/containers.h"
#include "support/text.h"

struct LDatFileNativeEntry {
  LDatFileNativeEntry* next = nullptr;
  char szKey[kTextSize] = {};
  char szValue[kTextSize] = {};
};

struct LDatFileNativeSection {
  LDatFileNativeEntry* Find(const char* key) const;

  LDatFileNativeSection* next = nullptr;
  char szName[kTextSize] = {};
  LList<LDatFileNativeEntry> entries;
};

/// One store. Belongs to one thread at a time. Keys and names compare byte by byte.
struct LDatFileNativeFile {
  explicit LDatFileNativeFile(const char* path) { TextCopy(szPath, path); }

  /// Takes the file's content in place of what is in memory. Where it cannot be read, memory is left as it
  /// is.
  bool Load();
  /// Writes the whole file; a file that stays locked for 1000 ms is left as it is, and this one stays dirty.
  void Save();
  /// True if the file is no longer the one that was last loaded or saved.
  bool IsChangedOnDisk() const;

  /// Null if there is no such entry. Valid until the next call.
  const char* Get(const char* section, const char* key) const;
  /// Makes the section and the entry where they are missing, at the end.
  void Set(const char* section, const char* key, const char* value);

  LDatFileNativeFile* next = nullptr;
  char szPath[kTextSize] = {};
  bool bDirty = false;
  time_t iModified = 0;  ///< Seconds since 1970 when last loaded or saved; 0 if there was no file.
  off_t iSize = 0;       ///< Bytes at that time.
  LList<LDatFileNativeSection> sections;

 private:
  LDatFileNativeSection* FindSection(const char* name) const;
  LDatFileNativeSection* SectionNamed(const char* name);
  void ReadLines(int descriptor);
  void RememberStatus();
};

/// All open stores of the process. Any thread.
class LDatFileNativeSystem {
 public:
  LDatFileNativeSystem() = default;
  LDatFileNativeSystem(const LDatFileNativeSystem&) = delete;
  LDatFileNativeSystem& operator=(const LDatFileNativeSystem&) = delete;
  ~LDatFileNativeSystem() { Clear(); }

  /// False, with an empty `out`, if there is no such entry. Sees what another process has written meanwhile,
  /// unless this one has changes of its own to write.
  bool Read(const char* path, const char* section, const char* key, char (&out)[kTextSize]);
  void Write(const char* path, const char* section, const char* key, const char* value);
  /// Saves what is dirty and forgets all.
  void Clear();

 private:
  /// The store of that path, loaded and up to date. The caller holds the mutex.
  LDatFileNativeFile* Open(const char* path);

  std::mutex mutex;  ///< Guards the list and all that is in it.
  LList<LDatFileNativeFile> files;
};

extern LDatFileNativeSystem gLDatFileNativeSystem;
