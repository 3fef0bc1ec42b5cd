// The table of loaded icons behind the numbers of platform::Icon.
#pragma once

#include <QIcon>

#include "platform/window_system.h"

namespace platform {

/// An empty icon for 0.
const QIcon& QIconOf(Icon icon);

}  // namespace platform
