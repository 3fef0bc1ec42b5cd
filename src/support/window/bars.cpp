#include "support/window/bars.h"

#include <algorithm>

#include "support/strings.h"
#include "support/window/window_state.h"

// LToolBar

void LToolBar::Init(LMacWindow& window, int control, const char* name) {
  pWindow = &window;
  iControl = control;
  TextCopy(szName, name);
}

void LToolBar::SetToolBarItems(const ToolBarItem* items, size_t count, const LKeyToCommandMap* keyMap,
                               size_t keyCount) {
  if (!pWindow || !pWindow->Native()) return;
  using ToolTip = char[kTextSize];
  auto* shown = new ToolBarItem[count];
  auto* toolTips = new ToolTip[count];
  for (size_t i = 0; i < count; ++i) {
    TextCopy(toolTips[i], items[i].toolTip ? items[i].toolTip : items[i].label);
    LStringTrimWhiteSpace(toolTips[i]);
    char key[kTextSize];
    LKey(KeyOfCommand(items[i].command, keyMap, keyCount)).GetDescription(key);
    if (key[0]) {
      TextAppend(toolTips[i], " (");
      TextAppend(toolTips[i], key);
      TextAppend(toolTips[i], ")");
    }
    shown[i] = items[i];
    shown[i].toolTip = toolTips[i];
  }
  platform::ToolBarSet(pWindow->Native(), iControl, shown, count);
  delete[] toolTips;
  delete[] shown;
}

void LToolBar::EnableToolBarItem(int command, bool enable) {
  if (pWindow && pWindow->Native()) platform::ToolBarEnableItem(pWindow->Native(), iControl, command, enable);
}

int LToolBar::GetToolBarHeight() const {
  return bShown && pWindow && pWindow->Native() ? platform::ToolBarHeight(pWindow->Native(), iControl) : 0;
}

void LToolBar::Show(bool show) {
  bShown = show;
  if (pWindow && pWindow->Native()) platform::ToolBarShow(pWindow->Native(), iControl, show);
}

void LToolBar::StoreState() const { WindowStateSet("ToolBarState", szName, bShown); }

void LToolBar::RestoreState() { Show(WindowStateGet("ToolBarState", szName, 1) != 0); }

// LStatusBar

void LStatusBar::StatusBarSetParts(int count, const int* widths) {
  if (pWindow && pWindow->Native()) platform::StatusBarSet(pWindow->Native(), count, widths);
}

void LStatusBar::StatusBarSetText(const char* text, int part) {
  if (pWindow && pWindow->Native()) platform::StatusBarSetText(pWindow->Native(), part, text);
}

void LStatusBar::StatusBarSetIcon(const LGuiIcon& icon, int part) {
  if (pWindow && pWindow->Native()) platform::StatusBarSetIcon(pWindow->Native(), part, icon.handle);
}

int LStatusBar::GetStatusBarHeight() const {
  return pWindow && pWindow->Native() ? platform::StatusBarHeight(pWindow->Native()) : 0;
}

// LBaseMoveBar

void LBaseMoveBar::Init(LMacWindow& window, int control, int position) {
  iPosition = position;
  window.AddPaintControl(control, "履歴画面の高さ");
}

void LBaseMoveBar::SetLineBounds(int lowest, int highest) {
  iLowest = lowest;
  iHighest = std::max(lowest, highest);
}

void LBaseMoveBar::EvMoved(int position) { iPosition = std::clamp(position, iLowest, iHighest); }
