// The facts of MLST and MLSD lines: "size=12;type=file;modify=20240131235959; name". Pure rules, any thread.
#pragma once

#include <cstdint>

#include "support/text.h"

/// Copies the value that stands behind the first `fact` ("size=") of `line`, up to ";" or the end, cut to 259
/// bytes. Facts are looked for in the whole line, so the line must be in lower case. False if there is none.
[[nodiscard]] bool FtpFactValue(const char* line, const char* fact, char (&value)[kTextSize]);

/// The number at the start of a text, by the rules of atoi in 64 bits.
int64_t FtpNumber(const char* text);

/// Seconds on the wall-clock scale of listings, from "YYYYMMDDhhmmss" in UTC. The offset is the one in force
/// now, not at that date. `time` stays as it is for a stamp that is no date.
void FtpTimeFromStamp(const char* stamp, int64_t& time);

/// "os.unix=slink" and its like: a type of the server's own that stands for a link.
bool FtpTypeIsLink(const char* type);
