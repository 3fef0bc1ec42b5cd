#include "sites/dialogs/site_menu.h"

#include "sites/store/accounts.h"
#include "sites/store/settings.h"

namespace {

/// Beyond the number of any site.
constexpr int kNewSite = 998;

/// Calls `visit(site)` for each site in the order of the walk until it returns true. True if one did.
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
        if (visit(site)) return true;
      }
    }
  }
  return false;
}

SiteRecord CurrentSite() {
  SiteRecord site;
  _LUserSettingGetString("Settings", "Current", "", site.label);
  _LUserSettingGetString("Settings", "CurrentServer", "", site.server);
  _LUserSettingGetString("Settings", "CurrentUser", "", site.user);
  return site;
}

}  // namespace

bool SiteByIndex(int index, SiteRecord& site) {
  int at = 0;
  return WalkSites([&](const SiteRecord& found) {
    if (at++ != index) return false;
    site = found;
    return true;
  });
}

bool SiteIsCurrent(const SiteRecord& site) {
  const SiteRecord current = CurrentSite();
  return strcmp(site.label, current.label) == 0 && strcmp(site.server, current.server) == 0 &&
         strcmp(site.user, current.user) == 0;
}

void CreateSiteMenu(LPopupMenu& menu, int base) {
  const SiteRecord current = CurrentSite();
  int id = base;
  WalkSites([&](const SiteRecord& site) {
    char text[2 * kTextSize + 4];
    TextFormat(text, "%s / %s", site.label, site.user);
    menu.AppendMenuItem(++id, text);
    const bool isCurrent = strcasecmp(site.label, current.label) == 0 && strcasecmp(site.server, current.server) == 0 &&
                           strcasecmp(site.user, current.user) == 0;
    if (isCurrent) menu.CheckMenuItem(id, true);
    return false;
  });
  if (id > base) menu.AppendMenuSeparator();
  menu.AppendMenuItem(base + kNewSite, "新規サイト ...");
  if (id == base) menu.SetDefaultMenuItem(base + kNewSite);
}
