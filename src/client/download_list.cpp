// The job of a download: collecting, fetching one file after the other, the wait for a late cancel, and taking back
// what a cancelled run has brought.
#include "client/remote_pane.h"
#include "client/standby.h"
#include "client/transfer_lists.h"
#include "ftp/permissions.h"
#include "ftp/queries.h"
#include "ftp/transfer.h"
#include "platform/file_io.h"
#include "support/files.h"
#include "support/log.h"
#include "support/window/alert.h"

namespace {

constexpr int kReconnects = 2;  ///< Of one file.
constexpr int kLateCancelSlices = 10;

class DownloadRun {
 public:
  DownloadRun(LProcessInterface& interface, FtpDownloadFileList& job) : process(interface), list(job) {}
  ~DownloadRun() { LFtpList::pCurrentInterface = nullptr; }
  DownloadRun(const DownloadRun&) = delete;
  DownloadRun& operator=(const DownloadRun&) = delete;

  LProcessResult Run();

 private:
  LProcessResult Collect();
  LProcessResult FetchAll();
  LProcessResult FetchItem(DownloadFile&, LProcessResult former);
  LProcessResult FetchInTries(ChildInterface&, DownloadFile&);
  bool HasRoom(DownloadFile&);
  LProcessResult WaitForLateCancel(LProcessResult result);
  LProcessResult OfferCleanUp();
  void RemoveFiles();
  void RemoveFolders();
  void ShowItem(const DownloadFile&);

  LProcessInterface& process;
  FtpDownloadFileList& list;
  int total = 0;
  int index = 0;              ///< Of the present item; goes on counting in the clean-up.
  bool bLogonFailed = false;  ///< The machine woke up and the server could not be reached: everything ends.
};

bool StandBy() {
  return StandByEndsCollecting("コンピュータがスタンバイ状態になったためダウンロードがキャンセルされました",
                               "ダウンロードがキャンセルさました");
}

LProcessResult DownloadRun::Collect() {
  LFtpList& pane = *list.owner;
  const int count = static_cast<int>(list.names.size);
  for (int i = 0; i < count; ++i) {
    process.SetStatusF(0, "%d個（全%d個中）のファイル/フォルダを追加中", i + 1, count);
    process.SetProgress(static_cast<double>(i) / count);
    if (StandBy() || process.IsToStop()) return LProcessResultStopped;
    const char* name = list.names[static_cast<size_t>(i)].Text();
    if (!pane._CmDownloadItemListInterfaced(list, list.localFolder.Text(), name, process)) break;
  }
  return StandBy() || process.IsToStop() ? LProcessResultStopped : LProcessResultOk;
}

bool DownloadRun::HasRoom(DownloadFile& file) {
  uint64_t size = 0;
  if (ProcessFtpGetFileSize(process, *file.protocol, file.remote, size) != LProcessResultOk) return true;
  char folder[kTextSize];
  LFile::_GetFolderFromPath(folder, file.local);
  if (size <= LFile::GetDriveFreeSpace(folder)) return true;
  TextFormat(file.error, "空き容量不足のためダウンロードできません：%s", file.remote);
  return false;
}

LProcessResult DownloadRun::FetchInTries(ChildInterface& child, DownloadFile& file) {
  for (int tries = 0;;) {
    const StandByWatch sleep;
    LProcessResult result = LProcessResultFailed;
    if (FTPTestUserHasReadPermissions(child, *file.protocol, file.remote)) {
      result = ProcessFtpDownload(child, *file.protocol, file.remote, file.local, &file.error);
    }
    // After a stop the server's closing words decide the transfer's own result.
    if (child.IsToStop() || sleep.HasBeen()) result = LProcessResultStopped;
    if (result == LProcessResultStopped && sleep.HasBeen()) {
      result = ProcessStandBy(process, *file.protocol);
      bLogonFailed = result != LProcessResultOk;
      if (bLogonFailed) return result;
      continue;
    }
    if (result != LProcessResultFailed || tries >= kReconnects) return result;
    if (list.owner) list.owner->ReconnectFromLast();
    ++tries;
  }
}

void DownloadRun::ShowItem(const DownloadFile& file) {
  if (process.IsToStop()) {
    process.SetStatus("ダウンロードがキャンセルされました、アップロード - 停止中...", 0);
    process.SetStatus("", 1);
  } else {
    process.SetStatusF(0, "%d個（全%d個中）のファイルをダウンロード中", index + 1, total);
    process.SetStatusF(1, "リモートファイルをダウンロード中： %s", file.remote);
  }
  process.SetProgress((index + static_cast<double>(index) / total) / total);
}

/// A file without room has no result of its own.
LProcessResult DownloadRun::FetchItem(DownloadFile& file, LProcessResult former) {
  ChildInterface child(process, total, index);
  LFtpList::pCurrentInterface = &child;
  ShowItem(file);
  LProcessResult result = former;
  if (HasRoom(file)) {
    result = FetchInTries(child, file);
    if (result == LProcessResultOk) file.error[0] = 0;
    if (result == LProcessResultFailed && !file.error[0] && !bLogonFailed) TextCopy(file.error, "失敗");
  }
  LFtpList::pCurrentInterface = nullptr;
  return result;
}

/// The result of the last file; one that failed does not end the list.
LProcessResult DownloadRun::FetchAll() {
  LProcessResult result = LProcessResultOk;
  for (LXfrDownloadItem* item = list.files.first; item; item = item->next, ++index) {
    result = FetchItem(item->file, result);
    if (result == LProcessResultStopped || bLogonFailed) break;
  }
  return result;
}

LProcessResult DownloadRun::WaitForLateCancel(LProcessResult result) {
  for (int i = 0; i < kLateCancelSlices; ++i) {
    if (process.IsToStop()) return OfferCleanUp();
    if (process.ProcessWait(gTransferWaits.lateCancelSliceMs) == LProcessResultStopped) return OfferCleanUp();
  }
  return result;
}

void DownloadRun::RemoveFiles() {
  for (LXfrDownloadItem* item = list.files.first; item; item = item->next, ++index) {
    const ChildInterface child(process, total, index);
    LOGF("ローカルファイルを削除中：%s", item->file.local);
    ShowItem(item->file);
    if (LFile::TestFileExists(item->file.local) && platform::FileUnlink(item->file.local) != 0) {
      LOGERRORF("ローカルファイルを削除できません：%s", item->file.local);
    }
  }
}

void DownloadRun::RemoveFolders() {
  for (LStringLongItem* folder = list.createdFolders.first; folder; folder = folder->next) {
    process.SetStatusF(1, "ローカルフォルダを削除中：%s", folder->text.Text());
    if (platform::FileRemoveFolder(folder->text.Text()) != 0) {
      LOGERRORF("ローカルフォルダを削除できません：%s", folder->text.Text());
    }
  }
}

LProcessResult DownloadRun::OfferCleanUp() {
  LAlert alert(list.owner ? list.owner->Window() : nullptr);
  alert.strMessage = "ダウンロードされたローカルファイルまたはフォルダを削除しますか？";
  TextCopy(alert.szTitle, "ダウンロードがキャンセルさました");
  TextCopy(alert.szButton1, "削除");
  TextCopy(alert.szButton2, "削除しない");
  if (alert._Run() == 1) {
    RemoveFiles();
    RemoveFolders();
  }
  return LProcessResultStopped;
}

LProcessResult DownloadRun::Run() {
  LProcessResult result = LProcessResultOk;
  if (!gbSynchronizing && list.owner && list.owner->Window()) result = Collect();
  total = static_cast<int>(list.files.Count());
  if (result == LProcessResultStopped) return OfferCleanUp();
  if (list.files.first) {
    const DownloadFile& head = list.files.first->file;
    if (!FTPTestUserHasReadPermissions(process, *head.protocol, head.remote)) return LProcessResultFailed;
  }
  result = FetchAll();
  if (bLogonFailed) return result;
  if (result == LProcessResultStopped) return OfferCleanUp();
  return WaitForLateCancel(result);
}

}  // namespace

LProcessResult ProcessFtpDownloadList(LProcessInterface& process, FtpDownloadFileList& list) {
  return DownloadRun(process, list).Run();
}

LProcessResult Process(LProcessInterface& process, FtpDownloadFileList& list) {
  process.SetStatus("ファイルをダウンロード中...", 0);
  return ProcessFtpDownloadList(process, list);
}
