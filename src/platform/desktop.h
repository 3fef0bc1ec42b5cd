// What the desktop does for the program: opening files with their own programs, showing folders. Main thread.
#pragma once

namespace platform {

/// Opens a file with the user's program for it. False if there is none.
bool DesktopOpenFile(const char* path);
/// Shows a folder in the file manager.
bool DesktopShowFolder(const char* path);

}  // namespace platform
