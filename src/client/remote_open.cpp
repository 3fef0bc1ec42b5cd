// Opening remote items: a file by way of a temporary copy, a link as whatever it leads to.
#include "client/remote_pane.h"
#include "client/remote_paths.h"
#include "client/transfer_lists.h"
#include "core/progress_dialog.h"
#include "ftp/permissions.h"
#include "ftp/transfer.h"
#include "platform/desktop.h"
#include "support/files.h"
#include "support/log.h"

namespace {

/// The job that fetches the copy.
struct OpenedFile {
  DownloadFile file;
};

LProcessResult Process(LProcessInterface& process, OpenedFile& opened) {
  DownloadFile& file = opened.file;
  if (!FTPTestUserHasReadPermissions(process, *file.protocol, file.remote)) return LProcessResultFailed;
  return ProcessFtpDownload(process, *file.protocol, file.remote, file.local, &file.error);
}

/// The copy's path. A link may lead anywhere, also up: the copy keeps only the file's own name, and one that would
/// name another file is no copy.
bool TemporaryCopyOf(char (&out)[kTextSize], const char* remote) {
  char folder[kTextSize];
  char name[kTextSize];
  LFile::GetTempFolder(folder);
  LFile::_GetFileFromPath(name, remote);
  if (!name[0]) TextCopy(name, remote);
  if (!RemoteNameIsPlain(name)) return false;
  if (strlen(folder) + 1 + strlen(name) >= kTextSize) return false;
  LFile::_MakeFilePath(out, folder, name, "");
  return true;
}

}  // namespace

bool LFtpList::CmOpenFile(const char* name) {
  if (!pWindow) return false;
  OpenedFile opened = {};
  DownloadFile& file = opened.file;
  file.protocol = &Ftp;
  TextCopy(file.remote, name);
  if (!TemporaryCopyOf(file.local, name)) {
    LOGWARNF("疑わしい名前のファイル（%s）のダウンロードをスキップします", name);
    return false;
  }
  NotifySender.Post(0);
  const LProcessResult result = ProcessRunAsDialog(pWindow, "FTP ダウンロード", opened);
  NotifySender.Post(1);
  if (result != LProcessResultOk) return false;
  platform::DesktopOpenFile(file.local);
  LOG("ファイルを開くことができました： ", name);
  return true;
}

void LFtpList::CmOpenSymbolicLink(const char* text, bool openFiles) {
  char target[kTextSize];
  RemoteLinkTarget(target, text);
  LOG("シンボリックリンクをディレクトリとして開こうとしています： ", target);
  if (CmOpenFolder(target)) return;
  if (openFiles) {
    LOG("シンボリックリンクをファイルとして開こうとしています： ", target);
    CmOpenFile(target);
  } else {
    LOG("シンボリックリンクをディレクトリとして開くことができませんでした。");
  }
}

void LFtpList::EvDoubleClick(bool openFiles) {
  if (!pWindow || pWindow->LVGetSelCount(nListId) != 1) return;
  const int row = pWindow->LVGetCurSel(nListId);
  char word[kTextSize];
  char name[kTextSize];
  RowKindWord(row, word);
  pWindow->LVGetString(nListId, row, name);
  if (strcasecmp(word, kWordFolder) == 0) {
    CmOpenFolder(name);
  } else if (strcasecmp(word, kWordFile) == 0) {
    if (openFiles) CmOpenFile(name);
  } else {
    CmOpenSymbolicLink(name, openFiles);
  }
}
