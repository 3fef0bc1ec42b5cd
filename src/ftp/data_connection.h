// One data connection of a session: opens to a passive address, secures, moves bytes and closes.
//
// The one place to make fast: bytes move in pieces of up to 256 KiB with one system call each where that is
// possible. Whoever moves a file counts in blocks of 1024 bytes, so that labels, progress and NOOPs come as
// if each block had travelled alone.
//
// Every wait is cut into slices of 200 ms with `IsToStop` between them, and each piece asks it once. Times
// are in milliseconds. A connection lives on the stack of the operation that uses it; the destructor closes
// what is open without waiting for the server.
#pragma once

#include <cstddef>
#include <memory>

#include "core/process.h"
#include "core/sockets.h"
#include "ftp/protocol.h"
#include "support/strings.h"

class FtpDataConnection {
 public:
  static constexpr size_t kPieceSize = 262144;

  FtpDataConnection() = default;
  FtpDataConnection(const FtpDataConnection&) = delete;
  FtpDataConnection& operator=(const FtpDataConnection&) = delete;

  /// Connects to "a.b.c.d:port"; what was open is closed. A name is not looked up.
  [[nodiscard]] LProcessResult Open(LProcessInterface&, const char* address);
  /// The same, with a second try after a failure.
  [[nodiscard]] LProcessResult OpenInTwoTries(LProcessInterface&, const char* address);

  // TLS. None of these tells how the handshake went: a failed one shows as a failed read or write.

  /// Sends the client hello and does not wait. Nothing if TLS has begun already.
  void BeginTls();
  /// Goes on with the handshake until it is finished or `control` has something to read. A server may begin
  /// its side before it answers the command or only behind the answer.
  void ContinueTlsUntilReply(LProcessInterface&, LSSLSocketTCP& control);
  /// Begins TLS if that has not been done, and waits for the handshake's end.
  void FinishTls(LProcessInterface&);
  /// What follows the reply `code` to a command for data: a server that refuses the command has no more to do with the
  /// connection, so that nobody waits for its side of the handshake.
  void FinishTlsBehindReply(LProcessInterface& process, unsigned code) {
    FtpReplyIsPreliminary(code) ? FinishTls(process) : BeginTls();
  }

  /// One piece of what the server sent. 0 with at least one byte; 1 stopped; 2 at the end of the stream, on a
  /// failure and when nothing came for `ms`.
  [[nodiscard]] LProcessResult Receive(LProcessInterface&, void* buffer, size_t size, size_t& received,
                                       unsigned int ms);
  /// The same into an empty pipe, plain connections only. 0 also with `received` 0: where it cannot be done this way.
  [[nodiscard]] LProcessResult ReceiveInto(LProcessInterface&, platform::NetPipe& pipe, size_t& received,
                                           unsigned int ms);
  /// The next line without its end. The last one may lack its end, also when the stream failed or fell
  /// silent. Of a line beyond 64 MiB the rest is dropped.
  [[nodiscard]] LProcessResult ReceiveLine(LProcessInterface&, LStringLongTemplate<char>& line, unsigned int ms);
  /// Hands over what the connection takes of `data`: 0 with `sent` above 0; 2 when it took nothing for `ms`,
  /// or when nothing of what the TLS layer has taken over went out for `ms`.
  [[nodiscard]] LProcessResult Send(LProcessInterface&, const void* data, size_t size, size_t& sent, unsigned int ms);

  /// Ends our side first, reads to the server's end within a bound, then closes. A socket that is closed with
  /// unread bytes resets the connection and throws away what is still on its way to the server, and servers
  /// do send on a connection that only receives: session tickets, their own close notice. A stop does not cut
  /// this short.
  void Close(LProcessInterface&);

  /// Closes at once. What is on its way in either direction is lost: for a transfer that was stopped.
  void Drop() { socket.CloseSocketAndContext(); }

  /// The server's end came on a secure connection without the close notice of TLS: what was received may be
  /// cut off.
  bool WasCutOff() const { return bCutOff; }
  /// Room for one piece, for the user of the connection. Not to be mixed with ReceiveLine, which keeps what
  /// it has read ahead in it.
  char* Piece();

 private:
  enum class Tls { kNone, kHandshake, kSettled };

  void StepHandshake();
  LProcessResult Flush(LProcessInterface&, unsigned int ms);
  void EndOurSide(LProcessInterface&);
  void ReadToEnd(LProcessInterface&);
  template <typename Attempt>
  LProcessResult ReceiveWith(LProcessInterface&, Attempt attempt, unsigned int ms);
  void NoteEnd();
  bool TakeBufferedLine(LStringLongTemplate<char>& line);

  LSSLSocketTCP socket;
  Tls tls = Tls::kNone;
  bool bMoved = false;            ///< Some byte went over the connection in either direction.
  bool bAtEnd = false;            ///< The server's end, or a failure, was met while reading.
  bool bCutOff = false;           ///< See WasCutOff.
  std::unique_ptr<char[]> piece;  ///< Made at the first use.
  size_t iLineStart = 0;          ///< What ReceiveLine has read ahead: piece[iLineStart, iLineEnd).
  size_t iLineEnd = 0;
};
