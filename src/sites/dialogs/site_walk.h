// The walk over all sites, label by label, server by server, user by user, each in ascending order without regard to
// case. A site's place in it, from 0, is its number in the site menus and in the list of the site manager. Any thread.
#pragma once

#include "sites/store/accounts.h"

/// A site by the names under which it lies in the store.
struct SiteRecord {
  char label[kTextSize];
  char server[kTextSize];
  char user[kTextSize];
};

/// Calls `visit(site, record)` for each site until it returns true. True if one did.
template <typename Visit>
bool WalkSites(Visit visit) {
  const LUserSettingsListTemplate<LSharedSettingsRecord> labels(kAccountsSection);
  for (AccountIterator label(labels); !label.IsAtEnd(); label.Advance()) {
    const AccountList servers(label.record);
    for (AccountIterator server(servers); !server.IsAtEnd(); server.Advance()) {
      const AccountList keys(server.record);
      for (AccountIterator key(keys); !key.IsAtEnd(); key.Advance()) {
        SiteRecord site;
        TextCopy(site.label, label.szName);
        TextCopy(site.server, server.szName);
        key.record.GetString("UserName", site.user);
        if (visit(site, key.record)) return true;
      }
    }
  }
  return false;
}

/// The triple of the current site; each part may be empty.
SiteRecord CurrentSite();
/// Whether it is the current one, without regard to case.
bool SiteMatches(const SiteRecord& current, const char* label, const char* server, const char* user);
/// Whether a label of that name exists, without regard to case.
bool SiteLabelExists(const char* label);
/// The records of a label; of an empty one, or one that is not there, none.
AccountList AccountsOpenLabel(const char* label);
/// Removes the record's server and label if nothing is left under them.
void RemoveEmptySite(const char* label, const char* server);
/// False if a record of these names has no room for its path and the lists under it: it would lie elsewhere.
bool SiteFitsStore(const char* label, const char* server);
