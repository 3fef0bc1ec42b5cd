// A server on 127.0.0.1 whose behaviour is a function of the test's, plain or under TLS.
//
//   TlsTestServer server([](TlsTestPeer& peer) {
//     peer.Send("220 Ready\r\n");
//     peer.StartTls(TestCertificate::kGood);
//     EXPECT_EQ(peer.ReceiveLine(), "USER anna\r\n");
//   });
//   ... connect to server.Port() ...
//
// The function runs on the server's thread, once for each connection, one after the other; the connection
// closes when it returns. Nothing waits for more than 20 s. The destructor ends the server after the
// connections that it has accepted.
#pragma once

#include <csignal>
#include <functional>
#include <netinet/tcp.h>
#include <openssl/err.h>
#include <poll.h>
#include <string>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <thread>

#include "support/loopback.h"
#include "support/test_certificates.h"

/// One accepted connection. Its calls block.
class TlsTestPeer {
 public:
  explicit TlsTestPeer(int fd) : fd_(fd) {
    const timeval limit = {20, 0};
    setsockopt(fd_, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
    setsockopt(fd_, SOL_SOCKET, SO_SNDTIMEO, &limit, sizeof limit);
    const int one = 1;
    setsockopt(fd_, IPPROTO_TCP, TCP_NODELAY, &one, sizeof one);
  }
  TlsTestPeer(const TlsTestPeer&) = delete;
  TlsTestPeer& operator=(const TlsTestPeer&) = delete;
  ~TlsTestPeer() { Cut(); }

  int Fd() const { return fd_; }
  SSL* Tls() const { return ssl_; }

  /// The server's side of the handshake.
  bool StartTls(TestCertificate certificate) {
    ssl_ = SSL_new(TestServerContext(certificate));
    SSL_set_fd(ssl_, fd_);
    ERR_clear_error();
    return SSL_accept(ssl_) == 1;
  }

  /// All of it; false if the client has gone.
  bool Send(const std::string& bytes) {
    size_t done = 0;
    while (done < bytes.size()) {
      const ssize_t sent = SendSome(bytes.data() + done, bytes.size() - done);
      if (sent <= 0) return false;
      done += static_cast<size_t>(sent);
    }
    return true;
  }

  /// Up to `limit` bytes of what comes next; empty at the end of the stream.
  std::string Receive(size_t limit) {
    std::string bytes(limit, '\0');
    ERR_clear_error();
    const ssize_t got =
        ssl_ ? SSL_read(ssl_, bytes.data(), static_cast<int>(limit)) : recv(fd_, bytes.data(), limit, 0);
    bytes.resize(got > 0 ? static_cast<size_t>(got) : 0);
    return bytes;
  }
  /// Up to and with "\n".
  std::string ReceiveLine() {
    std::string line;
    while (line.empty() || line.back() != '\n') {
      const std::string byte = Receive(1);
      if (byte.empty()) break;
      line += byte;
    }
    return line;
  }
  std::string ReceiveToEnd() {
    std::string all;
    for (std::string piece = Receive(65536); !piece.empty(); piece = Receive(65536)) all += piece;
    return all;
  }
  /// After the end of the stream: whether the client's close notice came.
  bool HasCloseNotice() const { return ssl_ && (SSL_get_shutdown(ssl_) & SSL_RECEIVED_SHUTDOWN); }

  /// Sends the close notice of TLS and leaves the connection open.
  void SendCloseNotice() {
    ERR_clear_error();
    SSL_shutdown(ssl_);
  }
  /// Closes without a notice.
  void Cut() {
    SSL_free(ssl_);
    ssl_ = nullptr;
    if (fd_ != -1) close(fd_);
    fd_ = -1;
  }
  void Reset() {
    const linger hard = {1, 0};
    setsockopt(fd_, SOL_SOCKET, SO_LINGER, &hard, sizeof hard);
    Cut();
  }

 private:
  ssize_t SendSome(const char* data, size_t size) {
    if (!ssl_) return send(fd_, data, size, MSG_NOSIGNAL);
    ERR_clear_error();
    return SSL_write(ssl_, data, static_cast<int>(size));
  }

  int fd_;
  SSL* ssl_ = nullptr;
};

class TlsTestServer {
 public:
  using Behaviour = std::function<void(TlsTestPeer&)>;

  explicit TlsTestServer(Behaviour behaviour)
      : behaviour_(std::move(behaviour)), listen_fd_(OpenLoopbackSocket(port_)), stop_fd_(eventfd(0, EFD_CLOEXEC)) {
    signal(SIGPIPE, SIG_IGN);  // The library writes with no flag against it.
    thread_ = std::thread([this] { Serve(); });
  }
  TlsTestServer(const TlsTestServer&) = delete;
  TlsTestServer& operator=(const TlsTestServer&) = delete;
  ~TlsTestServer() {
    eventfd_write(stop_fd_, 1);
    thread_.join();
    close(stop_fd_);
    close(listen_fd_);
  }

  uint16_t Port() const { return port_; }
  /// "127.0.0.1:port".
  std::string Address() const { return "127.0.0.1:" + std::to_string(port_); }

 private:
  void Serve() {
    for (;;) {
      pollfd entries[] = {{listen_fd_, POLLIN, 0}, {stop_fd_, POLLIN, 0}};
      if (poll(entries, 2, -1) > 0 && entries[0].revents == 0) return;
      const int fd = accept4(listen_fd_, nullptr, nullptr, SOCK_CLOEXEC);
      if (fd == -1) continue;
      TlsTestPeer peer(fd);
      behaviour_(peer);
    }
  }

  Behaviour behaviour_;
  uint16_t port_ = 0;
  int listen_fd_;
  int stop_fd_;
  std::thread thread_;
};
