// The session's quick exchanges about folders, and PWD, MKD and the renaming themselves.
#include "ftp/commands.h"
#include "ftp/timeouts.h"

LProcessResult ProcessFtpPrintDirectory(LProcessInterface& process, LFileTransferProtocol& session,
                                        char (&path)[kTextSize]) {
  const LProcessResult sent = ProcessFtpSendCommand(process, session, "PWD\r\n", gFtpTimeouts.sendDirectMs);
  if (sent != LProcessResultOk) return sent;
  unsigned short code;
  char text[kTextSize];
  const LProcessResult read = ProcessFtpTakeReply(process, session, code, text, gFtpTimeouts.replyMs);
  if (read != LProcessResultOk) return read;
  if (code < 200 || code > 299) return LProcessResultFailed;
  FtpQuotedPath(text, path);
  return LProcessResultOk;
}

LProcessResult ProcessFtpCreateDirectory(LProcessInterface& process, LFileTransferProtocol& session, const char* path) {
  if (process.IsToStop()) return LProcessResultStopped;
  if (!path || path[0] == 0 || strcmp(path, "/") == 0) return LProcessResultOk;
  char command[kFtpLongCommand];
  FtpFormatCommand(command, "MKD %s\r\n", path);
  const LProcessResult sent = ProcessFtpSendCommand(process, session, command, gFtpTimeouts.sendDirectMs);
  if (sent != LProcessResultOk) return sent;
  unsigned short code;
  char text[kTextSize];
  const LProcessResult read = ProcessFtpTakeReply(process, session, code, text, gFtpTimeouts.replyMs);
  if (read != LProcessResultOk) return read;
  return FtpReplyIsPositive(code) || code == 521 ? LProcessResultOk : LProcessResultFailed;
}

LProcessResult ProcessFtpRename(LProcessInterface& process, LFileTransferProtocol& session, const char* from,
                                const char* to) {
  char command[kFtpShortCommand];
  FtpFormatCommand(command, "RNFR %s\r\n", from);
  const LProcessResult result = ProcessFtpSendAndWaitForReply(process, session, command, nullptr, nullptr);
  if (result != LProcessResultOk) return result;
  FtpFormatCommand(command, "RNTO %s\r\n", to);
  return ProcessFtpSendAndWaitForReply(process, session, command, nullptr, nullptr);
}

bool LFileTransferProtocol::SetCurrentDirectory(const char* path) {
  LProcessInterfaceVoid process;
  char command[kFtpLongCommand];
  FtpFormatCommand(command, "CWD %s\r\n", path);
  return ProcessFtpSendAndWaitForReply(process, *this, command, nullptr, nullptr) == LProcessResultOk;
}

bool LFileTransferProtocol::GetCurrentDirectory(char (&path)[kTextSize]) {
  LProcessInterfaceVoid process;
  path[0] = 0;
  return ProcessFtpPrintDirectory(process, *this, path) == LProcessResultOk;
}

bool LFileTransferProtocol::CreateDirectory(const char* path) {
  LProcessInterfaceVoid process;
  return ProcessFtpCreateDirectory(process, *this, path) == LProcessResultOk;
}
