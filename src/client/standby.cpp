#include "client/standby.h"

#include "client/remote_pane.h"
#include "client/transfer_lists.h"
#include "ftp/commands.h"
#include "ftp/logon.h"
#include "platform/clock.h"
#include "platform/event_loop.h"
#include "support/window/alert.h"

namespace {

constexpr int kLogons = 11;
constexpr unsigned kEventSliceMs = 10;

void WaitForWake(LProcessInterface& process) {
  while (LFtpList::bPowerSuspendStandBy) {
    // A stop takes effect when the machine is awake. Behind it the question pumps no more, and the waking would not
    // come.
    if (process.IsToStop()) platform::EventLoopPump();
    platform::ClockSleepMs(kEventSliceMs);
  }
}

LProcessResult LogOnAgain(LProcessInterface& process, LFileTransferProtocol& session) {
  LProcessResult result = LProcessResultFailed;
  for (int i = 0; i < kLogons && result != LProcessResultOk; ++i) {
    result = ProcessFtpLogOnServer(process, session, LFtpList::szLastServer, LFtpList::szLastUsername,
                                   LFtpList::szLastPassword, LFtpList::bLastSecure, LFtpList::bLastImplicitSSL);
    // A network needs a moment to come back. A stop shows in the next logon.
    (void)process.ProcessWait(gTransferWaits.wakeLogonMs);
  }
  return result;
}

}  // namespace

StandByWatch::StandByWatch() : uBefore(LFtpList::uStandBys) {}

bool StandByWatch::HasBeen() const { return LFtpList::bPowerSuspendStandBy || LFtpList::uStandBys != uBefore; }

LProcessResult ProcessStandBy(LProcessInterface& process, LFileTransferProtocol& session) {
  if (session.IsValid()) session.CloseSocket();
  WaitForWake(process);
  process.SetStatus("サーバーに再接続中... ", 1);
  process.SetProgressIndeterminateOn();
  LProcessResult result = LogOnAgain(process, session);
  if (result != LProcessResultOk) return result;
  char command[kFtpLongCommand];
  FtpFormatCommand(command, "CWD %s\r\n", LFtpList::szLastDirectory);
  result = ProcessFtpSendAndWaitForReply(process, session, command, nullptr, nullptr);
  if (result == LProcessResultOk) process.SetProgressIndeterminateOff();
  return result;
}

bool StandByEndsCollecting(const char* text, const char* title) {
  if (!LFtpList::bPowerSuspendStandBy) return false;
  LAlertWithButtonText::DisplayOkInfo(nullptr, text, title, "OK");
  return true;
}
