// The tests of the windows run on the offscreen window system unless the environment names another one.
#include <cstdlib>
#include <gtest/gtest.h>

#include "app/startup.h"
#include "platform/event_loop.h"

extern "C" const char* __lsan_default_options();
extern "C" const char* __lsan_default_options() {
  return "print_suppressions=0:suppressions=" ORVANE_SOURCE_DIR "/tests/ui/lsan.supp";
}

int main(int argc, char** argv) {
  // A screen that has room for the window at every scale factor.
  setenv("QT_QPA_PLATFORM", "offscreen:configfile=" ORVANE_SOURCE_DIR "/tests/ui/screen.json", 0);
  // A test that runs under the user's desktop must not talk to its services. A bus of the tests' own serves for both.
  const bool hasBus = getenv("ORVANE_TEST_BUS") != nullptr;
  if (!hasBus) setenv("DBUS_SESSION_BUS_ADDRESS", "disabled:", 1);
  setenv("DBUS_SYSTEM_BUS_ADDRESS", getenv("DBUS_SESSION_BUS_ADDRESS"), 1);
  setenv("TZ", "UTC", 1);
  testing::InitGoogleTest(&argc, argv);
  LUnixAppInitCommon(argc, argv);
  platform::ApplicationInit(gargc, gargv);
  return RUN_ALL_TESTS();
}
