// The one main menu, addressed by command id, and context menus. Main thread only.
#pragma once

#include "support/text.h"
#include "support/window/window.h"

using LMenuItem = platform::MenuItem;

class LMainMenu {
 public:
  /// While above 0 all items are off: one for each modal run, alert or progress session.
  static unsigned uRefCount;
  static void DisableMenus();
  static void EnableMenus();

  static void SetWindow(LMacWindow* window) { pWindow = window; }
  static void SetItems(const LMenuItem* items, size_t count);
  static void EnableMenuItem(int id, bool enable);
  static bool IsMenuItemEnabled(int id);
  static void CheckMenuItem(int id, bool check);
  static void SetMenuTitle(int id, const char* text);

 private:
  static LMacWindow* pWindow;
};

/// A context menu, built anew for each showing.
class LPopupMenu {
 public:
  LPopupMenu() = default;
  LPopupMenu(const LPopupMenu&) = delete;
  LPopupMenu& operator=(const LPopupMenu&) = delete;
  ~LPopupMenu();

  void AppendMenuItem(int id, const char* text);
  void AppendMenuSeparator();
  void CheckMenuItem(int id, bool check);
  void EnableMenuItem(int id, bool enable);
  void SetDefaultMenuItem(int id);
  size_t Count() const { return uCount; }
  /// Shows it at the pointer, or under a control; the chosen item arrives as a command of the window's.
  void DisplayPopupMenu(LMacWindow& window, int atControl = 0) const;

 private:
  struct Row {
    int id;
    char text[kTextSize];
    bool enabled, checked, isDefault;
  };
  void Append(int id, const char* text);
  Row* Find(int id);

  Row* pRows = nullptr;  ///< Owned.
  size_t uCount = 0;
  size_t uCapacity = 0;
};
