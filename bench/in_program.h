// The real program around a measurement: its start, its main window, and its end.
#pragma once

#include <cstdlib>

#include "app/app_delegate.h"
#include "app/main_dialog.h"
#include "app/startup.h"
#include "platform/event_loop.h"

/// Starts the program, calls `work` with its main window from the window's loop, and ends it. The program's exit
/// status. No screen shows the window unless the environment names a window system. Main thread.
template <typename Work>
int RunInProgram(int argc, char** argv, Work work) {
  setenv("QT_QPA_PLATFORM", "offscreen", 0);
  LUnixAppInitCommon(argc, argv);
  platform::ApplicationInit(gargc, gargv);
  LAppDelegate delegate;
  if (!delegate.WillFinishLaunching()) return 1;
  delegate.DidFinishLaunching();
  platform::EventLoopPost([&] {
    work(*delegate.Dialog());
    delegate.Dialog()->CmExit();
  });
  return platform::ApplicationRun();
}
