#include "sites/dialogs/site_walk.h"

#include <strings.h>

#include "sites/store/settings.h"

SiteRecord CurrentSite() {
  SiteRecord site;
  _LUserSettingGetString("Settings", "Current", "", site.label);
  _LUserSettingGetString("Settings", "CurrentServer", "", site.server);
  _LUserSettingGetString("Settings", "CurrentUser", "", site.user);
  return site;
}

bool SiteMatches(const SiteRecord& current, const char* label, const char* server, const char* user) {
  return strcasecmp(label, current.label) == 0 && strcasecmp(server, current.server) == 0 &&
         strcasecmp(user, current.user) == 0;
}

bool SiteLabelExists(const char* label) {
  const LUserSettingsListTemplate<LSharedSettingsRecord> labels(kAccountsSection);
  for (AccountIterator it(labels); !it.IsAtEnd(); it.Advance()) {
    if (strcasecmp(it.szName, label) == 0) return true;
  }
  return false;
}

AccountList AccountsOpenLabel(const char* label) {
  const LUserSettingsListTemplate<LSharedSettingsRecord> labels(kAccountsSection);
  LSharedSettingsRecord record;
  labels.Open(record, label);
  return AccountList(record);
}

namespace {

bool IsEmptyList(const AccountList& list) { return AccountIterator(list).IsAtEnd(); }

}  // namespace

void RemoveEmptySite(const char* label, const char* server) {
  const AccountList keys = AccountsOpenServer(label, server);
  if (IsEmptyList(keys)) keys.DeleteRecord();
  const AccountList servers = AccountsOpenLabel(label);
  if (IsEmptyList(servers)) servers.DeleteRecord();
}

bool SiteFitsStore(const char* label, const char* server) {
  // The longest path of a site that is itself a record: the list of bookmarks.
  constexpr const char* kLongestBelow = "9999/RemoteBookmarks/";
  return strlen(kAccountsSection) + strlen(label) + strlen(server) + strlen(kLongestBelow) + strlen("///") < kTextSize;
}
