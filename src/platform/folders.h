// The user's folders, by the desktop's own rules. Any thread.
#pragma once

#include "platform/text_service.h"

namespace platform {

enum class Folder {
  kHome,
  kDocuments,
  kDownloads,
  kApplications,  ///< The user's own program starters.
  kCaches,
  kData,    ///< Data of the user's programs.
  kConfig,  ///< Configuration of the user's programs.
  kSystemApplications,
  kProgram,  ///< Where this program and its resources lie.
};

/// The absolute path without a trailing separator. False, with an empty `out`, if the desktop names none or the
/// path is longer than `out`. The folder need not exist.
bool FolderPath(Folder folder, char (&out)[kFixedText]);

}  // namespace platform
