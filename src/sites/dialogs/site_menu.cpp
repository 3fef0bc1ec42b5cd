#include "sites/dialogs/site_menu.h"

namespace {

/// Beyond the number of any site.
constexpr int kNewSite = 998;

}  // namespace

bool SiteByIndex(int index, SiteRecord& site) {
  int at = 0;
  return WalkSites([&](const SiteRecord& found, const LSharedSettingsRecord&) {
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
  WalkSites([&](const SiteRecord& site, const LSharedSettingsRecord&) {
    char text[2 * kTextSize + 4];
    TextFormat(text, "%s / %s", site.label, site.user);
    menu.AppendMenuItem(++id, text);
    if (SiteMatches(current, site.label, site.server, site.user)) menu.CheckMenuItem(id, true);
    return false;
  });
  if (id > base) menu.AppendMenuSeparator();
  menu.AppendMenuItem(base + kNewSite, "新規サイト ...");
  if (id == base) menu.SetDefaultMenuItem(base + kNewSite);
}
