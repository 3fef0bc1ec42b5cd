#include "app/app_delegate.h"

#include "app/main_dialog.h"
#include "app/startup.h"
#include "platform/event_loop.h"
#include "sites/store/settings.h"

bool LAppDelegate::WillFinishLaunching() {
  pDialog = new MainDialog;
  platform::ApplicationOnQuitRequest([this] { EvQuit(); });
  platform::ApplicationOnReopenRequest([this] { EvReopen(); });
  return true;
}

void LAppDelegate::DidFinishLaunching() {
  StartupTakeSwitches();
  LUserSettingDeleteItem("Settings", "OSCheckRequired");
  pDialog->MainWindowInitCommon();
}

void LAppDelegate::EvReopen() {
  if (!pDialog || !pDialog->IsWindowValid()) return;
  if (LMainWindow::IsShownAtStartup() || pDialog->IsMinimized()) pDialog->Reopen();
}

void LAppDelegate::EvQuit() {
  if (!pDialog) return;
  // The session ends whatever is open: a dialog on top is cancelled first, and a running job with it.
  pDialog->CloseMainWindow();
}

void LAppDelegate::WillTerminate() {
  platform::ApplicationOnQuitRequest({});
  platform::ApplicationOnReopenRequest({});
  if (!pDialog) return;
  delete pDialog;
  pDialog = nullptr;
  if (LUserSettingIsOn("Settings", "ContinueInstallAtExit")) {
    LUserSettingSetString("Settings", "ContinueInstallAtExit", "0");
  }
  LUserSettingDeleteItem("Settings", "DisableLaunchAtLogin");
}
