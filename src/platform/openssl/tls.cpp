// A TLS client stream on OpenSSL, over a BIO of our own.
//
// Encrypted bytes pass through two buffers of the stream's. Each call of the transport moves as much as it
// can, so bulk data costs few system calls; and a written record always finds room, so what TlsWrite has
// encrypted is the stream's own and never has to be given again.
#include "platform/tls.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>
#include <new>
#include <openssl/err.h>
#include <openssl/ssl.h>
#include <openssl/x509v3.h>

namespace platform {
namespace {

constexpr size_t kRecordSize = SSL3_RT_MAX_PLAIN_LENGTH;
/// Room that a full record may need once encrypted: header, padding, tag.
constexpr size_t kRecordRoom = kRecordSize + SSL3_RT_MAX_ENCRYPTED_OVERHEAD + SSL3_RT_HEADER_LENGTH;
/// Kept free for what the protocol says by itself: key updates, alerts, the close notice.
constexpr size_t kReservedRoom = 4096;
constexpr size_t kReadCapacity = 128 * 1024;
constexpr size_t kWriteCapacity = 8 * kRecordRoom + kReservedRoom;
constexpr size_t kErrorTextSize = 512;

/// Bytes on their way through: taken in at `end`, given out at `begin`.
template <size_t kCapacity>
struct ByteQueue {
  uint8_t bytes[kCapacity];
  size_t begin = 0;
  size_t end = 0;

  size_t Size() const { return end - begin; }
  size_t Room() const { return kCapacity - end; }
  void Drop(size_t count) {
    begin += count;
    if (begin == end) begin = end = 0;
  }
  /// Moves what is there to the front if fewer than `wanted` bytes are free behind it. Whether that is
  /// enough.
  bool MakeRoom(size_t wanted) {
    if (Room() >= wanted) return true;
    if (begin != 0) memmove(bytes, bytes + begin, Size());
    end -= begin;
    begin = 0;
    return Room() >= wanted;
  }
};

}  // namespace

struct TlsStream {
  TlsTransport transport = {};
  SSL* ssl = nullptr;
  TlsState state = TlsState::kIdle;
  /// Why the stream gives nothing more; kOk while it may.
  TlsStatus readEnd = TlsStatus::kOk;
  /// The library holds the stream for broken: no further call of it may be made.
  bool isBroken = false;
  bool isClosedByPeer = false;  ///< The peer's close notice has come.
  bool isCloseNoticeSent = false;
  /// False for the rest of a step in which the transport has proved empty: spares a call that finds nothing.
  bool mayReadTransport = true;
  /// The transport's own end, kept until the bytes that came before it are used up.
  TlsStatus transportEnd = TlsStatus::kOk;
  TlsStatus writeError = TlsStatus::kOk;
  char errorText[kErrorTextSize] = {};
  ByteQueue<kReadCapacity> incoming;
  ByteQueue<kWriteCapacity> outgoing;
};

namespace {

// The BIO

TlsStream& StreamOf(BIO* bio) { return *static_cast<TlsStream*>(BIO_get_data(bio)); }

/// Fetches what the transport has into the empty queue.
void FillIncoming(TlsStream& stream) {
  size_t size = stream.incoming.Room();
  const TlsStatus status =
      stream.transport.read(stream.transport.connection, stream.incoming.bytes + stream.incoming.end, size);
  stream.incoming.end += size;
  if (status == TlsStatus::kOk) return;
  stream.mayReadTransport = false;
  // A reset is told once only, so an end has to be kept while bytes before it are still to be read.
  if (status != TlsStatus::kWouldBlock) stream.transportEnd = status;
}

int BioRead(BIO* bio, char* data, size_t size, size_t* moved) {
  TlsStream& stream = StreamOf(bio);
  BIO_clear_retry_flags(bio);
  *moved = 0;
  if (stream.incoming.Size() == 0 && stream.mayReadTransport && stream.transportEnd == TlsStatus::kOk) {
    FillIncoming(stream);
  }
  const size_t count = std::min(size, stream.incoming.Size());
  if (count == 0) {
    if (stream.transportEnd == TlsStatus::kOk) BIO_set_retry_read(bio);
    return 0;
  }
  memcpy(data, stream.incoming.bytes + stream.incoming.begin, count);
  stream.incoming.Drop(count);
  *moved = count;
  return 1;
}

/// Hands the queued records to the transport.
TlsStatus PushOutgoing(TlsStream& stream) {
  while (stream.outgoing.Size() != 0 && stream.writeError == TlsStatus::kOk) {
    size_t size = stream.outgoing.Size();
    const TlsStatus status =
        stream.transport.write(stream.transport.connection, stream.outgoing.bytes + stream.outgoing.begin, size);
    stream.outgoing.Drop(size);
    if (status == TlsStatus::kWouldBlock) return status;
    stream.writeError = status;
  }
  return stream.writeError;
}

int BioWrite(BIO* bio, const char* data, size_t size, size_t* moved) {
  TlsStream& stream = StreamOf(bio);
  BIO_clear_retry_flags(bio);
  *moved = 0;
  if (stream.writeError != TlsStatus::kOk) return 0;
  if (!stream.outgoing.MakeRoom(size) && PushOutgoing(stream) == TlsStatus::kOk) (void)stream.outgoing.MakeRoom(size);
  const size_t count = std::min(stream.outgoing.Room(), size);
  if (count == 0) {
    if (stream.writeError == TlsStatus::kOk) BIO_set_retry_write(bio);
    return 0;
  }
  memcpy(stream.outgoing.bytes + stream.outgoing.end, data, count);
  stream.outgoing.end += count;
  *moved = count;
  return 1;
}

long BioControl(BIO* bio, int command, long, void*) {
  const TlsStream& stream = StreamOf(bio);
  switch (command) {
    case BIO_CTRL_FLUSH: return 1;  // Each step of ours pushes the queue out by itself.
    case BIO_CTRL_EOF: return stream.transportEnd != TlsStatus::kOk && stream.incoming.Size() == 0;
    default: return 0;
  }
}

/// One for the process, never freed. Null if the library has no memory for it.
const BIO_METHOD* BioMethod() {
  static const BIO_METHOD* const method = [] {
    BIO_METHOD* made = BIO_meth_new(BIO_get_new_index() | BIO_TYPE_SOURCE_SINK, "transport");
    if (!made) return made;
    BIO_meth_set_read_ex(made, &BioRead);
    BIO_meth_set_write_ex(made, &BioWrite);
    BIO_meth_set_ctrl(made, &BioControl);
    return made;
  }();
  return method;
}

// The context

/// One for the process, made by the first stream, never freed: reading the system's certificates takes longer
/// than a handshake. Null if the library refuses.
SSL_CTX* SharedContext() {
  static SSL_CTX* const context = []() -> SSL_CTX* {
    SSL_CTX* made = SSL_CTX_new(TLS_client_method());
    if (!made) return nullptr;
    SSL_CTX_set_verify(made, SSL_VERIFY_PEER, nullptr);
    SSL_CTX_set_session_cache_mode(made, SSL_SESS_CACHE_OFF);
    SSL_CTX_set_mode(made, SSL_MODE_ENABLE_PARTIAL_WRITE | SSL_MODE_ACCEPT_MOVING_WRITE_BUFFER);
    if (SSL_CTX_set_min_proto_version(made, TLS1_2_VERSION) != 1 || SSL_CTX_set_default_verify_paths(made) != 1) {
      SSL_CTX_free(made);
      return nullptr;
    }
    return made;
  }();
  return context;
}

// Errors

void SetErrorText(TlsStream& stream, const char* what, const char* detail) {
  // Cut in silence: the history shows a line of it.
  (void)snprintf(stream.errorText, sizeof stream.errorText, "%s%s%s", what, detail[0] ? ": " : "", detail);
}

/// The words for a failure of the library: the verification's own if it is one, else the oldest of the queue.
void KeepLibraryError(TlsStream& stream) {
  const unsigned long error = ERR_peek_error();
  const char* reason = ERR_reason_error_string(error);
  const long verdict = SSL_get_verify_result(stream.ssl);
  const bool isVerdict = ERR_GET_REASON(error) == SSL_R_CERTIFICATE_VERIFY_FAILED && verdict != X509_V_OK;
  SetErrorText(stream, reason ? reason : "TLS failure", isVerdict ? X509_verify_cert_error_string(verdict) : "");
}

/// Ends the stream for good with `status`.
TlsStatus Break(TlsStream& stream, TlsStatus status, const char* text) {
  stream.isBroken = true;
  stream.readEnd = status;
  stream.state = status == TlsStatus::kClosedGracefully ? TlsState::kClosed : TlsState::kAborted;
  if (text) SetErrorText(stream, text, "");
  return status;
}

TlsStatus BreakByTransport(TlsStream& stream, TlsStatus status) {
  switch (status) {
    case TlsStatus::kClosedGracefully:
      return Break(stream, status, "the peer closed the connection without a close notice");
    case TlsStatus::kClosedAbort: return Break(stream, status, "the connection was reset");
    default: return Break(stream, TlsStatus::kIoError, "the connection failed");
  }
}

/// What a call of the library that gave `result` means. Takes the stream to its end if there is one.
TlsStatus StatusOfFailure(TlsStream& stream, int result) {
  const int error = SSL_get_error(stream.ssl, result);
  if (error == SSL_ERROR_WANT_READ || error == SSL_ERROR_WANT_WRITE) return TlsStatus::kWouldBlock;
  if (error == SSL_ERROR_ZERO_RETURN) {
    stream.isClosedByPeer = true;
    stream.readEnd = TlsStatus::kClosedGracefully;
    stream.state = TlsState::kClosed;
    return stream.readEnd;
  }
  const unsigned long reason = ERR_peek_error();
  // The transport's end shows in the library's queue as one error or another; what ended it is known better
  // here.
  if (reason == 0 || ERR_GET_REASON(reason) == SSL_R_UNEXPECTED_EOF_WHILE_READING) {
    if (stream.transportEnd != TlsStatus::kOk) return BreakByTransport(stream, stream.transportEnd);
    if (stream.writeError != TlsStatus::kOk) return BreakByTransport(stream, stream.writeError);
  }
  KeepLibraryError(stream);
  return Break(stream, TlsStatus::kFailed, nullptr);
}

bool IsAddressLiteral(const char* name) {
  ASN1_OCTET_STRING* address = a2i_IPADDRESS(name);
  ASN1_OCTET_STRING_free(address);
  return address != nullptr;
}

}  // namespace

TlsStream* TlsCreate(const TlsTransport& transport) {
  ERR_clear_error();
  SSL_CTX* context = SharedContext();
  const BIO_METHOD* method = BioMethod();
  if (!context || !method) return nullptr;
  std::unique_ptr<TlsStream> stream(new (std::nothrow) TlsStream);
  if (!stream) return nullptr;
  stream->transport = transport;
  stream->ssl = SSL_new(context);
  BIO* bio = stream->ssl ? BIO_new(method) : nullptr;
  if (!bio) {
    SSL_free(stream->ssl);
    return nullptr;
  }
  BIO_set_data(bio, stream.get());
  BIO_set_init(bio, 1);
  SSL_set_bio(stream->ssl, bio, bio);
  SSL_set_connect_state(stream->ssl);
  return stream.release();
}

void TlsDestroy(TlsStream* stream) {
  if (!stream) return;
  SSL_free(stream->ssl);
  delete stream;
}

bool TlsSetMinimumVersion(TlsStream* stream, TlsVersion version) {
  ERR_clear_error();
  const int number = version == TlsVersion::kTls10   ? TLS1_VERSION
                     : version == TlsVersion::kTls11 ? TLS1_1_VERSION
                                                     : TLS1_2_VERSION;
  return SSL_set_min_proto_version(stream->ssl, number) == 1;
}

bool TlsSetPeerName(TlsStream* stream, const char* name) {
  ERR_clear_error();
  // An address stands in a certificate as an address, not as a name, and is never sent as a server name.
  if (IsAddressLiteral(name)) return X509_VERIFY_PARAM_set1_ip_asc(SSL_get0_param(stream->ssl), name) == 1;
  ERR_clear_error();
  SSL_set_hostflags(stream->ssl, X509_CHECK_FLAG_NO_PARTIAL_WILDCARDS);
  return SSL_set1_host(stream->ssl, name) == 1 && SSL_set_tlsext_host_name(stream->ssl, name) == 1;
}

TlsStatus TlsHandshake(TlsStream* stream) {
  if (stream->isBroken) return stream->readEnd;
  TlsStatus status = PushOutgoing(*stream);
  if (status == TlsStatus::kWouldBlock) return status;
  if (stream->state == TlsState::kIdle) stream->state = TlsState::kHandshake;
  if (stream->state == TlsState::kHandshake) {
    ERR_clear_error();
    stream->mayReadTransport = true;
    const int result = SSL_do_handshake(stream->ssl);
    status = result == 1 ? TlsStatus::kOk : StatusOfFailure(*stream, result);
  }
  // Also after a failure: the alert tells the peer why.
  const TlsStatus pushed = PushOutgoing(*stream);
  if (status != TlsStatus::kOk) return status;
  if (pushed == TlsStatus::kWouldBlock) return pushed;
  if (pushed != TlsStatus::kOk) return BreakByTransport(*stream, pushed);
  if (stream->state == TlsState::kHandshake) stream->state = TlsState::kConnected;
  return TlsStatus::kOk;
}

bool TlsWantsWrite(const TlsStream* stream) { return stream->outgoing.Size() != 0 || SSL_want_write(stream->ssl); }

TlsStatus TlsRead(TlsStream* stream, void* data, size_t size, size_t& moved) {
  moved = 0;
  if (stream->readEnd != TlsStatus::kOk) return stream->readEnd;
  if (stream->state != TlsState::kConnected) return TlsStatus::kFailed;
  stream->mayReadTransport = true;
  TlsStatus status = TlsStatus::kOk;
  // The library gives one record at a time; the caller gets as many as fit.
  while (moved < size && status == TlsStatus::kOk) {
    size_t got = 0;
    ERR_clear_error();
    const int result = SSL_read_ex(stream->ssl, static_cast<char*>(data) + moved, size - moved, &got);
    if (result != 1) status = StatusOfFailure(*stream, result);
    moved += got;
  }
  // The protocol may have answered something. If it cannot go out now, the next write or flush takes it
  // along.
  (void)PushOutgoing(*stream);
  return moved != 0 ? TlsStatus::kOk : status;
}

TlsStatus TlsWrite(TlsStream* stream, const void* data, size_t size, size_t& moved) {
  moved = 0;
  if (stream->isBroken) return stream->readEnd;
  if (stream->state != TlsState::kConnected && stream->state != TlsState::kClosed) return TlsStatus::kFailed;
  stream->mayReadTransport = true;
  while (moved < size) {
    if (!stream->outgoing.MakeRoom(kRecordRoom + kReservedRoom)) {
      const TlsStatus pushed = TlsFlush(stream);
      if (!stream->outgoing.MakeRoom(kRecordRoom + kReservedRoom)) return pushed;
    }
    size_t taken = 0;
    ERR_clear_error();
    const size_t wanted = std::min(size - moved, kRecordSize);
    const int result = SSL_write_ex(stream->ssl, static_cast<const char*>(data) + moved, wanted, &taken);
    if (result != 1) return StatusOfFailure(*stream, result);
    moved += taken;
  }
  return TlsFlush(stream);
}

TlsStatus TlsFlush(TlsStream* stream) {
  if (stream->isBroken) return stream->readEnd;
  const TlsStatus status = PushOutgoing(*stream);
  if (status == TlsStatus::kOk || status == TlsStatus::kWouldBlock) return status;
  return BreakByTransport(*stream, status);
}

size_t TlsFetchReadSize(TlsStream* stream) {
  if (stream->readEnd != TlsStatus::kOk || stream->state != TlsState::kConnected) return 0;
  const int pending = SSL_pending(stream->ssl);
  if (pending > 0) return static_cast<size_t>(pending);
  // A look at the next byte of data makes the library decrypt the record that it lies in.
  stream->mayReadTransport = true;
  ERR_clear_error();
  char byte;
  size_t peeked = 0;
  const int result = SSL_peek_ex(stream->ssl, &byte, 1, &peeked);
  if (result != 1) (void)StatusOfFailure(*stream, result);
  (void)PushOutgoing(*stream);
  return static_cast<size_t>(SSL_pending(stream->ssl));
}

TlsState TlsGetState(const TlsStream* stream) { return stream->state; }

bool TlsPeerClosedCleanly(const TlsStream* stream) { return stream->isClosedByPeer; }

TlsStatus TlsClose(TlsStream* stream) {
  if (stream->isBroken) return stream->readEnd;
  if (stream->state == TlsState::kIdle || stream->state == TlsState::kHandshake) return TlsStatus::kOk;
  if (!stream->isCloseNoticeSent) {
    ERR_clear_error();
    // 0 when the notice is on its way and the peer's has not come: nobody waits for that one.
    const int result = SSL_shutdown(stream->ssl);
    if (result < 0) return StatusOfFailure(*stream, result);
    stream->isCloseNoticeSent = true;
  }
  return TlsFlush(stream);
}

const char* TlsErrorText(const TlsStream* stream) { return stream->errorText; }

}  // namespace platform
