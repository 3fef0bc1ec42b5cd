// Collecting an upload: the local paths are walked, the remote folders made and entered on the way, and the files
// become a flat list.
#include "client/overwrite_question.h"
#include "client/remote_pane.h"
#include "client/remote_paths.h"
#include "client/transfer_lists.h"
#include "ftp/commands.h"
#include "ftp/queries.h"
#include "support/files.h"
#include "support/log.h"

namespace {

constexpr int kTries = 3;

/// All names in the folder; 1 when stopped.
LProcessResult ReadFolder(LProcessInterface& process, const char* folder, LStringListTemplate<char>& names) {
  LFile::FolderIteratorAllFiles iterator;
  if (!iterator.Open(folder, "*")) {
    LOGERRORF("以下のフォルダを読み込めません：%s", folder);
    return LProcessResultOk;
  }
  do {
    if (process.IsToStop()) return LProcessResultStopped;
    if (!LIsDotName(iterator.Name())) names.Add(iterator.Name());
  } while (iterator.Next());
  return LProcessResultOk;
}

/// A Windows server wants its own separators.
void UseSeparatorsOfServer(const LFileTransferProtocol& session, char (&path)[kTextSize]) {
  const bool isWindows = session.Has(LFileTransferProtocol::bSystWindowsNT);
  for (char* c = path; *c; ++c) {
    if (*c == '/' || *c == '\\') *c = isWindows ? '\\' : '/';
  }
}

LProcessResult MakeRemoteFolder(LProcessInterface& process, LFtpList& pane, FtpUploadFileList& list, const char* path) {
  for (int i = 0; i < kTries; ++i) {
    if (process.IsToStop()) return LProcessResultStopped;
    const LProcessResult made = ProcessFtpCreateDirectory(process, pane.Ftp, path);
    if (made == LProcessResultOk) {
      list.AddFolderToCreatedFolderList(path);
      return made;
    }
    if (made != LProcessResultFailed) return made;
    pane.ReconnectFromLast();
  }
  // Entering it decides.
  return LProcessResultOk;
}

LProcessResult EnterRemoteFolder(LProcessInterface& process, LFtpList& pane, const char* path) {
  char command[kFtpLongCommand];
  FtpFormatCommand(command, "CWD %s\r\n", path);
  for (int i = 0; i < kTries; ++i) {
    const LProcessResult result = ProcessFtpSendAndWaitForReply(process, pane.Ftp, command, nullptr, nullptr);
    if (result != LProcessResultFailed) return result;
    if (i + 1 < kTries) pane.ReconnectFromLast();
  }
  LOGERRORF("以下のディレクトリを変更できません：%s", path);
  return LProcessResultFailed;
}

}  // namespace

void LFtpList::_GetOverwritePermission(const char* name) {
  if (bOverwriteForAll) return;
  AskToOverwrite(*this, "このファイルのコピー \"%s\" 既にリモートフォルダに存在します。上書きしますか？", name);
}

bool LFtpList::_CheckCanOverwrite(LProcessInterface& process, const char* name) {
  if (bOverwriteYes && bOverwriteForAll) return true;
  // What is not there, and what is empty, is replaced without a question.
  uint64_t size = 0;
  if (ProcessFtpGetFileSize(process, Ftp, name, size) != LProcessResultOk || size == 0) return true;
  _GetOverwritePermission(name);
  return bOverwriteYes;
}

void LFtpList::RemoteNameOfUpload(char (&out)[kTextSize], const char* localRoot, const char* path,
                                  const FtpNameRules& rules) {
  char cleanPath[kTextSize];
  char cleanRoot[kTextSize];
  FtpCleanPath(cleanPath, path, rules);
  FtpCleanPath(cleanRoot, localRoot, rules);
  LFile::MakeRelativeFolder(out, cleanRoot, cleanPath);
}

LProcessResult LFtpList::_CmUploadItemList(LProcessInterface& process, FtpUploadFileList& list, const char* localRoot,
                                           const char* path) {
  if (process.IsToStop()) return LProcessResultStopped;
  // What cannot be looked at counts as a file, and fails as one.
  return LocalIsFolder(path) ? _CmUploadFoldersAndFilesList(process, list, localRoot, path)
                             : _CmAppendUploadFile(process, list, localRoot, path);
}

LProcessResult LFtpList::_CmAppendUploadFile(LProcessInterface& process, FtpUploadFileList& list, const char* localRoot,
                                             const char* path) {
  if (process.IsToStop()) return LProcessResultStopped;
  if (!pWindow) return LProcessResultFailed;
  char name[kTextSize];
  RemoteNameOfUpload(name, localRoot, path, list.nameRules);
  if (!_CheckCanOverwrite(process, name)) return LProcessResultOk;
  LOGF("順番待ち中のファイル： %s", path);
  list.AddFile(path, name);
  return process.IsToStop() ? LProcessResultStopped : LProcessResultOk;
}

LProcessResult LFtpList::_CmUploadFoldersAndFilesList(LProcessInterface& process, FtpUploadFileList& list,
                                                      const char* localRoot, const char* folder) {
  if (process.IsToStop()) return LProcessResultStopped;
  LOGF("以下のディレクトリをアップロード中：%s", folder);
  if (!LocalIsFolder(folder)) return LProcessResultFailed;
  LStringListTemplate<char> names;
  LProcessResult result = ReadFolder(process, folder, names);
  if (result != LProcessResultOk) return result;

  char before[kTextSize];
  (void)_GetCurrentDirectoryFTP(before);
  char relative[kTextSize];
  char remote[kTextSize];
  LFile::MakeRelativeFolder(relative, localRoot, folder);
  if (!TransferPathFits(szBaseRemoteDirectory, relative)) return LProcessResultOk;
  LFile::_MakeFilePath(remote, szBaseRemoteDirectory, relative, "");
  UseSeparatorsOfServer(Ftp, remote);
  result = MakeRemoteFolder(process, *this, list, remote);
  if (result == LProcessResultOk) result = EnterRemoteFolder(process, *this, remote);
  if (result != LProcessResultOk) return result;

  char current[kTextSize];
  if (!_GetCurrentDirectoryFTP(current, remote)) return LProcessResultFailed;
  char root[kTextSize];
  LFile::_MakeFilePath(root, localRoot, relative, "");
  for (size_t i = 0; i < names.count; ++i) {
    if (process.IsToStop()) return LProcessResultStopped;
    _SetCurrentDirectoryFTP(current);
    if (!TransferPathFits(folder, names.strings[i])) continue;
    char path[kTextSize];
    LFile::_MakeFilePath(path, folder, names.strings[i], "");
    // Files go under their bare names, folders under their way from the root.
    result = LocalIsFolder(path) ? _CmUploadFoldersAndFilesList(process, list, localRoot, path)
                                 : _CmAppendUploadFile(process, list, root, path);
    if (result != LProcessResultOk) return result;
  }
  return LProcessResultOk;
}
