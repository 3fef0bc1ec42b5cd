// The exchange whose whole reply is wanted: FEAT, MLST, and MLSD on the control connection.
#include <cstdlib>

#include "ftp/commands.h"
#include "ftp/timeouts.h"

namespace {

constexpr size_t kLineBuffer = 5200;  ///< Bytes; grows for a longer line.
constexpr size_t kCodeSize = 3;

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
  for (;;) {
    const LProcessResult received = ReceiveLine(process, session, line);
    if (received == LProcessResultStopped) FtpDrainReply(session);
    if (received != LProcessResultOk) return received;
    const bool isFirst = closingMark[0] == 0;
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
}
