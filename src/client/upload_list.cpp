// The job of an upload: collecting, sending one file after the other, and taking back what a cancelled run has made.
#include "client/remote_pane.h"
#include "client/remote_paths.h"
#include "client/standby.h"
#include "client/transfer_lists.h"
#include "ftp/commands.h"
#include "ftp/dir_iterator.h"
#include "ftp/transfer.h"
#include "support/files.h"
#include "support/log.h"

namespace {

constexpr int kReconnects = 2;  ///< Of one file.

class UploadRun {
 public:
  UploadRun(LProcessInterface& interface, FtpUploadFileList& job) : process(interface), list(job) {}
  ~UploadRun() { LFtpList::pCurrentInterface = nullptr; }
  UploadRun(const UploadRun&) = delete;
  UploadRun& operator=(const UploadRun&) = delete;

  LProcessResult Run();

 private:
  LProcessResult Collect();
  LProcessResult SendAll();
  LProcessResult SendItem(UploadFile&, int index);
  LProcessResult SendInTries(ChildInterface&, UploadFile&, const char* folder);
  void RemoteFolderOf(const UploadFile&, char (&folder)[kTextSize]) const;
  bool Enter(const char* folder);

  LProcessInterface& process;
  FtpUploadFileList& list;
  char root[kTextSize] = {};  ///< The directory of the run.
  int total = 0;
  bool bLogonFailed = false;  ///< The machine woke up and the server could not be reached: everything ends.
};

/// 1 only where nothing is to be sent at all: a stop in the walk falls out at the first file.
LProcessResult UploadRun::Collect() {
  process.SetProgressIndeterminateOff();
  const size_t count = list.source->size;
  for (size_t i = 0; i < count; ++i) {
    if (StandByEndsCollecting("コンピュータがスタンバイ状態になったためアップロードがキャンセルされました",
                              "アップロードがキャンセルされました")) {
      return LProcessResultStopped;
    }
    if (process.IsToStop()) return LProcessResultStopped;
    const char* path = (*list.source)[i].Text();
    process.SetStatus("フォルダ/ファイルを追加中", 0);
    process.SetProgress(static_cast<double>(i) / static_cast<double>(count));
    ChildInterface child(process, static_cast<int>(count), static_cast<int>(i));
    child.SetStatus(path, 1);
    if (list.owner->_CmUploadItemList(process, list, list.localFolder.Text(), path) != LProcessResultOk) break;
    // The walk through a folder ends in it, and what is to be overwritten is looked for in the directory of the run.
    const bool isLast = i + 1 == count;
    if (!isLast && LocalIsFolder(path)) list.owner->_SetCurrentDirectoryFTP(list.owner->szBaseRemoteDirectory);
  }
  return LProcessResultOk;
}

/// By the way of the local path, not of the name on the server.
void UploadRun::RemoteFolderOf(const UploadFile& file, char (&folder)[kTextSize]) const {
  char relative[kTextSize];
  LFile::MakeRelativeFolder(relative, list.localFolder.Text(), file.local);
  // Cut before the backslashes turn: in the names of a Japanese encoding one may be half a character.
  const char* const end = strrchr(relative, '/');
  char way[kTextSize];
  TextCopyPart(way, relative, end ? static_cast<size_t>(end - relative) : 0);
  for (char* c = way; *c; ++c) {
    if (*c == '\\') *c = '/';
  }
  TextFormat(folder, "%s/%s", root, way);
}

/// False where a file sent by its bare name would go somewhere else.
bool UploadRun::Enter(const char* folder) {
  if (list.owner->_SetCurrentDirectoryFTP(folder)) return true;
  // Not every server takes a path that ends in "/".
  const size_t length = strlen(root);
  const bool isRoot = strncmp(folder, root, length) == 0 && strcmp(folder + length, "/") == 0;
  return isRoot && list.owner->_SetCurrentDirectoryFTP(root);
}

LProcessResult UploadRun::SendInTries(ChildInterface& child, UploadFile& file, const char* folder) {
  for (int tries = 0;;) {
    const StandByWatch sleep;
    LFtpList::pCurrentInterface = &child;
    LProcessResult result = Process(child, file);
    // After a stop the server's closing words decide the transfer's own result; 0 is always a whole file.
    if (result == LProcessResultFailed && (child.IsToStop() || sleep.HasBeen())) result = LProcessResultStopped;
    if (result == LProcessResultStopped && sleep.HasBeen()) {
      result = ProcessStandBy(process, *file.protocol);
      bLogonFailed = result != LProcessResultOk;
      if (bLogonFailed) return result;
      // The name is relative, and the new session began in the pane's directory.
      if (!Enter(folder)) return LProcessResultFailed;
      continue;
    }
    if (result != LProcessResultFailed || tries >= kReconnects) return result;
    if (list.owner->ReconnectFromLast() && !Enter(folder)) return LProcessResultFailed;
    ++tries;
  }
}

LProcessResult UploadRun::SendItem(UploadFile& file, int index) {
  char folder[kTextSize];
  RemoteFolderOf(file, folder);
  if (!Enter(folder)) return LProcessResultFailed;
  process.SetStatusF(0, "%d個（全%d個中）のファイルをアップロード中", index + 1, total);
  process.SetStatus(file.local, 1);
  process.SetProgress(static_cast<double>(index) / total);
  ChildInterface child(process, total, index);
  const LProcessResult result = SendInTries(child, file, folder);
  LFtpList::pCurrentInterface = nullptr;
  if (result == LProcessResultOk) list.owner->_SetCurrentDirectoryFTP(root);
  return result;
}

/// Unlike a download, a file that fails for good ends it all.
LProcessResult UploadRun::SendAll() {
  int index = 0;
  for (LXfrUploadItem* item = list.files.first; item; item = item->next, ++index) {
    const LProcessResult result = SendItem(item->file, index);
    if (result != LProcessResultOk) return result;
  }
  return LProcessResultOk;
}

LProcessResult UploadRun::Run() {
  if (!list.source) return LProcessResultOk;
  if (!list.owner) return LProcessResultFailed;
  LFtpList& pane = *list.owner;
  if (!gbSynchronizing && list.source->size > 0) {
    const LProcessResult collected = Collect();
    if (collected != LProcessResultOk) return collected;
  }
  process.SetProgressIndeterminateOff();
  TextCopy(root, pane.szBaseRemoteDirectory);
  pane._SetCurrentDirectoryFTP(root);
  process.SetProgress(0);
  total = static_cast<int>(list.files.Count());
  const LProcessResult result = SendAll();
  if (!bLogonFailed) pane.CmRefresh();
  return result;
}

LProcessResult DeleteFiles(LProcessInterface& process, const LStringListTemplate<char>& names,
                           LFileTransferProtocol& session) {
  const double count = static_cast<double>(names.count);
  for (size_t i = 0; i < names.count; ++i) {
    if (process.IsToStop()) return LProcessResultStopped;
    LOGF("リモートファイルを削除中：%s", names.strings[i]);
    process.SetStatusF(1, "リモートファイルを削除中：%s", names.strings[i]);
    process.SetProgress(static_cast<double>(i) / count);
    LProcessInterfaceSubProcess share(process, static_cast<double>(i) / count, 1 / count);
    char command[kFtpShortCommand];
    FtpFormatCommand(command, "DELE %s\r\n", names.strings[i]);
    if (ProcessFtpSendAndWaitForReply(share, session, command, nullptr, nullptr) == LProcessResultFailed) {
      LOGERRORF("以下のリモートファイルを削除できません：%s既に削除されているか、転送が未完了なためと思われます。",
                names.strings[i]);
    }
  }
  return LProcessResultOk;
}

LProcessResult DeleteFolders(LProcessInterface& process, const LList<LStringLongItem>& folders,
                             LFileTransferProtocol& session) {
  const double count = static_cast<double>(folders.Count());
  size_t i = 0;
  for (const LStringLongItem* folder = folders.first; folder; folder = folder->next, ++i) {
    if (process.IsToStop()) return LProcessResultStopped;
    process.SetStatusF(1, "リモートフォルダを削除中：%s", folder->text.Text());
    LProcessInterfaceSubProcess share(process, static_cast<double>(i) / count, 1 / count);
    if (ProcessFtpDeleteDirectoryAndFiles(share, session, folder->text.Text()) == LProcessResultFailed) {
      LOGERRORF("以下のリモートフォルダを削除できません：%s既に削除されているか、転送が未完了なためと思われます。",
                folder->text.Text());
    }
  }
  return LProcessResultOk;
}

}  // namespace

LProcessResult ProcessFtpUploadList(LProcessInterface& process, FtpUploadFileList& list) {
  return UploadRun(process, list).Run();
}

LProcessResult Process(LProcessInterface& process, FtpUploadFileList& list) {
  process.SetStatus("ファイルをアップロード中...", 0);
  return ProcessFtpUploadList(process, list);
}

LProcessResult Process(ChildInterface& child, UploadFile& file) {
  char name[kTextSize];
  LFile::_GetFileFromPath(name, file.local);
  child.SetStatus("ファイルをアップロード中...", 0);
  child.SetStatus(name, 1);
  const LProcessResult result = ProcessFtpUpload(child, *file.protocol, file.remote, file.local, &file.error, false);
  if (result == LProcessResultStopped) {
    child.SetStatus("ユーザーがキャンセルされました - アップロードを停止中 ...", 0);
  }
  return result;
}

LProcessResult Process(LProcessInterface& process, FtpUploadFileListCleanup& cleanup) {
  FtpUploadFileList& list = *cleanup.list;
  process.SetStatus("ファイルとフォルダを削除中...", 0);
  const LProcessResult result = DeleteFiles(process, list.uploadedNames, *list.protocol);
  return result == LProcessResultOk ? DeleteFolders(process, list.createdFolders, *list.protocol) : result;
}
