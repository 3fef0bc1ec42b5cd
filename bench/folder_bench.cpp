// A folder of small files down and up through the buttons of the real window, beside a bare loop of send and receive
// that says the very same commands to the same server.
//
// Usage: folder_bench HOST:PORT USER PASSWORD TOP SERVED FOLDER ROUNDS
// TOP is a directory as the server names it, SERVED the same one on this machine, FOLDER a folder in it, without
// folders of its own. The two ways take turns; printed are the medians, the number of exchanges, and ours over the bare
// loop's. Exit status 0 only if every file arrived each time. Folders of its own, and a window that no screen shows.
//
// The bare loop opens and closes the same data connections and reads and writes the same files, and does nothing else:
// no window, no history, no time-outs. The waits that a run makes on purpose are left out: the time for a late cancel
// by its setting, and the moment behind a download's dialog by subtraction.
#include <QElapsedTimer>
#include <algorithm>
#include <arpa/inet.h>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <netinet/in.h>
#include <string>
#include <sys/socket.h>
#include <unistd.h>
#include <vector>

#include "app/command_ids.h"
#include "client/transfer_lists.h"
#include "in_program.h"
#include "platform/event_loop.h"
#include "sites/store/accounts.h"
#include "sites/store/settings.h"
#include "support/history_file.h"
#include "ui_driver.h"

namespace {

namespace fs = std::filesystem;

constexpr double kSettleSeconds = 0.1;  ///< Behind a download's dialog, for what events are still under way.
constexpr int kNoops = 5000;

using Lines = std::vector<std::string>;

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

int ConnectTo(const std::string& host, int port) {
  const int fd = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<uint16_t>(port));
  inet_pton(AF_INET, host.c_str(), &address.sin_addr);
  if (connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0) return fd;
  close(fd);
  return -1;
}

/// Until there is no more.
void Pump(int from, int to) {
  char bytes[65536];
  ssize_t got;
  while ((got = read(from, bytes, sizeof bytes)) > 0) {
    if (to != -1 && write(to, bytes, static_cast<size_t>(got)) != got) return;
  }
}

/// Says what it is told to and reads the replies.
class BareClient {
 public:
  BareClient(const std::string& host, int port) : control(ConnectTo(host, port)) { ReadReply(); }
  BareClient(const BareClient&) = delete;
  BareClient& operator=(const BareClient&) = delete;
  ~BareClient() { close(control); }

  /// The reply's code, of the last one behind a transfer; 0 when the session is lost. `local` is what a transfer reads
  /// or writes.
  int Exchange(const std::string& command, const std::string& local = {}) {
    const std::string line = command + "\r\n";
    if (send(control, line.data(), line.size(), MSG_NOSIGNAL) < 0) return 0;
    const int code = ReadReply();
    if (command == "PASV") OpenData();
    if (code / 100 != 1) return code;
    const bool isUp = command.rfind("STOR ", 0) == 0;
    const int file = local.empty() ? -1
                     : isUp        ? open(local.c_str(), O_RDONLY | O_CLOEXEC)
                                   : open(local.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    isUp ? Pump(file, data) : Pump(data, file);
    if (file != -1) close(file);
    close(data);
    return ReadReply();
  }

 private:
  /// A reply of several lines ends with its code and a blank.
  int ReadReply() {
    for (;;) {
      for (size_t end; (end = text.find("\r\n")) != std::string::npos;) {
        last = text.substr(0, end);
        text.erase(0, end + 2);
        if (last.size() >= 4 && isdigit(last[0]) && isdigit(last[2]) && last[3] == ' ') return atoi(last.c_str());
      }
      char bytes[4096];
      const ssize_t got = recv(control, bytes, sizeof bytes, 0);
      if (got <= 0) return 0;
      text.append(bytes, static_cast<size_t>(got));
    }
  }
  void OpenData() {
    int p[6] = {};
    const char* numbers = strchr(last.c_str(), '(');
    for (int i = 0; numbers && i < 6; ++i)
      p[i] = static_cast<int>(strtol(numbers + 1, const_cast<char**>(&numbers), 10));
    data = ConnectTo("127.0.0.1", p[4] * 256 + p[5]);
  }

  int control;
  int data = -1;
  std::string text;
  std::string last;
};

/// What one move took: the wall's clock, and this process's own time of the processor, which other work on the machine
/// changes less.
struct Cost {
  double seconds;
  double processor;
};

template <typename Work>
Cost CostOf(Work work) {
  QElapsedTimer clock;
  clock.start();
  const clock_t before = std::clock();
  work();
  const double processor = static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC;
  return {static_cast<double>(clock.nsecsElapsed()) / 1e9, processor};
}

Cost Median(const std::vector<Cost>& costs) {
  std::vector<double> seconds, processor;
  for (const Cost& cost : costs) {
    seconds.push_back(cost.seconds);
    processor.push_back(cost.processor);
  }
  return {Median(seconds), Median(processor)};
}

struct Way {
  bool isDown;
  std::vector<Cost> ours;
  std::vector<Cost> bare;
  Lines commands;
};

class FolderBench {
 public:
  explicit FolderBench(char** arguments)
      : server(arguments[1]),
        user(arguments[2]),
        password(arguments[3]),
        top(arguments[4]),
        served(std::string(arguments[5]) + "/"),
        folder(arguments[6]),
        rounds(atoi(arguments[7])) {
    fs::create_directory(local);
  }

  void KeepSite() const {
    LFTPAccountSettings site("bench", user.c_str());
    TextCopy(site.szLabel, site.szKey);
    TextCopy(site.szServer, server.c_str());
    TextCopy(site.szPassword, password.c_str());
    TextCopy(site.szDirectory, top.c_str());
    TextCopy(site.szLocalDirectory, local.c_str());
    site.bRemember = true;
    site.Save();
    LUserSettingSetString("Settings", "MigratedAccounts3", "1");
    LUserSettingSetString("Settings", "Current", site.szLabel);
    LUserSettingSetString("Settings", "CurrentServer", site.szServer);
    LUserSettingSetString("Settings", "CurrentUser", site.szUserName);
  }

  bool Run(MainDialog& dialog) {
    gTransferWaits.lateCancelSliceMs = 0;
    ui::WaitUntil([&] { return dialog.remotePane.bConnected; });
    ui::Pump(500);
    fs::copy(served + folder, root + "/original");
    Way ways[] = {{true, {}, {}, {}}, {false, {}, {}, {}}};
    for (int round = 0; round < rounds; ++round) {
      for (Way& way : ways) {
        if (!MoveThroughWindow(dialog, way) || !MoveBare(way)) return false;
      }
    }
    printf("  medians of %d rounds; a bare NOOP takes %.0f us\n", rounds, SecondsOfNoop() * 1e6);
    for (const Way& way : ways) Report(way);
    return true;
  }

 private:
  static std::string NameIn(const std::string& command) {
    return command.substr(std::max<size_t>(command.rfind('/') + 1, strlen("RETR ")));
  }
  std::string From(const Way& way) const { return (way.isDown ? served : local + "/") + folder; }
  std::string To(const Way& way) const { return (way.isDown ? local + "/" : served) + folder; }
  void Prepare(const Way& way) const {
    fs::remove_all(To(way));
    if (!fs::exists(From(way))) fs::copy(root + "/original", From(way));
  }
  bool HasArrived(const Way& way, const char* who) const {
    const std::string compare = "diff -rq '" + root + "/original' '" + To(way) + "' >/dev/null";
    if (system(compare.c_str()) == 0) return true;
    fprintf(stderr, "folder_bench: %s has not moved all files %s\n", who, way.isDown ? "down" : "up");
    return false;
  }

  bool MoveThroughWindow(MainDialog& dialog, Way& way) {
    Prepare(way);
    ui::PressTool(dialog.Native(), kRemoteTools, kCommandRemoteRefresh);
    ui::PressTool(dialog.Native(), kLocalTools, kCommandLocalRefresh);
    ui::SelectRows(dialog.Native(), way.isDown ? kRemoteList : kLocalList, {folder.c_str()});
    dialog.TimerReset(MainDialog::kTimerWatch);
    const auto seen = static_cast<std::ptrdiff_t>(history.Commands().size());
    Cost cost = CostOf([&] { ui::Press(dialog.Native(), way.isDown ? kDownloadButton : kUploadButton); });
    if (way.isDown) cost.seconds -= kSettleSeconds;
    way.ours.push_back(cost);
    way.commands = history.Commands();
    way.commands.erase(way.commands.begin(), way.commands.begin() + seen);
    return HasArrived(way, "the window");
  }

  bool MoveBare(Way& way) {
    Prepare(way);
    BareClient client(server.substr(0, server.find(':')), atoi(server.c_str() + server.find(':') + 1));
    client.Exchange("USER " + user);
    if (client.Exchange("PASS " + password) != 230) {
      fprintf(stderr, "folder_bench: the bare loop is not let in\n");
      return false;
    }
    if (way.isDown) fs::create_directory(To(way));
    bool isGood = true;
    way.bare.push_back(CostOf([&] {
      for (const std::string& command : way.commands) {
        const bool isFile = command.rfind("RETR ", 0) == 0 || command.rfind("STOR ", 0) == 0;
        const std::string file = isFile ? (way.isDown ? To(way) : From(way)) + "/" + NameIn(command) : std::string();
        isGood = isGood && client.Exchange(command, file) != 0;
      }
    }));
    if (!isGood) fprintf(stderr, "folder_bench: the bare loop has lost its session\n");
    return HasArrived(way, "the bare loop");
  }

  double SecondsOfNoop() const {
    BareClient client(server.substr(0, server.find(':')), atoi(server.c_str() + server.find(':') + 1));
    client.Exchange("USER " + user);
    client.Exchange("PASS " + password);
    return CostOf([&] {
             for (int i = 0; i < kNoops; ++i) client.Exchange("NOOP");
           }).seconds /
           kNoops;
  }

  static void Report(const Way& way) {
    const auto count = static_cast<double>(way.commands.size());
    const auto passive = std::count(way.commands.begin(), way.commands.end(), "PASV");
    const Cost ours = Median(way.ours);
    const Cost bare = Median(way.bare);
    printf(
        "  %-4s %.0f exchanges, %ld data connections: ours %.2f s, bare %.2f s, x%.2f; for each exchange %.0f us and "
        "%.0f us, of which the processor %.0f us and %.0f us\n",
        way.isDown ? "down" : "up", count, passive, ours.seconds, bare.seconds, ours.seconds / bare.seconds,
        ours.seconds / count * 1e6, bare.seconds / count * 1e6, ours.processor / count * 1e6,
        bare.processor / count * 1e6);
  }

  const std::string server, user, password;
  const std::string top;
  const std::string served;
  const std::string folder;
  const int rounds;
  const std::string root = getenv("HOME");
  const std::string local = served + "../local";  ///< In memory, where the served one is.
  HistoryFile history;
};

}  // namespace

int main(int argc, char** argv) {
  if (argc != 8) {
    fprintf(stderr, "usage: folder_bench HOST:PORT USER PASSWORD TOP SERVED FOLDER ROUNDS\n");
    return 2;
  }
  FolderBench bench(argv);
  bench.KeepSite();
  bool isGood = false;
  const int status = RunInProgram(argc, argv, [&](MainDialog& dialog) { isGood = bench.Run(dialog); });
  return status == 0 && isGood ? 0 : 1;
}
