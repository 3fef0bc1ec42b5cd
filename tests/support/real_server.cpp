// Starting, waiting for and ending a server.
#include "support/real_server.h"

#include <csignal>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "support/loopback.h"

namespace {

constexpr int kStartTries = 3;
constexpr int kWaitStepMs = 20;
constexpr int kAcceptSteps = 10000 / kWaitStepMs;
constexpr int kEndSteps = 5000 / kWaitStepMs;

bool Accepts(unsigned short port) {
  const int client = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  const bool accepted = connect(client, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
  close(client);
  return accepted;
}

void SleepStep() { usleep(kWaitStepMs * 1000); }

std::vector<char*> Pointers(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

/// Starts a program as the leader of its own group, with its output in a file.
pid_t Spawn(std::vector<std::string> arguments, std::vector<std::string> environment, const std::string& output) {
  for (char** variable = environ; *variable; ++variable) environment.emplace_back(*variable);
  const std::vector<char*> argv = Pointers(arguments);
  const std::vector<char*> envp = Pointers(environment);
  const pid_t parent = getpid();
  const pid_t child = fork();
  if (child != 0) return child;

  setpgid(0, 0);
  // A test that crashes must not leave its server behind.
  prctl(PR_SET_PDEATHSIG, SIGTERM);
  if (getppid() != parent) _exit(127);
  const int nothing = open("/dev/null", O_RDONLY);
  const int log = open(output.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
  dup2(nothing, STDIN_FILENO);
  dup2(log, STDOUT_FILENO);
  dup2(log, STDERR_FILENO);
  execve(argv[0], argv.data(), envp.data());
  _exit(127);
}

/// `pid` becomes 0 if the program has ended meanwhile.
bool WaitUntilAccepted(unsigned short port, pid_t& pid) {
  for (int step = 0; step < kAcceptSteps; ++step) {
    if (Accepts(port)) return true;
    if (waitpid(pid, nullptr, WNOHANG) == pid) {
      pid = 0;
      return false;
    }
    SleepStep();
  }
  return false;
}

/// Ends a program and all that it has started; `pid` becomes 0.
void EndGroup(pid_t& pid) {
  if (pid <= 0) return;
  kill(-pid, SIGTERM);
  bool ended = false;
  for (int step = 0; step < kEndSteps && !ended; ++step) {
    ended = waitpid(pid, nullptr, WNOHANG) == pid;
    if (!ended) SleepStep();
  }
  kill(-pid, SIGKILL);  // Also what is left of its sessions.
  if (!ended) waitpid(pid, nullptr, 0);
  pid = 0;
}

}  // namespace

ServerProcess::~ServerProcess() { EndGroup(pid_); }

std::string ServerProcess::Log() const { return work_.Read("output") + work_.Read("log"); }

void ServerProcess::Start(const std::function<Launch()>& configure) {
  for (int tries = 0; tries < kStartTries; ++tries) {
    port_ = FreeLoopbackPort();
    const Launch launch = configure();
    if (launch.arguments.empty()) continue;
    pid_ = Spawn(launch.arguments, launch.environment, Work("output"));
    if (WaitUntilAccepted(port_, pid_)) return;
    EndGroup(pid_);
  }
}

RealServer::RealServer(const ServerSetup& setup) : setup_(setup), folder_(work_.MakeFolder("files")) {
  // The servers that give up root for another user must still reach their files.
  if (chmod(work_.Path().c_str(), 0755) != 0 || chmod(folder_.c_str(), 0777) != 0) return;
  Start([this] { return Configure(); });
}

bool RealServer::IsOffered(const ServerSetup& setup) {
  switch (setup.kind) {
    case ServerKind::kPureFtpd: return setup.security != ServerSecurity::kImplicitTls && geteuid() == 0;
    case ServerKind::kInetutils:
    case ServerKind::kBusybox: return setup.security == ServerSecurity::kPlain && geteuid() == 0;
    default: return true;
  }
}

const char* RealServer::User() const {
  // vsftpd would ask the system for any other user's password.
  return setup_.kind == ServerKind::kVsftpd ? "anonymous" : "tester";
}

RealProxy::RealProxy() {
  Start([this]() -> Launch {
    // The destination is never used, but has to be there.
    work_.Write("ftp-proxy.conf",
                "ServerType standalone\nListen 127.0.0.1\nPort " + std::to_string(port_) +
                    "\nAllowMagicUser yes\nForceMagicUser yes\nDestinationAddress 127.0.0.1\nPidFile " + Work("pid") +
                    "\nLogDestination " + Work("log") + "\n");
    return {{FetchedPath("/usr/sbin/ftp-proxy"), "-n", "-d", "-f", Work("ftp-proxy.conf")},
            {"LD_LIBRARY_PATH=" + FetchedPath("/usr/lib/x86_64-linux-gnu")}};
  });
}
