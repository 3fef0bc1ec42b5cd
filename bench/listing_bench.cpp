// Reads one long listing with the program's own engine from a server that does nothing else, and tells what it cost.
//
// Usage: listing_bench [LINES] [list|facts]   (default: 1000000 list; a line has 75 bytes)
// The server is a process of its own on 127.0.0.1. Printed are the seconds of wall and processor time and the peak of
// the memory, all of the reading process alone. Exit status: 0 when every line became an item.
#include <arpa/inet.h>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include "ftp/dir_iterator.h"
#include "ftp/logon.h"

namespace {

constexpr size_t kLineSize = 75;
constexpr size_t kChunk = 1u << 20;

int Listen(int& port) {
  const int fd = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t length = sizeof address;
  if (fd == -1 || bind(fd, reinterpret_cast<sockaddr*>(&address), length) != 0 || listen(fd, 4) != 0 ||
      getsockname(fd, reinterpret_cast<sockaddr*>(&address), &length) != 0) {
    perror("listing_bench");
    exit(1);
  }
  port = ntohs(address.sin_port);
  return fd;
}

void WriteAll(int fd, const std::string& bytes) {
  for (size_t done = 0; done < bytes.size();) {
    const ssize_t written = write(fd, bytes.data() + done, bytes.size() - done);
    if (written <= 0) _exit(1);
    done += static_cast<size_t>(written);
  }
}

std::string Line(size_t number, bool facts) {
  char text[200];
  const int length =
      snprintf(text, sizeof text,
               facts ? "type=file;size=%zu;modify=20200115103000;" : "-rw-r--r-- 1 u g %zu Jan 15 2020", number);
  std::string line = std::string(text, static_cast<size_t>(length)) + " f" + std::to_string(number);
  line.resize(kLineSize - 2, 'x');
  return line + "\r\n";
}

void SendLines(int fd, size_t lines, bool facts) {
  std::string chunk;
  for (size_t i = 0; i < lines; ++i) {
    chunk += Line(i, facts);
    if (chunk.size() < kChunk) continue;
    WriteAll(fd, chunk);
    chunk.clear();
  }
  WriteAll(fd, chunk);
}

/// One client, one command at a time; a command never comes in pieces from a client on the same machine.
[[noreturn]] void Serve(int listener, size_t lines, bool facts) {
  const int control = accept(listener, nullptr, nullptr);
  int passive = -1;
  WriteAll(control, "220 Ready\r\n");
  char command[1024];
  ssize_t size;
  while ((size = read(control, command, sizeof command - 1)) > 0) {
    command[size] = 0;
    if (strncmp(command, "USER", 4) == 0) {
      WriteAll(control, "230 In\r\n");
    } else if (strncmp(command, "FEAT", 4) == 0) {
      WriteAll(control, facts ? "211-Features\r\n MLSD\r\n211 End\r\n" : "211 None\r\n");
    } else if (strncmp(command, "PASV", 4) == 0) {
      int port = 0;
      passive = Listen(port);
      WriteAll(control, "227 (127,0,0,1," + std::to_string(port / 256) + "," + std::to_string(port % 256) + ")\r\n");
    } else if (strncmp(command, "LIST", 4) == 0 || strncmp(command, "MLSD", 4) == 0) {
      WriteAll(control, "150 Here\r\n");
      const int data = accept(passive, nullptr, nullptr);
      SendLines(data, lines, facts);
      close(data);
      WriteAll(control, "226 Done\r\n");
    } else {
      WriteAll(control, "200 Ok\r\n");
    }
  }
  _exit(0);
}

double Seconds(const timeval& time) {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

bool Measure(int port, size_t lines) {
  const std::string address = "127.0.0.1:" + std::to_string(port);
  LProcessInterfaceVoid process;
  LFileTransferProtocol session;
  if (ProcessFtpLogOnServer(process, session, address.c_str(), "u", "p", false, false) != LProcessResultOk)
    return false;
  LFileTransferProtocol::DirIterator iterator;
  const auto start = std::chrono::steady_clock::now();
  const LProcessResult result = iterator._LoadList(process, session, "*");
  const double wall = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  rusage usage = {};
  getrusage(RUSAGE_SELF, &usage);
  printf("%zu items of %zu lines: %.2f s, processor %.2f s + %.2f s, peak %ld MiB\n", iterator.Count(), lines, wall,
         Seconds(usage.ru_utime), Seconds(usage.ru_stime), usage.ru_maxrss / 1024);
  return result == LProcessResultOk && iterator.Count() == lines;
}

}  // namespace

int main(int count, char** arguments) {
  const size_t lines = count > 1 ? strtoul(arguments[1], nullptr, 10) : 1000000;
  const bool facts = count > 2 && strcmp(arguments[2], "facts") == 0;
  int port = 0;
  const int listener = Listen(port);
  const pid_t server = fork();
  if (server == 0) Serve(listener, lines, facts);
  const bool isWhole = Measure(port, lines);
  int status = 0;
  (void)waitpid(server, &status, 0);
  return isWhole ? 0 : 1;
}
