// Idle sleep of the machine, through the desktop's log-in service; nothing fails where there is none.
#pragma once

#include <functional>

namespace platform {

/// Keeps the machine from idle sleep until as many calls of IdleSleepAllow. Main thread.
void IdleSleepDeny();
void IdleSleepAllow();
/// Called with true when the machine is about to sleep and with false when it is back; main thread. One handler; an
/// empty one ends it.
void PowerOnSleep(std::function<void(bool)> handler);

}  // namespace platform
