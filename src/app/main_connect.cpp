// The main window's connection: the current site, leaving it, and the watch that reconnects.
#include "app/command_ids.h"
#include "app/main_dialog.h"
#include "sites/dialogs/site_menu.h"
#include "sites/store/accounts.h"
#include "sites/store/settings.h"
#include "support/log.h"
#include "support/window/alert.h"
#include "support/window/menus.h"

namespace {

constexpr int kRetries = 3;
constexpr int kMaxReconnects = 5;
constexpr unsigned kIconMs = 1000;

}  // namespace

unsigned MainDialog::uWatchMs = 30000;

// MainDialogCore

void MainDialogCore::ForgetCurrentSite() {
  for (const char* key : {"Current", "CurrentServer", "CurrentUser"}) LUserSettingDeleteItem("Settings", key);
}

int MainDialogCore::FailConnect(bool bForgetOnFail) {
  if (bForgetOnFail) ForgetCurrentSite();
  EvUpdateMainMenu();
  return 0;
}

/// The first connection of a run is never retried, and the retries are in the clear.
bool MainDialogCore::ConnectWithRetries(const LFTPAccountSettings& site, const char* directory) {
  if (remotePane.CmConnect(site.szServer, site.szUserName, site.szPassword, directory, site.bUseSSL, site.bImplicit,
                           true)) {
    return true;
  }
  if (!LUserSettingIsOn("Settings", "FtpRetry") || !remotePane.bReconnectArmed) return false;
  for (int i = 0; i < kRetries; ++i) {
    if (remotePane.CmConnect(site.szServer, site.szUserName, site.szPassword, directory, false, false, true))
      return true;
  }
  return false;
}

/// Without a server in its record the site is the one that the settings name.
bool MainDialogCore::ConnectToSite(const LFTPAccountSettings& site) {
  char directory[kTextSize];
  pView->GetText(kRemotePath, directory);
  if (!directory[0]) TextCopy(directory, site.bUseRecentRemote ? site.szRecentRemote : site.szDirectory);
  bool connected;
  if (site.szServer[0]) {
    connected = ConnectWithRetries(site, directory);
  } else {
    char server[kTextSize], user[kTextSize];
    _LUserSettingGetString("Settings", "CurrentServer", "", server);
    _LUserSettingGetString("Settings", "CurrentUser", "", user);
    connected = remotePane.CmConnect(server, user, "", directory, false, false, true);
  }
  pView->CBSetCurSel(kRemotePath, -1);
  return connected;
}

int MainDialogCore::CmConnect(bool bForgetOnFail) {
  char label[kTextSize], user[kTextSize];
  _LUserSettingGetString("Settings", "Current", "", label);
  if (!label[0]) {
    if (NumSites() == 0) {
      if (CmSelectSite(kCommandNewSiteProperties) && remotePane.bConnected) return 1;
    } else {
      EvShowConnectContextMenu(kCommandConnect);
    }
    _LUserSettingGetString("Settings", "Current", "", label);
    if (label[0]) return 1;
  }
  _LUserSettingGetString("Settings", "CurrentUser", "", user);
  LFTPAccountSettings site(label, user);
  if (!site.Load()) return 0;
  if (!ConnectToSite(site)) return FailConnect(bForgetOnFail);
  localPane.CmOpenFolder(site.bUseRecentLocal ? site.szRecentLocal : site.szLocalDirectory);
  bQuickSession = false;
  EvUpdateMainMenu();
  return 1;
}

void MainDialogCore::_CmDisconnect() {
  remotePane.CmDisconnect();
  pView->CBClear(kRemotePath);
  pView->CBSetCurSel(kRemotePath, -1);
  EvUpdateMainMenu();
}

int MainDialogCore::CmDisconnect(bool bForget) {
  _CmDisconnect();
  if (bForget) ForgetCurrentSite();
  EvUpdateMainMenu();
  return 1;
}

int MainDialogCore::DisconnectWithMessage(bool bReconnect) {
  if (!remotePane.bConnected) return 1;
  char label[kTextSize];
  char user[kTextSize];
  _LUserSettingGetString("Settings", "Current", "", label);
  _LUserSettingGetString("Settings", "CurrentUser", "", user);
  LStringLongTemplate<char> question;
  if (bReconnect) {
    question.sprintf("現在%sに接続されています。再接続しますか？", label);
  } else {
    question.sprintf("%sに%sとして接続されています。\n切断してもよろしいですか？", label, user);
  }
  const bool yes =
      bReconnect ? LAlertWithButtonText::DisplayOkCancel(pView, question, "再接続する", "再接続する", "キャンセル")
                 : LAlertWithButtonText::DisplayOkCancel(pView, question, "切断確認", "切断", "キャンセル");
  if (yes) CmDisconnect(false);
  EvUpdateMainMenu();
  return yes ? 1 : 0;
}

int MainDialogCore::CmSelectSite(int id) {
  if (id == kCommandNewSite || id == kCommandNewSiteProperties) return SelectNewSite();
  SiteRecord site;
  if (!SiteByIndex(id - kCommandSiteFirst, site)) return 0;
  if (remotePane.bConnected && !DisconnectWithMessage(SiteIsCurrent(site))) return 0;
  LUserSettingSetString("Settings", "Current", site.label);
  LUserSettingSetString("Settings", "CurrentServer", site.server);
  LUserSettingSetString("Settings", "CurrentUser", site.user);
  if (CmConnect(true)) EvRemotePathChanged();
  return 1;
}

bool MainDialogCore::CheckConnection() {
  remotePane.EvCheckConnection();
  if (remotePane.bConnected) return true;
  CmDisconnect(false);
  return false;
}

// MainDialog: the same with the window's timers

int MainDialog::CmConnect(bool bForgetOnFail) {
  TimerReset(kTimerWatch);
  const int connected = MainDialogCore::CmConnect(bForgetOnFail);
  InitStatus();
  if (connected) TimerSet(kTimerWatch, uWatchMs);
  return connected;
}

int MainDialog::CmDisconnect(bool bForget) {
  MainDialogCore::CmDisconnect(bForget);
  bQuickConnected = false;
  InitStatus();
  TimerReset(kTimerWatch);
  return 1;
}

void MainDialog::InitStatus() {
  EnableControls();
  if (!remotePane.bConnected) {
    statusBar.StatusBarSetText("FTPサイトに接続されていません", 1);
    statusBar.StatusBarSetIcon(iconDisconnected, 1);
    return;
  }
  char label[kTextSize], server[kTextSize], user[kTextSize];
  _LUserSettingGetString("Settings", "Current", "", label);
  _LUserSettingGetString("Settings", "CurrentServer", "", server);
  _LUserSettingGetString("Settings", "CurrentUser", "", user);
  char status[3 * kTextSize];
  TextFormat(status, "%s (%s)に%sとして接続中", label, server, user);
  statusBar.StatusBarSetText(status, 1);
  TimerSet(kTimerConnectIcon, 0);
}

void MainDialog::EvConnectIcon() {
  if (!remotePane.bConnected) return;
  bConnectIconPhase = !bConnectIconPhase;
  statusBar.StatusBarSetIcon(iconConnected[bConnectIconPhase ? 1 : 0], 1);
  TimerSet(kTimerConnectIcon, kIconMs);
}

void MainDialog::EvWatch() {
  remotePane.EvCheckConnection();
  if (!remotePane.bConnected) CmDisconnect(false);
  InitStatus();
  if (remotePane.bConnected) {
    TimerSet(kTimerWatch, uWatchMs);
    iReconnectCount = 0;
    remotePane.bReconnectArmed = true;
    return;
  }
  if (iReconnectCount >= kMaxReconnects || !remotePane.bReconnectArmed) return;
  ++iReconnectCount;
  LOGF("サイトに再接続中（現在：%i、全体：%i）", iReconnectCount, kMaxReconnects);
  CmConnect(false);
  if (!remotePane.bReconnectArmed || remotePane.bConnected) return;
  // The line says 10 seconds and the timer waits 30: both are so.
  LOGF("以下のサイトに再接続開始まで%i秒。", 10);
  TimerSet(kTimerWatch, uWatchMs);
}

void MainDialog::EvTimer(int id) {
  switch (id) {
    case kTimerStartup:
      CmStartup();
      iReconnectCount = 0;
      break;
    case kTimerConnectIcon: EvConnectIcon(); break;
    case kTimerWatch: EvWatch(); break;
    case kTimerEnable:
      EnableControls();
      EnableMainMenu();
      break;
    default: break;
  }
}
