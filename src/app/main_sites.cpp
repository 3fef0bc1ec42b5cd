// How many sites there are, and the menus of the main window that list them.
#include "app/command_ids.h"
#include "app/main_dialog.h"
#include "app/menu_tables.h"
#include "sites/dialogs/site_menu.h"
#include "sites/store/accounts.h"

int MainDialogCore::NumSites() { return AccountsNumSites(); }

void MainDialogCore::EvShowConnectContextMenu(int atControl) {
  LPopupMenu menu;
  CreateSiteMenu(menu, kCommandSiteBase);
  menu.DisplayPopupMenu(*pView, atControl);
}

void MainDialogCore::EvUpdateMainMenu() {
  LPopupMenu menu;
  CreateSiteMenu(menu, kCommandSiteBase);
  LMainMenu::FillSubmenu(kConnectMenuTitle, menu);
}
