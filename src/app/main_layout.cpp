// Where the controls of the main window stand, and when each is enabled.
#include <algorithm>

#include "app/command_ids.h"
#include "app/main_dialog.h"
#include "sites/store/settings.h"
#include "support/program.h"
#include "support/window/menus.h"

namespace {

constexpr int kMiddleWidth = 50;
constexpr int kDividerHeight = 5;
constexpr int kHistoryMargin = 6;  // Under the history, above the status bar.
constexpr int kHighestListEnd = 180;
constexpr int kLeastHistory = 72;  // Of a history that a small window would squeeze out: three lines.
constexpr int kFilterButtonWidth = 128;
constexpr int kFilterGap = 4;  // Between the field and its buttons.

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
  const int field = std::min(kFilterButtonWidth, (width - kFilterGap) / 3);
  for (int i = 0; i < 3; ++i)
    MoveControlPixels(first + i, x + width - (3 - i) * field - (i == 0 ? kFilterGap : 0), top, field, row);
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

/// The list ends at the divider, which the window's height holds in its bounds. One that stands too low because the
/// window has become small leaves the history some lines; one that the user dragged down, now or before the program was
/// closed, does not.
int MainDialog::RemoteListEnd(int bottom) {
  const int lowest = std::max(bottom - kDividerHeight - kHistoryMargin, kHighestListEnd);
  const int usual = lowest - kLeastHistory;
  if (!bDividerPlaced) bDividerAtBottom = LUserSettingGet<int>("MainWindow", "DividerY", 0) > usual;
  bDividerPlaced = true;
  divider.SetLineBounds(kHighestListEnd, lowest);
  const int end = std::max(std::min(divider.GetControlPosition(), bDividerAtBottom ? lowest : usual), kHighestListEnd);
  divider.SetControlPosition(end);
  return end;
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
  const int listEnd = RemoteListEnd(bottom);
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
  int width = 0, height = 0;
  GetClientSize(width, height);
  bDividerAtBottom = divider.GetControlPosition() >
                     height - statusBar.GetStatusBarHeight() - kDividerHeight - kHistoryMargin - kLeastHistory;
  RelayoutControls();
}

// Enabling

namespace {

/// Commands whose job is not there yet stay off.
constexpr int kRemoteToolsOff[] = {kCommandRemoteBookmarks};
constexpr int kLocalToolsOff[] = {kCommandLocalBookmarks};
constexpr int kMainToolsOff[] = {kCommandOptions};
constexpr int kMenuOff[] = {kCommandSettingsImport, kCommandSettingsExport, kCommandSiteImport, kCommandSiteExport,
                            kCommandOptions};

}  // namespace

bool MainDialog::IsAtRemoteRoot() const {
  char path[kTextSize];
  GetText(kRemotePath, path);
  return strcmp(path, "/") == 0;
}

void MainDialog::EnableToolBars() {
  const bool connected = remotePane.bConnected;
  const bool root = IsAtRemoteRoot();
  const int remoteSelected = LVGetSelCount(kRemoteList);
  const int localSelected = LVGetSelCount(kLocalList);
  const struct {
    LToolBar& bar;
    int command;
    bool on;
  } items[] = {
      {remoteToolBar, kCommandRemoteRename, remoteSelected == 1},
      {remoteToolBar, kCommandRemoteDelete, remoteSelected > 0},
      {remoteToolBar, kCommandRemoteNewFolder, connected},
      {remoteToolBar, kCommandRemoteRefresh, connected},
      {remoteToolBar, kCommandRemoteUp, connected && !root},
      {remoteToolBar, kCommandRemoteBack, connected && remotePane.IsBackAccessible()},
      {remoteToolBar, kCommandRemoteForward, connected && remotePane.IsForwardAccessible()},
      {localToolBar, kCommandLocalRename, localPane.HasSelection() && localSelected == 1},
      {localToolBar, kCommandLocalDelete, localPane.HasSelection() && localSelected >= 1},
      {localToolBar, kCommandLocalBack, localPane.IsBackAccessible()},
      {localToolBar, kCommandLocalForward, localPane.IsForwardAccessible()},
      {mainToolBar, kCommandSiteTool, connected},
      {mainToolBar, kCommandDisconnect, connected},
  };
  for (const auto& item : items) item.bar.EnableToolBarItem(item.command, item.on);
  for (const int off : kRemoteToolsOff) remoteToolBar.EnableToolBarItem(off, false);
  for (const int off : kLocalToolsOff) localToolBar.EnableToolBarItem(off, false);
  for (const int off : kMainToolsOff) mainToolBar.EnableToolBarItem(off, false);
}

void MainDialog::EnableMiddle() {
  EnableControl(kDownloadButton, LVGetSelCount(kRemoteList) > 0);
  EnableControl(kUploadButton, remotePane.bConnected && localPane.HasSelection() && LVGetSelCount(kLocalList) >= 1);
  EnableControl(kSynchroniseButton, remotePane.bConnected);
}

void MainDialog::EnableLocalMenu() {
  const bool selection = localPane.HasSelection();
  const int count = LVGetSelCount(kLocalList);
  LMainMenu::EnableMenuItem(kCommandUpload, remotePane.bConnected && selection && count >= 1);
  LMainMenu::EnableMenuItem(kCommandLocalOpen, selection && count == 1);
  LMainMenu::EnableMenuItem(kCommandMenuLocalRename, selection && count == 1);
  LMainMenu::EnableMenuItem(kCommandMenuLocalDelete, selection && count >= 1);
  LMainMenu::EnableMenuItem(kCommandMenuLocalNewFolder, true);
  LMainMenu::EnableMenuItem(kCommandMenuLocalBack, localPane.IsBackAccessible());
  LMainMenu::EnableMenuItem(kCommandMenuLocalForward, localPane.IsForwardAccessible());
}

void MainDialog::EnableRemoteMenu() {
  const bool connected = remotePane.bConnected;
  const int count = LVGetSelCount(kRemoteList);
  LMainMenu::EnableMenuItem(kCommandDownload, connected && count > 0);
  LMainMenu::EnableMenuItem(kCommandRemoteOpen, connected && count == 1);
  LMainMenu::EnableMenuItem(kCommandMenuRemoteRename, connected && count == 1);
  LMainMenu::EnableMenuItem(kCommandMenuRemoteDelete, connected && count > 0);
  LMainMenu::EnableMenuItem(kCommandMenuRemoteNewFolder, connected);
  LMainMenu::EnableMenuItem(kCommandPermissions, count > 0);
}

void MainDialog::EnableMainMenu() {
  EnableLocalMenu();
  EnableRemoteMenu();
  LMainMenu::EnableMenuItem(kCommandSiteTool, remotePane.bConnected);
  LMainMenu::EnableMenuItem(kCommandDisconnect, remotePane.bConnected);
  LMainMenu::EnableMenuItem(kCommandSynchronise, remotePane.bConnected);
  LMainMenu::EnableMenuItem(kCommandCompare, remotePane.bConnected);
  for (const int off : kMenuOff) LMainMenu::EnableMenuItem(off, false);
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
  const bool root = IsAtRemoteRoot();
  LMainMenu::EnableMenuItem(kCommandMenuRemoteRefresh, connected);
  LMainMenu::EnableMenuItem(kCommandMenuRemoteBack, connected && remotePane.IsBackAccessible());
  LMainMenu::EnableMenuItem(kCommandMenuRemoteForward, connected && remotePane.IsForwardAccessible());
  LMainMenu::EnableMenuItem(kCommandMenuRemoteUp, connected && !root);
  LVSetStyleDefaultText(kRemoteList, connected ? "フォルダ内にファイルがありません "
                                               : "接続されていません。「接続」ボタンをクリックして接続します。");
  SetCaption(kProgramName);
  statusBar.StatusBarSetText("Orvane FTPファイル転送ソフト v 5.01", 0);
}
