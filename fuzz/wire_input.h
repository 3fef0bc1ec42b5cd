// A session that reads what a target is given: the bytes wait on a socket whose other end is closed, so that nothing
// is ever awaited.
#pragma once

#include <cstdlib>
#include <string>
#include <sys/socket.h>
#include <unistd.h>

#include "ftp/protocol.h"
#include "support/log.h"

class FuzzSession : public LFileTransferProtocol {
 public:
  /// More than a socket holds is cut.
  explicit FuzzSession(const std::string& bytes) {
    // Nothing of this belongs into anybody's history.
    gLLog.SetFolder("/dev/null/none");
    int ends[2];
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0, ends) != 0) abort();
    fd = ends[0];
    if (!bytes.empty() && write(ends[1], bytes.data(), bytes.size()) < 0) abort();
    // What the client says goes nowhere, but its side must not fail.
    shutdown(ends[1], SHUT_WR);
    peer_ = ends[1];
  }
  FuzzSession(const FuzzSession&) = delete;
  FuzzSession& operator=(const FuzzSession&) = delete;
  ~FuzzSession() { close(peer_); }

 private:
  int peer_;
};
