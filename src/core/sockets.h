// IPv4 TCP sockets that can be cancelled, and TLS over the same descriptor.
//
// Every operation waits in slices of at most 200 ms and asks `IsToStop` between them. Results: 0 done, 1
// stopped, 2 failed or timed out, without any text; words for the user come from the callers. All times in
// milliseconds. A socket belongs to one process at a time, on the calling thread; any event may run inside a
// wait.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/process.h"
#include "platform/net.h"
#include "platform/net_pipe.h"
#include "platform/tls.h"
#include "support/strings.h"

constexpr unsigned kSocketSliceMs = 200;  ///< The grain of every time-out.

/// An IPv4 address and port, both in network order.
struct LIPAddressWithPort {
  uint32_t address = 0xFFFFFFFFu;  ///< All ones is the invalid value.
  uint16_t port = 0;
};

/// At most four addresses of a host, network order, in the resolver's order.
struct LIPAddressMultiHomed {
  uint64_t count = 0;
  uint32_t addresses[platform::kNetMaxAddresses] = {};
  /// A dotted address is taken as it is and never looked up; a failed look-up leaves `count` 0. Blocks.
  void Resolve(const char* host);
};

struct LIPAddressMultiHomedWithPort {
  uint16_t port = 0;  ///< Host order.
  LIPAddressMultiHomed addresses;
};

/// Splits `host` or `host:port`, the only syntax of a server address. Returns the number behind the first
/// colon, cut to 16 bits, or `defaultPort`.
uint16_t SplitPortFromAddr(const char* address, char (&host)[kTextSize], uint16_t defaultPort);

/// A descriptor held by value and not owned.
struct LIPSocketTCPRef {
  int fd;
  bool IsValid() const { return fd != -1 && fd != -2; }
};

/// A plain socket. Owns its descriptor.
class LIPSocketTCP {
 public:
  LIPSocketTCP() = default;
  LIPSocketTCP(const LIPSocketTCP&) = delete;
  LIPSocketTCP& operator=(const LIPSocketTCP&) = delete;
  ~LIPSocketTCP() { CloseSocket(); }

  bool IsValid() const { return Ref().IsValid(); }
  LIPSocketTCPRef Ref() const { return {fd}; }
  void CloseSocket();

  int fd = -1;  ///< -1 when closed; -1 and -2 both count as invalid.
};

/// A socket that starts out plain and can turn into a TLS socket, once, after it has connected. The presence
/// of a context is what makes a socket secure throughout the system; it is no proof of a finished handshake.
class LSSLSocketTCP {
 public:
  LSSLSocketTCP() = default;
  LSSLSocketTCP(const LSSLSocketTCP&) = delete;
  LSSLSocketTCP& operator=(const LSSLSocketTCP&) = delete;
  ~LSSLSocketTCP();

  bool IsValid() const { return fd != -1 && fd != -2; }
  bool IsSecure() const { return pContext != nullptr; }

  /// Creates the context: minimum TLS 1.2, else 1.1, else 1.0; the peer name if there is one. False without a
  /// descriptor, with a context already, or if the TLS library refuses.
  [[nodiscard]] bool InitSSL();
  /// True on a finished handshake within `ms`. Neither pumps nor can it be stopped.
  [[nodiscard]] bool Handshake(unsigned int ms);
  /// InitSSL and Handshake within `ms` (kWaitForever: without limit).
  [[nodiscard]] bool ConvertSocketToSSLTimeOut(unsigned int ms);
  /// What can be read now, bytes: on TLS decrypted ones, else what waits on the descriptor.
  [[nodiscard]] size_t GetBytesReady();
  /// TLS only: reads to the first byte that stands in `characters`, at most `size`. Negative if nothing came
  /// and the stream failed.
  ssize_t ReadToCharacter(char* buffer, size_t size, const char* characters);
  /// Sends the close notice of a TLS stream if it goes out at once. The peer name is forgotten.
  void CloseSocketAndContext();
  void CloseSocket() { CloseSocketAndContext(); }
  /// Stores the host part of `address` as the name that the peer's certificate must be for.
  void SetPeerName(const char* address);

  // Single attempts that never wait, for a caller that looks after several sockets or moves bulk data. They
  // tell kWouldBlock from an end: kClosedGracefully is the end of the stream (on TLS with or without the
  // peer's close notice: platform::TlsPeerClosedCleanly knows), every other value a failure. Wait with
  // PollEvents between them.

  /// One step of the handshake after InitSSL; kOk when it is finished.
  platform::TlsStatus HandshakeStep();
  /// Reads what there is, up to `size`. kOk exactly when `got` is above 0.
  platform::TlsStatus ReadAvailable(void* buffer, size_t size, size_t& got);
  /// The same into an empty pipe; plain sockets only. kOk with `got` 0 where it cannot be done this way.
  platform::TlsStatus ReadAvailableInto(platform::NetPipe& pipe, size_t size, size_t& got);
  /// `sent` bytes are done with for the caller. On TLS kWouldBlock may come with `sent` above 0: those lie in
  /// the TLS layer, and a further call, also one with 0 bytes, pushes them out.
  platform::TlsStatus WriteAvailable(const void* data, size_t size, size_t& sent);
  /// Ends the sending side: on TLS pushes out what is left and sends the close notice, then half-closes the
  /// TCP side; reading goes on. A failed close notice still half-closes.
  platform::TlsStatus ShutdownSendStep();
  /// The same within 200 ms; false if the close notice could not be sent. ProcessShutdownSend waits longer.
  bool ShutdownSend();
  /// What the last of these that gave kWouldBlock has to wait for on a TLS socket, POLLIN or POLLOUT. A plain
  /// socket gives POLLIN; its writer waits for POLLOUT.
  short PollEvents() const;

  int fd = -1;                              ///< -1 when closed.
  platform::TlsStream* pContext = nullptr;  ///< Owned; null on a plain socket.
  char szPeerName[kTextSize] = {};          ///< Host part of the address this socket was connected with.
  LStringLongTemplate<char> lineStart;      ///< Of the line that a stop has cut: the next line read begins with it.
  bool isAcknowledgementOwed = false;       ///< Something has come since the last time that something was sent.
};

// Connecting. A stopped connect closes its socket. A multi-homed address is tried in order, each with the
// whole time-out.

[[nodiscard]] LProcessResult ProcessConnect(LProcessInterface&, LIPSocketTCP&, const LIPAddressWithPort&,
                                            unsigned int ms);
[[nodiscard]] LProcessResult ProcessConnect(LProcessInterface&, LIPSocketTCP&, const LIPAddressMultiHomedWithPort&,
                                            unsigned int ms);
[[nodiscard]] LProcessResult ProcessConnect(LProcessInterface&, LSSLSocketTCP&, const char* address,
                                            const LIPAddressWithPort&, unsigned int ms);
[[nodiscard]] LProcessResult ProcessConnect(LProcessInterface&, LSSLSocketTCP&, const char* address,
                                            const LIPAddressMultiHomedWithPort&, unsigned int ms);
/// Splits, resolves and connects in one step. The last argument has no effect.
template <typename T>
[[nodiscard]] LProcessResult ProcessConnect(LProcessInterface&, LSSLSocketTCP&, const T* address,
                                            unsigned short defaultPort, unsigned int ms, bool);

// Sending. 0 bytes give 0 without touching the socket, unless a stop is pending.

[[nodiscard]] LProcessResult ProcessSend(LProcessInterface&, LSSLSocketTCP&, const void* data, size_t size,
                                         unsigned int ms);
[[nodiscard]] LProcessResult ProcessSend(LProcessInterface&, LIPSocketTCPRef, const void* data, size_t size,
                                         unsigned int ms);
/// Sends the text without its terminating zero and logs it as an FTP command (a password masked), whatever the result.
[[nodiscard]] LProcessResult ProcessSendString(LProcessInterface&, LSSLSocketTCP&, const char* text, unsigned int ms);
/// The same, logging nothing.
[[nodiscard]] LProcessResult ProcessSendString(LProcessInterface&, LIPSocketTCPRef, const char* text, unsigned int ms);

/// ConvertSocketToSSLTimeOut that asks for a stop between the steps of the handshake.
[[nodiscard]] LProcessResult ProcessConvertSocketToSSL(LProcessInterface&, LSSLSocketTCP&, unsigned int ms);

/// ShutdownSendStep until it is finished, at most `ms`: 0 when the close notice is out.
[[nodiscard]] LProcessResult ProcessShutdownSend(LProcessInterface&, LSSLSocketTCP&, unsigned int ms);

// Receiving.

/// 0 when there is something to read or the peer has closed (a following read finds out which).
[[nodiscard]] LProcessResult ProcessWaitForDataOrClose(LProcessInterface&, LSSLSocketTCP&, unsigned int ms);
[[nodiscard]] LProcessResult ProcessWaitForDataOrClose(LProcessInterface&, LIPSocketTCPRef, unsigned int ms);
/// One read of what is there, at most `size`.
[[nodiscard]] LProcessResult ProcessRecvReady(LProcessInterface&, LSSLSocketTCP&, void* buffer, size_t size,
                                              size_t& received, unsigned int ms);
[[nodiscard]] LProcessResult ProcessRecvReady(LProcessInterface&, LIPSocketTCPRef, void* buffer, size_t size,
                                              size_t& received, unsigned int ms);
/// Exactly `size` bytes or a failure; `received` counts what came. `ms` limits the wait for each read.
[[nodiscard]] LProcessResult ProcessRecvBytes(LProcessInterface&, LSSLSocketTCP&, void* buffer, size_t size,
                                              size_t& received, unsigned int ms);
[[nodiscard]] LProcessResult ProcessRecvBytes(LProcessInterface&, LIPSocketTCPRef, void* buffer, size_t size,
                                              size_t& received, unsigned int ms);
[[nodiscard]] LProcessResult ProcessRecvBytes(LProcessInterface&, LSSLSocketTCP&, void* buffer, size_t size,
                                              unsigned int ms);
/// Up to and including the first byte that stands in `characters`, at most `size`; consumes nothing beyond
/// it, so that bytes behind a line stay on the socket.
[[nodiscard]] LProcessResult ProcessRecvToCharacter(LProcessInterface&, LSSLSocketTCP&, void* buffer, size_t size,
                                                    size_t& received, const char* characters, unsigned int ms);
[[nodiscard]] LProcessResult ProcessRecvToCharacter(LProcessInterface&, LIPSocketTCPRef, void* buffer, size_t size,
                                                    size_t& received, const char* characters, unsigned int ms);
/// One line without its end, into a writer that is not terminated here. A last line without an end, at the
/// end of the stream, counts as a line. A stop in the middle of a line loses nothing of it on an LSSLSocketTCP. W:
/// LFixedLengthStringWriterTemplate<char> (cuts) or LStringLongTemplateWriter<char> (grows).
template <typename W>
[[nodiscard]] LProcessResult ProcessRecvLineToWriter(LProcessInterface&, LSSLSocketTCP&, W& writer, unsigned int ms);
template <typename W>
[[nodiscard]] LProcessResult ProcessRecvLineToWriter(LProcessInterface&, LIPSocketTCPRef, W& writer, unsigned int ms);
/// Replaces `line`, terminated.
[[nodiscard]] LProcessResult ProcessRecvLine(LProcessInterface&, LIPSocketTCPRef, LStringLongTemplate<char>& line,
                                             unsigned int ms);
