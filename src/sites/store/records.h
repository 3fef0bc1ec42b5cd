// Records and lists of records in the settings store.
//
// A record is a place in the store, not its content: each field is read and written there and then. A list is
// a record used as a parent. Plain values, to be copied freely.
//
//   LUserSettingsListTemplate<LSharedSettingsRecord> labels("FTPAccounts");
//   for (LSettingsListIteratorTemplate<LSharedSettingsRecord> it(labels); !it.IsAtEnd(); it.Advance()) {
//     it.record.GetString("Server", server);
//   }
#pragma once

#include "sites/store/store_keys.h"
#include "support/strings.h"
#include "support/text.h"

class LSharedSettingsRecord {
 public:
  bool GetString(const char* field, const char* defaultValue, char (&out)[kTextSize]) const;
  bool GetString(const char* field, const char* defaultValue, LStringLongTemplate<char>& out) const;
  /// The default is empty.
  bool GetString(const char* field, char (&out)[kTextSize]) const;
  bool GetString(const char* field, LStringLongTemplate<char>& out) const;
  /// Writes the markers of the record's path first.
  bool SetString(const char* field, const char* value) const;
  // A record's password is a field like any other, as plain text; only LUserSettingSetPassword protects one.
  bool SetPassword(const char* field, const char* text) const;
  bool GetPassword(const char* field, const char* defaultValue, char (&out)[kTextSize]) const;

  // These two take the primary key as the section: callers set it to the full path first.
  bool DeleteField(const char* field) const;
  bool TestFieldExists(const char* field) const;

  /// A record of that name with a field or a child marker; its own marker alone does not count.
  bool TestSubRecordExists(const char* name) const;
  bool DeleteRecord() const;
  bool DeleteSubRecord(const char* name) const;
  /// Renames the record with all under it; its path then has no trailing "/". A record without a marker only
  /// takes the name, and nothing moves.
  void SetPrimaryKey(const char* name);

  /// Makes this the record of that name under `parent`.
  void OpenUnder(const LSharedSettingsRecord& parent, const char* name);

  LSettingsUser user = kCFPreferencesCurrentUser;
  char szPrimaryKey[kTextSize] = {};  ///< Last component of the path: the record's name in its list.
  char szKeyPath[kTextSize] = {};     ///< With a trailing "/"; empty for no record.
};

class LUserSettingsRecord : public LSharedSettingsRecord {};

/// A list of records of type R.
template <typename R>
class LSettingsListTemplate : public R {
 public:
  LSettingsListTemplate() = default;
  /// The list of what lies under the record.
  explicit LSettingsListTemplate(const R& record) : R(record) {}

  void Open(R& record, const char* name) const { record.OpenUnder(*this, name); }
  /// The first whole number, from 1, that no record has for its name. Nothing is written yet.
  void CreateNewRecord(R& record) const {
    int number = 1;
    do {
      char name[kTextSize];
      TextFormat(name, "%d", number++);
      record.OpenUnder(*this, name);
    } while (_LSettingTestKeyExists(record.user, record.szKeyPath));
  }
};

/// The list under a path from the top of the store.
template <typename R>
class LUserSettingsListTemplate : public LSettingsListTemplate<R> {
 public:
  explicit LUserSettingsListTemplate(const char* name) {
    TextCopy(this->szPrimaryKey, name);
    TextCopy(this->szKeyPath, name);
    TextAppend(this->szKeyPath, "/");
  }
};

/// Walks a list in ascending order of names. Stands on the first record from the beginning. The present
/// record, and any other, may be deleted or added during the walk: each step looks at the present name alone.
template <typename R>
class LSettingsListIteratorTemplate {
 public:
  explicit LSettingsListIteratorTemplate(const LSettingsListTemplate<R>& parent) : list(parent) { Step(); }

  bool IsAtEnd() const { return record.szKeyPath[0] == 0; }
  /// At the end, stays there.
  void Advance() {
    if (!IsAtEnd()) Step();
  }

  char szName[kTextSize] = {};
  LSettingsListTemplate<R> list;
  R record;  ///< The key path is empty at the end.

 private:
  void Step() {
    if (_LSettingPlistGetNextKey(list.user, list.szKeyPath, szName, szName)) {
      list.Open(record, szName);
    } else {
      record = R();
    }
  }
};
