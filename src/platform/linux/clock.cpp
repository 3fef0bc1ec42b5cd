// The machine's clocks.
#include "platform/clock.h"

#include <cerrno>
#include <time.h>

namespace platform {

int64_t ClockMonotonicMs() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return static_cast<int64_t>(now.tv_sec) * 1000 + now.tv_nsec / 1000000;
}

int64_t ClockWallSeconds() {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  return now.tv_sec;
}

void ClockSleepMs(unsigned ms) {
  timespec left{};
  left.tv_sec = ms / 1000;
  left.tv_nsec = static_cast<long>(ms % 1000) * 1000000;
  while (nanosleep(&left, &left) != 0 && errno == EINTR) {
  }
}

}  // namespace platform
