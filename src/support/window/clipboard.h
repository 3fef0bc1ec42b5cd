// Files on the desktop's clipboard, in the contract of windows. Main thread.
#pragma once

#include "support/strings.h"

bool LClipboardHasFilePaths();
/// Adds the paths of the files that were copied, in their order. One that does not fit a text of 260 bytes is left out.
void LClipboardGetFilePaths(LStringListTemplate<char>& paths);
/// Puts files of this machine there. Without a path it stays what it is.
void LClipboardCopyFilePaths(const LStringListTemplate<char>& paths);
