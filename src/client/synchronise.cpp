// Synchronising: the top-level names of the local and of the remote folder, in both directions, by date. Nothing is
// deleted; a folder goes by its own date, and whole.
#include "client/remote_pane.h"
#include "client/remote_paths.h"
#include "client/transfer_lists.h"
#include "ftp/dir_iterator.h"
#include "ftp/queries.h"
#include "platform/file_io.h"
#include "support/files.h"
#include "support/log.h"
#include "support/window/alert.h"
#include "support/window/icons.h"

namespace {

class Synchronising {
 public:
  Synchronising() { gbSynchronizing = true; }
  ~Synchronising() { gbSynchronizing = false; }
  Synchronising(const Synchronising&) = delete;
  Synchronising& operator=(const Synchronising&) = delete;
};

/// One run. Each step is false when it ends the run, which then drops its lists.
class SynchroniseRun {
 public:
  SynchroniseRun(LProcessInterface& interface, LFtpList& owner, const char* localFolder,
                 const LVector<LStringLongTemplate<char>>& localFiles)
      : process(interface), pane(owner), szLocalFolder(localFolder), files(localFiles) {
    downloads.owner = uploads.owner = &owner;
    downloads.protocol = uploads.protocol = &owner.Ftp;
    downloads.localFolder = localFolder;
    uploads.localFolder = localFolder;
    uploads.source = &localFiles;
  }

  bool CompareRemoteEntries();
  bool Download();
  bool CollectMissingOnServer();
  void Upload();

 private:
  bool CompareEntry(const char* name);
  bool CollectUpload(const char* path);

  LProcessInterface& process;
  LFtpList& pane;
  const char* szLocalFolder;
  const LVector<LStringLongTemplate<char>>& files;
  FtpDownloadFileList downloads = {};
  FtpUploadFileList uploads = {};
};

/// A name that leads out of the folder names a file here that is none of this run's: sent, it would be the server's.
/// A slash at the end leads nowhere; some servers mark folders by it.
bool SynchroniseRun::CompareEntry(const char* name) {
  const char* const slash = strchr(name, '/');
  if (slash && slash[1] && !RemoteNameIsTrusted(name, name)) return false;
  if (!TransferPathFits(szLocalFolder, name)) return true;
  char local[kTextSize];
  LFile::_MakeFilePath(local, szLocalFolder, name, "");
  if (!LFile::TestFileExists(local)) {
    return pane._CmDownloadItemListInterfaced(downloads, szLocalFolder, name, process);
  }
  const int64_t localTime = LocalModifiedTime(local);
  int64_t remoteTime = 0;
  // A server that gives no date leaves the present time, and its file looks new.
  (void)ProcessFtpGetFileModifiedTime(process, pane.Ftp, name, remoteTime);
  if (remoteTime > localTime) return pane._CmDownloadItemListInterfaced(downloads, szLocalFolder, name, process);
  if (remoteTime == localTime) return true;
  return CollectUpload(local);
}

/// The walk through a folder ends in it: the names that follow are looked for in the directory of the run.
bool SynchroniseRun::CollectUpload(const char* path) {
  const bool collected = pane._CmUploadItemList(process, uploads, szLocalFolder, path) == LProcessResultOk;
  if (LocalIsFolder(path)) pane._SetCurrentDirectoryFTP(pane.szBaseRemoteDirectory);
  return collected;
}

bool SynchroniseRun::CompareRemoteEntries() {
  process.SetStatus("ダウンロード一覧を作成中", 0);
  process.SetProgressIndeterminateOn();
  LFileTransferProtocol::DirIterator listing;
  LProcessInterfaceVoid quiet;
  // A directory that cannot be listed counts as empty, so that all local files are sent.
  (void)listing._LoadList(quiet, pane.Ftp, "*");
  for (; listing.Current(); listing.Next()) {
    if (process.IsToStop()) return false;
    if (!RemoteIsDotEntry(listing.Name()) && !CompareEntry(listing.Name())) return false;
  }
  process.SetProgressIndeterminateOff();
  return !process.IsToStop();
}

bool SynchroniseRun::Download() {
  pane.Window()->SetPowerDownDeny();
  process.SetStatus("ファイル一覧をダウンロード中", 0);
  process.SetStatus("", 1);
  const LProcessResult result = ProcessFtpDownloadList(process, downloads);
  if (result == LProcessResultStopped) LOG("ファイルのダウンロードがユーザーにより中止されました。 ");
  if (result == LProcessResultFailed) LOGERROR("ファイル一覧をダウンロードできません");
  process.SetProgressIndeterminateOn();
  process.SetStatus("エラーを確認中", 1);
  pane.Window()->SetPowerDownAllow();
  for (LXfrDownloadItem* item = downloads.files.first; item; item = item->next) {
    if (process.IsToStop()) return false;
    if (item->file.error[0]) {
      LOGERROR(item->file.error);
      platform::FileUnlink(item->file.local);
    } else {
      KeepServerDate(item->file);
      LOG("ファイルのダウンロード完了。");
    }
  }
  process.SetProgressIndeterminateOff();
  return !process.IsToStop();
}

bool SynchroniseRun::CollectMissingOnServer() {
  process.SetStatus("アップロード一覧を作成中", 0);
  process.SetStatus("", 1);
  process.SetProgressIndeterminateOn();
  pane._SetCurrentDirectoryFTP(pane.szBaseRemoteDirectory);
  for (const LStringLongTemplate<char>& path : files) {
    if (process.IsToStop()) return false;
    char name[kTextSize];
    LFile::_GetFileFromPath(name, path.Text());
    if (pane.Ftp.ContainDirectory(name)) continue;
    if (!CollectUpload(path.Text())) break;
  }
  process.SetProgressIndeterminateOff();
  return !process.IsToStop();
}

void SynchroniseRun::Upload() {
  pane._SetCurrentDirectoryFTP(pane.szBaseRemoteDirectory);
  pane.Window()->SetPowerDownDeny();
  process.SetStatus("ファイルをアップロード中...", 0);
  if (ProcessFtpUploadList(process, uploads) != LProcessResultOk) LOGERROR("ファイル一覧をアップロードできません");
}

/// The box counts whatever button was pressed.
bool AgreesToSynchronise(LFtpList& pane, const char* localFolder) {
  if (pane.bSyncNoPrompt) return true;
  LAlert alert(pane.Window());
  alert.strMessage.sprintf(
      "この作業を行うとローカル%s\n\"%s\"\n内の全てのデータがリモート%s\n\"%s\"\nと同期します。よろしいですか？",
      "フォルダ", localFolder, "フォルダ", pane.szCurrentDirectory);
  TextCopy(alert.szTitle, "同期する");
  TextCopy(alert.szButton1, "同期する");
  TextCopy(alert.szButton2, "キャンセル");
  TextCopy(alert.szCheckBox, "今後このメッセージを表示しない。");
  alert.bShowCheckBox = true;
  alert.bChecked = pane.bSyncNoPrompt;
  const bool agreed = alert._Run() == 1;
  pane.bSyncNoPrompt = alert.bChecked;
  return agreed;
}

}  // namespace

void LFtpList::CmSynchronize(LProcessInterface& process, const char* localFolder,
                             const LVector<LStringLongTemplate<char>>& files) {
  if (process.IsToStop() || !pWindow) return;
  const Synchronising on;
  if (!AgreesToSynchronise(*this, localFolder) || process.IsToStop()) return;
  const WaitCursor cursor;
  LOG("同期中...作業には数分かかる場合があります。");
  TextCopy(szBaseRemoteDirectory, szCurrentDirectory);
  TextCopy(szBaseLocalDirectory, localFolder);
  if (process.IsToStop()) return;
  SynchroniseRun run(process, *this, localFolder, files);
  if (!run.CompareRemoteEntries() || !run.Download() || !run.CollectMissingOnServer()) return;
  run.Upload();
  gbSynchronizing = false;
  pWindow->SetPowerDownAllow();
  LOG("同期が完了しました。");
  ApplyDirectory();
}
