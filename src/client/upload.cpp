// Sending local files to the directory that the remote pane shows.
#include <sys/stat.h>

#include "client/remote_pane.h"
#include "client/remote_paths.h"
#include "client/transfer_lists.h"
#include "core/progress_dialog.h"
#include "ftp/queries.h"
#include "ftp/transfer.h"
#include "support/files.h"
#include "support/log.h"
#include "support/window/alert.h"

namespace {

bool IsFolder(const char* path) {
  struct stat status;
  return stat(path, &status) == 0 && S_ISDIR(status.st_mode);
}

void AskToOverwrite(LFtpList& pane, const char* name) {
  if (pane.bOverwriteForAll) return;
  LAlert alert(pane.Window());
  alert.strMessage.sprintf("このファイルのコピー \"%s\" 既にリモートフォルダに存在します。上書きしますか？", name);
  TextCopy(alert.szTitle, "上書きする");
  TextCopy(alert.szButton1, "上書きする");
  TextCopy(alert.szButton2, "スキップ");
  TextCopy(alert.szCheckBox, "全てに適用する");
  alert.bShowCheckBox = true;
  alert.bChecked = pane.bOverwriteForAll;
  pane.bOverwriteYes = alert._Run() == 1;
  pane.bOverwriteForAll = alert.bChecked;
}

/// A remote file of 0 bytes, and one that is not there, are overwritten without a question.
bool MayOverwrite(LProcessInterface& process, LFtpList& pane, const char* name) {
  if (pane.bOverwriteYes && pane.bOverwriteForAll) return true;
  uint64_t size = 0;
  if (ProcessFtpGetFileSize(process, pane.Ftp, name, size) != LProcessResultOk || size == 0) return true;
  AskToOverwrite(pane, name);
  return pane.bOverwriteYes;
}

LProcessResult CollectSource(LProcessInterface& process, FtpUploadFileList& list) {
  for (const LStringLongTemplate<char>& path : *list.source) {
    if (process.IsToStop()) return LProcessResultStopped;
    char name[kTextSize];
    LFile::_GetFileFromPath(name, path.Text());
    if (IsFolder(path.Text())) {
      LOGWARNF("フォルダのアップロードにはまだ対応していません。スキップします：%s", name);
      continue;
    }
    if (!MayOverwrite(process, *list.owner, name)) continue;
    LOGF("順番待ち中のファイル： %s", path.Text());
    list.AddFile(path.Text(), name);
  }
  return process.IsToStop() ? LProcessResultStopped : LProcessResultOk;
}

LProcessResult SendItem(LProcessInterface& process, UploadFile& file, int total, int index) {
  ChildInterface child(process, total, index);
  LFtpList::pCurrentInterface = &child;
  process.SetStatusF(0, "%d個（全%d個中）のファイルをアップロード中", index + 1, total);
  process.SetProgress(static_cast<double>(index) / total);
  const LProcessResult result = ProcessFtpUpload(child, *file.protocol, file.remote, file.local, &file.error, false);
  LFtpList::pCurrentInterface = nullptr;
  if (result == LProcessResultFailed) {
    char reason[kTextSize];
    TextCopy(reason, file.error[0] ? file.error : "転送できませんでした");
    TextFormat(file.error, "アップロードできませんでした：%s（%s）", file.remote, reason);
  }
  return result;
}

}  // namespace

LProcessResult ProcessFtpUploadList(LProcessInterface& process, FtpUploadFileList& list) {
  if (!list.source || !list.owner) return LProcessResultOk;
  const LProcessResult collected = CollectSource(process, list);
  if (collected != LProcessResultOk) return collected;
  const int total = static_cast<int>(list.files.Count());
  LProcessResult result = LProcessResultOk;
  int index = 0;
  for (LXfrUploadItem* item = list.files.first; item; item = item->next, ++index) {
    const LProcessResult sent = SendItem(process, item->file, total, index);
    if (sent == LProcessResultStopped || process.IsToStop()) return LProcessResultStopped;
    if (sent == LProcessResultFailed) result = LProcessResultFailed;
    if (sent == LProcessResultFailed && !list.protocol->IsValid()) break;
  }
  return result;
}

LProcessResult Process(LProcessInterface& process, FtpUploadFileList& list) {
  process.SetStatus("ファイルをアップロード中...", 0);
  return ProcessFtpUploadList(process, list);
}

LProcessResult LFtpList::CmUploadList(const LVector<LStringLongTemplate<char>>& files, const char* localFolder) {
  if (!pWindow || files.size == 0) return LProcessResultFailed;
  bOverwriteYes = bOverwriteForAll = false;
  char current[kTextSize] = "";
  const int row = pWindow->LVGetCurSel(nListId);
  if (row >= 0) pWindow->LVGetString(nListId, row, current);
  TextCopy(szBaseRemoteDirectory, szCurrentDirectory);

  FtpUploadFileList list = {};
  list.owner = this;
  list.protocol = &Ftp;
  list.localFolder = localFolder;
  list.source = &files;
  if (!_SetCurrentDirectoryFTP(szBaseRemoteDirectory)) return LProcessResultFailed;
  pWindow->SetPowerDownDeny();
  const LProcessResult result = ProcessRunAsDialog(pWindow, "アップロード中のファイル一覧", list);
  if (result != LProcessResultOk && !Ftp.IsValid()) LOGERROR("サーバーが切断されました");
  if (result == LProcessResultStopped) LOGERROR("ユーザーがアップロードを中止しました");
  if (result == LProcessResultFailed) LOGERROR("ファイル一覧をアップロードできません");
  for (const LXfrUploadItem* item = list.files.first; item; item = item->next) {
    if (item->file.error[0]) LOGERROR(item->file.error);
  }
  pWindow->SetPowerDownAllow();
  const bool shown = ApplyDirectory();
  if (shown && result == LProcessResultOk) LOG("アップロード完了");
  if (!shown && result != LProcessResultStopped) LOGERROR("ファイル一覧をアップロードできません");
  PaneUtils::LVSetCurSelVisible(*pWindow, nListId, current);
  return result;
}
