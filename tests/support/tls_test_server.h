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
#include <openssl/err.h>
#include <poll.h>
#include <string>
#include <sys/socket.h>

#include "support/server_thread.h"
#include "support/test_certificates.h"

/// One accepted connection, which nothing but the client ends. Its calls block.
class TlsTestPeer : public ServerChannel {
 public:
  explicit TlsTestPeer(int fd) : ServerChannel(-1) { Take(fd); }
  ~TlsTestPeer() { Cut(); }

  /// The server's side of the handshake.
  bool StartTls(TestCertificate certificate) { return ServerChannel::StartTls(TestServerContext(certificate)); }

  /// All of it; false if the client has gone.
  bool Send(const std::string& bytes) { return Write(bytes, false); }

  /// Up to `limit` bytes of what comes next; empty at the end of the stream.
  std::string Receive(size_t limit) {
    std::string bytes;
    while (ReadAvailable(bytes, limit) == Status::kNothingYet && WaitReadable(kLimitMs)) continue;
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
  bool HasCloseNotice() const { return IsSecure() && (SSL_get_shutdown(Tls()) & SSL_RECEIVED_SHUTDOWN); }

  /// Sends the close notice of TLS and leaves the connection open.
  void SendCloseNotice() {
    ERR_clear_error();
    SSL_shutdown(Tls());
  }

 private:
  static constexpr int kLimitMs = 20000;
};

class TlsTestServer : public ServerThread {
 public:
  using Behaviour = std::function<void(TlsTestPeer&)>;

  explicit TlsTestServer(Behaviour behaviour) : behaviour_(std::move(behaviour)) {
    signal(SIGPIPE, SIG_IGN);  // The library writes with no flag against it.
    Start([this] { Serve(); });
  }
  ~TlsTestServer() { End(); }

 private:
  void Serve() {
    for (;;) {
      pollfd entries[] = {{listener_, POLLIN, 0}, {stop_fd_, POLLIN, 0}};
      if (poll(entries, 2, -1) > 0 && entries[0].revents == 0) return;
      const int fd = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
      if (fd == -1) continue;
      TlsTestPeer peer(fd);
      behaviour_(peer);
    }
  }

  Behaviour behaviour_;
};
