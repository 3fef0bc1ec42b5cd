// The clocks. Any thread. A test that simulates time links its own definitions of these.
#pragma once

#include <cstdint>

namespace platform {

int64_t ClockMonotonicMs();      ///< Milliseconds since some start; never goes back.
int64_t ClockWallSeconds();      ///< Seconds since 1970, UTC.
void ClockSleepMs(unsigned ms);  ///< Sleeps the whole time, also over signals.

}  // namespace platform
