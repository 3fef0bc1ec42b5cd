// The main window's life: filling it, the first connection, and the end.
#include "app/main_dialog.h"

#include <iterator>

#include "app/command_ids.h"
#include "app/menu_tables.h"
#include "app/tool_bar_tables.h"
#include "sites/store/accounts.h"
#include "sites/store/settings.h"
#include "support/log.h"
#include "support/program.h"
#include "support/window/menus.h"

namespace {

constexpr int kDefaultDivider = 500;
constexpr unsigned kStartupMs = 100;
constexpr int kFirstStatusPart = 388;

}  // namespace

void MainDialog::OnInstall() { AccountsRewriteOldLayout(); }

void MainDialog::InitDialog() {
  char migrated[kTextSize];
  _LUserSettingGetString("Settings", "MigratedAccounts3", "", migrated);
  if (!LSettingIsOn(migrated)) {
    const LSettingsBatch batch;  // All or nothing: a rewrite that ran twice would take more labels away.
    OnInstall();
    LUserSettingSetString("Settings", "MigratedAccounts3", "1");
  }
  LUserSettingSetString("Settings", "FirstRun", "1");
  pView = this;
  AddLocalControls();
  AddMiddleControls();
  AddRemoteControls();
  bFiltersShown = LUserSettingIsOn("Settings", "FiltersOn");
  SetMenus();
  SetToolBars();
  LOG("Orvane FTPファイル転送ソフト 実行");
  LSettingsLogDamagedStore();
  SetToolTips();
  SetAccessibleNames();
  localPane.Init(*this, kLocalList);
  remotePane.InitList(*this, kRemoteList);
  LVLabelEditInit(*this, kRemoteList);
  LVDragInit(*this, kRemoteList);
  remotePane.NotifySender.SetHandler(this);

  const int widths[] = {kFirstStatusPart, 0};
  statusBar.StatusBarSetParts(2, widths);
  statusBar.StatusBarSetText("Orvane FTPファイル転送ソフト v 5.01", 0);
  LUserSettingSetString("Settings", "DragSource", "local");
  BindEvents();
  SetTabOrders();
  bLaidOut = true;
  EvLocalPathChanged();
  InitStatus();
  iReconnectCount = 0;
  HandlePowerSuspendStandBy(kCommandSuspend);
  HandlePowerResume(kCommandResume);
  TimerSet(kTimerStartup, kStartupMs);
}

void MainDialog::AddLocalControls() {
  AddIcon(kLocalIcon, 4, 16, "ローカルフォルダ");
  AddComboBoxExtend(kLocalPath, "ローカルフォルダ");
  AddCoolButtonIconText(kLocalGo, "移動", 205);
  AddComboBoxExtend(kLocalFilter, "ローカルフィルタ");
  EditPromptSet(kLocalFilter, "[フィルタ]");
  AddCoolButtonTextOnly(kLocalFilterApply, "フィルタを適用");
  AddCoolButtonTextOnly(kLocalFilterRemove, "フィルタを削除");
  AddTools(kLocalTools, "ローカルツールバー");
}

void MainDialog::AddMiddleControls() {
  constexpr int kBigIcon = 36;
  AddIcon(kTransferIcon, 114, 48, "転送");
  AddCoolButtonIconOnly(kUploadButton, "アップロード", 104, kBigIcon);
  AddCoolButtonIconOnly(kDownloadButton, "ダウンロード", 103, kBigIcon);
  AddCoolButtonIconOnly(kSynchroniseButton, "同期する", 105, kBigIcon);
}

void MainDialog::AddRemoteControls() {
  AddIcon(kRemoteIcon, 12, 16, "リモートフォルダ");
  AddComboBoxExtend(kRemotePath, "リモートフォルダ");
  CBPromptSet(kRemotePath, "接続されていません");
  AddCoolButtonIconText(kRemoteGo, "移動", 205);
  AddComboBoxExtend(kRemoteFilter, "リモートフィルタ");
  EditPromptSet(kRemoteFilter, "[フィルタ]");
  AddCoolButtonTextOnly(kRemoteFilterApply, "フィルタを適用");
  AddCoolButtonTextOnly(kRemoteFilterRemove, "フィルタを削除");
  AddTools(kRemoteTools, "リモートツールバー");
  AddList(kRemoteList, "リモートファイル一覧");
  LVSetStyleDefaultText(kRemoteList, "一覧にアイテムがありません");
  divider.Init(*this, kDivider, LUserSettingGet<int>("MainWindow", "DividerY", kDefaultDivider));
  AddStatusWindow(kHistory, "履歴画面");
  logWindow.Init(*this, kHistory);
  iconDisconnected = LGuiIcon::FromResource(8);
  iconConnected[0] = LGuiIcon::FromResource(9);
  iconConnected[1] = LGuiIcon::FromResource(10);
}

void MainDialog::BindEvents() {
  HandleCBSelChange(kLocalPath, kCommandLocalPathChosen);
  HandleCBEdited(kLocalPath, kLocalPath);
  HandleCBReturn(kLocalPath, kLocalGo);
  HandleCBSelChange(kLocalFilter, kLocalFilterApply);
  HandleCBEdited(kLocalFilter, kLocalFilter);
  HandleCBReturn(kLocalFilter, kCommandGo);
  HandleCBSelChange(kRemotePath, kCommandRemotePathChosen);
  HandleCBEdited(kRemotePath, kRemotePath);
  HandleCBReturn(kRemotePath, kRemoteGo);
  HandleCBSelChange(kRemoteFilter, kRemoteFilterApply);
  HandleCBEdited(kRemoteFilter, kRemoteFilter);
  HandleCBReturn(kRemoteFilter, kCommandGo);
  HandleLVDoubleClick(kRemoteList, kCommandRemoteOpen);
  HandleLVSelChange(kRemoteList, kCommandRemoteSelectionChanged);
  HandleLVRightClick(kRemoteList, kCommandRemoteRightClick);
  HandleLVHeaderRightClick(kRemoteList, kCommandRemoteHeaderRightClick);
  HandleLVClick(kRemoteList, kCommandRemoteClicked);
  HandleLVFocusLost(kRemoteList, kCommandLocalFocusLost);
}

void MainDialog::SetMenus() {
  size_t count = 0, keys = 0;
  const LMenuItem* items = MainMenuItems(count);
  const LKeyToCommandMap* keyMap = MainKeyMap(keys);
  SetMenu(items, count, keyMap, keys);
  LMainMenu::SetMenuTitle(kCommandShowFilters, bFiltersShown ? kHideFilters : kShowFilters);
  EvUpdateMainMenu();
}

void MainDialog::SetToolBars() {
  size_t count = 0, keys = 0;
  const LKeyToCommandMap* keyMap = ToolBarKeyMap(keys);
  const LToolBar::ToolBarItem* items = MainToolBarItems(count);
  mainToolBar.SetToolBarItems(items, count, keyMap, keys);
  localToolBar.Init(*this, kLocalTools, "Local");
  items = LocalToolBarItems(count);
  localToolBar.SetToolBarItems(items, count, keyMap, keys);
  remoteToolBar.Init(*this, kRemoteTools, "Remote");
  items = RemoteToolBarItems(count);
  remoteToolBar.SetToolBarItems(items, count, keyMap, keys);
}

void MainDialog::SetToolTips() {
  static constexpr struct {
    int id;
    const char* text;
  } kTips[] = {
      {kLocalList, "ローカルファイル一覧"},
      {kRemoteList, "リモートファイル一覧"},
      {kUploadButton, "選択したファイルをアップロードする"},
      {kDownloadButton, "選択したファイルをダウンロードする"},
      {kLocalGo, "現在のローカルフォルダを開く"},
      {kLocalFilterApply, "フィルタ内の用語をローカルフォルダ内で検索する"},
      {kRemoteGo, "現在のリモートフォルダを開く"},
      {kRemoteFilterApply, "フィルタ内の用語をローカルフォルダ内で検索する"},
      {kSynchroniseButton,
       "リモートフォルダとローカルフォルダを同期する。リモート、ローカル共、最新のファイルを受信します。"},
      {kHistory, "履歴画面"},
  };
  for (const auto& tip : kTips) SetToolTip(tip.id, tip.text);
}

/// Both panes have the same buttons.
void MainDialog::SetAccessibleNames() {
  static constexpr struct {
    int id;
    const char* name;
  } kNames[] = {
      {kLocalGo, "ローカルフォルダ：移動"},
      {kLocalFilterApply, "ローカルフィルタ：フィルタを適用"},
      {kLocalFilterRemove, "ローカルフィルタ：フィルタを削除"},
      {kRemoteGo, "リモートフォルダ：移動"},
      {kRemoteFilterApply, "リモートフィルタ：フィルタを適用"},
      {kRemoteFilterRemove, "リモートフィルタ：フィルタを削除"},
  };
  for (const auto& one : kNames) SetAccessibleName(one.id, one.name);
}

/// Pane by pane from the left, each from its top.
void MainDialog::SetTabOrders() {
  static constexpr int kOrder[] = {
      platform::kMainToolBar, kLocalPath,   kLocalGo,    kLocalFilter,  kLocalFilterApply,
      kLocalFilterRemove,     kLocalTools,  kLocalList,  kUploadButton, kDownloadButton,
      kSynchroniseButton,     kRemotePath,  kRemoteGo,   kRemoteFilter, kRemoteFilterApply,
      kRemoteFilterRemove,    kRemoteTools, kRemoteList, kDivider,      kHistory,
  };
  SetTabOrder(kOrder, std::size(kOrder));
}

void MainDialog::CmStartup() {
  char current[kTextSize];
  _LUserSettingGetString("Settings", "Current", "", current);
  if (current[0]) {
    CmConnect(true);
    if (!remotePane.bConnected) ForgetCurrentSite();
  }
  if (remotePane.bConnected) {
    EvLocalPathChanged();
    EvRemotePathChanged();
  } else {
    LOG("接続ボタンをクリックしてサイトに接続する");
    if (NumSites() == 0) CmSetupWizard();
  }
  remotePane.bReconnectArmed = false;
  LUserSettingSetString("Settings", "CurrentRunHadUpload", "0");
}

void MainDialog::DestroyDialog() {
  if (remotePane.bConnected) {
    CmDisconnect(bQuickConnected);
  } else {
    ForgetCurrentSite();
  }
  TimerDestroy();
  DragSessionFinished();
  DeleteEmptyDragFolder();
  char position[32];
  TextFormat(position, "%d", divider.GetControlPosition());
  LUserSettingSetString("MainWindow", "DividerY", position);
  LUserSettingSetString("Settings", "FiltersOn", LSettingFromBool(bFiltersShown));
  LOG("Orvane FTPファイル転送ソフト 終了する。");
  logWindow.Detach();
}
