// What the engine costs by itself: one exchange, one listing line, one listing of a server.
//
// Usage: engine_bench exchange                     NOOP and reply beside a bare send and receive loop
//        engine_bench lines                        ordinary listing lines a second
//        engine_bench list HOST:PORT USER PASSWORD  the folder that the logon leads to, read into items
// Exit status: 0 measured, 1 failed, 2 wrong arguments. Each exchange stands in the history, as it does for a user.
#include <algorithm>
#include <arpa/inet.h>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <string>
#include <sys/resource.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "ftp/dir_iterator.h"
#include "ftp/list_parser.h"
#include "ftp/logon.h"

namespace {

constexpr char kNoop[] = "NOOP\r\n";
constexpr char kReply[] = "200 NOOP command successful\r\n";
constexpr int kExchanges = 10000;
constexpr int kRounds = 7;  ///< The two ways take turns; the median counts.
constexpr int kLines = 3000000;

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

template <typename Work>
double SecondsOf(Work work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

int Listen(uint16_t& port) {
  const int fd = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  if (bind(fd, reinterpret_cast<sockaddr*>(&address), size) != 0 || listen(fd, 4) != 0) return -1;
  getsockname(fd, reinterpret_cast<sockaddr*>(&address), &size);
  port = ntohs(address.sin_port);
  return fd;
}

/// Answers each command of two clients, one after the other.
void Answer(int listener) {
  for (int client = 0; client < 2; ++client) {
    const int fd = accept(listener, nullptr, nullptr);
    char command[64];
    while (recv(fd, command, sizeof command, 0) > 0) {
      if (send(fd, kReply, sizeof kReply - 1, MSG_NOSIGNAL) < 0) break;
    }
    close(fd);
  }
}

bool ExchangeBare(int fd) {
  for (int i = 0; i < kExchanges; ++i) {
    char reply[256];
    if (send(fd, kNoop, sizeof kNoop - 1, MSG_NOSIGNAL) < 0 || recv(fd, reply, sizeof reply, 0) <= 0) return false;
  }
  return true;
}

bool ExchangeWithEngine(LProcessInterface& process, LFileTransferProtocol& session) {
  for (int i = 0; i < kExchanges; ++i) {
    char text[kTextSize];
    if (ProcessFtpSendAndWaitForReply(process, session, kNoop, nullptr, &text) != LProcessResultOk) return false;
  }
  return true;
}

/// Each side has a thread of the server to itself.
bool MeasureExchange() {
  uint16_t ports[2] = {};
  const int listeners[2] = {Listen(ports[0]), Listen(ports[1])};
  if (listeners[0] < 0 || listeners[1] < 0) return false;
  std::thread servers[2] = {std::thread(Answer, listeners[0]), std::thread(Answer, listeners[1])};
  for (std::thread& server : servers) server.detach();

  const int bare = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_port = htons(ports[0]);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  LProcessInterfaceVoid process;
  LFileTransferProtocol session;
  const std::string server = "127.0.0.1:" + std::to_string(ports[1]);
  bool isGood = connect(bare, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0 &&
                ProcessConnect<char>(process, session, server.c_str(), ports[1], 5000, false) == LProcessResultOk;
  std::vector<double> bareSeconds;
  std::vector<double> engineSeconds;
  for (int round = 0; isGood && round < kRounds; ++round) {
    bareSeconds.push_back(SecondsOf([&] { isGood = ExchangeBare(bare) && isGood; }));
    engineSeconds.push_back(SecondsOf([&] { isGood = ExchangeWithEngine(process, session) && isGood; }));
  }
  close(bare);
  if (!isGood) return false;
  const double bareTime = Median(bareSeconds);
  const double engineTime = Median(engineSeconds);
  printf("%d exchanges: bare %.3f s, engine %.3f s, x%.2f\n", kExchanges, bareTime, engineTime, engineTime / bareTime);
  return true;
}

bool MeasureLines() {
  const char* const lines[] = {
      "-rw-r--r--    1 ftp      ftp          1234 Jan 02 12:34 file-name.txt",
      "drwxr-xr-x    2 1000     1000         4096 Nov 24  2020 folder with blanks",
      "-rwxr-x---    1 anna     staff   123456789 Dec 31 23:59 日本語のファイル.zip",
      "-rw-rw-r--    1 root     wheel           0 Feb 29  2020 empty",
  };
  LFTPListInfoParser::FTPNativeFileInfo info;
  int read = 0;
  // Of the processor: on a busy machine the clock on the wall measures the others.
  const clock_t start = clock();
  for (int i = 0; i < kLines; ++i) read += LFTPListInfoParser::GetFileInfo(lines[i % std::size(lines)], info);
  const double seconds = static_cast<double>(clock() - start) / CLOCKS_PER_SEC;
  printf("%d lines: %.3f s, %.0f lines a second\n", read, seconds, read / seconds);
  return read == kLines;
}

bool MeasureList(const char* server, const char* user, const char* password) {
  LProcessInterfaceVoid process;
  LFileTransferProtocol session;
  if (ProcessFtpLogOnServer(process, session, server, user, password, false, false) != LProcessResultOk) return false;
  size_t count = 0;
  const double seconds = SecondsOf([&] {
    const LFileTransferProtocol::DirIteratorAllFiles iterator(process, session);
    count = iterator.IsLoaded() ? iterator.Count() : 0;
  });
  rusage usage = {};
  getrusage(RUSAGE_SELF, &usage);
  printf("%zu entries: %.3f s, %ld MiB at most\n", count, seconds, usage.ru_maxrss / 1024);
  return count != 0;
}

}  // namespace

int main(int count, char** arguments) {
  const std::string what = count > 1 ? arguments[1] : "";
  if (what == "exchange" && count == 2) return MeasureExchange() ? 0 : 1;
  if (what == "lines" && count == 2) return MeasureLines() ? 0 : 1;
  if (what == "list" && count == 5) return MeasureList(arguments[2], arguments[3], arguments[4]) ? 0 : 1;
  fprintf(stderr, "usage: engine_bench exchange|lines|list HOST:PORT USER PASSWORD\n");
  return 2;
}
