// The command that brings the selection of the remote pane down into a local folder.
#include <fcntl.h>
#include <sys/stat.h>

#include "client/remote_pane.h"
#include "client/transfer_lists.h"
#include "core/progress_dialog.h"
#include "platform/file_io.h"
#include "sites/store/accounts.h"
#include "support/files.h"
#include "support/log.h"

void KeepServerDate(const DownloadFile& file) {
  const int64_t modified = file.protocol->GetFileDate(file.remote);
  struct stat status;
  if (stat(file.local, &status) != 0) return;
  // A pipe in its place must not be waited for.
  const int fd = platform::FileOpen(file.local, O_RDONLY | O_NONBLOCK | O_CLOEXEC, 0);
  if (fd < 0) return;
  const timespec times[2] = {status.st_atim, {modified, 0}};
  platform::FileSetTimes(fd, times);
  platform::FileClose(fd);
}

namespace {

/// For what events are still under way when the dialog has gone.
constexpr unsigned kSettleMs = 100;

/// The rows by name: a reconnect on the way fills the pane anew and loses the selection.
void TakeSelection(const LFtpList& pane, LVector<LStringLongTemplate<char>>& names) {
  for (LVSelectedIterator row(*pane.Window(), pane.ListId()); row.IsValid(); row.Next()) {
    char name[kTextSize];
    pane.Window()->LVGetString(pane.ListId(), row.Row(), name);
    names.Add(LStringLongTemplate<char>(name));
  }
}

/// After the run, whatever its result: a file with an error goes, also an older one of that name; the others get the
/// server's date. True if none had an error.
bool FinishItems(FtpDownloadFileList& list) {
  bool isWhole = true;
  for (LXfrDownloadItem* item = list.files.first; item; item = item->next) {
    if (item->file.error[0]) {
      isWhole = false;
      LOGERRORF("以下のリモートファイルのダウンロードを%s中：%s", item->file.error, item->file.remote);
      platform::FileUnlink(item->file.local);
    } else if (LFile::TestFileExists(item->file.local)) {
      KeepServerDate(item->file);
      LOG("ファイルのダウンロード完了。");
    }
  }
  return isWhole;
}

}  // namespace

void LFtpList::CmDownloadList(const char* localFolder) {
  bDownloadedAll = false;
  if (!pWindow) return;
  FtpDownloadFileList list = {};
  TakeSelection(*this, list.names);
  if (!_GetCurrentDirectoryFTP(szBaseRemoteDirectory)) return LOGERROR("ファイル一覧をダウンロードできません");
  TextCopy(szBaseLocalDirectory, localFolder);
  if (list.names.size == 0) return;
  LFTPAccountSettings::UpdateDownloadCount(static_cast<int>(list.names.size));

  list.owner = this;
  list.protocol = &Ftp;
  list.localFolder = localFolder;
  bOverwriteYes = bOverwriteForAll = false;
  _SetCurrentDirectoryFTP(szBaseRemoteDirectory);
  pWindow->SetPowerDownDeny();
  const LProcessResult result = ProcessRunAsDialog(pWindow, "ファイル一覧をダウンロード中", list);
  if (result != LProcessResultOk) {
    if (!Ftp.IsValid()) LOGERROR("サーバーが切断されました");
    LOGERROR(result == LProcessResultStopped ? "ユーザーがダウンロードを中止しました"
                                             : "ファイル一覧をダウンロードできません");
  }
  pWindow->Wait(kSettleMs);
  pWindow->SetPowerDownAllow();
  bDownloadedAll = FinishItems(list) && result == LProcessResultOk && !list.bLeftOut;
}
