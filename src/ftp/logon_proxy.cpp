// The part of a logon in which an FTP proxy is asked to connect to the server. AUTH TLS has no place here: a
// site that wants explicit TLS goes through a proxy in the clear.
#include "ftp/logon_steps.h"
#include "ftp/timeouts.h"

namespace {

bool WantsProxyLogon(LFtpProxyType type) { return type == kFtpProxySite || type == kFtpProxyLoginUserAtSite; }

bool IsKnown(LFtpProxyType type) { return type >= kFtpProxySite && type <= kFtpProxyLoginUserAtSite; }

LProcessResult ConnectToProxy(Logon& logon, const LogonProxy& proxy) {
  LProcessResult result = LogonConnect(logon, proxy.szHost);
  if (result != LProcessResultOk) return result;
  // Only a stop counts: a failed handshake shows in the greeting that does not come.
  if (logon.bSecure && logon.bImplicit && LogonStartTls(logon) == LProcessResultStopped) {
    return LProcessResultStopped;
  }
  unsigned short code;
  result = LogonRead(logon, code, gFtpTimeouts.greetingMs, LogonMessage::kNoProxyGreeting);
  if (result != LProcessResultOk) return result;
  if (code != 220) return LogIfFailed(LProcessResultFailed, LogonMessage::kBadGreeting, logon.peer);
  return IsKnown(proxy.type) ? LProcessResultOk : LProcessResultFailed;
}

LProcessResult LogOnProxy(Logon& logon, const LogonProxy& proxy) {
  char command[kFtpLongCommand];
  FtpFormatCommand(command, "USER %s\r\n", proxy.szUser);
  unsigned short code;
  LProcessResult result = LogonSend(logon, command, LogonMessage::kProxyUserNotSent);
  if (result != LProcessResultOk) return result;
  result = LogonRead(logon, code, gFtpTimeouts.replyMs, LogonMessage::kNoReplyToProxyUser);
  if (result != LProcessResultOk) return result;
  if (code == 331) {
    FtpFormatCommand(command, "PASS %s\r\n", proxy.szPassword);
    result = LogonSend(logon, command, LogonMessage::kProxyPasswordNotSent);
    if (result != LProcessResultOk) return result;
    result = LogonRead(logon, code, gFtpTimeouts.replyMs, LogonMessage::kNoReplyToProxyPassword);
    if (result != LProcessResultOk) return result;
  }
  if (code == 230) return LProcessResultOk;
  FtpLogLogonRefused();
  return LProcessResultFailed;
}

/// The server's address goes out whole, with any port it carries.
LProcessResult RouteToServer(Logon& logon, LFtpProxyType type, LogonStage& stage) {
  char command[kFtpShortCommand];
  if (type == kFtpProxySite) {
    FtpFormatCommand(command, "SITE %s\r\n", logon.szServer);
  } else if (type == kFtpProxyOpen) {
    FtpFormatCommand(command, "OPEN %s\r\n", logon.szServer);
  } else {
    FtpFormatCommand(command, "USER %s@%s\r\n", logon.szUser, logon.szServer);
  }
  LProcessResult result = LogonSend(logon, command, LogonMessage::kRoutingNotSent);
  if (result != LProcessResultOk) return result;
  unsigned short code;
  result = LogonRead(logon, code, gFtpTimeouts.replyMs, LogonMessage::kNoReply);
  if (result != LProcessResultOk) return result;
  if (code != 220 && code != 331) {
    return LogIfFailed(LProcessResultFailed, LogonMessage::kUnknownReply, logon.peer);
  }
  // After 331 the user name has gone through with the address.
  stage = code == 331 ? LogonStage::kPassword : LogonStage::kUser;
  return LProcessResultOk;
}

}  // namespace

LProcessResult LogonThroughProxy(Logon& logon, const LogonProxy& proxy, LogonStage& stage) {
  LProcessResult result = ConnectToProxy(logon, proxy);
  if (result == LProcessResultOk && WantsProxyLogon(proxy.type)) result = LogOnProxy(logon, proxy);
  if (result == LProcessResultOk) result = RouteToServer(logon, proxy.type, stage);
  return result;
}
