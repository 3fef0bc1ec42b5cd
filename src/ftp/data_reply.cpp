// Commands whose answer comes over a data connection, and the protection of data connections.
#include "ftp/commands.h"
#include "ftp/data_connection.h"
#include "ftp/line_pieces.h"
#include "ftp/timeouts.h"

namespace {

constexpr unsigned kProtectionRefused = 534;

void CollectLines(LProcessInterface& process, FtpDataConnection& data, LStringListTemplate<char>& lines) {
  LStringLongTemplate<char> line;
  LProcessResult result;
  while ((result = data.ReceiveLine(process, line, gFtpTimeouts.dataReplyLineMs)) == LProcessResultOk) {
    FtpLinePieces pieces(line.data, line.length);
    char piece[kTextSize];
    while (pieces.Next(piece)) {
      if (piece[0]) lines.Add(piece);
    }
  }
  if (result == LProcessResultStopped) data.Drop();
}

LProcessResult OpenDataConnection(LProcessInterface& process, LFileTransferProtocol& session, FtpDataConnection& data) {
  LProcessResult result = ProcessFtpProtectData(process, session);
  if (result != LProcessResultOk) return result;
  result = ProcessFtpSendAndWaitForReply(process, session, "TYPE A\r\n", nullptr, nullptr);
  if (result != LProcessResultOk) return result;
  char address[kTextSize];
  result = ProcessFtpPassive(process, session, address);
  if (result != LProcessResultOk) return result;
  return data.OpenInTwoTries(process, address);
}

}  // namespace

LProcessResult ProcessFtpProtectData(LProcessInterface& process, LFileTransferProtocol& session) {
  if (!session.IsSecure()) return LProcessResultOk;
  LProcessResult result = ProcessFtpSendAndWaitForReply(process, session, "PBSZ 0\r\n", nullptr, nullptr);
  if (result != LProcessResultOk) return result;
  unsigned short code = 0;
  result = ProcessFtpSendAndWaitForReply(process, session, "PROT P\r\n", &code, nullptr);
  if (result != LProcessResultOk && code == kProtectionRefused) {
    process.SetError("このFTPサーバーは接続に必要な保護されたモードでのデータ転送をサポートしていません。");
  }
  return result;
}

LProcessResult ProcessFtpSendAndWaitForDataReply(LProcessInterface& process, LFileTransferProtocol& session,
                                                 const char* command, LStringListTemplate<char>& lines) {
  lines.Clear();
  ProcessFtpChooseUtf8(process, session);
  FtpDataConnection data;
  const LProcessResult opened = OpenDataConnection(process, session, data);
  if (opened != LProcessResultOk) return opened;

  unsigned short code = 0;
  // Only the code counts.
  (void)ProcessFtpSendAndWaitForReply(process, session, command, &code, nullptr);
  if (session.IsSecure()) data.FinishTlsBehindReply(process, code);
  if (FtpReplyIsPreliminary(code)) CollectLines(process, data, lines);
  data.Close(process);
  if (!FtpReplyIsPreliminary(code)) return LProcessResultFailed;

  char text[kTextSize];
  const LProcessResult result = ProcessFtpTakeReply(process, session, code, text, gFtpTimeouts.closingReplyMs);
  if (result != LProcessResultOk) return result;
  return FtpReplyIsPositive(code) ? LProcessResultOk : LProcessResultFailed;
}
