// The permissions of a file on the server, as far as a session can tell them. Main thread.
#pragma once

#include "core/process.h"
#include "ftp/protocol.h"

/// What the question for a file's permissions is given and finds. Nothing is owned.
struct GetPermissionsData {
  char attributes[kTextSize];  ///< Out.
  char name[2 * kTextSize];    ///< A plain name in the session's current directory.
  LFileTransferProtocol* pSession;
};
[[nodiscard]] LProcessResult Process(LProcessInterface&, GetPermissionsData&);

/// The three digits of a permission text, each a sum of 4 (read), 2 and 1: of a mask of ten letters, or of four to nine
/// digits behind a leading one. Zeros for anything else.
void FtpPermissionDigits(const char* text, unsigned char& owner, unsigned char& group, unsigned char& others);

/// Whether anybody may read the file; a server that does not tell counts as yes, and a no goes to the history. Leaves
/// the session in the file's folder.
[[nodiscard]] bool FTPTestUserHasReadPermissions(LProcessInterface&, LFileTransferProtocol&, const char* path);
