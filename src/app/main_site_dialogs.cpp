// The dialogs of sites that the main window opens, and what it does with their outcome.
#include "app/command_ids.h"
#include "app/main_dialog.h"
#include "sites/dialogs/quick_connect.h"
#include "sites/dialogs/site_manager.h"
#include "sites/dialogs/site_menu.h"
#include "sites/dialogs/site_properties.h"
#include "sites/store/settings.h"

namespace {

constexpr int kPlainRetries = 3;
constexpr unsigned kSoonMs = 100;

/// The place of a label among all labels, without regard to case; -1 if it is not there.
int OrdinalOfLabel(const char* label) {
  const LUserSettingsListTemplate<LSharedSettingsRecord> labels(kAccountsSection);
  int ordinal = 0;
  for (AccountIterator it(labels); !it.IsAtEnd(); it.Advance(), ++ordinal) {
    if (strcasecmp(it.szName, label) == 0) return ordinal;
  }
  return -1;
}

/// The retries are in the clear.
bool ConnectQuickly(LFtpList& pane, const LQuickConnectDlg& quick, const char* directory) {
  if (pane.CmConnect(quick.szServer, quick.szUser, quick.szPassword, directory, quick.bUseSSL, quick.bImplicit, true)) {
    return true;
  }
  if (!LUserSettingIsOn("Settings", "FtpRetry") || !pane.bReconnectArmed) return false;
  for (int i = 0; i < kPlainRetries; ++i) {
    if (pane.CmConnect(quick.szServer, quick.szUser, quick.szPassword, directory, false, false, true)) return true;
  }
  return false;
}

}  // namespace

void MainDialogCore::CmSiteManager() {
  SiteManagerDlg dialog(*this);
  if (dialog.Open(pView)) {
    CmSelectSite(kCommandSiteFirst + dialog.iSelected);
  } else {
    EvUpdateMainMenu();
  }
}

void MainDialogCore::EvShowSiteManagerContextMenu(int atControl) {
  LPopupMenu menu;
  CreateSiteMenu(menu, kCommandSitePropertiesBase);
  menu.DisplayPopupMenu(*pView, atControl);
}

void MainDialogCore::CmManageSiteProperties(int id) {
  SiteRecord site = {};
  if (id != kCommandNewSiteProperties && !SiteByIndex(id - kCommandSitePropertiesBase - 1, site)) return;
  SitePropertiesDlg(pView, site.label, site.server, site.user);
  EvUpdateMainMenu();
}

/// The number of labels stands for the place of the new site: right while each label has one site, and the new one is
/// the last.
bool MainDialogCore::CmSetupWizard() {
  const int sites = NumSites();
  if (!SitePropertiesDlg(pView, "", "", "")) return false;
  EvUpdateMainMenu();
  CmSelectSite(kCommandSiteFirst + sites);
  return true;
}

/// The place of the label among the labels stands for that of the site, as in the setup.
int MainDialogCore::SelectNewSite() {
  const char* label = SitePropertiesDlg(pView, "", "", "");
  if (!label) return 0;
  EvUpdateMainMenu();
  if (!DisconnectWithMessage(false)) return 0;
  const int ordinal = OrdinalOfLabel(label);
  if (ordinal >= 0) return CmSelectSite(kCommandSiteFirst + ordinal);
  CmConnect(true);
  return 0;
}

int MainDialogCore::CmQuickConnect(bool bForgetOnFail, LMacWindow* view) {
  LQuickConnectDlg quick;
  if (!quick.Open(view)) return 0;
  char directory[kTextSize];
  pView->GetText(kRemotePath, directory);
  if (remotePane.bConnected && !DisconnectWithMessage(false)) return 0;
  LUserSettingSetString("Settings", "Current", quick.szLabel);
  LUserSettingSetString("Settings", "CurrentServer", quick.szServer);
  LUserSettingSetString("Settings", "CurrentUser", quick.szUser);
  const bool connected = ConnectQuickly(remotePane, quick, directory);
  pView->CBSetCurSel(kRemotePath, -1);
  if (!connected) return FailConnect(bForgetOnFail);
  bQuickSession = !quick.bSaved;
  return 1;
}

/// The watch is not to touch the session while the connection is being made.
int MainDialog::CmQuickConnect(bool bForgetOnFail, LMacWindow* view) {
  const bool wasWatched = IsTimerSet(kTimerWatch);
  TimerReset(kTimerWatch);
  if (!MainDialogCore::CmQuickConnect(bForgetOnFail, view)) {
    if (wasWatched && remotePane.bConnected) TimerSet(kTimerWatch, uWatchMs);
    return 0;
  }
  TimerSet(kTimerWatch, kSoonMs);
  bQuickConnected = true;
  EvRemotePathChanged();
  return 1;
}
