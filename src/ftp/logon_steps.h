// The steps of a logon that its files share. For the .cpp files of the logon.
#pragma once

#include "ftp/commands.h"
#include "ftp/logon_messages.h"
#include "ftp/proxy_settings.h"

/// The proxy as the settings have it.
struct LogonProxy {
  char szHost[kTextSize];
  char szUser[kTextSize];
  char szPassword[kTextSize];
  LFtpProxyType type;
};

/// One logon. The texts are the caller's.
struct Logon {
  LProcessInterface& process;
  LFileTransferProtocol& session;
  const char* szServer;
  const char* szUser;
  const char* szPassword;
  bool bSecure;
  bool bImplicit;
  LogonPeer peer;  ///< What was connected to: the server or the proxy.
};

/// What the connection is ready for once it leads to the server.
enum class LogonStage { kUser, kPassword };

/// Notes `address` for messages and connects to it.
[[nodiscard]] LProcessResult LogonConnect(Logon& logon, const char* address);
/// TLS on the control connection.
[[nodiscard]] LProcessResult LogonStartTls(Logon& logon);
/// Sends a command of the logon; `message` if that fails.
[[nodiscard]] LProcessResult LogonSend(Logon& logon, const char* command, LogonMessage message);
/// Reads a reply of which only the code matters; `message` if none comes.
[[nodiscard]] LProcessResult LogonRead(Logon& logon, unsigned short& code, unsigned int ms, LogonMessage message);

/// Connects to the proxy and has it connect to the server.
[[nodiscard]] LProcessResult LogonThroughProxy(Logon& logon, const LogonProxy& proxy, LogonStage& stage);
