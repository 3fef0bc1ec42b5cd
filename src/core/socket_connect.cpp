// Connecting plain sockets and the sockets of the FTP engine, to one address, to several, to a name.
#include <arpa/inet.h>
#include <cerrno>

#include "core/socket_wait.h"

namespace {

constexpr int kSendBufferBytes = 262144;
constexpr int kReceiveBufferBytes = 524288;
constexpr uint32_t kInvalidAddress = 0xFFFFFFFFu;
constexpr uint32_t kSecondInvalidAddress = 0xFFFFFFFEu;

/// Waits for a connect in progress. The caller's socket may be closed by any event inside IsToStop, so its
/// field is read anew for each slice.
LProcessResult WaitForConnect(LProcessInterface& process, const int& fd, unsigned int ms) {
  for (;;) {
    const short events = SocketWait(fd, POLLOUT, kSocketSliceMs);
    if (events == POLLOUT) return LProcessResultOk;
    if (events != 0) return LProcessResultFailed;
    if (process.IsToStop()) return LProcessResultStopped;
    if (!SocketTakeSlice(ms)) return LProcessResultFailed;
  }
}

/// Starts the connect of an open descriptor and waits for its end; closes nothing.
LProcessResult ConnectDescriptor(LProcessInterface& process, const int& fd, const LIPAddressWithPort& address,
                                 unsigned int ms) {
  if (platform::NetConnect(fd, address.address, address.port) == 0) return LProcessResultOk;
  if (errno != EINPROGRESS) return LProcessResultFailed;
  return WaitForConnect(process, fd, ms);
}

}  // namespace

LProcessResult ProcessConnect(LProcessInterface& process, LIPSocketTCP& socket, const LIPAddressWithPort& address,
                              unsigned int ms) {
  if (socket.IsValid()) socket.CloseSocket();
  if (process.IsToStop()) return LProcessResultStopped;
  socket.fd = platform::NetOpen();
  platform::NetSetBuffers(socket.fd, kSendBufferBytes, kReceiveBufferBytes);
  LProcessResult result = LProcessResultFailed;
  if (address.address != kInvalidAddress) result = ConnectDescriptor(process, socket.fd, address, ms);
  if (result != LProcessResultOk) socket.CloseSocket();
  return result;
}

LProcessResult ProcessConnect(LProcessInterface& process, LIPSocketTCP& socket,
                              const LIPAddressMultiHomedWithPort& address, unsigned int ms) {
  for (uint64_t i = 0; i < address.addresses.count; ++i) {
    const LIPAddressWithPort one = {address.addresses.addresses[i], htons(address.port)};
    const LProcessResult result = ProcessConnect(process, socket, one, ms);
    if (result != LProcessResultFailed) return result;
  }
  return LProcessResultFailed;
}

LProcessResult ProcessConnect(LProcessInterface& process, LSSLSocketTCP& socket, const char* address,
                              const LIPAddressWithPort& target, unsigned int ms) {
  if (socket.IsValid()) socket.CloseSocketAndContext();
  if (!socket.IsValid()) socket.SetPeerName(address);
  if (process.IsToStop()) return LProcessResultStopped;
  if (target.address == kInvalidAddress || target.address == kSecondInvalidAddress) return LProcessResultFailed;
  socket.fd = platform::NetOpen();
  if (!socket.IsValid()) return LProcessResultFailed;
  // The kernel finds the right receive buffer by itself as long as nobody sets one.
  platform::NetSetBuffers(socket.fd, kSendBufferBytes, 0);
  const LProcessResult result = ConnectDescriptor(process, socket.fd, target, ms);
  if (result != LProcessResultOk) socket.CloseSocketAndContext();
  return result;
}

LProcessResult ProcessConnect(LProcessInterface& process, LSSLSocketTCP& socket, const char* address,
                              const LIPAddressMultiHomedWithPort& target, unsigned int ms) {
  if (!socket.IsValid()) socket.SetPeerName(address);
  for (uint64_t i = 0; i < target.addresses.count; ++i) {
    if (process.IsToStop()) return LProcessResultStopped;
    const LIPAddressWithPort one = {target.addresses.addresses[i], htons(target.port)};
    const LProcessResult result = ProcessConnect(process, socket, address, one, ms);
    if (result != LProcessResultFailed) return result;
  }
  return LProcessResultFailed;
}

template <typename T>
LProcessResult ProcessConnect(LProcessInterface& process, LSSLSocketTCP& socket, const T* address,
                              unsigned short defaultPort, unsigned int ms, bool) {
  char host[kTextSize];
  LIPAddressMultiHomedWithPort target;
  target.port = SplitPortFromAddr(address, host, defaultPort);
  target.addresses.Resolve(host);
  return ProcessConnect(process, socket, host, target, ms);
}

template LProcessResult ProcessConnect<char>(LProcessInterface&, LSSLSocketTCP&, const char*, unsigned short,
                                             unsigned int, bool);
