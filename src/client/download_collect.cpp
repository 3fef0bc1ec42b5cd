// Collecting a download: the selection is walked on the server, folders and links included, and becomes a flat list.
#include <sys/stat.h>

#include "client/overwrite_question.h"
#include "client/remote_pane.h"
#include "client/remote_paths.h"
#include "client/transfer_lists.h"
#include "ftp/dir_iterator.h"
#include "ftp/queries.h"
#include "platform/file_io.h"
#include "support/files.h"
#include "support/log.h"
#include "support/parsing.h"

namespace {

constexpr int kTries = 3;
constexpr mode_t kNewFolderMode = 0777;

/// Gives whether the collecting goes on.
bool LeaveOut(FtpDownloadFileList& list, bool goesOn) {
  list.bLeftOut = true;
  return goesOn;
}

}  // namespace

bool LFtpList::_IsDirectoryFTP(LProcessInterface& process, const char* name, const char* remoteDir, signed char& kind) {
  for (int i = 0; i < kTries; ++i) {
    kind = kFtpKindUnknown;
    if (ProcessFtpIsDirectory(process, Ftp, name, kind) != LProcessResultFailed) return kind > 0;
    if (ReconnectFromLast() && remoteDir) _SetCurrentDirectoryFTP(remoteDir);
  }
  return false;
}

bool LFtpList::_CmDownloadItemListInterfaced(FtpDownloadFileList& list, const char* localDir, const char* name,
                                             LProcessInterface& process) {
  if (process.IsToStop()) return false;
  if (!RemoteNameIsTrusted(name, name)) return LeaveOut(list, false);
  char remoteDir[kTextSize];
  RemotePathOfLocal(remoteDir, szBaseLocalDirectory, szBaseRemoteDirectory, localDir);
  // A listing that shows where a link leads calls it a folder under this whole text, which nothing can enter.
  signed char kind;
  const bool isEntered = _IsDirectoryFTP(process, name, remoteDir, kind);
  const bool isShownLink = kind == kFtpKindSymbolicLink && strstr(name, " -> ");
  if (isEntered && !isShownLink) {
    return _CmDownloadFolderInterfaced(list, localDir, name, process);
  }
  if (strstr(name, "->")) return _CmDownloadSymbolicLinkInterfaced(list, localDir, name, process);
  return _CmAppendDownloadFile(list, localDir, name);
}

bool LFtpList::_CmDownloadSymbolicLinkInterfaced(FtpDownloadFileList& list, const char* localDir, const char* name,
                                                 LProcessInterface& process) {
  LStringLongTemplate<char> before;
  LParseGetToCharacters(name, "->", before);
  char link[kTextSize];
  TextCopy(link, before.Text());
  LStringTrim(link);
  // Of a name that begins with a minus sign nothing is left. It is skipped, and the run goes on.
  if (!RemoteNameIsTrusted(link, name)) return LeaveOut(list, link[0] == 0);
  char level[kTextSize];
  RemotePathOfLocal(level, szBaseLocalDirectory, szBaseRemoteDirectory, localDir);
  // What can be entered is a folder; a link to a file is found out by the refusal.
  if (!_SetCurrentDirectoryFTP(link, level)) return _CmAppendDownloadFile(list, localDir, link);
  _SetCurrentDirectoryFTP(level);
  return _CmDownloadFolderInterfaced(list, localDir, link, process);
}

bool LFtpList::_CmDownloadFolderInterfaced(FtpDownloadFileList& list, const char* localDir, const char* name,
                                           LProcessInterface& process) {
  if (process.IsToStop()) return false;
  if (!TransferPathFits(localDir, name)) return LeaveOut(list, true);
  char path[kTextSize];
  LFile::_MakeFilePath(path, localDir, name, "");
  struct stat status;
  if (stat(path, &status) != 0) (void)platform::FileMakeFolder(path, kNewFolderMode);
  list.AddFolderToCreatedFolderList(path);

  char level[kTextSize];
  char asCollected[kTextSize];
  char sub[kTextSize];
  RemotePathOfLocal(asCollected, szBaseLocalDirectory, szBaseRemoteDirectory, localDir);
  if (!_GetCurrentDirectoryFTP(level, asCollected)) return LeaveOut(list, false);
  if (!TransferPathFits(level, name)) return LeaveOut(list, true);
  RemoteJoin(sub, level, name);
  if (!_SetCurrentDirectoryFTP(sub)) {
    // Listed now would be the folder above, again and again.
    _SetCurrentDirectoryFTP(level);
    return LeaveOut(list, true);
  }
  bool isListed = false;
  for (int i = 0; i < kTries && !isListed; ++i) {
    LFileTransferProtocol::DirIterator listing;
    LProcessInterfaceVoid quiet;
    isListed = listing._LoadList(quiet, Ftp, "*") == LProcessResultOk;
    if (!isListed && ReconnectFromLast()) _SetCurrentDirectoryFTP(sub);
    for (; isListed && listing.Current(); listing.Next()) {
      if (RemoteIsDotEntry(listing.Name())) continue;
      if (!_CmDownloadItemListInterfaced(list, path, listing.Name(), process)) return false;
    }
  }
  if (!isListed) LeaveOut(list, true);
  // Also behind a folder that could not be listed: what follows is asked for by bare names.
  _SetCurrentDirectoryFTP(level);
  return true;
}

bool LFtpList::_CmAppendDownloadFile(FtpDownloadFileList& list, const char* localDir, const char* name) {
  if (!pWindow) return false;
  if (!TransferPathFits(localDir, name)) return LeaveOut(list, true);
  char local[kTextSize];
  char remote[kTextSize];
  RemotePathOfLocal(remote, szBaseLocalDirectory, szBaseRemoteDirectory, localDir);
  if (!TransferPathFits(remote, name)) return LeaveOut(list, true);
  LFile::_MakeFilePath(local, localDir, name, "");
  RemotePathOfLocal(remote, szBaseLocalDirectory, szBaseRemoteDirectory, local);
  if (LFile::TestFileExists(local)) {
    if (!bOverwriteForAll) {
      AskToOverwrite(*this, "このファイルのコピー \"%s\" が既にローカルフォルダ内に存在します。上書きしますか？",
                     local);
    }
    if (!bOverwriteYes) return true;
  }
  LOGF("順番待ち中のファイル： %s", name);
  list.AddFile(local, remote);
  return true;
}
