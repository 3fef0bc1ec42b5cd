// FTP accounts: how a site is stored, and the site that is current.
//
// A site is the triple label, server, user name. Its record lies at `FTPAccounts/<label>/<server>/<key>/`;
// `server` has a colon and the port behind the host when a port was given, and `key` is a whole number, one
// for each user name on that server, "0" first. The current site's triple is in section "Settings" as
// `Current`, `CurrentServer` and `CurrentUser`. The password is plain text.
//
// Nothing here reports a failure: what cannot be read gives the defaults, what cannot be written stays as it
// was. Any thread.
#pragma once

#include "sites/store/records.h"
#include "support/text.h"

constexpr const char* kAccountsSection = "FTPAccounts";

using AccountList = LSettingsListTemplate<LSharedSettingsRecord>;
using AccountIterator = LSettingsListIteratorTemplate<LSharedSettingsRecord>;

/// The loaded form of a site record.
struct LFTPAccountSettings {
  explicit LFTPAccountSettings(const char* label);
  LFTPAccountSettings(const char* label, const char* user);

  /// Loads the site of this label on the current server for the current user. A record that is not there
  /// gives the defaults. False only when the label is empty.
  bool Load();
  /// Writes the record at key "0", whichever key it was loaded from.
  void Save() const;

  // On the current site; nothing happens while there is none or its record is not there.

  /// An empty folder is not written.
  static void StoreRecentDirectories(const char* local, const char* remote);
  static void UpdateUploadCount(int n);
  static void UpdateDownloadCount(int n);

  /// Counts this run among the runs that uploaded, once.
  static void UpdateRunsWithUploads();

  char szLabel[kTextSize] = {};  ///< Empty until loaded.
  char szKey[kTextSize] = {};    ///< The label given to the constructor.
  char szServer[kTextSize] = {};
  char szUserName[kTextSize] = {};
  char szPassword[kTextSize] = {};
  char szDirectory[kTextSize] = {};
  char szLocalDirectory[kTextSize] = {};
  char szRecentRemote[kTextSize] = {};
  char szRecentLocal[kTextSize] = {};
  bool bRemember = false;
  bool bUseSSL = false;    ///< Explicit or implicit.
  bool bImplicit = false;  ///< TLS from the first byte.
  bool bSFTP = false;      ///< Kept for the sheet; the connection does not use it.
  bool bUseRecentRemote = false;
  bool bUseRecentLocal = false;

 private:
  void LoadFields(const LSharedSettingsRecord& record);
};

/// The list of keys of one server; an empty server gives a list that holds nothing.
AccountList AccountsOpenServer(const char* label, const char* server);
/// The key of a user on a server; empty if there is none. Right only for the keys "0" and "1", and for others
/// as long as they follow each other without a gap up to "9".
void GetUserKey(const char* label, const char* server, const char* user, char (&out)[kTextSize]);
/// The number of labels: one with two users counts once.
int AccountsNumSites();

/// Brings sites whose fields lie flat under their label into the present three levels. For the first start
/// after an update, once: run again, it takes more labels away. Durable all at once.
void AccountsRewriteOldLayout();
