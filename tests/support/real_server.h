// FTP servers of other makers, each started for one test: on loopback, on a port of its own, with its own
// configuration, folder of files and user, and ended with the test. Main thread.
//
// The programs lie where tools/fetch-test-servers unpacks and builds them; pyftpdlib is Debian's.
#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

enum class ServerKind { kVsftpd, kProftpd, kPureFtpd, kPyftpdlib, kInetutils, kBusybox };
enum class ServerSecurity { kPlain, kExplicitTls, kImplicitTls };
enum class ServerCertificate {
  kTrusted,           ///< Signed by the authority that this process trusts.
  kUnknownAuthority,  ///< Good but for that.
};

struct ServerSetup {
  ServerKind kind;
  ServerSecurity security;
  ServerCertificate certificate = ServerCertificate::kTrusted;
};

/// Where tools/fetch-test-servers has put a file that its package has at `path`.
std::string FetchedPath(const std::string& path);

/// A proxy that takes `USER user@host:port` from whoever connects, without a logon of its own.
class RealProxy {
 public:
  /// As RealServer.
  RealProxy();
  ~RealProxy();
  RealProxy(const RealProxy&) = delete;
  RealProxy& operator=(const RealProxy&) = delete;

  bool IsRunning() const { return pid_ > 0; }
  std::string Address() const { return "127.0.0.1:" + std::to_string(port_); }
  std::string Log() const;

 private:
  bool Start();

  std::string work_;
  unsigned short port_ = 0;
  pid_t pid_ = 0;
};

/// A running server. What is forced by `security` is all that it takes: with TLS no plain logon and no plain
/// data.
class RealServer {
 public:
  /// Starts it and waits until it accepts, at most ten seconds; ask IsRunning.
  explicit RealServer(const ServerSetup& setup);
  ~RealServer();
  RealServer(const RealServer&) = delete;
  RealServer& operator=(const RealServer&) = delete;

  /// Pure-FTPd has no implicit TLS, the BSD server and busybox have none at all; and the three serve other users
  /// under root alone.
  static bool IsOffered(const ServerSetup& setup);

  bool IsRunning() const { return pid_ > 0; }
  std::string Address() const { return "127.0.0.1:" + std::to_string(port_); }
  /// The folder on disk that the server serves, as the user's home.
  const std::string& Folder() const { return folder_; }
  const char* User() const;
  static const char* Password() { return "secret"; }
  /// What the server has written, for the message of a failed test.
  std::string Log() const;

 private:
  struct Launch {
    std::vector<std::string> arguments;    ///< The program first.
    std::vector<std::string> environment;  ///< "name=value", added to the process's own.
  };

  bool Start();
  bool WaitUntilItAccepts();
  Launch Configure() const;
  Launch ConfigureVsftpd() const;
  Launch ConfigureProftpd() const;
  Launch ConfigurePureFtpd() const;
  Launch ConfigurePyftpdlib() const;
  Launch ConfigureInetutils() const;
  Launch ConfigureBusybox() const;
  Launch ServeEachConnection(const std::vector<std::string>& program) const;
  bool HasTls() const { return setup_.security != ServerSecurity::kPlain; }
  std::string Work(const char* name) const { return work_ + "/" + name; }
  void End();

  ServerSetup setup_;
  std::string work_;    ///< Configuration and logs.
  std::string folder_;  ///< Below work_.
  unsigned short port_ = 0;
  pid_t pid_ = 0;  ///< The leader of a process group of its own; 0 when it does not run.
};
