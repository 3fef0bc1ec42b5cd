// The one main window: the local pane at left, the remote pane at right, four buttons between them, the history
// below. MainDialogCore holds what does not touch the window's own timers; MainDialog wraps it in timers and power.
// Main thread only.
#pragma once

#include "app/local_pane.h"
#include "app/main_window.h"
#include "client/remote_pane.h"
#include "support/log_pane.h"
#include "support/window/timers.h"

struct LFTPAccountSettings;

class MainDialogCore {
 public:
  virtual ~MainDialogCore() = default;

  // Connection
  /// Connects to the current site; without one the user is asked for it. With `bForgetOnFail` a failure also forgets
  /// it. 1 when connected.
  virtual int CmConnect(bool bForgetOnFail);
  /// With `bForget` the current site is forgotten.
  virtual int CmDisconnect(bool bForget);
  /// Asks before leaving; 1 when there is no connection any more.
  int DisconnectWithMessage(bool bReconnect);
  /// Connects to the site of that menu id, or to a new one. 0 when the user does not want to.
  int CmSelectSite(int id);
  /// True while the link is up; leaves the server otherwise.
  virtual bool CheckConnection();

  // Sites
  /// The number of site labels: one with two users counts once.
  static int NumSites();
  /// The menu of sites, and the submenu of the menu bar with the same rows.
  void EvShowConnectContextMenu(int atControl);
  void EvShowSiteManagerContextMenu(int atControl);
  void EvUpdateMainMenu();
  void CmSiteManager();
  /// Opens the sheet for a new site and connects to it. False when cancelled.
  bool CmSetupWizard();
  /// Opens the sheet for the site of that menu id, or for a new one.
  void CmManageSiteProperties(int id);
  /// Asks for a server in a dialog and connects to it. 1 when connected; a failure forgets it with `bForgetOnFail`.
  int CmQuickConnect(bool bForgetOnFail, LMacWindow* view);

  // Transfers
  void CmUpload();
  /// Sends what was pasted, by the paths of this machine; the folder of the first is that of all.
  void CmUpload(const LStringListTemplate<char>& list);
  void CmDownload();
  /// Brings the selected remote rows into a folder of this machine.
  void DragDownload(char* folder);
  /// Brings the two shown folders level.
  void CmSynchronize();
  /// Selects what differs between the two shown folders.
  void CmDirectoryComparison();

  // Local pane
  void EvLocalPathChanged();
  void CmLocalGo();
  void CmSetLocalFilter(bool remove);
  void CmLocalRefresh();
  void CmLocalUp();
  void CmLocalBack();
  void CmLocalForward();
  void CmLocalRename();
  void CmLocalDelete();
  void CmLocalNewFolder();

  // Remote pane
  void EvRemotePathChanged();
  void CmRemoteGo();
  void CmSetRemoteFilter(bool remove);
  void CmRemoteRefresh();
  void CmRemoteRename();
  void CmRemoteDelete();
  void CmRemoteNewFolder();

  LExplorerFolderControl localPane;
  LFtpList remotePane;

 protected:
  void _CmDisconnect();
  void ForgetCurrentSite();
  int FailConnect(bool bForgetOnFail);
  bool ConnectWithRetries(const LFTPAccountSettings& site, const char* directory);
  bool ConnectToSite(const LFTPAccountSettings& site);
  int SelectNewSite();
  void EndLocalRename();
  bool MayTransferPastFilter(int filterControl, bool folderSelected, const char* question);
  bool IsLocalFolderSelected() const;

  LMacWindow* pView = nullptr;  ///< The window of both panes; set before any command.
  bool bQuickConnected = false;
  bool bQuickSession = false;          ///< The session has no record: its folders are not kept.
  bool bLocalSelectionDirty = false;   ///< A local rename was begun: the next move clears the selection.
  bool bRemoteSelectionDirty = false;  ///< The same for the remote list.
};

class MainDialog : public LMainWindow,
                   public LTimerHandlerBase,
                   public LListViewLabelEditHandler,
                   public LListViewDragHandler,
                   public MainDialogCore,
                   public LQueuedNotifyDataHandler {
 public:
  MainDialog() = default;

  // Life
  void InitDialog() override;
  /// At the first start after an update: the sites come into the present layout.
  static void OnInstall();
  void DestroyDialog() override;
  void CmStartup();

  // Commands
  void Command(int id, intptr_t data) override;
  int CmConnect(bool bForgetOnFail) override;
  int CmDisconnect(bool bForget) override;
  void CmUploadGuarded();
  void CmDirectoryComparison();
  void CmChangePermissions();
  void CmUpload();
  void CmDownload();
  void CmSynchronize();
  /// The selected remote rows, as files of this machine, to the clipboard; files from there to the remote folder.
  void CmRemoteCopy();
  void CmRemotePaste();
  void CmRemoteDelete();
  int CmQuickConnect(bool bForgetOnFail, LMacWindow* view);
  void CmGo();
  void CmShowFilters();

  void EnableControls() override;
  void EnableMainMenu();
  void LayoutControls(int width, int height) override;
  void InitStatus();

  // Events
  void EvTimer(int id) override;
  void EvLVLabelEditBegin(int row) override;
  void EvLVLabelEditFinish(int row, const char* text) override;
  /// Makes a folder for the files of this drag.
  bool EvDragHandlerBegin() override;
  void EvDragHandlerNeedsFiles(LStringListTemplate<char>& paths, bool fetch) override;
  /// 0 stops the watch while a transfer owns the connection, 1 lets it go on.
  void EvQueuedNotifyData(intptr_t data) override;

  // The one-shot timers
  static constexpr int kTimerStartup = 1;
  static constexpr int kTimerConnectIcon = 2;
  static constexpr int kTimerWatch = 3;
  static constexpr int kTimerEnable = 4;

  char dragFolder[kTextSize] = {};  ///< Where the files of a drag out of the remote list go; empty before the first.

  static unsigned uWatchMs;  ///< Between two looks at the connection, and between two tries to get it back.

 protected:
  void OnDividerMoved(int id, int position) override;
  bool OnDropOffered() override { return remotePane.bConnected; }
  void OnDropFiles(const char* const* paths, size_t count) override;
  bool OnListDragNeedsFiles(int list, bool fetch, const std::function<void(const char*)>& add) override;

 private:
  // InitDialog, by purpose
  void AddLocalControls();
  void AddMiddleControls();
  void AddRemoteControls();
  void BindEvents();
  void SetMenus();
  void SetToolBars();
  void SetToolTips();
  void SetAccessibleNames();
  void SetTabOrders();
  // LayoutControls, by column
  void LayoutPathRow(int icon, int path, int go, int x, int width, int goWidth, int top);
  void LayoutFilterRow(int first, int x, int width, int top);
  void LayoutMiddle(int x, int top, int bottom);
  int RemoteListEnd(int bottom);
  // EnableControls, by place
  void EnableToolBars();
  void EnableMiddle();
  bool IsAtRemoteRoot() const;
  void EnableLocalMenu();
  void EnableRemoteMenu();
  // Command, by place; true for a command of that place
  bool RouteLocal(int id);
  bool RouteRemote(int id);
  bool RouteRemoteWays(int id);
  bool RouteFields(int id);
  bool RouteConnection(int id);
  bool RouteRest(int id);
  void DeleteEmptyDragFolder();
  void CopySelected();
  void EvWatch();
  void EvConnectIcon();
  void EvPower(bool suspend);

  LLogWindow logWindow;
  LHMoveBar divider;
  LToolBar localToolBar;
  LToolBar remoteToolBar;
  LGuiIcon iconDisconnected, iconConnected[2];
  bool bFiltersShown = false;
  bool bConnectIconPhase = false;
  bool bLocalListFocused = true;
  int iReconnectCount = 0;
  bool bDividerPlaced = false;    ///< In the window's first layout.
  bool bDividerAtBottom = false;  ///< So low that the history has no room left, because the user wants it.
  short iEnterTarget = 0;         ///< The field the user last typed in; 0 after use.
};
