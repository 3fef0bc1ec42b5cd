#include "support/window/menus.h"

#include <algorithm>

unsigned LMainMenu::uRefCount = 0;
LMacWindow* LMainMenu::pWindow = nullptr;

namespace {

platform::Window* NativeOf(LMacWindow* window) { return window ? window->Native() : nullptr; }

}  // namespace

void LMainMenu::DisableMenus() {
  if (++uRefCount == 1 && NativeOf(pWindow)) platform::MenuBarEnable(NativeOf(pWindow), false);
}

void LMainMenu::EnableMenus() {
  if (uRefCount == 0 || --uRefCount != 0) return;
  if (NativeOf(pWindow)) platform::MenuBarEnable(NativeOf(pWindow), true);
}

void LMainMenu::SetItems(const LMenuItem* items, size_t count, const LKeyToCommandMap* keyMap, size_t keyCount) {
  if (!NativeOf(pWindow)) return;
  using Shortcut = char[kTextSize];
  auto* rows = new platform::MenuItem[count];
  auto* shortcuts = new Shortcut[count];
  for (size_t i = 0; i < count; ++i) {
    LKey(items[i].keyCommand ? KeyOfCommand(items[i].keyCommand, keyMap, keyCount) : 0).GetDescription(shortcuts[i]);
    rows[i] = {items[i].text || items[i].id == -1 ? items[i].id : 0, items[i].text,
               shortcuts[i][0] ? shortcuts[i] : nullptr};
  }
  platform::MenuBarSet(NativeOf(pWindow), rows, count);
  delete[] shortcuts;
  delete[] rows;
}

void LMainMenu::FillSubmenu(const char* title, const LPopupMenu& rows) {
  if (!NativeOf(pWindow)) return;
  const platform::PopupItem* items = rows.NewItems();
  platform::MenuSubmenuFill(NativeOf(pWindow), title, items, rows.Count());
  delete[] items;
}

void LMainMenu::EnableMenuItem(int id, bool enable) {
  if (NativeOf(pWindow)) platform::MenuItemEnable(NativeOf(pWindow), id, enable);
}

bool LMainMenu::IsMenuItemEnabled(int id) {
  return NativeOf(pWindow) && platform::MenuItemIsEnabled(NativeOf(pWindow), id);
}

void LMainMenu::CheckMenuItem(int id, bool check) {
  if (NativeOf(pWindow)) platform::MenuItemCheck(NativeOf(pWindow), id, check);
}

void LMainMenu::SetMenuTitle(int id, const char* text) {
  if (NativeOf(pWindow)) platform::MenuItemSetText(NativeOf(pWindow), id, text);
}

// LPopupMenu

LPopupMenu::~LPopupMenu() { delete[] pRows; }

LPopupMenu::Row& LPopupMenu::Append(int id, const char* text) {
  if (uCount == uCapacity) {
    uCapacity = uCapacity ? uCapacity * 2 : 16;
    Row* grown = new Row[uCapacity];
    std::copy_n(pRows, uCount, grown);
    delete[] pRows;
    pRows = grown;
  }
  Row& row = pRows[uCount++];
  row.id = id;
  TextCopy(row.text, text);
  row.shortcut[0] = 0;
  row.enabled = true;
  row.checked = row.isDefault = false;
  return row;
}

LPopupMenu::Row* LPopupMenu::Find(int id) {
  for (size_t i = 0; i < uCount; ++i) {
    if (pRows[i].id == id) return &pRows[i];
  }
  return nullptr;
}

void LPopupMenu::AppendMenuItem(int id, const char* text, int key) {
  LKey(key).GetDescription(Append(id, text).shortcut);
}

void LPopupMenu::AppendMenuSeparator() { Append(0, ""); }

void LPopupMenu::CheckMenuItem(int id, bool check) {
  if (Row* row = Find(id)) row->checked = check;
}

void LPopupMenu::EnableMenuItem(int id, bool enable) {
  if (Row* row = Find(id)) row->enabled = enable;
}

void LPopupMenu::SetDefaultMenuItem(int id) {
  if (Row* row = Find(id)) row->isDefault = true;
}

platform::PopupItem* LPopupMenu::NewItems() const {
  auto* items = new platform::PopupItem[uCount];
  for (size_t i = 0; i < uCount; ++i) {
    const Row& row = pRows[i];
    items[i] = {row.id, row.text, row.shortcut[0] ? row.shortcut : nullptr, row.enabled, row.checked, row.isDefault};
  }
  return items;
}

void LPopupMenu::DisplayPopupMenu(LMacWindow& window, int atControl) const {
  if (!window.Native() || uCount == 0) return;
  const platform::PopupItem* items = NewItems();
  platform::PopupMenuRun(window.Native(), items, uCount, atControl);
  delete[] items;
}
