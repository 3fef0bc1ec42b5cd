// Ports of 127.0.0.1 for test servers.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

/// A backlog for a socket that does not listen: it refuses who comes.
constexpr int kNotListening = -1;

/// A socket bound to `port`, or to a free port where that is 0; `port` gets it. The caller closes it.
inline int OpenLoopbackSocket(uint16_t& port, int backlog = 8) {
  const int fd = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  const int on = 1;
  // A port asked for by its number may still have the connections of a former server.
  if (port != 0) setsockopt(fd, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t length = sizeof address;
  if (bind(fd, reinterpret_cast<sockaddr*>(&address), length) != 0 ||
      getsockname(fd, reinterpret_cast<sockaddr*>(&address), &length) != 0 ||
      (backlog != kNotListening && listen(fd, backlog) != 0)) {
    std::abort();
  }
  port = ntohs(address.sin_port);
  return fd;
}

/// A port at which nobody listens; another program may take it before its user does.
inline uint16_t FreeLoopbackPort() {
  uint16_t port = 0;
  close(OpenLoopbackSocket(port, kNotListening));
  return port;
}
