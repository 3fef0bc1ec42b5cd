// Rungs that several ladders of ftp/queries.h share.
#pragma once

#include <cstddef>

#include "ftp/facts.h"
#include "ftp/protocol.h"
#include "support/strings.h"

enum class FtpRung {
  kAnswered,
  kNoAnswer,  ///< Go on with the next rung.
  kAbsent,    ///< The server says that there is no such file.
  kStopped,
};

/// `MLST name`: `value` gets the value of `fact` from the first line that has it, or of `spelling` (may be
/// null), a second way to write it.
[[nodiscard]] FtpRung FtpAskMlst(LProcessInterface&, LFileTransferProtocol&, const char* name, const char* fact,
                                 const char* spelling, char (&value)[kTextSize]);

/// `MLSD folder` on the control connection, for a server that answers there: the value of `fact` from the
/// first line that also holds the base of `name`.
[[nodiscard]] FtpRung FtpAskMlsdOfFolder(LProcessInterface&, LFileTransferProtocol&, const char* name, const char* fact,
                                         char (&value)[kTextSize]);
