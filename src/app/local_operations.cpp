// What the local pane does to files: rename, delete, and its context menu.
#include <cerrno>

#include "app/command_ids.h"
#include "app/local_pane.h"
#include "client/remote_paths.h"
#include "platform/file_io.h"
#include "support/files.h"
#include "support/window/alert.h"
#include "support/window/menus.h"

/// False if the path has no room: cut short it would name another file.
bool LExplorerFolderControl::PathOfName(const char* name, char (&path)[kTextSize]) const {
  LFile::_MakeFilePath(path, szFolder, name, "");
  return strlen(szFolder) + 1 + strlen(name) < kTextSize;
}

// Names edited in the list

void LExplorerFolderControl::CmRename() {
  if (pWindow->LVGetSelCount(iControl) == 1) pWindow->LVEditCurLabel(iControl);
}

/// A name that exists already, and any failure, pass in silence: the reload shows the old name.
void LExplorerFolderControl::RenameOnDisk(const char* from, const char* to) {
  if (LFile::TestFileExists(to) || platform::FileRename(from, to) == 0 || errno != EXDEV) return;
  if (LFile::CopyFile(from, to)) platform::FileUnlink(from);
}

/// By the end of the editing another row may be selected: a click on it is one way to end it.
void LExplorerFolderControl::EvLVLabelEditBegin(int row) { pWindow->LVGetString(iControl, row, szOldName); }

void LExplorerFolderControl::EvLVLabelEditFinish(int /*row*/, const char* newName) {
  char from[kTextSize] = "", to[kTextSize];
  const bool fits = PathOfName(newName, to);
  if (szOldName[0]) {
    if (PathOfName(szOldName, from) && fits) RenameOnDisk(from, to);
  } else if (!fits || platform::FileMakeFolder(to, 0777) != 0) {
    LStringLongTemplate<char> text;
    text.sprintf("フォルダを作成できません：%s", to);
    LAlertWithButtonText::DisplayOkError(pWindow, text, "警告", "OK");
  }
  ListView_OpenFolderPath(szFolder);
  // What the user chooses next is meant for that file, whose name may have stayed.
  PaneUtils::LVSetCurSelVisible(*pWindow, iControl, LFile::TestFileExists(from) ? szOldName : newName);
  szOldName[0] = 0;
}

// Delete

int LExplorerFolderControl::CmDelete() {
  if (pWindow->LVGetSelCount(iControl) == 0) return 0;
  if (!LAlertWithButtonText::DisplayOkCancel(pWindow,
                                             "選択したファイルまたはディレクトリを削除します。よろしいですか？",
                                             "削除する", "削除", "キャンセル")) {
    return 0;
  }
  const WaitCursor cursor;
  for (LVSelectedIterator selected(*pWindow, iControl); selected.IsValid(); selected.Next()) {
    char name[kTextSize], path[kTextSize];
    pWindow->LVGetString(iControl, selected.Row(), name);
    if (!name[0] || !PathOfName(name, path)) continue;
    // Failures show in the reload: the row is still there.
    if (pWindow->LVGetItemData(iControl, selected.Row()) == 1) {
      LFile::DeleteFolderTree(path);
    } else {
      platform::FileUnlink(path);
    }
  }
  return 1;
}

// Context menu

void LExplorerFolderControl::EvRightClick() {
  const LVSelectedIterator selected(*pWindow, iControl);
  char name[kTextSize] = "";
  if (selected.IsValid()) pWindow->LVGetString(iControl, selected.Row(), name);
  // A dot is how this menu tells a file from a folder.
  const bool hasDot = strchr(name, '.') != nullptr;
  LPopupMenu menu;
  if (hasDot) menu.AppendMenuItem(kCommandUpload, "アップロード");
  menu.AppendMenuItem(kCommandLocalOpen, "開く");
  menu.AppendMenuItem(kCommandMenuLocalRename, "名前を変更");
  menu.AppendMenuItem(kCommandMenuLocalDelete, "削除");
  menu.AppendMenuSeparator();
  menu.AppendMenuItem(kCommandMenuLocalNewFolder, "新規フォルダ");
  // The mark of a file goes to a command that this menu does not hold, so that only a folder's menu shows one.
  menu.SetDefaultMenuItem(hasDot ? kCommandShowHistory : kCommandLocalOpen);
  for (const int id : {kCommandLocalOpen, kCommandMenuLocalRename, kCommandMenuLocalDelete}) {
    menu.EnableMenuItem(id, selected.IsValid());
  }
  menu.DisplayPopupMenu(*pWindow);
}
