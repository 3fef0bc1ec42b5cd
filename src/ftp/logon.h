// Logon: takes a session from any state to a logged-on control connection, direct or through an FTP proxy,
// plain or with TLS; and the two processes around it that a progress dialog can run.
//
// The texts for the user go to the history; a stopped logon says nothing. After a failure the socket is left
// as it is, and the next logon on the same session closes it. Main thread.
#pragma once

#include "core/process.h"
#include "ftp/protocol.h"
#include "support/text.h"

/// `secure`: use TLS at all. `implicit`: from the first byte; it means something with `secure` only. A server
/// that declines AUTH TLS is logged on to in the clear, with a warning. `server` is `host` or `host:port`;
/// the default port is 990 for implicit TLS, else 21.
[[nodiscard]] LProcessResult ProcessFtpLogOnServer(LProcessInterface&, LFileTransferProtocol&, const char* server,
                                                   const char* user, const char* password, bool secure, bool implicit);

/// Whether the host of `server` is an address or the resolver knows one for it. Blocks.
[[nodiscard]] bool FtpServerHasAddress(const char* server, bool secure, bool implicit);

/// The host and port that messages name.
void GetErrorReportAddressAndPort(const char* address, bool secure, bool implicit, char (&host)[kTextSize], int& port);

/// What a connect process is given. Nothing is owned.
struct LProcessSecureFtpConnect {
  LFileTransferProtocol* pSession;
  const char* szServer;
  const char* szUser;
  const char* szPassword;
  bool bSecure;
  bool bImplicit;
};
/// Looks the server up and logs on, with status, progress and errors.
[[nodiscard]] LProcessResult Process(LProcessInterface&, LProcessSecureFtpConnect&);

/// What a change of directory is given. Nothing is owned.
struct LProcessSecureFtpChangeDirectory {
  LFileTransferProtocol* pSession;
  /// Where to go; empty to stay. On success the directory as the server tells it, empty if it tells none.
  char (*pDirectory)[kTextSize];
};
/// CWD and PWD: also the question whether the connection still lives.
[[nodiscard]] LProcessResult Process(LProcessInterface&, LProcessSecureFtpChangeDirectory&);
