// A drag over the rows of the remote pane: files from elsewhere, which are sent, and rows of the pane itself, which are
// moved on the server.
#include "client/remote_pane.h"
#include "client/remote_paths.h"
#include "ftp/commands.h"
#include "sites/store/accounts.h"
#include "sites/store/settings.h"
#include "support/files.h"

namespace {

constexpr unsigned kNoRow = static_cast<unsigned>(-1);
constexpr unsigned kEffectNone = 0;
constexpr unsigned kEffectCopy = 1;

void GetDragSource(char (&source)[kTextSize]) { _LUserSettingGetString("Settings", "DragSource", "local", source); }

}  // namespace

bool LFtpList::IsFolderRow(int row) const {
  const auto* item = reinterpret_cast<const LFtpExpListItem*>(pWindow->LVGetItemData(nListId, row));
  return item && item->kind == LFtpExpListItem::kFolder;
}

bool LFtpList::IsDragRow(int row) const {
  for (size_t i = 0; i < nDragRows && pDragRows[i] != kNoRow; ++i) {
    if (pDragRows[i] == static_cast<unsigned>(row)) return true;
  }
  return false;
}

bool LFtpList::EvDragEnter(unsigned int& /*effect*/) {
  if (!pWindow) return true;
  pWindow->LVClearInsertBar(nListId);
  char source[kTextSize];
  GetDragSource(source);
  pDragRows.reset();
  nDragRows = 0;
  if (strcmp(source, "local") == 0) {
    pWindow->LVSelectNone(nListId);
    return true;
  }
  LVSelectedIterator selected(*pWindow, nListId);
  pDragRows.reset(new unsigned[selected.Count() + 1]);
  for (; selected.IsValid(); selected.Next()) pDragRows[nDragRows++] = static_cast<unsigned>(selected.Row());
  pDragRows[nDragRows++] = kNoRow;
  return true;
}

bool LFtpList::EvDragOver(const LPoint& point, unsigned int& /*effect*/) {
  if (!pWindow) return true;
  pWindow->LVClearInsertBar(nListId);
  const int row = pWindow->LVHitTest(nListId, point.x, point.y);
  if (row < 0) return true;
  const bool wasDragged = IsDragRow(iDropRow);
  if (IsFolderRow(row)) {
    pWindow->LVSetSel(nListId, row, true);
    if (iDropRow != row && !wasDragged) pWindow->LVSetSel(nListId, iDropRow, false);
    iDropRow = row;
  } else {
    if (!wasDragged) pWindow->LVSetSel(nListId, iDropRow, false);
    pWindow->LVDrawInsertBar(nListId, point.y);
  }
  return true;
}

bool LFtpList::EvDragLeave() {
  if (!pWindow) return true;
  pWindow->LVClearInsertBar(nListId);
  // Both are in the order of the rows.
  size_t next = 0;
  for (LVSelectedIterator selected(*pWindow, nListId); selected.IsValid(); selected.Next()) {
    const auto row = static_cast<unsigned>(selected.Row());
    while (next < nDragRows && pDragRows[next] < row) ++next;
    if (next == nDragRows || pDragRows[next] != row) pWindow->LVSetSel(nListId, selected.Row(), false);
  }
  return true;
}

void LFtpList::UploadDropped(const LDroppedFileData& files) {
  LVector<LStringLongTemplate<char>> paths;
  for (LDroppedFilesIterator file(files); file.IsValid(); file.Next()) {
    if (TransferPathFits("", file.Path())) paths.Add(LStringLongTemplate<char>(file.Path()));
  }
  if (paths.size == 0) return;
  char root[kTextSize];
  LFile::_GetFolderFromPath(root, paths[0].Text());
  NotifySender.Post(0);
  bDropToRow = true;
  if (CmUploadList(paths, root) == LProcessResultOk) LFTPAccountSettings::UpdateUploadCount(1);
  LFTPAccountSettings::UpdateRunsWithUploads();
  NotifySender.Post(1);
}

/// Into the folder that the drag is over. What the server refuses to move stays.
void LFtpList::MoveDragRows() {
  char target[kTextSize];
  pWindow->LVGetString(nListId, iDropRow, target);
  LProcessInterfaceVoid process;
  for (size_t i = 0; i < nDragRows && pDragRows[i] != kNoRow; ++i) {
    char name[kTextSize];
    char to[kTextSize];
    pWindow->LVGetString(nListId, static_cast<int>(pDragRows[i]), name);
    if (!TransferPathFits(target, name)) continue;
    TextFormat(to, "%s/%s", target, name);
    (void)ProcessFtpRename(process, Ftp, name, to);
  }
  CmRefresh();
}

bool LFtpList::EvDrop(const LPoint& /*point*/, unsigned int& effect, const LDroppedFileData& files) {
  if (!pWindow) return true;
  char source[kTextSize];
  GetDragSource(source);
  if (strcasecmp(source, "remote") != 0) {
    effect = kEffectCopy;
    UploadDropped(files);
  } else {
    const bool isOnItself = IsDragRow(iDropRow);
    if (!isOnItself && pWindow->LVGetSel(nListId, iDropRow) && IsFolderRow(iDropRow)) MoveDragRows();
    if (!isOnItself) pWindow->LVSetSel(nListId, iDropRow, false);
    effect = kEffectNone;
  }
  pWindow->LVClearInsertBar(nListId);
  LUserSettingSetString("Settings", "DragSource", "local");
  return true;
}
