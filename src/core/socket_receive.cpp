// Receiving: waiting for data, reads of what is there, exact counts, and lines.
#include "core/socket_wait.h"

namespace {

/// A line counts in chunks of this many bytes: see LengthWithoutLineEnd.
constexpr size_t kLineChunk = 48;
/// Each read costs a poll and two looks at the socket; most lines need one.
constexpr size_t kLineRead = 10 * kLineChunk;
/// No ordinary line needs more reads.
constexpr int kOrdinaryReads = 10;

/// Peeks at what is there and takes off the socket no more than up to the first of `characters`. Fewer than 1
/// byte means failure or the end of the stream.
ssize_t ReadToCharacterPlain(int fd, char* buffer, size_t size, const char* characters) {
  const ssize_t peeked = platform::NetPeek(fd, buffer, size);
  if (peeked < 1) return peeked;
  size_t wanted = static_cast<size_t>(peeked);
  for (size_t i = 0; i < static_cast<size_t>(peeked); ++i) {
    if (buffer[i] == 0 || !strchr(characters, buffer[i])) continue;
    wanted = i + 1;
    break;
  }
  return platform::NetReceive(fd, buffer, wanted);
}

bool IsConnectedTls(const LSSLSocketTCP& socket) {
  return socket.IsSecure() && platform::TlsGetState(socket.pContext) == platform::TlsState::kConnected;
}

/// Whether a read of a TLS socket would not have to wait. Neither decrypted data nor an end that the TLS
/// layer has seen shows in a poll of the descriptor; and what does show there need not be data.
bool HasTlsDataOrEnd(LSSLSocketTCP& socket) {
  if (!socket.IsSecure()) return false;
  if (socket.GetBytesReady() > 0) return true;
  const platform::TlsState state = platform::TlsGetState(socket.pContext);
  return state == platform::TlsState::kClosed || state == platform::TlsState::kAborted;
}

/// Waits for one slice. Many servers send no second line while their first is not acknowledged, and the kernel puts an
/// acknowledgement off by 40 ms where nothing is sent: so one that is owed goes out before the wait. It costs less than
/// a wait of some milliseconds first, which would set the processor's timer.
bool ComesInSlice(int fd, bool& isAcknowledgementOwed) {
  if (isAcknowledgementOwed) {
    if (SocketWait(fd, POLLIN, 0) != 0) return true;
    platform::NetAcknowledge(fd);
    isAcknowledgementOwed = false;
  }
  return SocketWait(fd, POLLIN, kSocketSliceMs) != 0;
}

/// Waits on the descriptor alone, and takes the slices off `ms`. `fd` is read anew for each slice: an event
/// inside IsToStop may close it.
LProcessResult WaitForDescriptor(LProcessInterface& process, const int& fd, bool& isAcknowledgementOwed,
                                 unsigned int& ms) {
  if (process.IsToStop()) return LProcessResultStopped;
  for (;;) {
    if (!LIPSocketTCPRef{fd}.IsValid()) return LProcessResultFailed;
    if (ComesInSlice(fd, isAcknowledgementOwed)) {
      isAcknowledgementOwed = true;
      return LProcessResultOk;
    }
    if (!SocketTakeSlice(ms)) return LProcessResultFailed;
    if (process.IsToStop()) return LProcessResultStopped;
  }
}

LProcessResult RecvToCharacterPlain(int fd, char* buffer, size_t size, size_t& received, const char* characters) {
  const ssize_t got = ReadToCharacterPlain(fd, buffer, size, characters);
  if (got < 1) return LProcessResultFailed;
  received = static_cast<size_t>(got);
  return LProcessResultOk;
}

/// Cuts the line's end off a chunk: "\n", a "\r" before it, and also a "\r" on which the chunk happens to
/// end.
size_t LengthWithoutLineEnd(const char* chunk, size_t size, bool& isLineEnd) {
  isLineEnd = size != 0 && chunk[size - 1] == '\n';
  if (isLineEnd) --size;
  if (size != 0 && chunk[size - 1] == '\r') --size;
  return size;
}

/// Whether the line's end was among the bytes.
template <typename W>
bool WriteChunks(W& writer, const char* bytes, size_t size) {
  bool isLineEnd = false;
  for (size_t at = 0; at < size; at += kLineChunk) {
    const size_t length = LengthWithoutLineEnd(bytes + at, std::min(kLineChunk, size - at), isLineEnd);
    writer.Write(bytes + at, length);
  }
  return isLineEnd;
}

/// Data that wait decrypted are read without a question, so that a line under TLS that never ends would never be
/// asked about.
bool IsToStopInLine(LProcessInterface& process, const LSSLSocketTCP& socket) {
  return socket.IsSecure() && process.IsToStop();
}
/// The wait for each read has asked.
bool IsToStopInLine(LProcessInterface&, const LIPSocketTCPRef&) { return false; }

/// What a stop has left of the line goes before the rest.
template <typename W>
void TakeLineStart(LSSLSocketTCP& socket, W& writer) {
  if (socket.lineStart.length == 0) return;
  writer.Write(socket.lineStart.data, socket.lineStart.length);
  socket.lineStart = "";
}
template <typename W>
void TakeLineStart(LIPSocketTCPRef, W&) {}

void KeepLineStart(LSSLSocketTCP& socket, const char* text, size_t size) {
  LStringLongTemplateWriter<char>(socket.lineStart).Write(text, size);
}
void KeepLineStart(LIPSocketTCPRef, const char*, size_t) {}

const char* Written(const LFixedLengthStringWriterTemplate<char>& writer) { return writer.buffer; }
const char* Written(const LStringLongTemplateWriter<char>& writer) { return writer.string->data; }

template <typename W, typename Socket>
LProcessResult RecvLine(LProcessInterface& process, Socket& socket, W& writer, unsigned int ms) {
  // What a failed read gives: once anything has come, the stream's last line has no end of its own.
  LProcessResult onFailure = LProcessResultFailed;
  const size_t lineStart = writer.Length();
  const auto stop = [&] {
    KeepLineStart(socket, Written(writer) + lineStart, writer.Length() - lineStart);
    return LProcessResultStopped;
  };
  TakeLineStart(socket, writer);
  for (int count = 1;; ++count) {
    char bytes[kLineRead];
    size_t received = 0;
    const LProcessResult result = ProcessRecvToCharacter(process, socket, bytes, sizeof bytes, received, "\n", ms);
    if (result == LProcessResultStopped) return stop();
    if (result != LProcessResultOk) return onFailure;
    onFailure = LProcessResultOk;
    if (WriteChunks(writer, bytes, received)) return LProcessResultOk;
    if (count % kOrdinaryReads == 0 && IsToStopInLine(process, socket)) return stop();
  }
}

}  // namespace

LProcessResult ProcessWaitForDataOrClose(LProcessInterface& process, LSSLSocketTCP& socket, unsigned int ms) {
  if (!socket.IsValid()) return LProcessResultFailed;
  if (HasTlsDataOrEnd(socket)) return LProcessResultOk;
  for (;;) {
    const LProcessResult waited = WaitForDescriptor(process, socket.fd, socket.isAcknowledgementOwed, ms);
    if (waited != LProcessResultOk || !IsConnectedTls(socket) || HasTlsDataOrEnd(socket)) return waited;
  }
}

LProcessResult ProcessWaitForDataOrClose(LProcessInterface& process, LIPSocketTCPRef socket, unsigned int ms) {
  bool isAcknowledgementOwed = false;
  return WaitForDescriptor(process, socket.fd, isAcknowledgementOwed, ms);
}

LProcessResult ProcessRecvReady(LProcessInterface& process, LSSLSocketTCP& socket, void* buffer, size_t size,
                                size_t& received, unsigned int ms) {
  received = 0;
  if (size == 0) return LProcessResultOk;
  for (;;) {
    const LProcessResult waited = ProcessWaitForDataOrClose(process, socket, ms);
    if (waited != LProcessResultOk) return waited;
    const size_t ready = socket.GetBytesReady();
    if (ready == 0) return LProcessResultFailed;
    const size_t wanted = std::min(ready, size);
    if (!socket.IsSecure()) {
      const ssize_t got = platform::NetReceive(socket.fd, buffer, wanted);
      if (got < 1) return LProcessResultFailed;
      received = static_cast<size_t>(got);
      return LProcessResultOk;
    }
    if (platform::TlsRead(socket.pContext, buffer, wanted, received) == platform::TlsStatus::kOk) {
      return LProcessResultOk;
    }
    // Still connected: what came was no data, or not the whole of a record.
    if (!IsConnectedTls(socket)) return LProcessResultFailed;
  }
}

LProcessResult ProcessRecvReady(LProcessInterface& process, LIPSocketTCPRef socket, void* buffer, size_t size,
                                size_t& received, unsigned int ms) {
  received = 0;
  if (size == 0) return LProcessResultOk;
  const LProcessResult waited = ProcessWaitForDataOrClose(process, socket, ms);
  if (waited != LProcessResultOk) return waited;
  const ssize_t got = platform::NetReceive(socket.fd, buffer, size);
  if (got < 1) return LProcessResultFailed;
  received = static_cast<size_t>(got);
  return LProcessResultOk;
}

namespace {

template <typename Socket>
LProcessResult RecvBytes(LProcessInterface& process, Socket& socket, void* buffer, size_t size, size_t& received,
                         unsigned int ms) {
  received = 0;
  char* const bytes = static_cast<char*>(buffer);
  while (received < size) {
    size_t got = 0;
    const LProcessResult result = ProcessRecvReady(process, socket, bytes + received, size - received, got, ms);
    received += got;
    if (result != LProcessResultOk) return result;
  }
  return LProcessResultOk;
}

}  // namespace

LProcessResult ProcessRecvBytes(LProcessInterface& process, LSSLSocketTCP& socket, void* buffer, size_t size,
                                size_t& received, unsigned int ms) {
  return RecvBytes(process, socket, buffer, size, received, ms);
}

LProcessResult ProcessRecvBytes(LProcessInterface& process, LIPSocketTCPRef socket, void* buffer, size_t size,
                                size_t& received, unsigned int ms) {
  return RecvBytes(process, socket, buffer, size, received, ms);
}

LProcessResult ProcessRecvBytes(LProcessInterface& process, LSSLSocketTCP& socket, void* buffer, size_t size,
                                unsigned int ms) {
  size_t received = 0;
  return RecvBytes(process, socket, buffer, size, received, ms);
}

LProcessResult ProcessRecvToCharacter(LProcessInterface& process, LSSLSocketTCP& socket, void* buffer, size_t size,
                                      size_t& received, const char* characters, unsigned int ms) {
  received = 0;
  char* const bytes = static_cast<char*>(buffer);
  for (;;) {
    const LProcessResult waited = ProcessWaitForDataOrClose(process, socket, ms);
    if (waited != LProcessResultOk) return waited;
    if (!socket.IsSecure()) return RecvToCharacterPlain(socket.fd, bytes, size, received, characters);
    const ssize_t got = socket.ReadToCharacter(bytes, size, characters);
    if (got > 0) {
      received = static_cast<size_t>(got);
      return LProcessResultOk;
    }
    if (!IsConnectedTls(socket)) return LProcessResultFailed;
  }
}

LProcessResult ProcessRecvToCharacter(LProcessInterface& process, LIPSocketTCPRef socket, void* buffer, size_t size,
                                      size_t& received, const char* characters, unsigned int ms) {
  received = 0;
  const LProcessResult waited = ProcessWaitForDataOrClose(process, socket, ms);
  if (waited != LProcessResultOk) return waited;
  return RecvToCharacterPlain(socket.fd, static_cast<char*>(buffer), size, received, characters);
}

template <typename W>
LProcessResult ProcessRecvLineToWriter(LProcessInterface& process, LSSLSocketTCP& socket, W& writer, unsigned int ms) {
  return RecvLine(process, socket, writer, ms);
}

template <typename W>
LProcessResult ProcessRecvLineToWriter(LProcessInterface& process, LIPSocketTCPRef socket, W& writer, unsigned int ms) {
  return RecvLine(process, socket, writer, ms);
}

template LProcessResult ProcessRecvLineToWriter(LProcessInterface&, LSSLSocketTCP&,
                                                LFixedLengthStringWriterTemplate<char>&, unsigned int);
template LProcessResult ProcessRecvLineToWriter(LProcessInterface&, LSSLSocketTCP&, LStringLongTemplateWriter<char>&,
                                                unsigned int);
template LProcessResult ProcessRecvLineToWriter(LProcessInterface&, LIPSocketTCPRef,
                                                LFixedLengthStringWriterTemplate<char>&, unsigned int);
template LProcessResult ProcessRecvLineToWriter(LProcessInterface&, LIPSocketTCPRef, LStringLongTemplateWriter<char>&,
                                                unsigned int);

LProcessResult ProcessRecvLine(LProcessInterface& process, LIPSocketTCPRef socket, LStringLongTemplate<char>& line,
                               unsigned int ms) {
  line.GrowToSize(kTextSize);
  line.length = 0;
  LStringLongTemplateWriter<char> writer(line);
  const LProcessResult result = RecvLine(process, socket, writer, ms);
  line.data[line.length] = 0;
  return result;
}
