// One accepted connection of a test server, plain or under TLS. Used by the server's thread alone.
//
// Every wait ends at once when the stop descriptor becomes readable, so that a test server can be taken down
// in the middle of any step.
#pragma once

#include <cstddef>
#include <string>

struct ssl_st;
struct ssl_ctx_st;

class ServerChannel {
 public:
  enum class Status { kOk, kNothingYet, kEnd };

  explicit ServerChannel(int stopFd) : stop_fd_(stopFd) {}
  ServerChannel(const ServerChannel&) = delete;
  ServerChannel& operator=(const ServerChannel&) = delete;
  ~ServerChannel() { Close(); }

  /// Takes over an accepted socket, which becomes non-blocking. A previous one is closed.
  void Take(int fd);
  bool IsOpen() const { return fd_ != -1; }
  bool IsSecure() const { return ssl_ != nullptr; }
  int Fd() const { return fd_; }
  ssl_st* Tls() const { return ssl_; }

  /// The server's side of a TLS handshake; false if it failed or took longer than 5 s.
  bool StartTls(ssl_ctx_st* context);
  /// Writes all, in segments of one byte if asked for. False if the peer has gone.
  bool Write(const std::string& bytes, bool oneByteSegments);
  /// Appends what is there to `out`, at most `limit` bytes; does not wait.
  Status ReadAvailable(std::string& out, size_t limit = static_cast<size_t>(-1));
  /// Waits until there may be something to read; false at the stop or after `ms`.
  bool WaitReadable(int ms);

  /// With the close notice of TLS, if secure.
  void Close();
  /// Without it.
  void Cut();
  /// With a TCP reset.
  void Reset();

 private:
  bool WaitFor(short events, int ms);
  long WriteSome(const char* data, size_t size);

  int stop_fd_;
  int fd_ = -1;
  ssl_st* ssl_ = nullptr;
};

/// Waits for `fd` or the stop descriptor; true if `fd` has one of `events` (or an error).
bool WaitForDescriptor(int fd, short events, int stopFd, int ms);
