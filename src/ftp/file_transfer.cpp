#include "ftp/file_transfer.h"

#include "ftp/commands.h"
#include "ftp/timeouts.h"
#include "platform/clock.h"
#include "platform/file_io.h"

namespace {

/// More replies than this are no answers to NOOPs: a server that never stops talking would hold the window
/// for ever.
constexpr int kMostLateReplies = 1000;
/// Replies that end nothing: the preliminary one, and one more.
constexpr int kSpareReplies = 2;

}  // namespace

FtpFileTransfer::FtpFileTransfer(LProcessInterface& process, LFileTransferProtocol& session,
                                 char (*errorText)[kTextSize])
    : pProcess(&process), pSession(&session), pErrorText(errorText) {
  szName[0] = 0;
  KeepError("");
}

FtpFileTransfer::~FtpFileTransfer() { CloseLocalFile(); }

void FtpFileTransfer::KeepError(const char* text) {
  if (pErrorText) TextCopy(*pErrorText, text);
}

void FtpFileTransfer::CloseLocalFile() {
  if (iFile != -1) platform::FileClose(iFile);
  iFile = -1;
}

LProcessResult FtpFileTransfer::PrepareDataConnection() {
  LProcessResult result = ProcessFtpProtectData(*pProcess, *pSession);
  if (result != LProcessResultOk) return result;
  result = ProcessFtpSendAndWaitForReply(*pProcess, *pSession, "TYPE I\r\n", nullptr, nullptr);
  if (result != LProcessResultOk) return result;
  char address[kTextSize];
  result = ProcessFtpPassive(*pProcess, *pSession, address);
  if (result != LProcessResultOk) return result;
  return data.Open(*pProcess, address);
}

LProcessResult FtpFileTransfer::ReadReply(unsigned short& code, char (&text)[kTextSize]) {
  const LProcessResult read = ProcessFtpWaitForReplyTimeout(*pProcess, *pSession, code, text, gFtpTimeouts.replyMs);
  if (read == LProcessResultStopped) TakeRepliesOff(1);
  return read;
}

/// What the server says to commands that are on their way would be taken for the answers to the next ones.
void FtpFileTransfer::TakeRepliesOff(int owed) {
  data.Drop();
  for (int spare = kSpareReplies; owed > 0 && spare >= 0;) {
    unsigned short code;
    char text[kTextSize];
    if (ReadClosingReply(gFtpTimeouts.aborReplyMs, code, text) != LProcessResultOk) return;
    code >= 200 ? --owed : --spare;
  }
}

void FtpFileTransfer::StartNoopClock() { iNoopClock = platform::ClockMonotonicMs(); }

bool FtpFileTransfer::IsNoopDue() const {
  return platform::ClockMonotonicMs() - iNoopClock > static_cast<int64_t>(gFtpTimeouts.noopPeriodMs);
}

LProcessResult FtpFileTransfer::ExchangeNoop(unsigned short& code) {
  code = 0;
  const LProcessResult sent = ProcessFtpSendCommand(*pProcess, *pSession, "NOOP\r\n", gFtpTimeouts.noopSendMs);
  if (sent == LProcessResultStopped) {
    TakeRepliesOff(1 + iLateReplies);
    return sent;
  }
  if (sent == LProcessResultOk) {
    char text[kTextSize];
    const LProcessResult read =
        ProcessFtpWaitForReplyTimeout(*pProcess, *pSession, code, text, gFtpTimeouts.noopReplyMs);
    if (read != LProcessResultOk) ++iLateReplies;
    if (read == LProcessResultStopped) {
      TakeRepliesOff(1 + iLateReplies);
      return read;
    }
  }
  StartNoopClock();
  return LProcessResultOk;
}

LProcessResult FtpFileTransfer::Abort(unsigned sendMs, unsigned short& code, char (&text)[kTextSize]) {
  LProcessInterfaceVoid unstoppable;
  // A failed send shows in the reply that does not come.
  (void)ProcessFtpSendCommand(unstoppable, *pSession, "ABOR\r\n", sendMs);
  // Many servers look at the control connection only when the data connection fails them: while it stood open they
  // would answer too late, and one reply would be left over for the next command.
  data.Drop();
  const LProcessResult read = ReadClosingReply(gFtpTimeouts.aborReplyMs, code, text);
  if (read != LProcessResultOk) ++iLateReplies;
  return read;
}

LProcessResult FtpFileTransfer::ReadClosingReply(unsigned ms, unsigned short& code, char (&text)[kTextSize]) {
  LProcessInterfaceVoid unstoppable;
  return ProcessFtpWaitForReplyTimeout(unstoppable, *pSession, code, text, ms);
}

LProcessResult FtpFileTransfer::ReadLateReplies(unsigned ms, unsigned short failing, unsigned short& code,
                                                char (&text)[kTextSize]) {
  LProcessResult result = LProcessResultFailed;
  code = 0;
  text[0] = 0;
  for (int i = 0; i < kMostLateReplies; ++i) {
    unsigned short next;
    char nextText[kTextSize];
    if (ReadClosingReply(ms, next, nextText) != LProcessResultOk) break;
    if (FtpReplyEndsTransfer(next)) {
      result = LProcessResultOk;
      code = next;
      TextCopy(text, nextText);
    } else if (failing != 0 && next == failing) {
      result = LProcessResultFailed;
    }
  }
  return result;
}

void FtpFileTransfer::ShowProgress() {
  char label[kTextSize + sizeof ": 100%"];
  TextFormat(label, "%s: %2.0f%%", szName, progress.Fraction() * 100);
  pProcess->SetStatus(label, 1);
  pProcess->SetProgress(progress.Fraction());
}
