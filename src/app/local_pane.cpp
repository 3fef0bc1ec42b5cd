#include "app/local_pane.h"

#include <sys/stat.h>

#include "app/command_ids.h"
#include "client/remote_paths.h"
#include "platform/desktop.h"
#include "platform/event_loop.h"
#include "platform/text_service.h"
#include "support/date_time.h"
#include "support/files.h"
#include "support/parsing.h"

namespace {

constexpr int kFolderIconResource = 308;
constexpr LVColDynamicGlobal kColumns[] = {
    {"ファイル名", 20, 0}, {"サイズ", 10, 2}, {"種類", 15, 0}, {"更新日", 20, 0}, {nullptr, -1, 0},
};
constexpr int kColumnCount = 4;

}  // namespace

template <>
int LListArrayComparePtr<LExpListItem>(const LExpListItem* a, const LExpListItem* b) {
  if (a->isFolder != b->isFolder) return a->isFolder ? -1 : 1;
  return strcmp(a->name, b->name) <= 0 ? -1 : 1;
}

int LocalCompareFileSizes(const char* a, const char* b, bool ascending) {
  if (!*a) return *b ? -1 : 0;
  if (!*b) return 1;
  const size_t lengthA = strlen(a);
  const size_t lengthB = strlen(b);
  int order;
  if (lengthA != lengthB) {
    order = lengthA < lengthB ? -1 : 1;
  } else {
    order = strcmp(a, b) == 0 ? 0 : 1;
  }
  return ascending ? order : -order;
}

void LExplorerFolderControl::Init(LMacWindow& window, int control) {
  pWindow = &window;
  iControl = control;
  window.AddList(control, "ローカルファイル一覧");
  window.LVInit(control, kColumns);
  LVSorterInit(window, control, "LVLocalFileSorter");
  for (int column = 0; column < kColumnCount; ++column) window.LVSetColumnEditable(control, column, column == kName);
  window.LVSetImages(control, &ImageList);
  iFolderIcon = ImageList.AddIcon(LGuiIcon::FromResource(kFolderIconResource));
  window.LVSetStyleDefaultText(control, "フォルダ内にファイルがありません");
  LVLabelEditInit(window, control);
  window.HandleLVRightClick(control, kCommandFromLocalList + kRightClick);
  window.HandleLVSelChange(control, kCommandFromLocalList + kSelectionChanged);
  window.HandleLVDoubleClick(control, kCommandFromLocalList + kOpen);
  InitTreePanel();
}

void LExplorerFolderControl::InitTreePanel() {
  char documents[kTextSize];
  LFile::GetUserDocumentsFolder(documents);
  ListView_OpenFolderPath(documents);
}

// Loading

void LExplorerFolderControl::LoadItems(const char* path, LList<LExpListItem>& items) const {
  LFile::FolderIteratorAllFiles folder;
  for (bool found = folder.Open(path, "*"); found; found = folder.Next()) {
    platform::EventLoopDraw();
    const char* name = folder.Name();
    if (name[0] == '.') continue;
    auto* item = new LExpListItem();
    TextCopy(item->name, name);
    LFile::_GetFileExtensionFromPath(item->extension, name);
    char full[kTextSize];
    LFile::_MakeFilePath(full, path, name, "");
    struct stat status;
    if (stat(full, &status) == 0) {
      item->isFolder = S_ISDIR(status.st_mode);
      item->size = static_cast<uint64_t>(status.st_size);
      item->modified = status.st_mtime;
    }
    items.AddHead(item);
  }
  items.Sort();
}

int LExplorerFolderControl::ImageOf(const LExpListItem& item) {
  if (item.isFolder) return iFolderIcon;
  const char* key = item.extension[0] ? item.extension : item.name;
  const int known = ImageList.FindIndex(key);
  return known >= 0 ? known : ImageList.GetIndex(LGuiIcon::LoadFromFileInfo(item.name), key);
}

void LExplorerFolderControl::ShowItem(const LExpListItem& item) {
  const int row = pWindow->LVAddString(iControl, item.name, ImageOf(item), item.isFolder ? 1 : 0);
  char text[kTextSize] = "フォルダ";
  if (!item.isFolder) FormatFileSize(text, item.size, 1);
  pWindow->LVSetColumnString(iControl, row, kSize, text);
  pWindow->LVSetColumnString(iControl, row, kKind, item.extension);
  LDateTime(item.modified).GetDateTime(text);
  pWindow->LVSetColumnString(iControl, row, kModified, text);
}

/// By the bytes or, where the user sees other text than these, by that.
bool LExplorerFolderControl::PassesFilter(const char* name) const {
  char shown[kTextSize];
  if (stristrTemplate(name, szNameFilter)) return true;
  return platform::TextDecodeName(name, shown) && stristrTemplate(shown, szNameFilter);
}

void LExplorerFolderControl::ListView_OpenFolderPath(const char* path) {
  if (!path[0]) return;
  char opened[kTextSize];
  TextCopy(opened, path);  // `path` may be the present folder or an entry of the history.
  pWindow->LVClear(iControl);
  LList<LExpListItem> items;
  LoadItems(opened, items);
  pWindow->LVHoldDrawing(iControl, true);
  for (const LExpListItem* item = items.first; item; item = item->next) {
    platform::EventLoopDraw();
    if (szNameFilter[0] && !item->isFolder && !PassesFilter(item->name)) continue;
    ShowItem(*item);
  }
  pWindow->LVHoldDrawing(iControl, false);
  // Folders stand first until the user chooses a column to order by.
  if (IsSortChosen()) LVSorterSort();
  pWindow->LVSetCurSel(iControl, 0);
  TextCopy(szFolder, opened);
  if (bKeepHistory) history.Add(opened);
  EvSelectionChanged();
}

void LExplorerFolderControl::ListView_Expand(int row) {
  if (row < 0) {
    ListView_OpenFolderPath(szFolder);
    return;
  }
  if (pWindow->LVGetItemData(iControl, row) != 1) return;
  char name[kTextSize];
  char path[kTextSize];
  pWindow->LVGetString(iControl, row, name);
  LFile::_MakeFilePath(path, szFolder, name, "");
  ListView_OpenFolderPath(path);
}

// Going through the tree

void LExplorerFolderControl::CmRefresh() { ListView_OpenFolderPath(szFolder); }

void LExplorerFolderControl::CmUp() {
  char up[kTextSize];
  LFile::_GetFolderFromPath(up, szFolder);
  ListView_OpenFolderPath(up[0] ? up : "/");
}

void LExplorerFolderControl::CmBack() {
  const char* path = history.Back();
  if (!path) return;
  bKeepHistory = false;
  ListView_OpenFolderPath(path);
  bKeepHistory = true;
}

void LExplorerFolderControl::CmForward() {
  if (const char* path = history.Forward()) ListView_OpenFolderPath(path);
}

int LExplorerFolderControl::CmOpenFolder(const char* path) {
  char folder[kTextSize];
  LFile::_MakeFilePath(folder, path, "", "");
  if (LFile::TestFileExists(folder)) ListView_OpenFolderPath(folder);
  return 1;
}

void LExplorerFolderControl::EvDoubleClick() {
  const LVSelectedIterator selected(*pWindow, iControl);
  if (!selected.IsValid()) return;
  if (pWindow->LVGetItemData(iControl, selected.Row()) == 1) {
    ListView_Expand(selected.Row());
    return;
  }
  char name[kTextSize];
  char path[kTextSize];
  pWindow->LVGetString(iControl, selected.Row(), name);
  LFile::_MakeFilePath(path, szFolder, name, "");
  platform::DesktopOpenFile(path);
}

// Selection

void LExplorerFolderControl::EvSelectionChanged() {
  bHasSelection = pWindow->LVGetSelCount(iControl) > 0;
  pWindow->EnableControls();
}

void LExplorerFolderControl::CmClearSelection() {
  const LVSelectedIterator selected(*pWindow, iControl);
  if (selected.IsValid()) pWindow->LVSetSel(iControl, selected.Row(), false);
}

void LExplorerFolderControl::CmSetSelection(const char* name) {
  const int row = pWindow->LVFindString(iControl, name);
  if (row >= 0) pWindow->LVSetSel(iControl, row, true);
}

void LExplorerFolderControl::AddPathOf(int row, LVector<LStringLongTemplate<char>>& files) const {
  char name[kTextSize];
  char path[kTextSize];
  pWindow->LVGetString(iControl, row, name);
  if (!TransferPathFits(szFolder, name)) return;
  LFile::_MakeFilePath(path, szFolder, name, "");
  files.Add(LStringLongTemplate<char>(path));
}

void LExplorerFolderControl::GetFilesFromList(LVector<LStringLongTemplate<char>>& files) const {
  for (LVSelectedIterator selected(*pWindow, iControl); selected.IsValid(); selected.Next()) {
    AddPathOf(selected.Row(), files);
  }
}

void LExplorerFolderControl::GetFiles(LVector<LStringLongTemplate<char>>& files) const {
  const int count = pWindow->LVGetCount(iControl);
  for (int row = 0; row < count; ++row) AddPathOf(row, files);
}

bool LExplorerFolderControl::Command(int id) {
  switch (id) {
    case kOpen:
      pWindow->Command(kCommandLocalOpen, 0);  // The window follows with its path box.
      return true;
    case kSelectionChanged: EvSelectionChanged(); return true;
    case kRightClick: EvRightClick(); return true;
    default: return false;
  }
}

int LExplorerFolderControl::LVCompareFunc(LListViewSorter* sorter, const char* a, const char* b) {
  if (sorter->GetSortColumn() == kSize) return LocalCompareFileSizes(a, b, sorter->IsAscending());
  return LListViewSorter::LVCompareFunc(sorter, a, b);
}
