// The frame of the one main window: its native window, its bars, its life from opening to the end. Main
// thread only.
#pragma once

#include "core/signal_object.h"
#include "platform/event_loop.h"
#include "support/window/bars.h"
#include "support/window/dialog.h"
#include "support/window/menus.h"

/// Set when the main window has been destroyed.
extern LSignalObject soApplicationEventLoopFinished;

class LMainWindow : public LDialog {
 public:
  LMainWindow();
  ~LMainWindow() override;

  /// Makes the window, restores its size and place, and calls InitDialog.
  void MainWindowInitCommon();
  /// Stores size, place and bars; calls DestroyDialog.
  void MainWindowDestroy();
  /// True when the quit proceeds. Refused while quitting is forbidden or another modal window is up.
  bool CmExit();
  /// Cancels a modal window on top first, and closes on the next turn of the loop.
  void CloseMainWindow();
  void Command(int id, intptr_t data) override;

  /// Builds the menu bar: the frame's own menus around those of the table. The key table, which stays the caller's,
  /// also decides what a key press means.
  void SetMenu(const LMenuItem* items, size_t count, const LKeyToCommandMap* keyMap, size_t keyCount);
  /// Brings the window to the front whatever has the keyboard, and out of hiding.
  void Reopen();
  /// Whether the settings want the window on the screen without being asked.
  static bool IsShownAtStartup();

  /// Calls LayoutControls for the present client size, once the window is laid out.
  void RelayoutControls();
  using LDialog::LayoutControls;
  virtual void LayoutControls(int width, int height) = 0;

  static LMainWindow* pInstance;  ///< The one main window, or null.
  static int iDontQuitCounter;    ///< Non-zero forbids quitting.

 protected:
  void OnResized() override { RelayoutControls(); }
  void OnCloseRequested() override { CmExit(); }
  void OnMenuOpening() override;
  bool OnKey(const platform::KeyPress& press) override;
  virtual void CmSettings() {}

  LToolBar mainToolBar;
  LStatusBar statusBar;
  bool bLaidOut = false;  ///< Set by InitDialog; no layout before.

 private:
  void CloseOnNextTurn();
  void CmAbout();
  void ToggleToolBar();
  void ShowToolBarState();

  const LKeyToCommandMap* pKeyMap = nullptr;  ///< Not owned.
  size_t uKeyCount = 0;

  bool bInLayout = false;
  bool bDestroyed = false;
  platform::Timer* pCloseTimer = nullptr;  ///< Owned; null until a close had to wait for a dialog.
};
