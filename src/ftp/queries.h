// Questions about one file of a server. Each has a ladder of methods, from the exact and cheap (MLST, SIZE,
// MDTM) down to a whole listing; a failed rung leads to the next one, a stop ends the ladder.
//
// Every question asks for the server's features first. Results: 0 answered, 1 stopped, 2 no rung gave an
// answer, with the output at its start value. On the process's thread.
#pragma once

#include <cstdint>

#include "ftp/protocol.h"

/// FEAT, once for each session: fills the capability word. Always 0; after a failure the next call asks
/// again.
LProcessResult ProcessFtpCheckFeatures(LProcessInterface&, LFileTransferProtocol&);

/// Bytes. 0 with result 0 for a file that MLST says does not exist.
[[nodiscard]] LProcessResult ProcessFtpGetFileSize(LProcessInterface&, LFileTransferProtocol&, const char* name,
                                                   uint64_t& size);
/// Seconds on the wall-clock scale of listings; starts as now on that scale, so that a failure leaves it at
/// now.
[[nodiscard]] LProcessResult ProcessFtpGetFileModifiedTime(LProcessInterface&, LFileTransferProtocol&, const char* name,
                                                           int64_t& time);

// What ProcessFtpIsDirectory says of an entry.
constexpr signed char kFtpKindUnknown = -1;
constexpr signed char kFtpKindFile = 0;
constexpr signed char kFtpKindDirectory = 1;
constexpr signed char kFtpKindSymbolicLink = 2;

/// `name` is a plain name in the session's current directory.
[[nodiscard]] LProcessResult ProcessFtpIsDirectory(LProcessInterface&, LFileTransferProtocol&, const char* name,
                                                   signed char& kind);

// Texts of one entry. An entry that is not found is no failure. Without MLSD they find the name only in a
// listing of one line.

/// The permission text; cleared first.
[[nodiscard]] LProcessResult ProcessFtpGetFileAttribute(LProcessInterface&, LFileTransferProtocol&, const char* name,
                                                        char (&text)[kTextSize]);
/// These leave `text` as they found it when nothing matches.
[[nodiscard]] LProcessResult ProcessFtpGetFileOwner(LProcessInterface&, LFileTransferProtocol&, const char* name,
                                                    char (&text)[kTextSize]);
[[nodiscard]] LProcessResult ProcessFtpGetFileOwnerGroup(LProcessInterface&, LFileTransferProtocol&, const char* name,
                                                         char (&text)[kTextSize]);
