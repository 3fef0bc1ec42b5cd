// Idle sleep of the machine, through the desktop's log-in service; nothing fails where there is none.
#pragma once

namespace platform {

/// Keeps the machine from idle sleep until as many calls of IdleSleepAllow. Main thread.
void IdleSleepDeny();
void IdleSleepAllow();

}  // namespace platform
