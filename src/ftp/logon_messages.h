// What a logon tells the user in the history. Main thread.
#pragma once

#include "core/process.h"
#include "support/text.h"

/// In the order of the table of texts.
enum class LogonMessage {
  kConnectFailed,
  kImplicitTlsFailed,
  kNoGreeting,
  kBadGreeting,
  kExplicitTlsFailed,
  kExplicitTlsRefused,  ///< A warning; all others are errors.
  kHandshakeFailed,
  kNoProxyGreeting,
  kProxyUserNotSent,
  kNoReplyToProxyUser,
  kProxyPasswordNotSent,
  kNoReplyToProxyPassword,
  kRoutingNotSent,
  kNoReply,
  kUnknownReply,
  kUserNotSent,
};

/// The host and the port that messages name: those of the address that was connected to.
struct LogonPeer {
  char szHost[kTextSize];
  int iPort;
};

void LogLogonMessage(LogonMessage message, const LogonPeer& peer);

/// For the step that gave `result`: the message if it failed, nothing if it was stopped or went well.
/// Returns `result`.
[[nodiscard]] LProcessResult LogIfFailed(LProcessResult result, LogonMessage message, const LogonPeer& peer);
