// Turning a socket into a TLS socket under a process.
#include "core/socket_wait.h"
#include "platform/clock.h"

LProcessResult ProcessConvertSocketToSSL(LProcessInterface& process, LSSLSocketTCP& socket, unsigned int ms) {
  // The whole handshake is timed, not each wait: a peer that sends a byte now and then gets no more time.
  const int64_t start = platform::ClockMonotonicMs();
  if (!socket.InitSSL()) return LProcessResultFailed;
  for (;;) {
    if (process.IsToStop()) return LProcessResultStopped;
    const platform::TlsStatus status = socket.HandshakeStep();
    if (status == platform::TlsStatus::kOk) return LProcessResultOk;
    const int64_t left = ms == kWaitForever ? kSocketSliceMs : start + ms - platform::ClockMonotonicMs();
    if (status != platform::TlsStatus::kWouldBlock || left <= 0) return LProcessResultFailed;
    const unsigned slice = static_cast<unsigned>(std::min<int64_t>(left, kSocketSliceMs));
    (void)SocketWait(socket.fd, socket.PollEvents(), slice);
  }
}
