// The program's entry.
#include "app/app_delegate.h"
#include "app/startup.h"
#include "platform/event_loop.h"
#include "sites/store/settings.h"

int main(int argc, char** argv) {
  LUnixAppInitCommon(argc, argv);
  LSettingsMigrateUpperCaseUserSettings();
  const int status = StartupRunWorker();
  if (status >= 0) return status;

  platform::ApplicationInit(gargc, gargv);
  LAppDelegate delegate;
  if (!delegate.WillFinishLaunching()) return 0;
  delegate.DidFinishLaunching();
  return platform::ApplicationRun();
}
