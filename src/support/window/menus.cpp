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

void LMainMenu::SetItems(const LMenuItem* items, size_t count) {
  if (NativeOf(pWindow)) platform::MenuBarSet(NativeOf(pWindow), items, count);
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

void LPopupMenu::Append(int id, const char* text) {
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
  row.enabled = true;
  row.checked = row.isDefault = false;
}

LPopupMenu::Row* LPopupMenu::Find(int id) {
  for (size_t i = 0; i < uCount; ++i) {
    if (pRows[i].id == id) return &pRows[i];
  }
  return nullptr;
}

void LPopupMenu::AppendMenuItem(int id, const char* text) { Append(id, text); }

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

void LPopupMenu::DisplayPopupMenu(LMacWindow& window, int atControl) const {
  if (!window.Native() || uCount == 0) return;
  platform::PopupItem* items = new platform::PopupItem[uCount];
  for (size_t i = 0; i < uCount; ++i) {
    items[i] = {pRows[i].id, pRows[i].text, pRows[i].enabled, pRows[i].checked, pRows[i].isDefault};
  }
  platform::PopupMenuRun(window.Native(), items, uCount, atControl);
  delete[] items;
}
