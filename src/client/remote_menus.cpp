// The context menus of the remote list: its rows and its headings.
#include "client/remote_pane.h"
#include "support/window/clipboard.h"
#include "support/window/menus.h"

namespace {

/// When a row of the menu is on.
enum Needs { kNothing, kOneRow, kRow, kConnection, kCurrentRow, kFilesToPaste };

struct MenuRow {
  int id;  ///< 0 for a separator.
  const char* text;
  Needs needs;
  int key;
};

constexpr int kOpen = 4002;
constexpr MenuRow kSeparator = {0, nullptr, kNothing, 0};
constexpr MenuRow kRows[] = {
    {kOpen, "開く", kOneRow, LKey::kShift | LKey::kReturn},
    kSeparator,
    {4001, "ダウンロード", kRow, LKey::kCommand | 'D'},
    kSeparator,
    {4021, "コピー", kCurrentRow, 0},
    {4022, "貼付け", kFilesToPaste, 0},
    kSeparator,
    {4003, "削除", kRow, LKey::kShift | LKey::kForwardDelete},
    {4004, "名前を変更", kOneRow, LKey::kShift | LKey::kF2},
    kSeparator,
    {4005, "新規フォルダ", kConnection, 0},
    kSeparator,
    {4006, "更新", kConnection, LKey::kCommand | LKey::kShift | 'R'},
    kSeparator,
    {4007, "ファイルのパーミッションを変更する", kRow, 0},
};

// The columns that the user may hide, from the second on.
constexpr int kFirstColumnId = 4014;
constexpr const char* kColumnNames[] = {"サイズ", "種類", "日付", "許可", "所有者", "所有者グループ"};

}  // namespace

void LFtpList::EvRightClick() {
  if (!pWindow) return;
  const bool current = pWindow->LVGetCurSel(nListId) >= 0;
  const auto isMet = [&](Needs needs) {
    switch (needs) {
      case kNothing: return false;
      case kOneRow: return pWindow->LVGetSelCount(nListId) == 1;
      case kRow: return bConnected && current;
      case kConnection: return bConnected;
      case kCurrentRow: return current || IsFolderSelected();
      case kFilesToPaste: return LClipboardHasFilePaths();
    }
    return false;
  };
  LPopupMenu menu;
  for (const MenuRow& item : kRows) {
    if (item.id == 0) {
      menu.AppendMenuSeparator();
      continue;
    }
    menu.AppendMenuItem(item.id, item.text, item.key);
    menu.EnableMenuItem(item.id, isMet(item.needs));
  }
  menu.SetDefaultMenuItem(kOpen);
  menu.DisplayPopupMenu(*pWindow);
}

void LFtpList::EvRightClickHeader() {
  if (!pWindow) return;
  const bool on = bConnected && pWindow->LVGetCurSel(nListId) >= 0;
  LPopupMenu menu;
  int id = kFirstColumnId;
  for (const char* name : kColumnNames) {
    menu.AppendMenuItem(id, name);
    menu.EnableMenuItem(id, on);
    menu.CheckMenuItem(id, !pWindow->LVIsColumnHidden(nListId, id - kFirstColumnId + 1));
    ++id;
  }
  menu.DisplayPopupMenu(*pWindow);
}

void LFtpList::EvColumnChange(unsigned short id) {
  if (!pWindow || id < kFirstColumnId || id > kFirstColumnId + 5) return;
  const int column = id - kFirstColumnId + 1;
  pWindow->LVShowColumn(nListId, column, pWindow->LVIsColumnHidden(nListId, column));
}
