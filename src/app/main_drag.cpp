// Files dragged into the main window, and rows of the remote list dragged out of it.
#include <cerrno>

#include "app/command_ids.h"
#include "app/main_dialog.h"
#include "client/remote_paths.h"
#include "platform/clock.h"
#include "platform/file_io.h"
#include "support/files.h"

namespace {

constexpr unsigned kAfterDragMs = 100;
constexpr int64_t kKeepSeconds = 24 * 60 * 60;
constexpr mode_t kOwnOnly = 0700;

/// What was dropped in an earlier run, and the program that took it has long copied.
void DeleteOldDrags(const char* folder) {
  LFile::FolderIteratorAllFiles entry;
  for (bool more = entry.Open(folder, "*"); more; more = entry.Next()) {
    if (LIsDotName(entry.Name()) || strlen(folder) + 1 + strlen(entry.Name()) >= kTextSize) continue;
    char path[kTextSize];
    LFile::_MakeFilePath(path, folder, entry.Name(), "");
    if (platform::ClockWallSeconds() - LocalModifiedTime(path) > kKeepSeconds) LFile::DeleteFolderTree(path);
  }
}

}  // namespace

void MainDialogCore::DragDownload(char* folder) {
  remotePane.bDownloadedAll = false;
  if (CheckConnection()) remotePane.CmDownloadList(folder);
}

/// It has files only if somebody asked for them.
void MainDialog::DeleteEmptyDragFolder() {
  if (dragFolder[0]) platform::FileRemoveFolder(dragFolder);
  dragFolder[0] = 0;
}

/// A folder for each drag: the program that took the last one may still be copying.
bool MainDialog::EvDragHandlerBegin() {
  if (!remotePane.bConnected) return false;
  DeleteEmptyDragFolder();
  char temporary[kTextSize];
  char folder[kTextSize];
  LFile::GetTempFolder(temporary);
  LFile::_MakeFilePath(folder, temporary, "OrvaneDragFolder", "");
  (void)platform::FileMakeFolder(folder, kOwnOnly);  // Where it is there already, the next call tells.
  DeleteOldDrags(folder);
  constexpr int kMostDrags = 10000;
  for (int i = 1; i <= kMostDrags; ++i) {
    char name[kTextSize];
    char path[kTextSize];
    TextFormat(name, "%d", i);
    LFile::_MakeFilePath(path, folder, name, "");
    if (platform::FileMakeFolder(path, kOwnOnly) == 0) {
      TextCopy(dragFolder, path);
      return true;
    }
    if (errno != EEXIST) return false;
  }
  return false;
}

/// The rows come first: a reconnect on the way fills the list anew, and nothing is selected in it.
void MainDialog::EvDragHandlerNeedsFiles(LStringListTemplate<char>& paths, bool fetch) {
  for (LVSelectedIterator row(*this, kRemoteList); row.IsValid(); row.Next()) {
    char name[kTextSize];
    char path[kTextSize];
    LVGetString(kRemoteList, row.Row(), name);
    // A name that leads out of the folder is not fetched, and names another file here.
    if (!RemoteNameIsPlain(name) || !TransferPathFits(dragFolder, name)) continue;
    LFile::_MakeFilePath(path, dragFolder, name, "");
    paths.Add(path);
  }
  if (!fetch) return;
  TimerReset(kTimerWatch);
  DragDownload(dragFolder);
  TimerSet(kTimerWatch, kAfterDragMs);
}

/// The questions about what is there come before the pane says that a job has begun.
void MainDialog::OnDropFiles(const char* const* paths, size_t count) {
  TimerReset(kTimerWatch);
  LMainWindow::OnDropFiles(paths, count);
  TimerSet(kTimerWatch, kAfterDragMs);
}

/// What was cancelled in the middle is not to be taken for a whole.
bool MainDialog::OnListDragNeedsFiles(int list, bool fetch, const std::function<void(const char*)>& add) {
  return LMainWindow::OnListDragNeedsFiles(list, fetch, add) && (!fetch || remotePane.bDownloadedAll);
}
