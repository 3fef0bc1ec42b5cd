// The menu of all sites, and the numbering that it shares with the commands: a site's number is its place in the
// walk of labels, servers and keys.
#pragma once

#include "sites/dialogs/site_walk.h"
#include "support/window/menus.h"

/// The site of that place in the walk, from 0. False if there is none.
bool SiteByIndex(int index, SiteRecord& site);
/// Whether the triple is the current one, exactly.
bool SiteIsCurrent(const SiteRecord& site);
/// Appends a row for each site, with id `base` + its number from 1, the current one with a check mark; and the row for
/// a new site with id `base` + 998, which is the default one while there is no other.
void CreateSiteMenu(LPopupMenu& menu, int base);
