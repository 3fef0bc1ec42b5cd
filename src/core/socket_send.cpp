// Sending.
#include <cerrno>

#include "core/socket_wait.h"
#include "platform/clock.h"
#include "support/log.h"

namespace {

enum class WriteStep {
  kMoved,   ///< Go on with the rest.
  kNoRoom,  ///< Wait for the descriptor.
  kFlush,   ///< Taken over by the TLS layer, but not yet out.
  kBroken,  ///< The peer is gone: nothing but the end of the wait will tell.
  kFailed,
};

WriteStep WritePlain(int fd, const char* data, size_t size, size_t& moved) {
  const ssize_t sent = platform::NetSend(fd, data, size);
  if (sent >= 0) {
    moved = static_cast<size_t>(sent);
    return moved != 0 ? WriteStep::kMoved : WriteStep::kNoRoom;
  }
  return errno == EAGAIN ? WriteStep::kNoRoom : WriteStep::kFailed;
}

WriteStep WriteOnce(LSSLSocketTCP& socket, const char* data, size_t size, size_t& moved) {
  moved = 0;
  if (!socket.IsSecure()) return WritePlain(socket.fd, data, size, moved);
  switch (platform::TlsWrite(socket.pContext, data, size, moved)) {
    case platform::TlsStatus::kOk: return WriteStep::kMoved;
    case platform::TlsStatus::kWouldBlock:
      // A peer that renegotiates has to be heard first: then there is nothing to flush.
      return platform::TlsWantsWrite(socket.pContext) ? WriteStep::kFlush : WriteStep::kNoRoom;
    case platform::TlsStatus::kClosedAbort: return WriteStep::kBroken;
    default: return WriteStep::kFailed;
  }
}

/// On a broken stream there is no room to wait for, only the slice to pass, unless the descriptor tells more.
short EventsOf(WriteStep step, const LSSLSocketTCP& socket) {
  if (step == WriteStep::kBroken) return 0;
  return socket.IsSecure() ? socket.PollEvents() : POLLOUT;
}

/// Until the TLS layer has nothing left that would block. What it took over counts as sent, so that even a
/// failure here is none: the next operation finds it.
LProcessResult FlushTls(LProcessInterface& process, LSSLSocketTCP& socket, platform::TlsStatus& status) {
  for (;;) {
    if (process.IsToStop()) return LProcessResultStopped;
    status = socket.IsSecure() ? platform::TlsFlush(socket.pContext) : platform::TlsStatus::kIoError;
    if (status != platform::TlsStatus::kWouldBlock) return LProcessResultOk;
    (void)SocketWait(socket.fd, socket.PollEvents(), kSocketSliceMs);
  }
}

}  // namespace

LProcessResult ProcessSend(LProcessInterface& process, LSSLSocketTCP& socket, const void* data, size_t size,
                           unsigned int ms) {
  const int64_t start = platform::ClockMonotonicMs();
  if (process.IsToStop()) return LProcessResultStopped;
  const char* rest = static_cast<const char*>(data);
  while (size != 0) {
    size_t moved = 0;
    const WriteStep step = WriteOnce(socket, rest, size, moved);
    rest += moved;
    size -= moved;
    if (step == WriteStep::kFailed) return LProcessResultFailed;
    if (moved != 0) socket.isAcknowledgementOwed = false;  // It goes with what is sent.
    if (step == WriteStep::kMoved) continue;
    if (step == WriteStep::kFlush) {
      platform::TlsStatus status;
      const LProcessResult flushed = FlushTls(process, socket, status);
      if (flushed != LProcessResultOk || status != platform::TlsStatus::kOk) return flushed;
      continue;
    }
    const short came = SocketWait(socket.fd, EventsOf(step, socket), std::min(ms, kSocketSliceMs));
    if (came & kSocketTrouble) return LProcessResultFailed;
    if (platform::ClockMonotonicMs() - start > static_cast<int64_t>(ms)) return LProcessResultFailed;
    if (process.IsToStop()) return LProcessResultStopped;
  }
  return LProcessResultOk;
}

LProcessResult ProcessSend(LProcessInterface& process, LIPSocketTCPRef socket, const void* data, size_t size,
                           unsigned int ms) {
  if (process.IsToStop()) return LProcessResultStopped;
  const char* rest = static_cast<const char*>(data);
  while (size != 0) {
    size_t moved = 0;
    const WriteStep step = WritePlain(socket.fd, rest, size, moved);
    if (step == WriteStep::kFailed) return LProcessResultFailed;
    rest += moved;
    size -= moved;
    if (step == WriteStep::kMoved) continue;
    const short came = SocketWait(socket.fd, POLLOUT, kSocketSliceMs);
    if (came & kSocketTrouble) return LProcessResultFailed;
    if (came == 0 && !SocketTakeSlice(ms)) return LProcessResultFailed;
    if (process.IsToStop()) return LProcessResultStopped;
  }
  return LProcessResultOk;
}

LProcessResult ProcessSendString(LProcessInterface& process, LSSLSocketTCP& socket, const char* text, unsigned int ms) {
  const LProcessResult result = ProcessSend(process, socket, text, strlen(text), ms);
  // The server works meanwhile: written before it, the line would hold up every command.
  LOGFTPCOMMAND(text);
  return result;
}

LProcessResult ProcessSendString(LProcessInterface& process, LIPSocketTCPRef socket, const char* text,
                                 unsigned int ms) {
  return ProcessSend(process, socket, text, strlen(text), ms);
}

LProcessResult ProcessShutdownSend(LProcessInterface& process, LSSLSocketTCP& socket, unsigned int ms) {
  for (;;) {
    if (process.IsToStop()) return LProcessResultStopped;
    const platform::TlsStatus status = socket.ShutdownSendStep();
    if (status == platform::TlsStatus::kOk) return LProcessResultOk;
    if (status != platform::TlsStatus::kWouldBlock) return LProcessResultFailed;
    const bool isInTime = SocketWait(socket.fd, socket.PollEvents(), std::min(ms, kSocketSliceMs)) != 0;
    if (!isInTime && !SocketTakeSlice(ms)) return LProcessResultFailed;
  }
}
