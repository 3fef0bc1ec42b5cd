// The transfer commands of the main window: the pane's operations, in timers and power, with the filter's warning.
#include "app/command_ids.h"
#include "app/main_dialog.h"
#include "client/remote_paths.h"
#include "core/progress_dialog.h"
#include "sites/store/accounts.h"
#include "sites/store/settings.h"
#include "support/program.h"
#include "support/window/alert.h"

namespace {

constexpr unsigned kAfterDownloadMs = 100;
constexpr unsigned kDuringUploadMs = 60000;
constexpr unsigned kAfterUploadMs = 30000;

}  // namespace

/// A filter hides files, but folders are transferred whole. True to go on.
bool MainDialogCore::MayTransferPastFilter(int filterControl, bool folderSelected, const char* question) {
  char filter[kTextSize];
  pView->GetText(filterControl, filter);
  if (!filter[0] || !folderSelected || LUserSettingIsOn("Settings", "FilterWarningOff")) return true;
  LAlert alert(pView);
  alert.strMessage = question;
  TextCopy(alert.szTitle, kProgramName);
  TextCopy(alert.szButton1, "続行");
  TextCopy(alert.szButton2, "キャンセル");
  TextCopy(alert.szCheckBox, "このダイアログを今後表示しない。");
  alert.bShowCheckBox = true;
  const bool goOn = alert._Run() == 1;
  LUserSettingSetString("Settings", "FilterWarningOff", LSettingFromBool(alert.bChecked));
  return goOn;
}

bool MainDialogCore::IsLocalFolderSelected() const {
  LVector<LStringLongTemplate<char>> files;
  localPane.GetFilesFromList(files);
  for (const LStringLongTemplate<char>& file : files) {
    if (LocalIsFolder(file.Text())) return true;
  }
  return false;
}

void MainDialogCore::CmUpload() {
  if (!CheckConnection()) return;
  LVector<LStringLongTemplate<char>> files;
  localPane.GetFilesFromList(files);
  LFTPAccountSettings::UpdateUploadCount(static_cast<int>(files.size));
  if (!MayTransferPastFilter(kLocalFilter, IsLocalFolderSelected(),
                             "ファイルのダウンロードまたはアップロードの際にサブフォルダ内のファイルを削除しません。"
                             "このまま続けますか？")) {
    return;
  }
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
  if (!MayTransferPastFilter(kRemoteFilter, remotePane.IsFolderSelected(),
                             "ディレクトリ表示にフィルタを使用した場合でも、フォルダ内の全てのファイルが転送されます。"
                             "このまま続けますか？")) {
    return;
  }
  remotePane.CmDownloadList(localPane.Folder());
  localPane.CmRefresh();
  remotePane.CmRefresh();
}

namespace {

/// What the dialog of a synchronise run is given.
struct SyncFilesData {
  LVector<LStringLongTemplate<char>>* files;  ///< Filled by the run.
  LExplorerFolderControl* local;
  LFtpList* remote;
};

LProcessResult Process(LProcessInterface& process, SyncFilesData& data) {
  process.SetStatus("ローカルファイルを収集中", 0);
  process.SetProgressIndeterminateOn();
  data.local->GetFiles(*data.files);
  process.SetProgressIndeterminateOff();
  process.SetStatus("同期中", 0);
  data.remote->CmSynchronize(process, data.local->Folder(), *data.files);
  return LProcessResultOk;
}

/// The same for a comparison.
struct CompareFilesData {
  LStringListTemplate<char>* names;  ///< Local ones that differ.
  LExplorerFolderControl* local;
  LFtpList* remote;
};

LProcessResult Process(LProcessInterface& process, CompareFilesData& data) {
  data.remote->CmDirectoryCompare(process, data.local->Folder(), *data.names, true);
  return LProcessResultOk;
}

}  // namespace

void MainDialogCore::CmSynchronize() {
  if (!CheckConnection()) return;
  LVector<LStringLongTemplate<char>> files;
  SyncFilesData job = {&files, &localPane, &remotePane};
  (void)ProcessRunAsDialog(pView, "同期中", job);
  localPane.CmRefresh();
}

void MainDialogCore::CmDirectoryComparison() {
  localPane.CmClearSelection();
  LStringListTemplate<char> names;
  CompareFilesData job = {&names, &localPane, &remotePane};
  if (ProcessRunAsDialog(pView, "ディレクトリを比較中", job) != LProcessResultOk) return;
  for (size_t i = 0; i < names.count; ++i) localPane.CmSetSelection(names.strings[i]);
}

void MainDialog::CmUploadGuarded() {
  if (!remotePane.bConnected) return;
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

void MainDialog::CmSynchronize() {
  SetPowerDownDeny();
  TimerReset(kTimerWatch);
  MainDialogCore::CmSynchronize();
  TimerSet(kTimerWatch, kAfterDownloadMs);
  SetPowerDownAllow();
}

void MainDialog::CmDirectoryComparison() {
  if (!remotePane.bConnected) return;
  TimerReset(kTimerWatch);
  MainDialogCore::CmDirectoryComparison();
  TimerSet(kTimerWatch, kAfterDownloadMs);
}

void MainDialog::EvQueuedNotifyData(intptr_t data) {
  if (data == 0) {
    TimerReset(kTimerWatch);
  } else {
    TimerSet(kTimerWatch, kAfterDownloadMs);
  }
}
