// The pure rules of the remote pane: paths, sizes, the order of its rows and its history. Any thread.
#pragma once

#include <cstddef>
#include <cstdint>

#include "support/text.h"

class LMacWindow;

/// Which pane compares two size texts. Sizes are compared as they are shown.
int RemoteCompareFileSizes(const char* a, const char* b, bool ascending);

/// The remote path of a local one: each byte of `localBase` skips one of `localPath`, without a comparison; the rest
/// goes under `remoteBase` with "/" as its only separator. Cut at 259 bytes.
void RemotePathOfLocal(char (&out)[kTextSize], const char* localBase, const char* remoteBase, const char* localPath);

/// `folder` and `name` joined by one "/".
void RemoteJoin(char (&out)[kTextSize], const char* folder, const char* name);

/// Where the row of a link leads: what stands before the first "-" or ">", trimmed. A name with a minus sign is cut
/// there.
void RemoteLinkTarget(char (&out)[kTextSize], const char* text);

/// A name with its blanks turned into "_", and then in lower case, each where wanted.
void RemoteCleanName(char (&out)[kTextSize], const char* name, bool noSpaces, bool lowerCase);

/// True if `name` is a single component and names something in its folder, so that a server cannot lead a download out
/// of that.
bool RemoteNameIsPlain(const char* name);
/// The same for a transfer: another one is told in the history as `shown`.
bool RemoteNameIsTrusted(const char* name, const char* shown);

/// `.` and `..`, also with a "/" behind them as some listings have them.
bool RemoteIsDotEntry(const char* name);

/// False, with a warning in the history, if the two do not fit into one path: cut, it would name something else, and a
/// walk that follows it might never end.
bool TransferPathFits(const char* folder, const char* name);

/// True for a folder, also behind a link. What cannot be looked at is none.
bool LocalIsFolder(const char* path);

/// Seconds since 1970; 0 if there is nothing at `path`.
int64_t LocalModifiedTime(const char* path);

namespace PaneUtils {

/// The folder above `path`; a path that ends in a separator loses one level more; `root` when nothing is left.
void GetUpPath(const char* path, char (&out)[kTextSize], const char* root);
inline int CompareFileSizes(const char* a, const char* b, bool ascending) {
  return RemoteCompareFileSizes(a, b, ascending);
}
/// Makes the row of that name current and scrolls to it; nothing for an empty name or an absent row.
void LVSetCurSelVisible(LMacWindow& window, int list, const char* name);
void LVSetCurSelVisible(LMacWindow& window, int list, int row);

}  // namespace PaneUtils
