// The one main window: the local pane at left, the remote pane at right, four buttons between them, the history
// below. MainDialogCore holds what does not touch the window's own timers; MainDialog wraps it in timers and power.
// Main thread only.
#pragma once

#include "app/local_pane.h"
#include "app/main_window.h"
#include "client/remote_pane.h"
#include "support/log_pane.h"
#include "support/window/timers.h"

class MainDialogCore {
 public:
  virtual ~MainDialogCore() = default;

  // Connection
  /// Connects to the current site. With `bForgetOnFail` a failure also forgets it. 1 when connected.
  virtual int CmConnect(bool bForgetOnFail);
  /// With `bForget` the current site is forgotten.
  virtual int CmDisconnect(bool bForget);
  /// Asks before leaving; 1 when there is no connection any more.
  int DisconnectWithMessage(bool bReconnect);
  /// Connects to the site of that menu id.
  int CmSelectSite(int id);
  /// True while the link is up; leaves the server otherwise.
  bool CheckConnection();

  // Transfers
  void CmUpload();
  void CmDownload();

  // Panes
  void EvLocalPathChanged();
  void EvRemotePathChanged();
  void CmLocalGo();
  void CmRemoteGo();
  void CmSetLocalFilter(bool remove);
  void CmSetRemoteFilter(bool remove);
  void EvShowConnectContextMenu(int atControl);

  LExplorerFolderControl localPane;
  LFtpList remotePane;

 protected:
  void _CmDisconnect();
  void ForgetCurrentSite();
  int FailConnect(bool bForgetOnFail);
  bool ConnectWithRetries(const struct LFTPAccountSettings& site, const char* directory);

  LMacWindow* pView = nullptr;  ///< The window of both panes; set before any command.
  bool bQuickConnected = false;
  bool bRemoteSelectionDirty = false;
};

class MainDialog : public LMainWindow, public LTimerHandlerBase, public MainDialogCore {
 public:
  MainDialog() = default;

  // Life
  void InitDialog() override;
  void DestroyDialog() override;
  void CmStartup();

  // Commands
  void Command(int id, intptr_t data) override;
  int CmConnect(bool bForgetOnFail) override;
  int CmDisconnect(bool bForget) override;
  void CmUploadGuarded();
  void CmUpload();
  void CmDownload();
  void CmGo();

  void EnableControls() override;
  void LayoutControls(int width, int height) override;
  void InitStatus();
  void EvTimer(int id) override;

  // The one-shot timers
  static constexpr int kTimerStartup = 1;
  static constexpr int kTimerConnectIcon = 2;
  static constexpr int kTimerWatch = 3;
  static constexpr int kTimerEnable = 4;

 protected:
  void OnDividerMoved(int id, int position) override;

 private:
  // InitDialog, by purpose
  void AddLocalControls();
  void AddMiddleControls();
  void AddRemoteControls();
  void BindEvents();
  void SetToolBars();
  void SetToolTips();
  // LayoutControls, by column
  void LayoutPathRow(int icon, int path, int go, int x, int width, int goWidth, int top);
  void LayoutFilterRow(int first, int x, int width, int top);
  void LayoutMiddle(int x, int top, int bottom);
  // EnableControls, by place
  void EnableToolBars();
  void EnableMiddle();
  bool RoutePaneCommand(int id);
  void EvWatch();
  void EvConnectIcon();

  LLogWindow logWindow;
  LHMoveBar divider;
  LToolBar localToolBar;
  LToolBar remoteToolBar;
  LGuiIcon iconDisconnected, iconConnected[2];
  bool bFiltersShown = false;
  bool bConnectIconPhase = false;
  bool bLocalListFocused = true;
  int iReconnectCount = 0;
  short iEnterTarget = 0;  ///< The field the user last typed in; 0 after use.
};
