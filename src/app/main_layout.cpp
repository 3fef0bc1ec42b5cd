// Where the controls of the main window stand, and when each is enabled.
#include <algorithm>

#include "app/command_ids.h"
#include "app/main_dialog.h"
#include "sites/store/settings.h"
#include "support/window/menus.h"

namespace {

constexpr int kMiddleWidth = 50;
constexpr int kDividerHeight = 5;
constexpr int kHistoryMargin = 6;  // Under the history, above the status bar.
constexpr int kHighestListEnd = 180;
constexpr int kFilterButtonWidth = 128;

}  // namespace

void MainDialog::LayoutPathRow(int icon, int path, int go, int x, int width, int goWidth, int top) {
  const int row = UnitsToPixelsY(1.23);
  MoveControlPixels(icon, x, top + 4, 16, 16);
  MoveControlPixels(path, x + 20, top + 2, width - 20 - goWidth - 4, row);
  MoveControlPixels(go, x + width - goWidth, top + 2, goWidth, row);
}

/// Three controls of one width at the right end of the pane; `first` is the id of the field, `first` + 1 and
/// + 2 the buttons.
void MainDialog::LayoutFilterRow(int first, int x, int width, int top) {
  const int row = UnitsToPixelsY(1.23);
  const int field = std::min(kFilterButtonWidth, width / 3);
  for (int i = 0; i < 3; ++i)
    MoveControlPixels(first + i, x + width - (3 - i) * field + (i == 0 ? -4 : 0), top, field, row);
}

void MainDialog::LayoutMiddle(int x, int top, int bottom) {
  const int toolHeight = localToolBar.GetToolBarHeight();
  // Half of the lists' height, and not its middle: the column then stands in the middle of what is below the
  // tool bar, and fits into the smallest window.
  const int mid = toolHeight + (bottom - top - toolHeight) / 2;
  MoveControlPixels(kTransferIcon, x, mid - 50, 50, 50);
  MoveControlPixels(kUploadButton, x, mid + 7, 50, 50);
  MoveControlPixels(kDownloadButton, x, mid + 64, 50, 50);
  MoveControlPixels(kSynchroniseButton, x, mid + 134, 50, 50);
}

void MainDialog::LayoutControls(int width, int height) {
  const int mainBar = mainToolBar.GetToolBarHeight() + 4;
  const int bottom = height - statusBar.GetStatusBarHeight();
  const int row = UnitsToPixelsY(1.23);
  const int gutter = UnitsToPixelsX(1.25);
  const int pane = (width - 2 * gutter - kMiddleWidth) / 2;
  const int right = pane + 2 * gutter + kMiddleWidth;

  LayoutPathRow(kLocalIcon, kLocalPath, kLocalGo, 0, pane, 62, mainBar);
  LayoutPathRow(kRemoteIcon, kRemotePath, kRemoteGo, right + 3, width - right - 3, 58, mainBar);
  int top = mainBar + 4 + row;
  if (bFiltersShown) {
    LayoutFilterRow(kLocalFilter, 0, pane, top);
    LayoutFilterRow(kRemoteFilter, right + 3, width - right - 3, top);
    top += row + 4;
  }
  const int toolHeight = localToolBar.GetToolBarHeight();
  MoveControlPixels(kLocalTools, 0, top, pane + 4, toolHeight);
  MoveControlPixels(kLocalList, 0, top + toolHeight, pane, bottom - top - toolHeight - kHistoryMargin);
  LayoutMiddle(pane + gutter, top, bottom);

  MoveControlPixels(kRemoteTools, right + 3, top, width - right - 3, toolHeight);
  divider.SetLineBounds(kHighestListEnd, bottom - kDividerHeight - kHistoryMargin);
  const int listEnd =
      std::max(std::min(divider.GetControlPosition(), bottom - kDividerHeight - kHistoryMargin), kHighestListEnd);
  MoveControlPixels(kRemoteList, right + 3, top + toolHeight, width - right - 3, listEnd - top - toolHeight);
  MoveControlPixels(kDivider, right + 3, listEnd, width - right - 3, kDividerHeight);
  const int historyTop = listEnd + kDividerHeight;
  MoveControlPixels(kHistory, right + 3, historyTop, width - right - 3, bottom - kHistoryMargin - historyTop);

  const int widths[] = {width - pane - 4, pane + 4};
  statusBar.StatusBarSetParts(2, widths);
}

void MainDialog::OnDividerMoved(int id, int position) {
  if (id != kDivider) return;
  divider.EvMoved(position);
  RelayoutControls();
}

// Enabling

void MainDialog::EnableToolBars() {
  const bool connected = remotePane.bConnected;
  const bool atRoot = strcmp(remotePane.szCurrentDirectory, "/") == 0;
  // Commands whose turn has not come yet stay off.
  for (const int off : {kCommandRemoteRename, kCommandRemoteDelete, kCommandRemoteNewFolder, kCommandRemoteBookmarks}) {
    remoteToolBar.EnableToolBarItem(off, false);
  }
  for (const int off : {kCommandLocalRename, kCommandLocalDelete, kCommandLocalNewFolder, kCommandLocalBookmarks}) {
    localToolBar.EnableToolBarItem(off, false);
  }
  for (const int off : {kCommandSites, kCommandQuickConnect, kCommandOptions}) {
    mainToolBar.EnableToolBarItem(off, false);
  }
  remoteToolBar.EnableToolBarItem(kCommandRemoteRefresh, connected);
  remoteToolBar.EnableToolBarItem(kCommandRemoteUp, connected && !atRoot);
  remoteToolBar.EnableToolBarItem(kCommandRemoteBack, connected && remotePane.IsBackAccessible());
  remoteToolBar.EnableToolBarItem(kCommandRemoteForward, connected && remotePane.IsForwardAccessible());
  localToolBar.EnableToolBarItem(kCommandLocalBack, localPane.IsBackAccessible());
  localToolBar.EnableToolBarItem(kCommandLocalForward, localPane.IsForwardAccessible());
  mainToolBar.EnableToolBarItem(kCommandDisconnect, connected);
}

void MainDialog::EnableMiddle() {
  const bool connected = remotePane.bConnected;
  const bool remoteSelection = LVGetSelCount(kRemoteList) > 0;
  EnableControl(kDownloadButton, remoteSelection);
  EnableControl(kUploadButton, connected && localPane.HasSelection());
  EnableControl(kSynchroniseButton, false);
}

void MainDialog::EnableControls() {
  if (!bLaidOut) return;
  const bool connected = remotePane.bConnected;
  EnableToolBars();
  EnableMiddle();
  for (const int id : {kRemotePath, kRemoteFilter, kRemoteFilterApply, kRemoteFilterRemove})
    EnableControl(id, connected);
  for (const int id :
       {kLocalFilter, kLocalFilterApply, kLocalFilterRemove, kRemoteFilter, kRemoteFilterApply, kRemoteFilterRemove}) {
    ShowControl(id, bFiltersShown);
  }
  LVSetStyleDefaultText(kRemoteList, connected ? "フォルダ内にファイルがありません "
                                               : "接続されていません。「接続」ボタンをクリックして接続します。");
  statusBar.StatusBarSetText("Orvane FTPファイル転送ソフト v 5.01", 0);
}
