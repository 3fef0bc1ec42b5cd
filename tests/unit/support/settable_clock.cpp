// The clocks of this test program: the machine's own, until a test sets them.
#include "support/settable_clock.h"

#include <atomic>
#include <cerrno>
#include <time.h>

#include "platform/clock.h"

namespace {

std::atomic<bool> isSet{false};
std::atomic<int64_t> wall{0};
std::vector<unsigned> sleeps;  // Written by the one thread that runs under a set clock.

}  // namespace

SettableClock::SettableClock(int64_t wallSeconds) {
  sleeps.clear();
  wall = wallSeconds;
  isSet = true;
}

SettableClock::~SettableClock() { isSet = false; }

void SettableClock::Set(int64_t wallSeconds) { wall = wallSeconds; }

std::vector<unsigned> SettableClock::Sleeps() const { return sleeps; }

namespace platform {

int64_t ClockMonotonicMs() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return static_cast<int64_t>(now.tv_sec) * 1000 + now.tv_nsec / 1000000;
}

int64_t ClockWallSeconds() { return isSet ? wall.load() : static_cast<int64_t>(time(nullptr)); }

void ClockSleepMs(unsigned ms) {
  if (isSet) return sleeps.push_back(ms);
  timespec left{static_cast<time_t>(ms / 1000), static_cast<long>(ms % 1000) * 1000000};
  while (nanosleep(&left, &left) != 0 && errno == EINTR) {
  }
}

}  // namespace platform
