// How the sheet of a site writes to the store: where the edited record goes, and what goes into it. Main thread.
#pragma once

#include "sites/store/accounts.h"
#include "support/strings.h"

/// The entries of the pull-down for the protection of the connection, in its order.
enum SiteProtection : int {
  kProtectionNone = 0,
  kProtectionExplicit = 1,
  kProtectionImplicit = 2,
  kProtectionSFTP = 3
};

/// What identifies the edited site before and after.
struct SiteEdit {
  const char* oldLabel;   ///< Empty for a new site.
  const char* oldServer;  ///< Not read for a new site.
  const char* oldUser;    ///< The same.
  const char* label;
  const char* server;
  const char* user;  ///< As typed; may be empty.
  bool IsNew() const { return oldLabel[0] == 0; }
};

/// The bookmarks of a record, kept while it is made anew.
class SiteBookmarks {
 public:
  void Read(const LSharedSettingsRecord& record);
  /// Also makes the markers of the two lists.
  void Write(const LSharedSettingsRecord& record) const;

 private:
  LStringListTemplate<char> local, remote;
};

/// Points `record` at the existing site of these names; at nothing if there is none.
void FindSite(LSharedSettingsRecord& record, const char* label, const char* server, const char* user);

/// Clears the new label and moves `record`, which stands on the edited site, to where it is to lie. `user` is the name
/// to write.
void PlaceSite(LSharedSettingsRecord& record, const SiteEdit& edit, char (&user)[kTextSize]);

/// The fields of the sheet.
struct SiteFields {
  char szServer[kTextSize];
  char szUserName[kTextSize];
  char szPassword[kTextSize];
  char szDirectory[kTextSize];
  char szLocalDirectory[kTextSize];
  bool bRemember;
  bool bUseRecentRemote;
  bool bUseRecentLocal;
  int iProtection;  ///< SiteProtection.
};
void WriteSite(const LSharedSettingsRecord& record, const SiteFields& fields);
