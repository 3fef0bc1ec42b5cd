// The FTP server of the tests of the windows: a process of its own, for as long as the object lives.
#pragma once

#include <string>
#include <sys/types.h>

class PaneServer {
 public:
  /// Starts it on `folder` and waits until it accepts. With a certificate the logon must be under TLS.
  explicit PaneServer(const std::string& folder, const std::string& certificate = {});
  PaneServer(const PaneServer&) = delete;
  PaneServer& operator=(const PaneServer&) = delete;
  ~PaneServer() { Stop(); }

  bool IsRunning() const { return pid_ > 0; }
  std::string Address() const { return "127.0.0.1:" + std::to_string(port_); }
  static const char* User() { return "anna"; }
  static const char* Password() { return "secret"; }
  /// Every connection to it is cut.
  void Stop();
  /// Every connection to it stays and says nothing more.
  void FallSilent();

 private:
  pid_t pid_ = 0;
  int port_ = 0;
};
