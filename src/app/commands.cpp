// What each command of the main window does: the table of ids. The bodies stand with the panes and the connection.
#include "app/command_ids.h"
#include "app/main_dialog.h"
#include "app/menu_tables.h"
#include "client/remote_pane.h"
#include "platform/desktop.h"
#include "support/log.h"

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

void MainDialog::CmShowFilters() {
  bFiltersShown = !bFiltersShown;
  LMainMenu::SetMenuTitle(kCommandShowFilters, bFiltersShown ? kHideFilters : kShowFilters);
  EnableControls();
  RelayoutControls();
}

void MainDialog::EvPower(bool suspend) {
  LFtpList::bPowerSuspendStandBy = suspend;
  if (suspend) ++LFtpList::uStandBys;
  if (LFtpList::pCurrentInterface) LFtpList::pCurrentInterface->bStop = suspend;
}

bool MainDialog::RouteFields(int id) {
  switch (id) {
    case kCommandGo: CmGo(); return true;
    case kLocalPath:
    case kLocalFilter:
    case kRemotePath:
    case kRemoteFilter: iEnterTarget = static_cast<short>(id); return true;
    case kLocalGo:
    case kCommandLocalPathChosen:
      iEnterTarget = 0;
      CmLocalGo();
      return true;
    case kLocalFilterApply: CmSetLocalFilter(false); return true;
    case kLocalFilterRemove: CmSetLocalFilter(true); return true;
    case kRemoteGo:
    case kCommandRemotePathChosen:
      iEnterTarget = 0;
      remotePane.bConnected ? CmRemoteGo() : EvShowConnectContextMenu(kRemoteGo);
      return true;
    case kRemoteFilterApply: CmSetRemoteFilter(false); return true;
    case kRemoteFilterRemove: CmSetRemoteFilter(true); return true;
    case kCommandLocalFocusLost:
      bLocalListFocused = true;
      if (bLocalSelectionDirty) {
        if (remotePane.bConnected) remotePane.CmRefresh();
        bLocalSelectionDirty = false;
      }
      return true;
    case kCommandRemoteClicked: bLocalListFocused = false; return true;
    default: return false;
  }
}

bool MainDialog::RouteLocal(int id) {
  switch (id) {
    case kCommandLocalReload: localPane.CmRefresh(); return true;
    case kCommandLocalRefresh:
    case kCommandMenuLocalRefresh: CmLocalRefresh(); return true;
    case kCommandLocalRename:
    case kCommandMenuLocalRename: CmLocalRename(); return true;
    case kCommandLocalDelete:
    case kCommandMenuLocalDelete: CmLocalDelete(); return true;
    case kCommandLocalNewFolder:
    case kCommandMenuLocalNewFolder: CmLocalNewFolder(); return true;
    case kCommandLocalUp:
    case kCommandMenuLocalUp: CmLocalUp(); break;
    case kCommandLocalBack:
    case kCommandMenuLocalBack: CmLocalBack(); break;
    case kCommandLocalForward:
    case kCommandMenuLocalForward: CmLocalForward(); break;
    case kCommandLocalOpen: localPane.EvDoubleClick(); break;
    default: return false;
  }
  EvLocalPathChanged();
  return true;
}

/// The ways through the remote folders. Without a connection they would make one, to where the last one was.
bool MainDialog::RouteRemoteWays(int id) {
  switch (id) {
    case kCommandRemoteUp:
    case kCommandMenuRemoteUp:
      if (remotePane.bConnected) remotePane.CmUp();
      break;
    case kCommandRemoteBack:
    case kCommandMenuRemoteBack:
      if (remotePane.bConnected) remotePane.CmBack();
      break;
    case kCommandRemoteForward:
    case kCommandMenuRemoteForward:
      if (remotePane.bConnected) remotePane.CmForward();
      break;
    case kCommandRemoteOpen:
      if (remotePane.bConnected) remotePane.EvDoubleClick(true);
      break;
    default: return false;
  }
  EvRemotePathChanged();
  return true;
}

bool MainDialog::RouteRemote(int id) {
  if (RouteRemoteWays(id)) return true;
  switch (id) {
    case kCommandRemoteRefresh:
    case kCommandMenuRemoteRefresh: CmRemoteRefresh(); return true;
    case kCommandRemoteDelete:
    case kCommandMenuRemoteDelete: CmRemoteDelete(); return true;
    case kCommandRemoteRename:
    case kCommandMenuRemoteRename: CmRemoteRename(); return true;
    case kCommandRemoteNewFolder:
    case kCommandMenuRemoteNewFolder: CmRemoteNewFolder(); return true;
    case kCommandPermissions: CmChangePermissions(); return true;
    case kCommandRemoteCopy: CmRemoteCopy(); return true;
    case kCommandRemotePaste: CmRemotePaste(); return true;
    case kCommandRemoteSelectionChanged:
      EndLocalRename();
      EnableControls();
      return true;
    case kCommandRemoteRightClick: remotePane.EvRightClick(); return true;
    case kCommandRemoteHeaderRightClick: remotePane.EvRightClickHeader(); return true;
    default: {
      if (id < kCommandColumnFirst || id > kCommandColumnLast) return false;
      remotePane.EvColumnChange(static_cast<unsigned short>(id));
      return true;
    }
  }
}

bool MainDialog::RouteConnection(int id) {
  switch (id) {
    case kCommandConnect:
    case kCommandConnectMenu:
    case kCommandConnectKey: EvShowConnectContextMenu(kCommandConnect); return true;
    case kCommandSiteMenu: EvShowSiteManagerContextMenu(kCommandSites); return true;
    case kCommandSites: CmSiteManager(); return true;
    case kCommandSetupWizard: CmSetupWizard(); return true;
    case kCommandQuickConnect: CmQuickConnect(true, this); return true;
    case kCommandDisconnect: CmDisconnect(true); return true;
    case kUploadButton:
    case kCommandUpload: CmUploadGuarded(); return true;
    case kDownloadButton:
    case kCommandDownload: CmDownload(); return true;
    case kSynchroniseButton:
    case kCommandSynchronise: CmSynchronize(); return true;
    case kCommandCompare: CmDirectoryComparison(); return true;
    default: return false;
  }
}

bool MainDialog::RouteRest(int id) {
  switch (id) {
    case kCommandReturnKey:
    case kCommandDeleteKey:
    case kCommandRenameKey: return true;
    case kCommandShowHistory: LLogViewLogs(*this); return true;
    case kCommandDeleteInFocus: bLocalListFocused ? CmLocalDelete() : CmRemoteDelete(); return true;
    case kCommandSuspend:
    case kCommandResume: EvPower(id == kCommandSuspend); return true;
    case kCommandShowFilters: CmShowFilters(); return true;
    case kCommandMenuOpens: EnableMainMenu(); return true;
    case kCommandHideWindow: LMainWindow::Command(id, 0); return true;
    default: return false;
  }
}

void MainDialog::Command(int id, intptr_t data) {
  if (id >= kCommandFromLocalList && id < 2 * kCommandFromLocalList) {
    if (localPane.Command(id - kCommandFromLocalList)) return;
    id -= kCommandFromLocalList;
  }
  if (RouteFields(id) || RouteLocal(id) || RouteRemote(id) || RouteConnection(id) || RouteRest(id)) return;
  if (id > kCommandSitePropertiesBase && id <= kCommandNewSiteProperties) {
    CmManageSiteProperties(id);
  } else if (id > kCommandSiteBase && id <= kCommandNewSite) {
    CmSelectSite(id);
  } else if (id < kCommandRemoteBookmarkFirst || id > kCommandLocalBookmarkLast) {
    EndLocalRename();
  }
  LMainWindow::Command(id, data);
}
