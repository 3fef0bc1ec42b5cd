#include "support/server_channel.h"

#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <openssl/err.h>
#include <openssl/ssl.h>
#include <poll.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

namespace {

constexpr int kHandshakeLimitMs = 5000;
constexpr int kWriteLimitMs = 20000;
/// Pauses after every byte would make a line of 10,000 bytes slow; the reader has seen enough single bytes by
/// then.
constexpr size_t kBytesWithPause = 600;

}  // namespace

bool WaitForDescriptor(int fd, short events, int stopFd, int ms) {
  pollfd entries[2] = {{fd, events, 0}, {stopFd, POLLIN, 0}};
  int count;
  do {
    count = poll(entries, 2, ms);
  } while (count < 0 && errno == EINTR);
  return count > 0 && entries[1].revents == 0 && entries[0].revents != 0;
}

void ServerChannel::Take(int fd) {
  Close();
  fd_ = fd;
  if (fd == -1) return;
  fcntl(fd, F_SETFL, fcntl(fd, F_GETFL) | O_NONBLOCK);
  const int one = 1;
  setsockopt(fd, IPPROTO_TCP, TCP_NODELAY, &one, sizeof one);
}

bool ServerChannel::WaitFor(short events, int ms) { return WaitForDescriptor(fd_, events, stop_fd_, ms); }

bool ServerChannel::WaitReadable(int ms) {
  if (fd_ == -1) return false;
  return (ssl_ && SSL_pending(ssl_) > 0) || WaitFor(POLLIN, ms);
}

bool ServerChannel::StartTls(ssl_ctx_st* context) {
  if (fd_ == -1 || ssl_) return false;
  ssl_ = SSL_new(context);
  SSL_set_fd(ssl_, fd_);
  SSL_set_accept_state(ssl_);
  const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(kHandshakeLimitMs);
  while (std::chrono::steady_clock::now() < end) {
    ERR_clear_error();
    const int result = SSL_accept(ssl_);
    if (result == 1) return true;
    const int error = SSL_get_error(ssl_, result);
    if (error != SSL_ERROR_WANT_READ && error != SSL_ERROR_WANT_WRITE) return false;
    if (!WaitFor(error == SSL_ERROR_WANT_READ ? POLLIN : POLLOUT, kHandshakeLimitMs)) return false;
  }
  return false;
}

long ServerChannel::WriteSome(const char* data, size_t size) {
  if (!ssl_) return send(fd_, data, size, MSG_NOSIGNAL);
  ERR_clear_error();
  size_t written = 0;
  if (SSL_write_ex(ssl_, data, size, &written) == 1) return static_cast<long>(written);
  const int error = SSL_get_error(ssl_, 0);
  errno = error == SSL_ERROR_WANT_WRITE || error == SSL_ERROR_WANT_READ ? EAGAIN : EPIPE;
  return -1;
}

bool ServerChannel::Write(const std::string& bytes, bool oneByteSegments) {
  size_t done = 0;
  while (done < bytes.size() && fd_ != -1) {
    const size_t piece = oneByteSegments ? 1 : bytes.size() - done;
    const long written = WriteSome(bytes.data() + done, piece);
    if (written > 0) {
      done += static_cast<size_t>(written);
      if (oneByteSegments && done < kBytesWithPause) std::this_thread::sleep_for(std::chrono::microseconds(30));
    } else if (errno != EAGAIN || !WaitFor(POLLOUT, kWriteLimitMs)) {
      return false;
    }
  }
  return done == bytes.size();
}

ServerChannel::Status ServerChannel::ReadAvailable(std::string& out, size_t limit) {
  if (fd_ == -1) return Status::kEnd;
  char buffer[16384];
  const size_t wanted = limit < sizeof buffer ? limit : sizeof buffer;
  if (ssl_) {
    size_t count = 0;
    ERR_clear_error();
    if (SSL_read_ex(ssl_, buffer, wanted, &count) == 1) {
      out.append(buffer, count);
      return Status::kOk;
    }
    const int error = SSL_get_error(ssl_, 0);
    return error == SSL_ERROR_WANT_READ || error == SSL_ERROR_WANT_WRITE ? Status::kNothingYet : Status::kEnd;
  }
  const ssize_t count = recv(fd_, buffer, wanted, 0);
  if (count > 0) {
    out.append(buffer, static_cast<size_t>(count));
    return Status::kOk;
  }
  return count < 0 && (errno == EAGAIN || errno == EINTR) ? Status::kNothingYet : Status::kEnd;
}

void ServerChannel::Close() {
  if (ssl_ && SSL_is_init_finished(ssl_)) {
    ERR_clear_error();
    SSL_shutdown(ssl_);
  }
  Cut();
}

void ServerChannel::Cut() {
  if (ssl_) SSL_free(ssl_);
  ssl_ = nullptr;
  if (fd_ != -1) close(fd_);
  fd_ = -1;
}

void ServerChannel::Reset() {
  const linger hard = {1, 0};
  if (fd_ != -1) setsockopt(fd_, SOL_SOCKET, SO_LINGER, &hard, sizeof hard);
  Cut();
}
