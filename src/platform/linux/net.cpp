#include "platform/net.h"

#include <cerrno>
#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include "platform/clock.h"

namespace platform {
namespace {

/// A non-blocking call has nothing to wait for, so one that a signal cut short is simply made again.
template <typename Call>
ssize_t Uninterrupted(Call call) {
  ssize_t result;
  do {
    result = call();
  } while (result == -1 && errno == EINTR);
  return result;
}

}  // namespace

int NetOpen() { return socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0); }

void NetSetBuffers(int fd, int sendBytes, int receiveBytes) {
  // A kernel that grants less still works, only slower: the results do not matter.
  if (sendBytes > 0) (void)setsockopt(fd, SOL_SOCKET, SO_SNDBUF, &sendBytes, sizeof sendBytes);
  if (receiveBytes > 0) (void)setsockopt(fd, SOL_SOCKET, SO_RCVBUF, &receiveBytes, sizeof receiveBytes);
}

int NetConnect(int fd, uint32_t address, uint16_t port) {
  sockaddr_in peer = {};
  peer.sin_family = AF_INET;
  peer.sin_addr.s_addr = address;
  peer.sin_port = port;
  return connect(fd, reinterpret_cast<const sockaddr*>(&peer), sizeof peer);
}

int NetConnectError(int fd) {
  int error = 0;
  socklen_t size = sizeof error;
  return getsockopt(fd, SOL_SOCKET, SO_ERROR, &error, &size) == 0 ? error : errno;
}

ssize_t NetSend(int fd, const void* data, size_t size) {
  return Uninterrupted([=] { return send(fd, data, size, MSG_NOSIGNAL); });
}

ssize_t NetReceive(int fd, void* data, size_t size) {
  return Uninterrupted([=] { return recv(fd, data, size, 0); });
}

ssize_t NetPeek(int fd, void* data, size_t size) {
  return Uninterrupted([=] { return recv(fd, data, size, MSG_PEEK); });
}

size_t NetBytesReady(int fd) {
  int bytes = 0;
  return ioctl(fd, FIONREAD, &bytes) == 0 && bytes > 0 ? static_cast<size_t>(bytes) : 0;
}

void NetAcknowledge(int fd) {
  const int on = 1;
  (void)setsockopt(fd, IPPROTO_TCP, TCP_QUICKACK, &on, sizeof on);
}

int NetPoll(pollfd* entries, size_t count, int ms) {
  const int64_t end = ClockMonotonicMs() + ms;
  for (;;) {
    const int result = poll(entries, count, ms);
    if (result != -1 || errno != EINTR) return result;
    // A signal is no event: wait for what is left of the time.
    if (ms < 0) continue;
    const int64_t left = end - ClockMonotonicMs();
    ms = left > 0 ? static_cast<int>(left) : 0;
  }
}

void NetShutdownSend(int fd) { (void)shutdown(fd, SHUT_WR); }

void NetClose(int fd) { (void)close(fd); }

size_t NetResolve(const char* host, uint32_t (&addresses)[kNetMaxAddresses]) {
  addrinfo wanted = {};
  wanted.ai_family = AF_INET;
  wanted.ai_socktype = SOCK_STREAM;  // Without it each address would come once for each kind of socket.
  addrinfo* found = nullptr;
  if (getaddrinfo(host, nullptr, &wanted, &found) != 0) return 0;
  size_t count = 0;
  for (const addrinfo* entry = found; entry && count < kNetMaxAddresses; entry = entry->ai_next) {
    addresses[count++] = reinterpret_cast<const sockaddr_in*>(entry->ai_addr)->sin_addr.s_addr;
  }
  freeaddrinfo(found);
  return count;
}

}  // namespace platform
