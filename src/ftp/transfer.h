// Moves one file over one data connection. Binary always, and always from the start of the file: an
// interrupted one is sent or fetched again as a whole.
//
// On the process's thread; the interface is pumped while data flow. The closing exchanges cannot be stopped
// and do not pump. A result of 2 leaves the session usable for another try.
#pragma once

#include "ftp/protocol.h"

/// Fetches `remote`, a name in the session's current directory, into the file `local`, which is locked and
/// emptied before anything is asked of the server. `errorText` (may be null) takes the server's last error
/// reply, or becomes empty. After a failed transfer the local file is gone; after a refused one it is there,
/// empty.
[[nodiscard]] LProcessResult ProcessFtpDownload(LProcessInterface&, LFileTransferProtocol&, const char* remote,
                                                const char* local, char (*errorText)[kTextSize]);

/// Sends the file `local` as `remote`. With `append` what the server has already is not sent again. The
/// file's date follows where the server can set it.
[[nodiscard]] LProcessResult ProcessFtpUpload(LProcessInterface&, LFileTransferProtocol&, const char* remote,
                                              const char* local, char (*errorText)[kTextSize], bool append);
