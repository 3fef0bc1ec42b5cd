// Files of this machine on the desktop's clipboard. Main thread.
#pragma once

#include <cstddef>
#include <functional>

namespace platform {

bool ClipboardHasFiles();
/// Calls `add` with the path of each, in their order.
void ClipboardGetFiles(const std::function<void(const char* path)>& add);
/// Puts files there, to be copied by whoever pastes them; what was there goes.
void ClipboardSetFiles(const char* const* paths, size_t count);

}  // namespace platform
