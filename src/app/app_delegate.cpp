#include "app/app_delegate.h"

#include "app/main_dialog.h"
#include "platform/event_loop.h"

bool LAppDelegate::WillFinishLaunching() {
  pDialog = new MainDialog;
  platform::ApplicationOnQuitRequest([this] { EvQuit(); });
  return true;
}

void LAppDelegate::DidFinishLaunching() { pDialog->MainWindowInitCommon(); }

void LAppDelegate::EvQuit() {
  if (!pDialog) return;
  // The session ends whatever is open: a dialog on top is cancelled first, and a running job with it.
  pDialog->CloseMainWindow();
}

void LAppDelegate::WillTerminate() {
  platform::ApplicationOnQuitRequest({});
  delete pDialog;
  pDialog = nullptr;
}
