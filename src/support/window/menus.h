// The one main menu, addressed by command id, and context menus. Main thread only.
#pragma once

#include "support/text.h"
#include "support/window/keys.h"
#include "support/window/window.h"

class LPopupMenu;

/// A row of a menu table. Id -1 with a text opens a submenu, -1 without one ends it; another row without a text is a
/// separator.
struct LMenuItem {
  int id;
  const char* text;
  int keyCommand;  ///< The command whose key stands beside the text; 0 for none.
};

class LMainMenu {
 public:
  /// While above 0 all items are off: one for each modal run, alert or progress session.
  static unsigned uRefCount;
  static void DisableMenus();
  static void EnableMenus();

  static void SetWindow(LMacWindow* window) { pWindow = window; }
  static void SetItems(const LMenuItem* items, size_t count, const LKeyToCommandMap* keyMap, size_t keyCount);
  static void EnableMenuItem(int id, bool enable);
  static bool IsMenuItemEnabled(int id);
  static void CheckMenuItem(int id, bool check);
  static void SetMenuTitle(int id, const char* text);
  /// Replaces all that stands in the submenu of that title.
  static void FillSubmenu(const char* title, const LPopupMenu& rows);

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

  /// `key` is a value of LKey, to be shown beside the text.
  void AppendMenuItem(int id, const char* text, int key = 0);
  void AppendMenuSeparator();
  void CheckMenuItem(int id, bool check);
  void EnableMenuItem(int id, bool enable);
  void SetDefaultMenuItem(int id);
  size_t Count() const { return uCount; }
  /// Shows it at the pointer, or under a control or the button of a command in the main tool bar; the chosen item
  /// arrives as a command of the window's.
  void DisplayPopupMenu(LMacWindow& window, int atControl = 0) const;

 private:
  struct Row {
    int id;
    char text[kTextSize];
    char shortcut[kTextSize];
    bool enabled, checked, isDefault;
  };
  friend class LMainMenu;
  Row& Append(int id, const char* text);
  /// The rows as the window system takes them; the caller deletes the array.
  platform::PopupItem* NewItems() const;
  Row* Find(int id);

  Row* pRows = nullptr;  ///< Owned.
  size_t uCount = 0;
  size_t uCapacity = 0;
};
