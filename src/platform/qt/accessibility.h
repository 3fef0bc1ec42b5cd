// What a screen reader is told of the windows and controls that are drawn here and not by Qt: their roles.
#pragma once

namespace platform {

/// Once, before the first window. Main thread.
void AccessibilityInit();

}  // namespace platform
