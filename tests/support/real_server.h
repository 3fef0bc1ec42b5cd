// FTP servers of other makers, each started for one test: on loopback, on a port of its own, with its own
// configuration, folder of files and user, and ended with the test. Main thread.
//
// The programs lie where tools/fetch-test-servers unpacks and builds them; pyftpdlib is Debian's.
#pragma once

#include <functional>
#include <string>
#include <sys/types.h>
#include <vector>

#include "support/scratch_folder.h"

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

/// A program with a port of its own and a folder for its configuration and logs.
class ServerProcess {
 public:
  ServerProcess(const ServerProcess&) = delete;
  ServerProcess& operator=(const ServerProcess&) = delete;

  bool IsRunning() const { return pid_ > 0; }
  std::string Address() const { return "127.0.0.1:" + std::to_string(port_); }
  /// What it has written, for the message of a failed test.
  std::string Log() const;

 protected:
  struct Launch {
    std::vector<std::string> arguments;    ///< The program first.
    std::vector<std::string> environment;  ///< "name=value", added to the process's own.
  };

  ServerProcess() = default;
  ~ServerProcess();
  /// Starts what `configure` says for the port and waits until it accepts, at most ten seconds; ask IsRunning.
  void Start(const std::function<Launch()>& configure);
  std::string Work(const char* name) const { return work_.Path(name); }

  const ScratchFolder work_;
  uint16_t port_ = 0;

 private:
  pid_t pid_ = 0;  ///< The leader of a process group of its own; 0 when it does not run.
};

/// A proxy that takes `USER user@host:port` from whoever connects, without a logon of its own.
class RealProxy : public ServerProcess {
 public:
  RealProxy();
};

/// A running server. What is forced by `security` is all that it takes: with TLS no plain logon and no plain
/// data.
class RealServer : public ServerProcess {
 public:
  explicit RealServer(const ServerSetup& setup);

  /// Pure-FTPd has no implicit TLS, the BSD server and busybox have none at all; and the three serve other users
  /// under root alone.
  static bool IsOffered(const ServerSetup& setup);

  /// The folder on disk that the server serves, as the user's home.
  const std::string& Folder() const { return folder_; }
  const char* User() const;
  static const char* Password() { return "secret"; }

 private:
  Launch Configure() const;
  Launch ConfigureVsftpd() const;
  Launch ConfigureProftpd() const;
  Launch ConfigurePureFtpd() const;
  Launch ConfigurePyftpdlib() const;
  Launch ConfigureInetutils() const;
  Launch ConfigureBusybox() const;
  Launch ServeEachConnection(const std::vector<std::string>& program) const;
  bool HasTls() const { return setup_.security != ServerSecurity::kPlain; }

  const ServerSetup setup_;
  const std::string folder_;
};
