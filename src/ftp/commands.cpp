// Sending a command and judging its reply.
#include "ftp/commands.h"

#include <cstdlib>

#include "ftp/timeouts.h"
#include "support/log.h"

namespace {

/// The result for a reply of the plain form. 125 and 150 open a data transfer.
LProcessResult JudgeReply(unsigned short code) {
  const bool positive = FtpReplyIsPositive(code) || code == 125 || code == 150;
  return positive ? LProcessResultOk : LProcessResultFailed;
}

/// Some servers answer a command that they do not know with two replies.
void TakeSecondReplyTo500(LFileTransferProtocol& session) {
  LProcessInterfaceVoid unstoppable;
  unsigned short code;
  char text[kTextSize];
  // There may be no second reply, which is as good.
  (void)ProcessFtpWaitForReplyTimeout(unstoppable, session, code, text, gFtpTimeouts.extraReplyMs);
}

LProcessResult JudgeReplyNoTrace(unsigned code) {
  if (FtpReplyIsPositive(code)) return LProcessResultOk;
  if (code == 530) {
    FtpLogLogonRefused();
  } else {
    LOGERRORF("Reply Gave Unexpected Response: %u", code);
  }
  return LProcessResultFailed;
}

}  // namespace

bool FtpCommandIsSendable(const char* command) {
  const size_t text = strcspn(command, "\r\n");
  return text != 0 && strcmp(command + text, "\r\n") == 0;
}

LProcessResult ProcessFtpSendCommand(LProcessInterface& process, LFileTransferProtocol& session, const char* command,
                                     unsigned int ms) {
  if (FtpCommandIsSendable(command)) return ProcessSendString(process, session, command, ms);
  // The text itself stays out of the history: it may hold a password.
  if (command[0] == 0) {
    LOGERROR("コマンドが長すぎるため送信しませんでした。");
  } else {
    LOGERROR("コマンドの途中に改行があるか、または行末がないため送信しませんでした。");
  }
  return LProcessResultFailed;
}

void FtpLogLogonRefused() {
  gLLog.LogWithoutEmailing("ユーザーログインに失敗しました。ユーザー名とパスワードが正しいことを確認してください。",
                           kLogError);
}

LProcessResult ProcessFtpSendAndWaitForReply(LProcessInterface& process, LFileTransferProtocol& session,
                                             const char* command, unsigned short* code, char (*text)[kTextSize]) {
  if (code) *code = 0;
  const LProcessResult sent = ProcessFtpSendCommand(process, session, command, gFtpTimeouts.sendMs);
  if (sent != LProcessResultOk) return sent;
  unsigned short received = 0;
  char ignored[kTextSize];
  const LProcessResult read =
      ProcessFtpTakeReply(process, session, received, text ? *text : ignored, gFtpTimeouts.replyMs);
  if (code) *code = received;
  if (read != LProcessResultOk) return read;
  if (received == 500 && !session.Has(LFileTransferProtocol::bFeaturesKnown)) TakeSecondReplyTo500(session);
  return JudgeReply(received);
}

LProcessResult ProcessFtpSendAndWaitForReplyNoTrace(LProcessInterface& process, LFileTransferProtocol& session,
                                                    const char* command, unsigned short* code,
                                                    char (*text)[kTextSize]) {
  if (code) *code = 0;
  const unsigned sendMs = gFtpTimeouts.sendNoTraceMs + static_cast<unsigned>(strlen(command));
  const LProcessResult sent = ProcessFtpSendCommand(process, session, command, sendMs);
  if (sent != LProcessResultOk) return sent;
  unsigned short received = 0;
  char ignored[kTextSize];
  const LProcessResult read =
      ProcessFtpWaitForReplyTimeout(process, session, received, text ? *text : ignored, gFtpTimeouts.replyMs);
  if (read != LProcessResultOk) return read;
  if (code) *code = received;
  return JudgeReplyNoTrace(received);
}

void ProcessFtpChooseUtf8(LProcessInterface& process, LFileTransferProtocol& session) {
  if (!session.Has(LFileTransferProtocol::bHasUtf8)) return;
  constexpr char kCommand[] = "OPTS UTF8 ON\r\n";
  const unsigned sendMs = gFtpTimeouts.sendNoTraceMs + static_cast<unsigned>(strlen(kCommand));
  if (ProcessFtpSendCommand(process, session, kCommand, sendMs) != LProcessResultOk) return;
  unsigned short code;
  char text[kTextSize];
  if (ProcessFtpTakeReply(process, session, code, text, gFtpTimeouts.replyMs) != LProcessResultOk) return;
  (void)JudgeReplyNoTrace(code);
}
