// What each command of the main window does: one table of ids, and the short bodies behind it.
#include "app/command_ids.h"
#include "app/main_dialog.h"
#include "platform/desktop.h"
#include "sites/store/accounts.h"
#include "sites/store/settings.h"
#include "support/files.h"
#include "support/log.h"
#include "support/strings.h"
#include "support/window/alert.h"

namespace {

constexpr unsigned kAfterDownloadMs = 100;
constexpr unsigned kDuringUploadMs = 60000;
constexpr unsigned kAfterUploadMs = 30000;
constexpr int kPathEntries = 10;

}  // namespace

// Panes

void MainDialogCore::EvLocalPathChanged() {
  const char* path = localPane.Folder();
  if (!path[0]) return;
  const int known = pView->CBFindString(kLocalPath, path);
  if (known < 0) {
    if (pView->CBGetCount(kLocalPath) >= kPathEntries) pView->CBDeleteItem(kLocalPath, kPathEntries - 1);
    pView->CBAddString(kLocalPath, path);
  } else {
    pView->CBDeleteItem(kLocalPath, known);
    pView->CBInsertString(kLocalPath, 0, path);
  }
  pView->CBSetText(kLocalPath, path);
  pView->EnableControls();
  if (remotePane.bConnected && !bQuickConnected) {
    LFTPAccountSettings::StoreRecentDirectories(path, remotePane.szCurrentDirectory);
  }
}

void MainDialogCore::EvRemotePathChanged() {
  if (bRemoteSelectionDirty) {
    pView->LVSelectNone(kRemoteList);
    bRemoteSelectionDirty = false;
  }
  const char* path = remotePane.szCurrentDirectory;
  if (remotePane.bConnected) {
    const int known = pView->CBFindString(kRemotePath, path);
    if (known >= 0) pView->CBDeleteItem(kRemotePath, known);
    pView->CBInsertString(kRemotePath, 0, path);
    pView->CBSetText(kRemotePath, path);
    if (!bQuickConnected) LFTPAccountSettings::StoreRecentDirectories(localPane.Folder(), path);
  }
  pView->EnableControls();
}

void MainDialogCore::CmLocalGo() {
  char path[kTextSize];
  pView->GetText(kLocalPath, path);
  if (!localPane.CmOpenFolder(path)) {
    LAlertWithButtonText::DisplayOkError(pView, "パスが正しくありません。", "Orvane FTPファイル転送ソフト", "OK");
    return;
  }
  EvLocalPathChanged();
}

void MainDialogCore::CmRemoteGo() {
  char path[kTextSize];
  pView->GetText(kRemotePath, path);
  if (!CheckConnection()) return;
  remotePane.CmGo(path);
  EvRemotePathChanged();
}

void MainDialogCore::CmSetLocalFilter(bool remove) {
  if (remove) pView->SetText(kLocalFilter, "");
  pView->GetTextAndTrim(kLocalFilter, localPane.szNameFilter);
  LCharsetsLowerCase(localPane.szNameFilter);
  localPane.CmRefresh();
}

void MainDialogCore::CmSetRemoteFilter(bool remove) {
  if (remove) pView->SetText(kRemoteFilter, "");
  pView->GetTextAndTrim(kRemoteFilter, remotePane.szFilter);
  LCharsetsLowerCase(remotePane.szFilter);
  if (CheckConnection()) remotePane.CmRefresh();
}

// Transfers

void MainDialogCore::CmUpload() {
  if (!CheckConnection()) return;
  LVector<LStringLongTemplate<char>> files;
  localPane.GetFilesFromList(files);
  LFTPAccountSettings::UpdateUploadCount(static_cast<int>(files.size));
  if (files.size == 0) return;
  if (remotePane.CmUploadList(files, localPane.Folder()) != LProcessResultOk) {
    CmDisconnect(false);
    CmConnect(false);
  } else {
    LFTPAccountSettings::UpdateRunsWithUploads();
  }
}

void MainDialogCore::CmDownload() {
  if (!CheckConnection()) return;
  remotePane.CmDownloadList(localPane.Folder());
  localPane.CmRefresh();
  remotePane.CmRefresh();
}

void MainDialog::CmUploadGuarded() {
  TimerReset(kTimerWatch);
  TimerSet(kTimerWatch, kDuringUploadMs);
  CmUpload();
  TimerReset(kTimerWatch);
  TimerSet(kTimerWatch, kAfterUploadMs);
}

void MainDialog::CmUpload() {
  SetPowerDownDeny();
  if (remotePane.bConnected && LVGetSelCount(kLocalList) > 0) {
    TimerReset(kTimerWatch);
    MainDialogCore::CmUpload();
    TimerSet(kTimerWatch, kAfterUploadMs);
  }
  InitStatus();
  EvRemotePathChanged();
  SetPowerDownAllow();
}

void MainDialog::CmDownload() {
  SetPowerDownDeny();
  if (remotePane.bConnected && LVGetSelCount(kRemoteList) > 0) {
    TimerReset(kTimerWatch);
    MainDialogCore::CmDownload();
    TimerSet(kTimerWatch, kAfterDownloadMs);
  }
  SetPowerDownAllow();
}

// Routing

void MainDialog::CmGo() {
  const short target = iEnterTarget;
  iEnterTarget = 0;
  switch (target) {
    case kLocalPath: CmLocalGo(); break;
    case kLocalFilter: CmSetLocalFilter(false); break;
    case kRemotePath: CmRemoteGo(); break;
    case kRemoteFilter: CmSetRemoteFilter(false); break;
    default: break;
  }
}

/// Commands that move one of the panes.
bool MainDialog::RoutePaneCommand(int id) {
  switch (id) {
    case kCommandLocalReload:
    case kCommandLocalRefresh: localPane.CmRefresh(); return true;
    case kCommandLocalUp: localPane.CmUp(); break;
    case kCommandLocalBack: localPane.CmBack(); break;
    case kCommandLocalForward: localPane.CmForward(); break;
    case kCommandLocalOpen: localPane.EvDoubleClick(); break;
    case kCommandRemoteRefresh:
      if (CheckConnection()) remotePane.CmRefresh();
      EvRemotePathChanged();
      return true;
    case kCommandRemoteUp:
      remotePane.CmUp();
      EvRemotePathChanged();
      return true;
    case kCommandRemoteBack:
      remotePane.CmBack();
      EvRemotePathChanged();
      return true;
    case kCommandRemoteForward:
      remotePane.CmForward();
      EvRemotePathChanged();
      return true;
    case kCommandRemoteOpen:
      remotePane.EvDoubleClick(true);
      EvRemotePathChanged();
      return true;
    default: return false;
  }
  EvLocalPathChanged();
  return true;
}

void MainDialog::Command(int id, intptr_t data) {
  if (RoutePaneCommand(id)) return;
  if (id >= kCommandSiteFirst && id <= kCommandSiteLast) {
    CmSelectSite(id);
    return;
  }
  switch (id) {
    case kCommandGo: CmGo(); break;
    case kLocalPath:
    case kLocalFilter:
    case kRemotePath:
    case kRemoteFilter: iEnterTarget = static_cast<short>(id); break;
    case kLocalGo:
    case kCommandLocalPathChosen: CmLocalGo(); break;
    case kLocalFilterApply: CmSetLocalFilter(false); break;
    case kLocalFilterRemove: CmSetLocalFilter(true); break;
    case kRemoteGo:
    case kCommandRemotePathChosen:
      if (remotePane.bConnected) {
        CmRemoteGo();
      } else {
        EvShowConnectContextMenu(kRemoteGo);
      }
      break;
    case kRemoteFilterApply: CmSetRemoteFilter(false); break;
    case kRemoteFilterRemove: CmSetRemoteFilter(true); break;
    case kCommandLocalFocusLost: bLocalListFocused = true; break;
    case kCommandRemoteClicked: bLocalListFocused = false; break;
    case kCommandConnect:
    case kCommandConnectMenu: EvShowConnectContextMenu(0); break;
    case kUploadButton: CmUploadGuarded(); break;
    case kDownloadButton: CmDownload(); break;
    case LExplorerFolderControl::kSelectionChanged: localPane.EvSelectionChanged(); break;
    case LExplorerFolderControl::kRightClick: break;
    case kCommandRemoteSelectionChanged: EnableControls(); break;
    case kCommandDisconnect: CmDisconnect(true); break;
    case kCommandShowHistory: platform::DesktopShowFolder(gLLog.Folder()); break;
    case kCommandSuspend:
    case kCommandResume:
      LFtpList::bPowerSuspendStandBy = id == kCommandSuspend;
      if (LFtpList::pCurrentInterface) LFtpList::pCurrentInterface->bStop = id == kCommandSuspend;
      break;
    default: LMainWindow::Command(id, data);
  }
}
