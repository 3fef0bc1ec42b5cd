// The menu of all sites, and the numbering that it shares with the commands: a site's number is its place in the
// walk of labels, servers and keys.
#pragma once

#include "support/text.h"
#include "support/window/menus.h"

struct SiteRecord {
  char label[kTextSize];
  char server[kTextSize];
  char user[kTextSize];
};

/// The site of that place in the walk, from 0. False if there is none.
bool SiteByIndex(int index, SiteRecord& site);
/// Whether the triple is the current one, exactly.
bool SiteIsCurrent(const SiteRecord& site);
/// Appends a row for each site, with id `base` + its number from 1; the current one has a check mark.
void CreateSiteMenu(LPopupMenu& menu, int base);
