// The exchange whose whole reply is wanted: FEAT, MLST, and MLSD on the control connection.
#include <cstdlib>

#include "ftp/commands.h"
#include "ftp/reply_limit.h"
#include "ftp/timeouts.h"

namespace {

constexpr size_t kLineBuffer = 5200;  ///< Bytes; grows for a longer line.
constexpr size_t kCodeSize = 3;
constexpr size_t kLongestReply = 64u << 20;  ///< Bytes of all lines: a server may never come to an end.

/// One line without trailing white space.
LProcessResult ReceiveLine(LProcessInterface& process, LFileTransferProtocol& session,
                           LStringLongTemplate<char>& line) {
  line = "";
  LStringLongTemplateWriter<char> writer(line);
  const LProcessResult received = ProcessRecvLineToWriter(process, session, writer, gFtpTimeouts.replyMs);
  while (line.length > 0 && static_cast<unsigned char>(line.data[line.length - 1]) < 33) --line.length;
  line.data[line.length] = 0;
  return received;
}

}  // namespace

LProcessResult ProcessFtpSendAndWaitForReply(LProcessInterface& process, LFileTransferProtocol& session,
                                             const char* command, LStringListTemplate<char>& lines) {
  lines.Clear();
  const LProcessResult sent = ProcessFtpSendCommand(process, session, command, gFtpTimeouts.sendMultiLineMs);
  if (sent != LProcessResultOk) return sent;
  LStringLongTemplate<char> line;
  line.GrowToSize(kLineBuffer);
  char closingMark[kCodeSize + 2] = {};  // The code and a blank; empty before the first line.
  FtpReplyLimit limit(process, FtpReplyLimit::WholeReplyMs(gFtpTimeouts.replyMs));
  for (size_t bytes = 0; bytes < kLongestReply; bytes += line.length + 1) {
    const bool isFirst = closingMark[0] == 0;
    LProcessResult received = isFirst ? LProcessResultOk : limit.AskAgain();
    if (received == LProcessResultOk) received = limit.Judge(ReceiveLine(limit, session, line));
    if (received == LProcessResultStopped) FtpDrainReply(session);
    if (received != LProcessResultOk) return received;
    if (line.IsEmpty()) {
      if (isFirst) return LProcessResultFailed;
      continue;
    }
    if (isFirst) {
      lines.Add(line);
      char code[kCodeSize + 1];
      TextCopy(code, line.Text());
      if (!FtpReplyIsPositive(static_cast<unsigned>(strtol(code, nullptr, 10)))) return LProcessResultFailed;
      TextFormat(closingMark, "%s ", code);
    }
    const bool closes = strncmp(line.Text(), closingMark, strlen(closingMark)) == 0;
    if (closes) return LProcessResultOk;
    if (!isFirst) lines.Add(line);
  }
  return LProcessResultFailed;
}
