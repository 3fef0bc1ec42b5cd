// Starting, waiting for and ending a server.
#include "support/real_server.h"

#include <arpa/inet.h>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <netinet/in.h>
#include <stdlib.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

constexpr int kStartTries = 3;
constexpr int kWaitStepMs = 20;
constexpr int kAcceptSteps = 10000 / kWaitStepMs;
constexpr int kEndSteps = 5000 / kWaitStepMs;

sockaddr_in Loopback(unsigned short port) {
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return address;
}

/// A port that nobody listens on. Another program may take it before the server does; Start tries again then.
unsigned short FreePort() {
  const int listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address = Loopback(0);
  socklen_t size = sizeof address;
  const bool bound = bind(listener, reinterpret_cast<sockaddr*>(&address), size) == 0 &&
                     getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size) == 0;
  close(listener);
  return bound ? ntohs(address.sin_port) : 0;
}

bool Accepts(unsigned short port) {
  const int client = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  const sockaddr_in address = Loopback(port);
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

std::string ReadFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace

RealServer::RealServer(const ServerSetup& setup) : setup_(setup) {
  char folder[] = "/tmp/orvane-server-XXXXXX";
  if (!mkdtemp(folder)) return;
  work_ = folder;
  folder_ = work_ + "/files";
  // The servers that give up root for another user must still reach their files.
  if (chmod(folder, 0755) != 0 || mkdir(folder_.c_str(), 0777) != 0 || chmod(folder_.c_str(), 0777) != 0) return;
  for (int tries = 0; tries < kStartTries && !Start(); ++tries) {
  }
}

RealServer::~RealServer() {
  End();
  if (work_.empty()) return;
  std::error_code ignored;
  fs::remove_all(work_, ignored);
}

bool RealServer::IsOffered(const ServerSetup& setup) {
  if (setup.kind != ServerKind::kPureFtpd) return true;
  return setup.security != ServerSecurity::kImplicitTls && geteuid() == 0;
}

const char* RealServer::User() const {
  // vsftpd would ask the system for any other user's password.
  return setup_.kind == ServerKind::kVsftpd ? "anonymous" : "tester";
}

std::string RealServer::Log() const { return ReadFile(Work("output")) + ReadFile(Work("log")); }

bool RealServer::Start() {
  port_ = FreePort();
  const Launch launch = Configure();
  if (launch.arguments.empty()) return false;
  pid_ = Spawn(launch.arguments, launch.environment, Work("output"));
  if (WaitUntilItAccepts()) return true;
  End();
  return false;
}

bool RealServer::WaitUntilItAccepts() {
  for (int step = 0; step < kAcceptSteps; ++step) {
    if (Accepts(port_)) return true;
    if (waitpid(pid_, nullptr, WNOHANG) == pid_) {
      pid_ = 0;
      return false;
    }
    SleepStep();
  }
  return false;
}

void RealServer::End() {
  if (pid_ <= 0) return;
  kill(-pid_, SIGTERM);
  bool ended = false;
  for (int step = 0; step < kEndSteps && !ended; ++step) {
    ended = waitpid(pid_, nullptr, WNOHANG) == pid_;
    if (!ended) SleepStep();
  }
  kill(-pid_, SIGKILL);  // Also what is left of its sessions.
  if (!ended) waitpid(pid_, nullptr, 0);
  pid_ = 0;
}
