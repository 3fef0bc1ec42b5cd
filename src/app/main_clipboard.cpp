// Remote files copied to the clipboard, by way of a folder of this machine, and files pasted from it.
#include "app/command_ids.h"
#include "app/main_dialog.h"
#include "client/remote_paths.h"
#include "platform/file_io.h"
#include "sites/store/accounts.h"
#include "support/files.h"
#include "support/log.h"
#include "support/window/clipboard.h"

namespace {

constexpr unsigned kAfterCopyMs = 100;
constexpr unsigned kAfterPasteMs = 30000;

/// An empty folder in the place of the last copy's. False if that could not be had.
bool MakeCopyFolder(char (&folder)[kTextSize]) {
  char temporary[kTextSize];
  LFile::GetTempFolder(temporary);
  LFile::_MakeFilePath(folder, temporary, "OrvaneCopyFolder", "");
  if (LFile::TestFileExists(folder)) LFile::DeleteFolderTree(folder);
  if (platform::FileMakeFolder(folder, 0777) == 0) return true;
  // What an earlier copy has left there is not to be taken for this one.
  LOGERRORF("フォルダを作成できません：%s", folder);
  return false;
}

void AddEntries(const char* folder, LStringListTemplate<char>& paths) {
  LFile::FolderIteratorAllFiles entry;
  for (bool more = entry.Open(folder, "*"); more; more = entry.Next()) {
    if (LIsDotName(entry.Name()) || !TransferPathFits(folder, entry.Name())) continue;
    char path[kTextSize];
    LFile::_MakeFilePath(path, folder, entry.Name(), "");
    paths.Add(path);
  }
}

}  // namespace

void MainDialogCore::CmUpload(const LStringListTemplate<char>& list) {
  if (list.count == 0) return;
  char folder[kTextSize];
  LFile::_GetFolderFromPath(folder, list.strings[0]);
  LVector<LStringLongTemplate<char>> files;
  for (size_t i = 0; i < list.count; ++i) files.Add(LStringLongTemplate<char>(list.strings[i]));
  LFTPAccountSettings::UpdateUploadCount(static_cast<int>(files.size));
  // A failure is in the history, and the connection stays.
  (void)remotePane.CmUploadList(files, folder);
  LFTPAccountSettings::UpdateRunsWithUploads();
}

void MainDialog::CopySelected() {
  char folder[kTextSize];
  if (!MakeCopyFolder(folder)) return;
  TimerReset(kTimerWatch);
  DragDownload(folder);
  TimerSet(kTimerWatch, kAfterCopyMs);
  // What came before a cancel is copied as well.
  LStringListTemplate<char> paths;
  AddEntries(folder, paths);
  LClipboardCopyFilePaths(paths);
}

void MainDialog::CmRemoteCopy() {
  SetPowerDownDeny();
  if (remotePane.bConnected && (LVGetSelCount(kRemoteList) > 0 || remotePane.IsFolderSelected())) CopySelected();
  SetPowerDownAllow();
}

void MainDialog::CmRemotePaste() {
  if (!remotePane.bConnected || !LClipboardHasFilePaths()) return;
  LStringListTemplate<char> paths;
  LClipboardGetFilePaths(paths);
  TimerReset(kTimerWatch);
  MainDialogCore::CmUpload(paths);
  TimerSet(kTimerWatch, kAfterPasteMs);
}
