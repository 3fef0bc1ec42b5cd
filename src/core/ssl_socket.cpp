// The descriptors' owners, and the TLS side of the FTP engine's socket.
#include <cerrno>

#include "core/socket_wait.h"
#include "platform/clock.h"

namespace {

using platform::TlsState;
using platform::TlsStatus;

/// What an error of the descriptor means to the TLS layer.
TlsStatus StatusOfReadError(int error) {
  switch (error) {
    case ENOENT: return TlsStatus::kClosedGracefully;
    case EAGAIN: return TlsStatus::kWouldBlock;
    case ECONNRESET: return TlsStatus::kClosedAbort;
    default: return TlsStatus::kIoError;
  }
}

TlsStatus StatusOfWriteError(int error) {
  switch (error) {
    case ECONNRESET:
    case EPIPE: return TlsStatus::kClosedAbort;
    case EAGAIN: return TlsStatus::kWouldBlock;
    default: return TlsStatus::kIoError;
  }
}

/// Reads until the whole count has come or the descriptor has no more.
TlsStatus ReadTransport(void* connection, void* data, size_t& size) {
  const size_t wanted = size;
  size = 0;
  if (!connection) return TlsStatus::kIoError;
  const int fd = static_cast<LSSLSocketTCP*>(connection)->fd;
  while (size < wanted) {
    const ssize_t got = platform::NetReceive(fd, static_cast<char*>(data) + size, wanted - size);
    if (got == 0) return TlsStatus::kClosedGracefully;
    if (got < 0) return StatusOfReadError(errno);
    size += static_cast<size_t>(got);
  }
  return TlsStatus::kOk;
}

/// Writes until everything is out or the descriptor takes no more.
TlsStatus WriteTransport(void* connection, const void* data, size_t& size) {
  const size_t wanted = size;
  size = 0;
  if (!connection) return TlsStatus::kIoError;
  const int fd = static_cast<LSSLSocketTCP*>(connection)->fd;
  while (size < wanted) {
    const ssize_t sent = platform::NetSend(fd, static_cast<const char*>(data) + size, wanted - size);
    if (sent < 0) return StatusOfWriteError(errno);
    size += static_cast<size_t>(sent);
  }
  return TlsStatus::kOk;
}

/// No maximum: a newer version is always welcome.
bool SetMinimumVersion(platform::TlsStream* stream) {
  return platform::TlsSetMinimumVersion(stream, platform::TlsVersion::kTls12) ||
         platform::TlsSetMinimumVersion(stream, platform::TlsVersion::kTls11) ||
         platform::TlsSetMinimumVersion(stream, platform::TlsVersion::kTls10);
}

TlsStatus StatusOfPlainError(int error) {
  if (error == EAGAIN) return TlsStatus::kWouldBlock;
  return error == ECONNRESET || error == EPIPE ? TlsStatus::kClosedAbort : TlsStatus::kIoError;
}

/// Of a result of recv(2) and its errno.
TlsStatus StatusOfPlainRead(ssize_t result, size_t& got) {
  if (result < 0) return StatusOfPlainError(errno);
  if (result == 0) return TlsStatus::kClosedGracefully;
  got = static_cast<size_t>(result);
  return TlsStatus::kOk;
}

}  // namespace

void LIPSocketTCP::CloseSocket() {
  if (IsValid()) platform::NetClose(fd);
  fd = -1;
}

LSSLSocketTCP::~LSSLSocketTCP() { CloseSocketAndContext(); }

void LSSLSocketTCP::CloseSocketAndContext() {
  if (pContext) {
    // Session tickets that nobody read would turn the close into a reset, and a reset takes back what the
    // peer has not read yet: the end of an upload.
    (void)platform::TlsFetchReadSize(pContext);
    // One try: a peer that takes no more bytes gets no close notice.
    (void)platform::TlsClose(pContext);
  }
  if (IsValid()) platform::NetClose(fd);
  fd = -1;
  if (pContext) platform::TlsDestroy(pContext);
  pContext = nullptr;
  szPeerName[0] = 0;
  lineStart = "";
  isAcknowledgementOwed = false;
}

void LSSLSocketTCP::SetPeerName(const char* address) { (void)SplitPortFromAddr(address, szPeerName, 0); }

bool LSSLSocketTCP::InitSSL() {
  if (!IsValid() || pContext) return false;
  lineStart = "";  // Came in clear text.
  platform::TlsStream* stream = platform::TlsCreate({this, &ReadTransport, &WriteTransport});
  if (!stream) return false;
  // A client certificate that the system keeps for itself has no counterpart here, so none is offered.
  const bool isNamed = szPeerName[0] == 0 || platform::TlsSetPeerName(stream, szPeerName);
  if (!SetMinimumVersion(stream) || !isNamed) {
    platform::TlsDestroy(stream);
    return false;
  }
  pContext = stream;
  return true;
}

TlsStatus LSSLSocketTCP::HandshakeStep() { return pContext ? platform::TlsHandshake(pContext) : TlsStatus::kIoError; }

bool LSSLSocketTCP::Handshake(unsigned int ms) {
  const int64_t start = platform::ClockMonotonicMs();
  for (;;) {
    const int64_t left = ms == kWaitForever ? kSocketSliceMs : start + ms - platform::ClockMonotonicMs();
    if (left < 0) return false;
    const TlsStatus status = HandshakeStep();
    if (status != TlsStatus::kWouldBlock) return status == TlsStatus::kOk;
    (void)SocketWait(fd, PollEvents(), static_cast<unsigned>(std::clamp<int64_t>(left, 1, kSocketSliceMs)));
  }
}

bool LSSLSocketTCP::ConvertSocketToSSLTimeOut(unsigned int ms) {
  const int64_t start = platform::ClockMonotonicMs();
  if (!InitSSL()) return false;
  if (ms == kWaitForever) return Handshake(kWaitForever);
  const int64_t used = platform::ClockMonotonicMs() - start;
  return used < static_cast<int64_t>(ms) && Handshake(ms - static_cast<unsigned>(used));
}

size_t LSSLSocketTCP::GetBytesReady() {
  if (!pContext) return platform::NetBytesReady(fd);
  // Encrypted bytes on the descriptor need not be data: a server sends session tickets right after the
  // handshake.
  return platform::TlsGetState(pContext) == TlsState::kConnected ? platform::TlsFetchReadSize(pContext) : 0;
}

ssize_t LSSLSocketTCP::ReadToCharacter(char* buffer, size_t size, const char* characters) {
  if (!pContext) return static_cast<ssize_t>(TlsStatus::kIoError);
  size_t count = 0;
  while (count < size) {
    size_t moved = 0;
    const TlsStatus status = platform::TlsRead(pContext, buffer + count, 1, moved);
    if (status == TlsStatus::kWouldBlock) {
      if (GetBytesReady() == 0) break;
      continue;
    }
    if (status != TlsStatus::kOk) return count != 0 ? static_cast<ssize_t>(count) : static_cast<ssize_t>(status);
    const char c = buffer[count++];
    if (c != 0 && strchr(characters, c)) break;
  }
  return static_cast<ssize_t>(count);
}

TlsStatus LSSLSocketTCP::ReadAvailable(void* buffer, size_t size, size_t& got) {
  got = 0;
  if (pContext) return platform::TlsRead(pContext, buffer, size, got);
  return StatusOfPlainRead(platform::NetReceive(fd, buffer, size), got);
}

TlsStatus LSSLSocketTCP::ReadAvailableInto(platform::NetPipe& pipe, size_t size, size_t& got) {
  got = 0;
  const ssize_t result = pipe.TakeFrom(fd, size);
  return result < 0 && errno == EINVAL ? TlsStatus::kOk : StatusOfPlainRead(result, got);
}

TlsStatus LSSLSocketTCP::WriteAvailable(const void* data, size_t size, size_t& sent) {
  sent = 0;
  if (pContext) return size ? platform::TlsWrite(pContext, data, size, sent) : platform::TlsFlush(pContext);
  if (size == 0) return TlsStatus::kOk;
  const ssize_t result = platform::NetSend(fd, data, size);
  if (result < 0) return StatusOfPlainError(errno);
  sent = static_cast<size_t>(result);
  return TlsStatus::kOk;
}

short LSSLSocketTCP::PollEvents() const { return pContext && platform::TlsWantsWrite(pContext) ? POLLOUT : POLLIN; }

TlsStatus LSSLSocketTCP::ShutdownSendStep() {
  if (!IsValid()) return TlsStatus::kIoError;
  const TlsStatus status = pContext ? platform::TlsClose(pContext) : TlsStatus::kOk;
  if (status != TlsStatus::kWouldBlock) platform::NetShutdownSend(fd);
  return status;
}

bool LSSLSocketTCP::ShutdownSend() {
  TlsStatus status = ShutdownSendStep();
  if (status == TlsStatus::kWouldBlock && SocketWait(fd, PollEvents(), kSocketSliceMs) != 0) {
    status = ShutdownSendStep();
  }
  return status == TlsStatus::kOk;
}
