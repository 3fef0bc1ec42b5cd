#include "ftp/data_connection.h"

#include <algorithm>
#include <arpa/inet.h>
#include <cstring>

#include "core/socket_wait.h"
#include "ftp/timeouts.h"
#include "platform/clock.h"

namespace {

using platform::TlsStatus;

/// Never used: a passive address always carries its port.
constexpr unsigned short kNoPort = 21;

constexpr size_t kLongestLine = 64u << 20;  ///< Bytes.

constexpr short kTrouble = POLLERR | POLLHUP | POLLNVAL;

/// A passive address is four numbers of the server's. Those that are no address would go to the resolver as a name,
/// which no answer can come for and which holds the window as long as it is looked for.
bool IsDottedAddress(const char* address) {
  char host[kTextSize];
  (void)SplitPortFromAddr(address, host, kNoPort);
  in_addr ignored;
  return inet_pton(AF_INET, host, &ignored) == 1;
}

}  // namespace

LProcessResult FtpDataConnection::Open(LProcessInterface& process, const char* address) {
  tls = Tls::kNone;
  bMoved = bAtEnd = bCutOff = false;
  iLineStart = iLineEnd = 0;
  if (!IsDottedAddress(address)) {
    socket.CloseSocketAndContext();
    return LProcessResultFailed;
  }
  return ProcessConnect<char>(process, socket, address, kNoPort, gFtpTimeouts.dataConnectMs, false);
}

LProcessResult FtpDataConnection::OpenInTwoTries(LProcessInterface& process, const char* address) {
  const LProcessResult result = Open(process, address);
  return result == LProcessResultFailed ? Open(process, address) : result;
}

void FtpDataConnection::BeginTls() {
  if (tls != Tls::kNone) return;
  tls = socket.InitSSL() ? Tls::kHandshake : Tls::kSettled;
  StepHandshake();
}

void FtpDataConnection::StepHandshake() {
  if (tls == Tls::kHandshake && socket.HandshakeStep() != TlsStatus::kWouldBlock) tls = Tls::kSettled;
}

void FtpDataConnection::ContinueTlsUntilReply(LProcessInterface& process, LSSLSocketTCP& control) {
  const int64_t end = platform::ClockMonotonicMs() + gFtpTimeouts.dataHandshakeMs;
  while (tls == Tls::kHandshake && platform::ClockMonotonicMs() < end) {
    if (process.IsToStop() || control.GetBytesReady() > 0) return;
    pollfd entries[] = {{socket.fd, socket.PollEvents(), 0}, {control.fd, POLLIN, 0}};
    if (platform::NetPoll(entries, 2, kSocketSliceMs) < 0) return;
    if (entries[0].revents) StepHandshake();
    if (entries[1].revents) return;
  }
}

void FtpDataConnection::FinishTls(LProcessInterface& process) {
  BeginTls();
  const int64_t end = platform::ClockMonotonicMs() + gFtpTimeouts.dataHandshakeMs;
  while (tls == Tls::kHandshake) {
    const int64_t left = end - platform::ClockMonotonicMs();
    // A stop shows in the next read or write, where it belongs to the transfer.
    if (left <= 0 || process.IsToStop()) return;
    (void)SocketWait(socket.fd, socket.PollEvents(), std::min<unsigned>(left, kSocketSliceMs));
    StepHandshake();
  }
}

template <typename Attempt>
LProcessResult FtpDataConnection::ReceiveWith(LProcessInterface& process, Attempt attempt, unsigned int ms) {
  for (;;) {
    if (process.IsToStop()) return LProcessResultStopped;
    const TlsStatus status = attempt();
    if (status == TlsStatus::kOk) {
      bMoved = true;
      return LProcessResultOk;
    }
    if (status != TlsStatus::kWouldBlock) {
      NoteEnd();
      return LProcessResultFailed;
    }
    if (SocketWait(socket.fd, socket.PollEvents(), kSocketSliceMs) == 0 && !SocketTakeSlice(ms)) {
      return LProcessResultFailed;
    }
  }
}

LProcessResult FtpDataConnection::Receive(LProcessInterface& process, void* buffer, size_t size, size_t& received,
                                          unsigned int ms) {
  received = 0;
  return ReceiveWith(
      process, [&] { return socket.ReadAvailable(buffer, size, received); }, ms);
}

LProcessResult FtpDataConnection::ReceiveInto(LProcessInterface& process, platform::NetPipe& pipe, size_t& received,
                                              unsigned int ms) {
  received = 0;
  return ReceiveWith(
      process, [&] { return socket.ReadAvailableInto(pipe, kPieceSize, received); }, ms);
}

void FtpDataConnection::NoteEnd() {
  bAtEnd = true;
  bCutOff = socket.IsSecure() && !platform::TlsPeerClosedCleanly(socket.pContext);
}

/// Moves what is buffered of the present line to `line`. True when the line is whole.
bool FtpDataConnection::TakeBufferedLine(LStringLongTemplate<char>& line) {
  const char* start = piece.get() + iLineStart;
  const size_t size = iLineEnd - iLineStart;
  const char* end = size ? static_cast<const char*>(memchr(start, '\n', size)) : nullptr;
  const size_t length = end ? static_cast<size_t>(end - start) : size;
  // What is longer is no line any more, and a server that never ends it would take all memory.
  LStringLongTemplateWriter<char>(line).Write(start,
                                              std::min(length, kLongestLine - std::min(kLongestLine, line.length)));
  iLineStart += end ? length + 1 : length;
  return end != nullptr;
}

LProcessResult FtpDataConnection::ReceiveLine(LProcessInterface& process, LStringLongTemplate<char>& line,
                                              unsigned int ms) {
  line.GrowToSize(kTextSize);
  line.length = 0;
  line.data[0] = 0;
  bool isAnything = iLineStart < iLineEnd;
  while (!TakeBufferedLine(line)) {
    iLineStart = iLineEnd = 0;
    const LProcessResult result = Receive(process, Piece(), kPieceSize, iLineEnd, ms);
    if (result == LProcessResultStopped || (result != LProcessResultOk && !isAnything)) return result;
    if (result != LProcessResultOk) break;
    isAnything = true;
  }
  if (line.length != 0 && line.data[line.length - 1] == '\r') --line.length;
  line.data[line.length] = 0;
  return LProcessResultOk;
}

LProcessResult FtpDataConnection::Send(LProcessInterface& process, const void* data, size_t size, size_t& sent,
                                       unsigned int ms) {
  sent = 0;
  const int64_t end = platform::ClockMonotonicMs() + ms;
  for (;;) {
    if (process.IsToStop()) return LProcessResultStopped;
    const TlsStatus status = socket.WriteAvailable(data, size, sent);
    bMoved |= sent > 0;
    if (sent > 0 && status == TlsStatus::kWouldBlock) return Flush(process, ms);
    if (sent > 0 || status == TlsStatus::kOk) return LProcessResultOk;
    if (status != TlsStatus::kWouldBlock) return LProcessResultFailed;
    const short events = socket.IsSecure() ? socket.PollEvents() : POLLOUT;
    if (SocketWait(socket.fd, events, std::min(ms, kSocketSliceMs)) & kTrouble) return LProcessResultFailed;
    if (platform::ClockMonotonicMs() > end) return LProcessResultFailed;
  }
}

/// What the TLS layer has taken over counts as sent, and a failure shows in the next send. Each time that the
/// server makes room it has `ms` anew: it is slow then, and one that takes nothing at all must not hold the transfer
/// for ever.
LProcessResult FtpDataConnection::Flush(LProcessInterface& process, unsigned int ms) {
  unsigned left = ms;
  for (;;) {
    if (process.IsToStop()) return LProcessResultStopped;
    size_t none = 0;
    if (socket.WriteAvailable(nullptr, 0, none) != TlsStatus::kWouldBlock) return LProcessResultOk;
    if (SocketWait(socket.fd, socket.PollEvents(), kSocketSliceMs) != 0) {
      left = ms;
    } else if (!SocketTakeSlice(left)) {
      return LProcessResultFailed;
    }
  }
}

void FtpDataConnection::Close(LProcessInterface& process) {
  if (socket.IsValid() && bMoved) {
    EndOurSide(process);
    if (!bAtEnd) ReadToEnd(process);
  }
  socket.CloseSocketAndContext();
}

/// On a slow line the notice has to wait until the data in front of it are out.
void FtpDataConnection::EndOurSide(LProcessInterface& process) {
  const LProcessResult ended = ProcessShutdownSend(process, socket, gFtpTimeouts.sendBlockMs);
  if (ended == LProcessResultStopped) (void)socket.ShutdownSend();
}

void FtpDataConnection::ReadToEnd(LProcessInterface& process) {
  const int64_t end = platform::ClockMonotonicMs() + gFtpTimeouts.dataCloseMs;
  for (;;) {
    // The window has to live, but the wait is short, and what it protects has been sent already.
    (void)process.IsToStop();
    const int64_t left = end - platform::ClockMonotonicMs();
    if (left <= 0) return;
    size_t received = 0;
    const TlsStatus status = socket.ReadAvailable(Piece(), kPieceSize, received);
    if (status == TlsStatus::kOk) continue;
    if (status != TlsStatus::kWouldBlock) return;
    (void)SocketWait(socket.fd, socket.PollEvents(), std::min<unsigned>(left, kSocketSliceMs));
  }
}

char* FtpDataConnection::Piece() {
  if (!piece) piece.reset(new char[kPieceSize]);
  return piece.get();
}
