#include "support/window/clipboard.h"

#include "platform/clipboard.h"
#include "support/text.h"

bool LClipboardHasFilePaths() { return platform::ClipboardHasFiles(); }

void LClipboardGetFilePaths(LStringListTemplate<char>& paths) {
  platform::ClipboardGetFiles([&](const char* path) {
    if (strlen(path) < kTextSize) paths.Add(path);
  });
}

void LClipboardCopyFilePaths(const LStringListTemplate<char>& paths) {
  if (paths.count != 0) platform::ClipboardSetFiles(paths.strings, paths.count);
}
