// The command that sends local files and folders to the directory that the remote pane shows.
#include "client/remote_pane.h"
#include "client/remote_paths.h"
#include "client/transfer_lists.h"
#include "core/progress_dialog.h"
#include "support/log.h"
#include "support/window/alert.h"

namespace {

/// After a cancel: whether to take back what the run has made on the server.
void OfferCleanUp(LFtpList& pane, FtpUploadFileList& list) {
  if (list.uploadedNames.count == 0 && list.createdFolders.IsEmpty()) return;
  const bool agreed =
      LAlertWithButtonText::DisplayOkCancel(pane.Window(), "アップロード済みのファイルおよびフォルダを削除しますか？",
                                            "Orvane FTPファイル転送ソフト", "削除", "キャンセル");
  if (!agreed) return;
  FtpUploadFileListCleanup cleanup = {&list};
  if (ProcessRunAsDialog(pane.Window(), "ファイルとフォルダを削除中", cleanup) == LProcessResultOk) {
    LOG("ファイルが削除されました ");
  }
}

void ReportResult(LFtpList& pane, FtpUploadFileList& list, LProcessResult result) {
  if (result != LProcessResultOk && !pane.Ftp.IsValid()) LOGERROR("サーバーが切断されました");
  if (result == LProcessResultStopped) {
    LOGERROR("ユーザーがアップロードを中止しました");
    OfferCleanUp(pane, list);
  } else if (result != LProcessResultOk) {
    LOGERROR("ファイル一覧をアップロードできません");
  }
  for (const LXfrUploadItem* item = list.files.first; item; item = item->next) {
    if (item->file.error[0]) LOGERROR(item->file.error);
  }
}

}  // namespace

LProcessResult LFtpList::CmUploadList(const LVector<LStringLongTemplate<char>>& files, const char* localFolder) {
  if (!pWindow) return LProcessResultFailed;
  bOverwriteYes = bOverwriteForAll = false;
  char current[kTextSize] = "";
  const int row = pWindow->LVGetCurSel(nListId);
  if (row >= 0) pWindow->LVGetString(nListId, row, current);
  TextCopy(szBaseRemoteDirectory, szCurrentDirectory);
  if (files.size == 0) return LProcessResultFailed;

  FtpUploadFileList list = {};
  list.owner = this;
  list.protocol = &Ftp;
  list.localFolder = localFolder;
  list.source = &files;
  char word[kTextSize];
  if (bDropToRow && row >= 0 && strcmp(RowKindWord(row, word), kWordFolder) == 0) {
    RemoteJoin(szBaseRemoteDirectory, szCurrentDirectory, current);
  }
  bDropToRow = false;
  _SetCurrentDirectoryFTP(szBaseRemoteDirectory);
  pWindow->SetPowerDownDeny();
  const LProcessResult result = ProcessRunAsDialog(pWindow, "アップロード中のファイル一覧", list);
  ReportResult(*this, list, result);
  pWindow->SetPowerDownAllow();
  const bool shown = ApplyDirectory();
  if (shown && result == LProcessResultOk) LOG("アップロード完了");
  if (!shown && result != LProcessResultStopped) LOGERROR("ファイル一覧をアップロードできません");
  if (row >= 0) PaneUtils::LVSetCurSelVisible(*pWindow, nListId, current);
  return result;
}
