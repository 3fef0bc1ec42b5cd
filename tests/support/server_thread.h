// What the FTP servers of the tests are made of: a thread with a listening socket of 127.0.0.1, one control connection
// and one data connection.
#pragma once

#include <functional>
#include <mutex>
#include <string>
#include <sys/eventfd.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "support/loopback.h"
#include "support/server_channel.h"

class ServerThread {
 public:
  ServerThread(const ServerThread&) = delete;
  ServerThread& operator=(const ServerThread&) = delete;
  uint16_t Port() const { return port_; }
  std::string Address() const { return "127.0.0.1:" + std::to_string(port_); }

  mutable std::mutex mutex_;  ///< Guards what a server shares with the test.

 protected:
  ServerThread() = default;
  ~ServerThread() {
    ClosePassive();
    close(listener_);
    close(stop_fd_);
  }
  /// A server calls these as the last thing of its constructor and the first of its destructor: its members are what
  /// the thread works with. What waits for the stop descriptor ends at once.
  void Start(std::function<void()> run) { thread_ = std::thread(std::move(run)); }
  void End() {
    (void)eventfd_write(stop_fd_, 1);
    thread_.join();
  }

  // On the thread.
  void ClosePassive() {
    if (passive_ != -1) close(passive_);
    passive_ = -1;
  }
  /// Closes what there was for data and opens a new socket, which refuses connections if it is not to listen. The six
  /// numbers of the reply.
  std::string NewPassive(bool listening) {
    data_.Close();
    ClosePassive();
    uint16_t port = 0;
    passive_ = OpenLoopbackSocket(port, listening ? 8 : kNotListening);
    return "(127,0,0,1," + std::to_string(port / 256) + "," + std::to_string(port % 256) + ")";
  }
  void Pause(int ms) const { (void)WaitForDescriptor(-1, 0, stop_fd_, ms); }

 private:
  uint16_t port_ = 0;  // Stands before the listener, which sets it.

 protected:
  const int stop_fd_ = eventfd(0, EFD_CLOEXEC);
  const int listener_ = OpenLoopbackSocket(port_);
  ServerChannel control_{stop_fd_};
  ServerChannel data_{stop_fd_};
  int passive_ = -1;  ///< The socket of the last 227.

 private:
  std::thread thread_;
};
