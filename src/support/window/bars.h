// Tool bars, the status bar and the divider between two panes. Main thread only.
#pragma once

#include "support/window/keys.h"
#include "support/window/window.h"

class LToolBar {
 public:
  using ToolBarItem = platform::ToolBarItem;
  /// `control` is the tool bar's host, or platform::kMainToolBar. The name keys its kept visibility.
  void Init(LMacWindow& window, int control, const char* name);
  /// A button's tool tip is its own or else its label, with the key of its command behind it.
  void SetToolBarItems(const ToolBarItem* items, size_t count, const LKeyToCommandMap* keyMap = nullptr,
                       size_t keyCount = 0);
  void EnableToolBarItem(int command, bool enable);
  int GetToolBarHeight() const;
  void Show(bool show);
  bool IsShown() const { return bShown; }
  /// Visibility under the bar's name in the section "ToolBarState".
  void StoreState() const;
  void RestoreState();

 private:
  LMacWindow* pWindow = nullptr;
  int iControl = 0;
  bool bShown = true;
  char szName[kTextSize] = {};
};

class LStatusBar {
 public:
  void StatusBarInit(LMacWindow& window) { pWindow = &window; }
  /// Widths in pixels; the last part takes the rest.
  void StatusBarSetParts(int count, const int* widths);
  void StatusBarSetText(const char* text, int part);
  void StatusBarSetIcon(const LGuiIcon& icon, int part);
  int GetStatusBarHeight() const;

 private:
  LMacWindow* pWindow = nullptr;
};

/// A splitter: a bar that the user drags. Its owner lays out again when it moves.
class LBaseMoveBar {
 public:
  void Init(LMacWindow& window, int control, int position);
  /// Pixels from the top of the window.
  int GetControlPosition() const { return iPosition; }
  void SetControlPosition(int position) { iPosition = position; }
  /// The lowest and highest place that a drag reaches.
  void SetLineBounds(int lowest, int highest);
  /// Where a drag wants the bar; within the bounds.
  void EvMoved(int position);

 private:
  int iPosition = 0;
  int iLowest = 0;
  int iHighest = 0x7FFFFFFF;
};
using LHMoveBar = LBaseMoveBar;
