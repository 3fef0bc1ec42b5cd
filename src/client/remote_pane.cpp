#include "client/remote_pane.h"

#include "client/remote_paths.h"
#include "client/transfer_lists.h"
#include "platform/event_loop.h"
#include "support/date_time.h"
#include "support/files.h"
#include "support/log.h"

char LFtpList::szLastServer[kTextSize];
char LFtpList::szLastUsername[kTextSize];
char LFtpList::szLastPassword[kTextSize];
char LFtpList::szLastDirectory[kTextSize];
bool LFtpList::bLastSecure;
bool LFtpList::bLastImplicitSSL;
bool LFtpList::bPowerSuspendStandBy;
unsigned LFtpList::uStandBys;
ChildInterface* LFtpList::pCurrentInterface;

namespace {

constexpr int kFolderIconResource = 308;

constexpr LVColDynamicGlobal kColumns[] = {
    {"ファイル名", 20, 0}, {"サイズ", 10, 2}, {"種類", 15, 0},           {"更新日 ", 20, 0},
    {"許可", 15, 2},       {"所有者", 9, 2},  {"所有者グループ", 11, 2}, {nullptr, -1, 0},
};
constexpr int kColumnCount = 7;

}  // namespace

template <>
int LListArrayComparePtr<LFtpExpListItem>(const LFtpExpListItem* a, const LFtpExpListItem* b) {
  const bool folderA = a->kind == LFtpExpListItem::kFolder;
  const bool folderB = b->kind == LFtpExpListItem::kFolder;
  if (folderA != folderB) return folderA ? -1 : 1;
  return strcmp(a->name, b->name) <= 0 ? -1 : 1;
}

void LFtpList::InitList(LMacWindow& window, int id) {
  pWindow = &window;
  nListId = id;
  ClearRecentFileList();
  DragDropInit(window);
  window.LVInit(id, kColumns);
  LVDropTargetInit(window, id);
  LVSorterInit(window, id, "LVRemoteFileSorter");
  for (int column = 0; column < kColumnCount; ++column) window.LVSetColumnEditable(id, column, column == kName);
  window.LVSetImages(id, &ImageList);
  ImageList.GetIndex(LGuiIcon::LoadFromFileInfo("dummy"), "dummy");
  iFolderIcon = ImageList.AddIcon(LGuiIcon::FromResource(kFolderIconResource));
  window.LVShowColumn(id, kOwner, false);
  window.LVShowColumn(id, kGroup, false);
}

// As an interface

void LFtpList::SetError(const char* text) { LOGERROR(text); }

void LFtpList::SetStatus(const char* text, int /*level*/) {
  if (!bQuiet) LOG(text);
}

// Rows

int LFtpList::LVCompareFunc(LListViewSorter* sorter, const char* a, const char* b) {
  const auto* first = reinterpret_cast<const LFtpExpListItem*>(sorter->GetItemData1());
  const auto* second = reinterpret_cast<const LFtpExpListItem*>(sorter->GetItemData2());
  if (first && second) {
    // Whatever the direction, so that folders stay together on top.
    if (first->kind == LFtpExpListItem::kFolder && second->kind != LFtpExpListItem::kFolder) return 0;
    if (second->kind == LFtpExpListItem::kFolder && first->kind != LFtpExpListItem::kFolder) return 1;
  }
  if (sorter->GetSortColumn() == kSize) return PaneUtils::CompareFileSizes(a, b, sorter->IsAscending());
  if (sorter->GetSortColumn() == kModified && first && second) {
    const auto low1 = static_cast<uint32_t>(first->modified);
    const auto low2 = static_cast<uint32_t>(second->modified);
    const auto order = static_cast<int32_t>(sorter->IsAscending() ? low1 - low2 : low2 - low1);
    return order;
  }
  return LListViewSorter::LVCompareFunc(sorter, a, b);
}

int LFtpList::ImageOf(const LFtpExpListItem& item) {
  if (item.kind == LFtpExpListItem::kFolder) return iFolderIcon;
  char key[kTextSize];
  LFile::_GetFileExtensionFromPath(key, item.name);
  if (!key[0]) TextCopy(key, item.name);
  const int known = ImageList.FindIndex(key);
  return known >= 0 ? known : ImageList.GetIndex(LGuiIcon::LoadFromFileInfo(item.name), key);
}

void LFtpList::ShowItems() {
  static constexpr const char* kWords[] = {kWordFile, kWordFolder, kWordLink};
  pWindow->LVHoldDrawing(nListId, true);
  for (const LFtpExpListItem* item = Items.first; item; item = item->next) {
    platform::EventLoopDraw();
    const int row = pWindow->LVAddString(nListId, item->name, ImageOf(*item), reinterpret_cast<intptr_t>(item));
    char text[kTextSize] = "";
    if (item->kind != LFtpExpListItem::kFolder) FormatFileSize(text, item->size, 1);
    pWindow->LVSetColumnString(nListId, row, kSize, text);
    pWindow->LVSetColumnString(nListId, row, kKind, kWords[item->kind]);
    LDateTime(item->modified).GetDateTimeInLocalFormat(text);
    pWindow->LVSetColumnString(nListId, row, kModified, text);
    pWindow->LVSetColumnString(nListId, row, kAttributes, item->attributes);
    pWindow->LVSetColumnString(nListId, row, kOwner, item->owner);
    pWindow->LVSetColumnString(nListId, row, kGroup, item->group);
  }
  pWindow->LVHoldDrawing(nListId, false);
  LVSorterSort();
}

const char* LFtpList::RowKindWord(int row, char (&word)[kTextSize]) const {
  pWindow->LVGetColumnString(nListId, row, kKind, word);
  return word;
}

bool LFtpList::IsFolderSelected() const {
  if (!pWindow) return false;
  for (LVSelectedIterator selected(*pWindow, nListId); selected.IsValid(); selected.Next()) {
    const auto* item = reinterpret_cast<const LFtpExpListItem*>(pWindow->LVGetItemData(nListId, selected.Row()));
    if (item && item->kind == LFtpExpListItem::kFolder) return true;
  }
  return false;
}

void LFtpList::EndRename() {
  if (!bRenaming) return;
  pWindow->LVSetSel(nListId, pWindow->LVGetCurSel(nListId), false);
  bRenaming = false;
}

// Names for transfers

void LFtpList::FtpCleanPath(char (&out)[kTextSize], const char* in, const FtpNameRules& rules) {
  RemoteCleanName(out, in, rules.noSpaces, rules.lowerCase);
}

int LFtpList::MakeRemoteFilePath(char (&out)[kTextSize], const char* localBase, const char* remoteBase,
                                 const char* localPath) const {
  RemotePathOfLocal(out, localBase, remoteBase, localPath);
  return static_cast<int>(strlen(out));
}
