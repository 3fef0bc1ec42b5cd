// What the main window does with its panes: the path boxes, the filters, and the commands on files of either side.
#include "app/command_ids.h"
#include "app/main_dialog.h"
#include "app/new_folder_dialog.h"
#include "platform/file_io.h"
#include "sites/store/accounts.h"
#include "support/files.h"
#include "support/strings.h"
#include "support/window/alert.h"

namespace {

constexpr int kPathEntries = 10;
constexpr unsigned kAfterJobMs = 100;

}  // namespace

// Path boxes and filters

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
    pView->CBSetCurSel(kLocalPath, 0);
  }
  pView->CBSetText(kLocalPath, path);
  pView->EnableControls();
  if (remotePane.bConnected && !bQuickSession) {
    LFTPAccountSettings::StoreRecentDirectories(path, remotePane.szCurrentDirectory);
  }
}

void MainDialogCore::EvRemotePathChanged() {
  if (bRemoteSelectionDirty) {
    pView->LVSelectNone(kRemoteList);
    bRemoteSelectionDirty = false;
  }
  // Without a connection there is no directory: the next one would start in that of the last.
  if (remotePane.bConnected) {
    const char* path = remotePane.szCurrentDirectory;
    const int known = pView->CBFindString(kRemotePath, path);
    if (known >= 0) pView->CBDeleteItem(kRemotePath, known);
    pView->CBInsertString(kRemotePath, 0, path);
    pView->CBSetText(kRemotePath, path);
    if (!bQuickSession) LFTPAccountSettings::StoreRecentDirectories(localPane.Folder(), path);
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

// Local pane

void MainDialogCore::EndLocalRename() {
  if (!bLocalSelectionDirty) return;
  bLocalSelectionDirty = false;
  localPane.CmClearSelection();
}

void MainDialogCore::CmLocalRefresh() {
  EndLocalRename();
  localPane.CmRefresh();
}

void MainDialogCore::CmLocalUp() {
  EndLocalRename();
  localPane.CmUp();
}

void MainDialogCore::CmLocalBack() {
  EndLocalRename();
  localPane.CmBack();
}

void MainDialogCore::CmLocalForward() {
  EndLocalRename();
  localPane.CmForward();
}

void MainDialogCore::CmLocalRename() {
  if (pView->LVGetSelCount(kLocalList) != 1) return;
  bLocalSelectionDirty = true;
  localPane.CmRename();
}

void MainDialogCore::CmLocalDelete() {
  localPane.CmDelete();
  localPane.CmRefresh();
  localPane.CmClearSelection();
}

void MainDialogCore::CmLocalNewFolder() {
  char name[kTextSize];
  if (!NewFolderDlg(pView, name)) return;
  char path[kTextSize];
  LFile::_MakeFilePath(path, localPane.Folder(), name, "");
  if (LFile::TestFileExists(path)) {
    LAlertWithButtonText::DisplayOkError(pView, "フォルダの作成ができませんでした、名前を変えて再度作成してください",
                                         "フォルダ作成失敗", "OK");
    return;
  }
  (void)platform::FileMakeFolder(path, 0777);  // The reload shows what became of it.
  localPane.CmRefresh();
}

// Remote pane

void MainDialogCore::CmRemoteRefresh() {
  if (!CheckConnection()) return;
  remotePane.CmRefresh();
  EvRemotePathChanged();
}

void MainDialogCore::CmRemoteRename() {
  if (pView->LVGetSelCount(kRemoteList) != 1 || !CheckConnection()) return;
  pView->LVSelectNone(kLocalList);
  bRemoteSelectionDirty = true;
  remotePane.CmRename();
}

void MainDialogCore::CmRemoteDelete() {
  if (CheckConnection()) remotePane.CmDelete();
}

void MainDialogCore::CmRemoteNewFolder() {
  if (!CheckConnection()) return;
  char name[kTextSize];
  // The connection may have gone while the dialog was open.
  if (NewFolderDlg(pView, name) && remotePane.bConnected) remotePane.CmNewFolder(name);
}

void MainDialog::CmRemoteDelete() {
  if (!remotePane.bConnected) return;
  TimerReset(kTimerWatch);
  MainDialogCore::CmRemoteDelete();
  TimerSet(kTimerWatch, kAfterJobMs);
}

/// The watch is not to come between the questions of the job.
void MainDialog::CmChangePermissions() {
  if (!remotePane.bConnected) return;
  TimerReset(kTimerWatch);
  remotePane.CmChangePermissions();
  TimerSet(kTimerWatch, kAfterJobMs);
}

void MainDialog::EvLVLabelEditBegin(int /*row*/) { remotePane.EvListEditStart(); }

void MainDialog::EvLVLabelEditFinish(int row, const char* text) { remotePane.EvListEditComplete(row, text); }
