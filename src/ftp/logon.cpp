#include "ftp/logon.h"

#include <cstdlib>

#include "ftp/logon_steps.h"
#include "ftp/timeouts.h"

namespace {

constexpr uint16_t kFtpPort = 21;
constexpr uint16_t kImplicitTlsPort = 990;

uint16_t DefaultPort(bool secure, bool implicit) { return secure && implicit ? kImplicitTlsPort : kFtpPort; }

LProcessResult StartImplicitTls(Logon& logon) {
  const LProcessResult started = LogonStartTls(logon);
  if (started == LProcessResultStopped) return started;
  if (!logon.session.IsSecure()) return LogIfFailed(LProcessResultFailed, LogonMessage::kImplicitTlsFailed, logon.peer);
  // A failed handshake leaves a context that lets nothing through, so the greeting will not come.
  return LProcessResultOk;
}

LProcessResult StartExplicitTls(Logon& logon) {
  unsigned short code;
  LProcessResult result = LogonSend(logon, "AUTH TLS\r\n", LogonMessage::kExplicitTlsFailed);
  if (result != LProcessResultOk) return result;
  result = LogonRead(logon, code, gFtpTimeouts.replyMs, LogonMessage::kExplicitTlsFailed);
  if (result != LProcessResultOk) return result;
  if (code != 234) {
    LogLogonMessage(LogonMessage::kExplicitTlsRefused, logon.peer);
    return LProcessResultOk;
  }
  // A server is silent until our first message of the handshake. Bytes that wait here were slipped in behind
  // the reply, to be taken later for replies that came under TLS.
  const bool slippedIn = logon.session.GetBytesReady() > 0;
  const LProcessResult started = slippedIn ? LProcessResultFailed : LogonStartTls(logon);
  return LogIfFailed(started, LogonMessage::kHandshakeFailed, logon.peer);
}

LProcessResult LogonDirect(Logon& logon) {
  LProcessResult result = LogonConnect(logon, logon.szServer);
  if (result != LProcessResultOk) return result;
  if (logon.bSecure && logon.bImplicit) {
    result = StartImplicitTls(logon);
    if (result != LProcessResultOk) return result;
  }
  unsigned short code;
  result = LogonRead(logon, code, gFtpTimeouts.greetingMs, LogonMessage::kNoGreeting);
  if (result != LProcessResultOk) return result;
  if (!FtpReplyIsPositive(code)) return LogIfFailed(LProcessResultFailed, LogonMessage::kBadGreeting, logon.peer);
  return logon.bSecure && !logon.bImplicit ? StartExplicitTls(logon) : LProcessResultOk;
}

/// USER. `stage` becomes kPassword if the server wants more than the name.
LProcessResult SendUser(Logon& logon, LogonStage& stage) {
  char command[kFtpShortCommand];
  FtpFormatCommand(command, "USER %s\r\n", logon.szUser);
  LProcessResult result = LogonSend(logon, command, LogonMessage::kUserNotSent);
  if (result != LProcessResultOk) return result;
  unsigned short code;
  result = LogonRead(logon, code, gFtpTimeouts.replyMs, LogonMessage::kNoReply);
  if (result != LProcessResultOk) return result;
  if (code == 530) {
    FtpLogLogonRefused();
    return LProcessResultFailed;
  }
  if (code != 230) stage = LogonStage::kPassword;
  return LProcessResultOk;
}

LProcessResult SendPassword(Logon& logon) {
  char command[kFtpLongCommand];
  FtpFormatCommand(command, "PASS %s\r\n", logon.szPassword);
  const LProcessResult result =
      ProcessFtpSendAndWaitForReplyNoTrace(logon.process, logon.session, command, nullptr, nullptr);
  // Whatever a refused or stopped password leaves behind, the session is not logged on.
  return result == LProcessResultOk ? LProcessResultOk : LProcessResultFailed;
}

}  // namespace

LProcessResult LogonConnect(Logon& logon, const char* address) {
  GetErrorReportAddressAndPort(address, logon.bSecure, logon.bImplicit, logon.peer.szHost, logon.peer.iPort);
  char host[kTextSize];
  LIPAddressMultiHomedWithPort target;
  target.port = SplitPortFromAddr(address, host, DefaultPort(logon.bSecure, logon.bImplicit));
  target.addresses.Resolve(host);
  const LProcessResult connected =
      ProcessConnect(logon.process, logon.session, address, target, gFtpTimeouts.connectMs);
  return LogIfFailed(connected, LogonMessage::kConnectFailed, logon.peer);
}

LProcessResult LogonStartTls(Logon& logon) {
  return ProcessConvertSocketToSSL(logon.process, logon.session, gFtpTimeouts.logonHandshakeMs);
}

LProcessResult LogonSend(Logon& logon, const char* command, LogonMessage message) {
  const LProcessResult sent = ProcessFtpSendCommand(logon.process, logon.session, command, gFtpTimeouts.sendDirectMs);
  return LogIfFailed(sent, message, logon.peer);
}

LProcessResult LogonRead(Logon& logon, unsigned short& code, unsigned int ms, LogonMessage message) {
  char text[kTextSize];
  const LProcessResult read = ProcessFtpWaitForReplyTimeout(logon.process, logon.session, code, text, ms);
  return LogIfFailed(read, message, logon.peer);
}

LProcessResult ProcessFtpLogOnServer(LProcessInterface& process, LFileTransferProtocol& session, const char* server,
                                     const char* user, const char* password, bool secure, bool implicit) {
  session.CloseSocketAndContext();
  session.uCapabilities = 0;
  LogonProxy proxy;
  LNetGetFtpProxySettings(proxy.szHost, proxy.szUser, proxy.szPassword, proxy.type);
  Logon logon = {process, session, server, user, password, secure, implicit, {}};
  LogonStage stage = LogonStage::kUser;
  LProcessResult result = proxy.type == kFtpProxyNone ? LogonDirect(logon) : LogonThroughProxy(logon, proxy, stage);
  if (result == LProcessResultOk && stage == LogonStage::kUser) result = SendUser(logon, stage);
  if (result == LProcessResultOk && stage == LogonStage::kPassword) result = SendPassword(logon);
  return result;
}

bool FtpServerHasAddress(const char* server, bool secure, bool implicit) {
  char host[kTextSize];
  (void)SplitPortFromAddr(server, host, DefaultPort(secure, implicit));
  LIPAddressMultiHomed addresses;
  addresses.Resolve(host);
  return addresses.count != 0 && addresses.addresses[0] != 0;
}

void GetErrorReportAddressAndPort(const char* address, bool secure, bool implicit, char (&host)[kTextSize], int& port) {
  TextCopyPart(host, address, strcspn(address, ":"));
  const char* colon = strchr(address, ':');
  port = colon ? static_cast<int>(strtol(colon + 1, nullptr, 10)) : DefaultPort(secure, implicit);
}

LProcessResult Process(LProcessInterface& process, LProcessSecureFtpConnect& connect) {
  process.SetStatus("接続中...", 0);
  process.SetProgress(0.1);
  process.SetStatus("接続中...", 1);
  process.SetProgress(0.33);
  if (!FtpServerHasAddress(connect.szServer, connect.bSecure, connect.bImplicit)) {
    process.SetError("サーバーに接続できません");
    return LProcessResultFailed;
  }
  process.SetStatus("ログイン...", 1);
  process.SetProgress(0.66);
  const LProcessResult result = ProcessFtpLogOnServer(process, *connect.pSession, connect.szServer, connect.szUser,
                                                      connect.szPassword, connect.bSecure, connect.bImplicit);
  if (result == LProcessResultFailed) {
    process.SetError("サーバーにログインできません。");
    return result;
  }
  process.SetProgress(0.1);
  return result;
}

LProcessResult Process(LProcessInterface& process, LProcessSecureFtpChangeDirectory& change) {
  char(&directory)[kTextSize] = *change.pDirectory;
  char status[kTextSize];
  TextFormat(status, "%sへディレクトリを変更しています", directory);
  process.SetStatus(status, 0);
  if (directory[0] != 0) {
    char command[kFtpLongCommand];
    FtpFormatCommand(command, "CWD %s\r\n", directory);
    const LProcessResult changed = ProcessFtpSendAndWaitForReply(process, *change.pSession, command, nullptr, nullptr);
    if (changed != LProcessResultOk) return changed;
  }
  return ProcessFtpPrintDirectory(process, *change.pSession, directory);
}
