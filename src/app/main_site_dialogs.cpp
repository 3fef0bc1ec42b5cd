// The dialogs of sites that the main window opens, and what it does with their outcome.
#include "app/command_ids.h"
#include "app/main_dialog.h"
#include "sites/dialogs/site_menu.h"

void MainDialogCore::EvShowSiteManagerContextMenu(int atControl) {
  LPopupMenu menu;
  CreateSiteMenu(menu, kCommandSitePropertiesBase);
  menu.DisplayPopupMenu(*pView, atControl);
}

void MainDialogCore::CmSiteManager() {}
void MainDialogCore::CmManageSiteProperties(int /*id*/) {}
bool MainDialogCore::CmSetupWizard() { return false; }
int MainDialogCore::SelectNewSite() { return 0; }
int MainDialogCore::CmQuickConnect(bool /*bForgetOnFail*/, LMacWindow* /*view*/) { return 0; }
int MainDialog::CmQuickConnect(bool bForgetOnFail, LMacWindow* view) {
  return MainDialogCore::CmQuickConnect(bForgetOnFail, view);
}
