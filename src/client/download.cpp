// Bringing the selected files of the remote pane down into a local folder.
#include <fcntl.h>
#include <sys/stat.h>

#include "client/remote_pane.h"
#include "client/remote_paths.h"
#include "client/transfer_lists.h"
#include "core/progress_dialog.h"
#include "ftp/transfer.h"
#include "platform/file_io.h"
#include "sites/store/accounts.h"
#include "support/files.h"
#include "support/log.h"
#include "support/window/alert.h"

namespace {

/// False when the file that is there already is to stay.
bool MayOverwrite(LFtpList& pane, const char* local) {
  if (!LFile::TestFileExists(local)) return true;
  if (pane.bOverwriteForAll) return pane.bOverwriteYes;
  LAlert alert(pane.Window());
  alert.strMessage.sprintf("このファイルのコピー \"%s\" が既にローカルフォルダ内に存在します。上書きしますか？", local);
  TextCopy(alert.szTitle, "上書きする");
  TextCopy(alert.szButton1, "上書きする");
  TextCopy(alert.szButton2, "スキップ");
  TextCopy(alert.szCheckBox, "全てに適用する");
  alert.bShowCheckBox = true;
  alert.bChecked = pane.bOverwriteForAll;
  pane.bOverwriteYes = alert._Run() == 1;
  pane.bOverwriteForAll = alert.bChecked;
  return pane.bOverwriteYes;
}

void QueueFile(LFtpList& pane, FtpDownloadFileList& list, const char* name) {
  char local[kTextSize];
  char remote[kTextSize];
  LFile::_MakeFilePath(local, list.localFolder.Text(), name, "");
  RemotePathOfLocal(remote, pane.szBaseLocalDirectory, pane.szBaseRemoteDirectory, local);
  if (!MayOverwrite(pane, local)) return;
  LOGF("順番待ち中のファイル： %s", name);
  list.AddFile(local, remote);
}

/// One selected row. False ends the collecting; what was queued so far is still fetched.
bool CollectRow(LFtpList& pane, FtpDownloadFileList& list, int row) {
  char name[kTextSize];
  char word[kTextSize];
  pane.Window()->LVGetString(pane.ListId(), row, name);
  if (!RemoteNameIsPlain(name)) {
    LOGWARNF("疑わしい名前のファイル（%s）のダウンロードをスキップします", name);
    return false;
  }
  if (strcmp(pane.RowKindWord(row, word), LFtpList::kWordFile) != 0) {
    LOGWARNF("フォルダとリンクのダウンロードにはまだ対応していません。スキップします：%s", name);
    return true;
  }
  QueueFile(pane, list, name);
  return true;
}

LProcessResult CollectSelection(LProcessInterface& process, FtpDownloadFileList& list) {
  LFtpList& pane = *list.owner;
  LVSelectedIterator selected(*pane.Window(), pane.ListId());
  const int total = static_cast<int>(selected.Count());
  for (int number = 1; selected.IsValid(); selected.Next(), ++number) {
    process.SetStatusF(0, "%d個（全%d個中）のファイル/フォルダを追加中", number, total);
    process.SetProgress(static_cast<double>(number - 1) / total);
    if (process.IsToStop()) return LProcessResultStopped;
    if (!CollectRow(pane, list, selected.Row())) break;
  }
  return process.IsToStop() ? LProcessResultStopped : LProcessResultOk;
}

LProcessResult FetchItem(LProcessInterface& process, LXfrDownloadItem& item, int total, int index) {
  ChildInterface child(process, total, index);
  LFtpList::pCurrentInterface = &child;
  process.SetStatusF(0, "%d個（全%d個中）のファイルをダウンロード中", index + 1, total);
  process.SetStatusF(1, "リモートファイルをダウンロード中： %s", item.file.remote);
  process.SetProgress((index + static_cast<double>(index) / total) / total);
  const LProcessResult result =
      ProcessFtpDownload(child, *item.file.protocol, item.file.remote, item.file.local, &item.file.error);
  LFtpList::pCurrentInterface = nullptr;
  if (result == LProcessResultOk) item.file.error[0] = 0;
  if (result != LProcessResultOk && !item.file.error[0]) TextCopy(item.file.error, "失敗");
  return result;
}

void KeepServerDate(const DownloadFile& file) {
  const int64_t modified = file.protocol->GetFileDate(file.remote);
  struct stat status;
  if (modified == 0 || stat(file.local, &status) != 0) return;
  const int fd = platform::FileOpen(file.local, O_WRONLY, 0);
  if (fd < 0) return;
  const timespec times[2] = {status.st_atim, {modified, 0}};
  platform::FileSetTimes(fd, times);
  platform::FileClose(fd);
}

/// After the run, whatever its result: errors to the history and their files away, the others get the server's date.
void FinishItems(FtpDownloadFileList& list) {
  for (LXfrDownloadItem* item = list.files.first; item; item = item->next) {
    if (item->file.error[0]) {
      LOGERRORF("以下のリモートファイルのダウンロードを%s中：%s", item->file.error, item->file.remote);
      platform::FileUnlink(item->file.local);
    } else if (LFile::TestFileExists(item->file.local)) {
      KeepServerDate(item->file);
      LOG("ファイルのダウンロード完了。");
    }
  }
}

}  // namespace

LProcessResult ProcessFtpDownloadList(LProcessInterface& process, FtpDownloadFileList& list) {
  if (list.owner && list.owner->Window()) {
    const LProcessResult collected = CollectSelection(process, list);
    if (collected != LProcessResultOk) return collected;
  }
  const int total = static_cast<int>(list.files.Count());
  LProcessResult result = LProcessResultOk;
  int index = 0;
  for (LXfrDownloadItem* item = list.files.first; item; item = item->next, ++index) {
    const LProcessResult fetched = FetchItem(process, *item, total, index);
    // After a cancelled transfer the server's closing words decide the file's result; the job is stopped all the same.
    if (fetched == LProcessResultStopped || process.IsToStop()) return LProcessResultStopped;
    if (fetched == LProcessResultFailed) result = LProcessResultFailed;
    // A session that is gone fails every further file in the same way.
    if (fetched == LProcessResultFailed && !list.protocol->IsValid()) break;
  }
  return result;
}

LProcessResult Process(LProcessInterface& process, FtpDownloadFileList& list) {
  process.SetStatus("ファイルをダウンロード中...", 0);
  return ProcessFtpDownloadList(process, list);
}

void LFtpList::CmDownloadList(const char* localFolder) {
  if (!pWindow || !_GetCurrentDirectoryFTP(szBaseRemoteDirectory)) return;
  TextCopy(szBaseLocalDirectory, localFolder);
  const int selected = pWindow->LVGetSelCount(nListId);
  if (selected == 0) return;
  LFTPAccountSettings::UpdateDownloadCount(selected);

  FtpDownloadFileList list = {};
  list.owner = this;
  list.protocol = &Ftp;
  list.localFolder = localFolder;
  bOverwriteYes = bOverwriteForAll = false;
  pWindow->SetPowerDownDeny();
  const LProcessResult result = ProcessRunAsDialog(pWindow, "ファイル一覧をダウンロード中", list);
  if (result != LProcessResultOk) {
    if (!Ftp.IsValid()) LOGERROR("サーバーが切断されました");
    LOGERROR(result == LProcessResultStopped ? "ユーザーがダウンロードを中止しました"
                                             : "ファイル一覧をダウンロードできません");
  }
  pWindow->SetPowerDownAllow();
  FinishItems(list);
}
