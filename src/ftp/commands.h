// What every exchange of the FTP engine is built from, beside the exchanges of ftp/protocol.h: the one way to
// build a command, the one way to send it, and the texts that replies share. Main thread.
#pragma once

#include <cstdarg>

#include "ftp/protocol.h"
#include "support/text.h"

constexpr size_t kFtpShortCommand = 260;  ///< Bytes of a command of the logon, line end and terminator counted.
constexpr size_t kFtpLongCommand = 280;   ///< Bytes of a command that names a file.

/// Formats a command into its buffer. One that does not fit becomes the empty text, which is never sent: cut
/// short it could name another file, or lack its line end, so that both sides wait for each other.
template <size_t N>
__attribute__((format(printf, 2, 3))) void FtpFormatCommand(char (&out)[N], const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const int length = vsnprintf(out, N, format, arguments);
  va_end(arguments);
  if (length < 0 || static_cast<size_t>(length) >= N) out[0] = 0;
}

/// Whether this text is one command: a line end at its end, and none before it.
[[nodiscard]] bool FtpCommandIsSendable(const char* command);

/// The one function that sends a command. Logs it (a password masked) and sends it as it is. A text that is
/// no single command is refused before anything goes out: a line in the history and result 2.
[[nodiscard]] LProcessResult ProcessFtpSendCommand(LProcessInterface&, LFileTransferProtocol&, const char* command,
                                                   unsigned int ms);

/// Reads the reply to a command that is out. After a stop it is still taken off the connection, without a pump, so
/// that the session stays in step; `code` tells whether another one will follow it.
[[nodiscard]] LProcessResult ProcessFtpTakeReply(LProcessInterface&, LFileTransferProtocol&, unsigned short& code,
                                                 char (&text)[kTextSize], unsigned int ms);
/// What ProcessFtpTakeReply does after a stop. The code, 0 if nothing came.
unsigned short FtpDrainReply(LFileTransferProtocol&);

/// Asks a server that knows it for names in UTF-8. One that refuses sends the names as it has them; the history tells.
void ProcessFtpChooseUtf8(LProcessInterface&, LFileTransferProtocol&);

/// Tells the user in the history that user name or password were refused.
void FtpLogLogonRefused();

/// The path between the first double quote of a reply and the next one or the end; empty without a quote.
/// Doubled quotes are not decoded.
void FtpQuotedPath(const char* reply, char (&path)[kTextSize]);

/// PWD. `path` is touched on success only, and may then be empty.
[[nodiscard]] LProcessResult ProcessFtpPrintDirectory(LProcessInterface&, LFileTransferProtocol&,
                                                      char (&path)[kTextSize]);
/// MKD. A folder that exists already (521) is a success, and so, with no command, are an empty path and the
/// root.
[[nodiscard]] LProcessResult ProcessFtpCreateDirectory(LProcessInterface&, LFileTransferProtocol&, const char* path);
/// RNFR, and RNTO if that is taken. A `to` in another folder moves.
[[nodiscard]] LProcessResult ProcessFtpRename(LProcessInterface&, LFileTransferProtocol&, const char* from,
                                              const char* to);
