// The application without a screen, and turns of its loop, for tests that need no window of the program's.
#pragma once

#include <cstdlib>
#include <functional>
#include <gtest/gtest.h>

#include "platform/clock.h"
#include "platform/event_loop.h"

class WindowFixture : public testing::Test {
 protected:
  WindowFixture() {
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    static int count = 1;
    static char name[] = "unit_window";
    static char* arguments[] = {name, nullptr};
    platform::ApplicationInit(count, arguments);
  }

  /// Turns the loop until `condition` holds; false after ten seconds.
  static bool PumpUntil(const std::function<bool()>& condition) {
    const int64_t end = platform::ClockMonotonicMs() + 10000;
    while (!condition()) {
      if (platform::ClockMonotonicMs() > end) return false;
      platform::EventLoopPump();
      platform::ClockSleepMs(1);
    }
    return true;
  }
  static void PumpFor(int ms) {
    const int64_t end = platform::ClockMonotonicMs() + ms;
    (void)PumpUntil([end] { return platform::ClockMonotonicMs() >= end; });
  }
};
