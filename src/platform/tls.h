// One TLS client stream over a transport that the caller supplies. Verification of the peer's chain and name
// is always on. One stream belongs to one thread at a time.
//
// The stream reads and writes through two functions of the caller's on a non-blocking transport, so the
// caller sees every byte and decides what an error of the transport means.
#pragma once

#include <cstddef>

namespace platform {

struct TlsStream;

enum class TlsStatus : int {
  kOk = 0,
  kIoError = -36,
  kFailed = -9800,  ///< The protocol or the verification failed.
  kWouldBlock = -9803,
  kClosedGracefully = -9805,
  kClosedAbort = -9806,
};

enum class TlsVersion { kTls10, kTls11, kTls12 };
enum class TlsState { kIdle, kHandshake, kConnected, kClosed, kAborted };

/// The transport. `size` goes in as the count asked for and comes back as the count moved, in every case.
struct TlsTransport {
  void* connection;
  TlsStatus (*read)(void* connection, void* data, size_t& size);
  TlsStatus (*write)(void* connection, const void* data, size_t& size);
};

/// A client stream, or null. The caller owns it and gives it back with TlsDestroy.
TlsStream* TlsCreate(const TlsTransport& transport);
void TlsDestroy(TlsStream* stream);

/// False where the library refuses that minimum. Without a call the minimum is TLS 1.2.
bool TlsSetMinimumVersion(TlsStream* stream, TlsVersion version);
/// The name or IPv4 address literal that the certificate must be for; also sent as server name if a name.
bool TlsSetPeerName(TlsStream* stream, const char* name);

/// One step of the handshake: kOk when it is finished, kWouldBlock when the transport has to be waited for.
TlsStatus TlsHandshake(TlsStream* stream);
/// After kWouldBlock: whether the transport has to become writable for the stream to go on, rather than
/// readable.
bool TlsWantsWrite(const TlsStream* stream);
/// At most `size` bytes; `moved` is what came. kOk with more than 0 bytes, or the reason there are none.
TlsStatus TlsRead(TlsStream* stream, void* data, size_t size, size_t& moved);
/// After kWouldBlock the bytes counted in `moved` are taken over by the stream: go on with TlsFlush.
TlsStatus TlsWrite(TlsStream* stream, const void* data, size_t size, size_t& moved);
/// Pushes out what a write left behind; kOk when nothing is left.
TlsStatus TlsFlush(TlsStream* stream);
/// Takes in what the transport has and tells how many bytes TlsRead would now give without it. 0 when what
/// came is no data: half a record, a session ticket, or the end of the stream, which then shows in the state.
size_t TlsFetchReadSize(TlsStream* stream);
TlsState TlsGetState(const TlsStream* stream);
/// True when the peer ended the stream with its close notice, false when it just went.
bool TlsPeerClosedCleanly(const TlsStream* stream);
/// Sends our close notice once; does not wait for the peer's. kWouldBlock if the transport was full.
TlsStatus TlsClose(TlsStream* stream);
/// Why the last step failed, in English, for the history; empty if nothing did. Owned by the stream.
const char* TlsErrorText(const TlsStream* stream);

}  // namespace platform
