// A drop of local files on the window: the folders are made on the server and the questions asked, both in the drop
// itself; the dialog that follows has nothing to send.
#include "client/remote_pane.h"
#include "client/remote_paths.h"
#include "client/transfer_lists.h"
#include "core/progress_dialog.h"
#include "sites/store/accounts.h"
#include "sites/store/settings.h"
#include "support/files.h"
#include "support/log.h"

// Collecting without an interface

bool LFtpList::_CheckCanOverwrite(const char* name) {
  if (bOverwriteYes && bOverwriteForAll) return true;
  if (Ftp.GetFileSizeBytes64(name) == 0) return true;
  _GetOverwritePermission(name);
  return bOverwriteYes;
}

bool LFtpList::_CmUploadItemList(FtpUploadFileList& list, const char* localRoot, const char* path) {
  return LocalIsFolder(path) ? _CmUploadFoldersAndFilesList(list, localRoot, path)
                             : _CmAppendUploadFile(list, localRoot, path);
}

bool LFtpList::_CmAppendUploadFile(FtpUploadFileList& list, const char* localRoot, const char* path) {
  if (!pWindow) return false;
  char name[kTextSize];
  RemoteNameOfUpload(name, localRoot, path, list.nameRules);
  if (!_CheckCanOverwrite(name)) return true;
  LOGF("順番待ち中のファイル： %s", path);
  list.AddFile(path, name);
  return true;
}

bool LFtpList::_CmUploadFoldersAndFilesList(FtpUploadFileList& list, const char* localRoot, const char* folder) {
  LOGF("以下のディレクトリをアップロード中：%s", folder);
  char relative[kTextSize];
  char remote[kTextSize];
  LFile::MakeRelativeFolder(relative, localRoot, folder);
  if (!TransferPathFits(szBaseRemoteDirectory, relative)) return true;
  TextFormat(remote, "%s/%s", szBaseRemoteDirectory, relative);
  // Entering it decides.
  (void)_CreateDirectoryFTP(remote);
  list.AddFolderToCreatedFolderList(remote);
  if (!_SetCurrentDirectoryFTP(remote)) {
    LOGERRORF("以下のディレクトリを変更できません：%s", remote);
    return false;
  }
  LFile::FolderIteratorAllFiles entry;
  for (bool more = entry.Open(folder, "*"); more; more = entry.Next()) {
    if (LIsDotName(entry.Name()) || !TransferPathFits(folder, entry.Name())) continue;
    char path[kTextSize];
    LFile::_MakeFilePath(path, folder, entry.Name(), "");
    if (!_CmUploadItemList(list, localRoot, path)) return false;
  }
  return true;
}

// The drop

void LFtpList::EvDropFiles(LDroppedFileData& files) {
  if (!pWindow) return;
  char source[kTextSize];
  _LUserSettingGetString("Settings", "DragSource", "local", source);
  if (strcasecmp(source, "remote") == 0) return;  // A row of the list is no file.
  bOverwriteYes = bOverwriteForAll = false;
  TextCopy(szBaseRemoteDirectory, szCurrentDirectory);
  FtpUploadFileList list = {};
  list.protocol = &Ftp;

  char root[kTextSize] = "";
  for (LDroppedFilesIterator file(files); file.IsValid(); file.Next()) {
    if (!root[0]) LFile::_GetFolderFromPath(root, file.Path());
    if (!TransferPathFits("", file.Path()) || !LFile::TestFileExists(file.Path())) continue;
    if (!_CmUploadItemList(list, root, file.Path())) break;
  }
  _SetCurrentDirectoryFTP(szBaseRemoteDirectory);
  pWindow->SetPowerDownDeny();
  NotifySender.Post(0);
  // A list without a source is done before it begins: what was collected stays where it is.
  if (ProcessRunAsDialog(pWindow, "アップロード中のファイル一覧", list) != LProcessResultOk) {
    LOGERROR("ファイル一覧をアップロードできません");
  } else {
    LFTPAccountSettings::UpdateRunsWithUploads();
  }
  pWindow->SetPowerDownAllow();
  ApplyDirectory();
  NotifySender.Post(1);
  _SetCurrentDirectoryFTP(szCurrentDirectory);
  CmRefresh();
}
