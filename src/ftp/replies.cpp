// Reading a reply: which of the lines that arrive ends it.
#include <cstdlib>

#include "ftp/commands.h"
#include "ftp/line_pieces.h"
#include "ftp/protocol.h"
#include "ftp/reply_limit.h"
#include "ftp/timeouts.h"
#include "support/log.h"

namespace {

bool EndsReply(const char* piece) {
  if (piece[0] == 0 || piece[0] == ' ') return false;
  const bool continues = strnlen(piece, 4) == 4 && piece[3] == '-';
  return !continues;
}

/// Gives the reply that this line holds. The code of the first line of a long reply is not looked for:
/// servers that leave out the closing line are read as well as those that repeat the code on every line.
bool TakeReply(const char* line, size_t size, unsigned short& code, char (&text)[kTextSize]) {
  FtpLinePieces pieces(line, size);
  char piece[kTextSize];
  while (pieces.Next(piece)) {
    if (!EndsReply(piece)) continue;
    code = static_cast<unsigned short>(strtol(piece, nullptr, 10));
    if (strlen(piece) >= 5) TextCopyPart(text, piece + 4, strlen(piece + 4));
    LOGFTPRESPONSE(piece);
    return true;
  }
  return false;
}

/// `ms` counts for each line, `wholeMs` for all of them.
LProcessResult ReadReply(LProcessInterface& process, LFileTransferProtocol& session, unsigned short& code,
                         char (&text)[kTextSize], unsigned int ms, unsigned int wholeMs) {
  text[0] = 0;
  code = 0;
  FtpReplyLimit limit(process, wholeMs);
  for (;;) {
    char line[kTextSize];
    LFixedLengthStringWriterTemplate<char> writer(line);
    const LProcessResult received = limit.Judge(ProcessRecvLineToWriter(limit, session, writer, ms));
    if (received != LProcessResultOk) return received;
    if (TakeReply(line, writer.Length(), code, text)) return LProcessResultOk;
    const LProcessResult asked = limit.AskAgain();
    if (asked != LProcessResultOk) return asked;
  }
}

}  // namespace

LProcessResult ProcessFtpWaitForReplyTimeout(LProcessInterface& process, LFileTransferProtocol& session,
                                             unsigned short& code, char (&text)[kTextSize], unsigned int ms) {
  return ReadReply(process, session, code, text, ms, FtpReplyLimit::WholeReplyMs(ms));
}

LProcessResult ProcessFtpTakeReply(LProcessInterface& process, LFileTransferProtocol& session, unsigned short& code,
                                   char (&text)[kTextSize], unsigned int ms) {
  const LProcessResult read = ProcessFtpWaitForReplyTimeout(process, session, code, text, ms);
  if (read == LProcessResultStopped) code = FtpDrainReply(session);
  return read;
}

unsigned short FtpDrainReply(LFileTransferProtocol& session) {
  LProcessInterfaceVoid unstoppable;
  unsigned short code;
  char text[kTextSize];
  // The user has stopped already; whether the reply still came changes nothing.
  (void)ReadReply(unstoppable, session, code, text, gFtpTimeouts.drainReplyMs, gFtpTimeouts.drainReplyMs);
  return code;
}

void FtpQuotedPath(const char* reply, char (&path)[kTextSize]) {
  path[0] = 0;
  const char* open = strchr(reply, '"');
  if (!open) return;
  TextCopyPart(path, open + 1, strcspn(open + 1, "\""));
}
