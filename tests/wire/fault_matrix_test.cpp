// Every command of every conversation, met by every fault that fits it. The cells are generated: a clean run of a
// conversation tells its commands, and each command is run into each fault.
//
// Most cells wait for what does not come, so many processes share them. A cell that crashes or hangs is named by
// the process that dies in it. ORVANE_FAULT_CELL=text runs, in this process, only the cells with that text in
// their names.
#include "wire/fault_matrix.h"

#include <array>
#include <bit>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include "ftp/proxy_settings.h"
#include "platform/preferences.h"
#include "support/history_file.h"
#include "support/scratch_folder.h"
#include "support/test_certificates.h"
#include "support/test_files.h"

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ORVANE_FINDS_LEAKS 1
#endif
#elif defined(__SANITIZE_ADDRESS__)
#define ORVANE_FINDS_LEAKS 1
#endif
#ifdef ORVANE_FINDS_LEAKS
#include <sanitizer/lsan_interface.h>
#endif

namespace {

constexpr unsigned kAmpleMs = 4000;  ///< For a server that answers everything, sooner or later.
constexpr unsigned kShortMs = 200;   ///< For one that falls silent: one slice of the sockets.
/// A ladder may climb many rungs on a silent server, each with its time-outs.
constexpr long kLongestSilentMs = 8000;
constexpr long kLongestMs = 3000;  ///< Less than one ample time-out: nothing is awaited in vain.
constexpr size_t kProcesses = 24;
constexpr std::chrono::seconds kLimit(230);  ///< On a machine with much else to do.
constexpr size_t kFewestCells = 500;
constexpr unsigned kSlowNoopMs = 100;

struct FaultKind {
  ServerFault fault;
  const char* name;
  const char* verbs;  ///< Only at these commands; null for all.
  bool silent;        ///< The client has to wait in vain.
  bool tlsOnly = false;
};

constexpr char kPassive[] = "PASV";
constexpr char kTransfers[] = "LIST MLSD RETR STOR APPE";

constexpr FaultKind kFaults[] = {
    {ServerFault::kClose, "closes", nullptr, false},
    {ServerFault::kReset, "resets", nullptr, false},
    {ServerFault::kStall, "stalls", nullptr, true},
    {ServerFault::kGarbage, "garbage", nullptr, true},
    {ServerFault::kHalfLine, "half a line", nullptr, true},
    {ServerFault::kHalfLineAndClose, "half a line and the end", nullptr, true},
    {ServerFault::kLongLine, "10000 bytes", nullptr, true},
    {ServerFault::kLongLineAndClose, "10000 bytes and the end", nullptr, true},
    {ServerFault::kLateReply, "late reply", nullptr, true},
    {ServerFault::kWrongRefusal, "refuses", nullptr, false},
    {ServerFault::kWrongSuccess, "wrong success", nullptr, true},
    {ServerFault::kWrongPreliminary, "wrong preliminary", nullptr, true},
    {ServerFault::kNotAvailable, "not available", nullptr, false},
    {ServerFault::kExtraReply, "extra reply", nullptr, true},
    {ServerFault::kReplyAndClose, "closes behind the reply", nullptr, false},
    {ServerFault::kPassiveRefused, "refuses the data connection", kPassive, false},
    {ServerFault::kPassiveDeaf, "deaf data connection", kPassive, true},
    {ServerFault::kPassiveNonsense, "no address", kPassive, true},
    {ServerFault::kDataCutAtOnce, "cuts the data at once", kTransfers, false},
    {ServerFault::kDataCutBehindBytes, "cuts the data", kTransfers, false},
    {ServerFault::kDataReset, "resets the data", kTransfers, false},
    {ServerFault::kDataStall, "stalls in the data", kTransfers, true},
    {ServerFault::kDataTlsGarbage, "garbage for a handshake", kTransfers, false, true},
    {ServerFault::kDataClosedWithControl, "closes with the data", kTransfers, false},
    {ServerFault::kNoClosingReply, "no closing reply", kTransfers, true},
    {ServerFault::kClosingFailed, "broken off", kTransfers, false},
    {ServerFault::kClosingDiskFull, "disk full", kTransfers, false},
    {ServerFault::kClosingTwice, "closes twice", kTransfers, false},
};

struct Cell {
  const FaultScenario* scenario;
  size_t command;  ///< Its number in the conversation.
  std::string command_text;
  const FaultKind* kind;

  std::string Name() const {
    return scenario->name + ": " + command_text + " #" + std::to_string(command) + ": " + kind->name;
  }
};

const FaultKind kNoFault = {ServerFault::kNone, "no fault", nullptr, false};

void SetEveryTimeout(unsigned ms) {
  std::array<unsigned, sizeof(FtpTimeouts) / sizeof(unsigned)> values;
  values.fill(ms);
  gFtpTimeouts = std::bit_cast<FtpTimeouts>(values);
  gFtpTimeouts.noopPeriodMs = 60000;
}

void SetTimeouts(const FaultScenario& scenario, const FaultKind& kind) {
  SetEveryTimeout(kind.silent ? kShortMs : kAmpleMs);
  // A second reply to a 500, or to an ABOR, is awaited where none need come.
  gFtpTimeouts.extraReplyMs = gFtpTimeouts.aborReplyMs = gFtpTimeouts.aborExtraReplyMs = kShortMs;
  gFtpTimeouts.lateReplyDownloadMs = gFtpTimeouts.lateReplyUploadMs = kShortMs;
  if (scenario.manner.pace == ServerManner::Pace::kSlow) gFtpTimeouts.noopPeriodMs = kSlowNoopMs;
}

std::string VerbOf(const std::string& command) { return command.substr(0, command.find(' ')); }

/// A transfer that takes its time begins like any other: only from its own command on it is another conversation.
size_t FirstOfInterest(const FaultScenario& scenario, const std::vector<std::string>& commands) {
  if (scenario.manner.pace == ServerManner::Pace::kFast) return 0;
  size_t first = 0;
  while (first < commands.size() && !strstr(kTransfers, VerbOf(commands[first]).c_str())) ++first;
  return first;
}

/// Runs one cell after another.
class CellRunner {
 public:
  CellRunner() { SetEveryTimeout(kAmpleMs); }

  /// The commands of a conversation, from a run without a fault. Its logon does not count, unless it is the
  /// conversation.
  std::vector<std::string> CommandsOf(const FaultScenario& scenario) {
    problems_.clear();
    const Cell cell = {&scenario, 0, "", &kNoFault};
    std::vector<std::string> commands;
    Converse(cell, &commands);
    return commands;
  }

  /// Every cell of the matrix's plain or secure half.
  std::vector<Cell> AllCells(bool secure) {
    std::vector<Cell> cells;
    for (const FaultScenario& scenario : FaultScenarios()) {
      if (scenario.IsSecure() != secure) continue;
      const std::vector<std::string> commands = CommandsOf(scenario);
      for (const std::string& problem : problems_) ADD_FAILURE() << scenario.name << ", no fault: " << problem;
      for (size_t i = FirstOfInterest(scenario, commands); i < commands.size(); ++i) {
        const std::string verb = VerbOf(commands[i]);
        const bool isInTheMiddle =
            i > 0 && i + 1 < commands.size() && VerbOf(commands[i - 1]) == verb && VerbOf(commands[i + 1]) == verb;
        if (isInTheMiddle) continue;
        for (const FaultKind& kind : kFaults) {
          if (kind.tlsOnly && !scenario.IsSecure()) continue;
          if (!kind.verbs || strstr(kind.verbs, verb.c_str())) cells.push_back({&scenario, i, commands[i], &kind});
        }
      }
    }
    return cells;
  }

  const std::vector<std::string>& Run(const Cell& cell) {
    problems_.clear();
    const long descriptors = OpenDescriptors();
    Converse(cell, nullptr);
    const long left = OpenDescriptors();
    if (left != descriptors) problems_.push_back("descriptors left open: " + std::to_string(left - descriptors));
    return problems_;
  }

 private:
  void Converse(const Cell& cell, std::vector<std::string>* commands) {
    const HistoryFile history;
    LFileTransferProtocol session;
    Meet(cell, session, commands);
    UseHealthyServer(cell, session);
    for (const std::string& line : history.Lines()) {
      if (line.find("sesame") != std::string::npos) problems_.push_back("a password in the history: " + line);
    }
  }

  void Meet(const Cell& cell, LFileTransferProtocol& session, std::vector<std::string>* commands) {
    const FaultScenario& scenario = *cell.scenario;
    FaultServer server(scenario.manner, TestServerContext(TestCertificate::kGood));
    RecordingInterface process;
    FaultCell run = {server, session, process, cell.kind->fault, folder_.Path("local"), "", {}, {}, 0, ""};
    std::filesystem::remove(run.local_path);
    if (strstr(scenario.name.c_str(), "upload")) {
      run.local_content = TestBytes(FaultLocalSize(scenario), 2246822519u);
      folder_.Write("local", run.local_content);
    }
    SetEveryTimeout(kAmpleMs);
    if (scenario.proxy != 0) UseProxy(server.Address().c_str(), scenario.proxy);
    if (!scenario.starts_offline && FaultLogOn(process, session, server, scenario.security) != LProcessResultOk) {
      problems_.push_back("the first logon failed");
    }
    const size_t before = scenario.starts_offline ? 0 : server.Commands().size();
    server.FailAt(before + cell.command, cell.kind->fault);
    SetTimeouts(scenario, *cell.kind);
    const auto start = std::chrono::steady_clock::now();
    const LProcessResult result =
        scenario.starts_offline ? FaultLogOn(process, session, server, scenario.security) : scenario.run(run);
    const auto spent = std::chrono::steady_clock::now() - start;
    CheckEnd(cell, result, std::chrono::duration_cast<std::chrono::milliseconds>(spent).count());
    scenario.check(run, result);
    problems_.insert(problems_.end(), run.problems.begin(), run.problems.end());
    if (commands) {
      *commands = server.Commands();
      commands->erase(commands->begin(), commands->begin() + static_cast<ptrdiff_t>(before));
    }
    if (scenario.proxy != 0) UseProxy("", 0);
  }

  void CheckEnd(const Cell& cell, LProcessResult result, long ms) {
    const bool mayStop = strstr(cell.scenario->name.c_str(), "stopped") != nullptr;
    if (result == LProcessResultStopped && !mayStop) problems_.push_back("stopped by nobody");
    if (result < LProcessResultOk || result > LProcessResultFailed) problems_.push_back("no result at all");
    const long limit = cell.kind->silent ? kLongestSilentMs : kLongestMs;
    if (ms > limit) problems_.push_back("took " + std::to_string(ms) + " ms");
  }

  static void UseProxy(const char* address, int type) {
    LNetSetFtpProxySettings(address, "proxy", "open proxy sesame", static_cast<LFtpProxyType>(type));
  }

  /// Whatever the session went through, it can log on anew and read a listing.
  void UseHealthyServer(const Cell& cell, LFileTransferProtocol& session) {
    SetEveryTimeout(kAmpleMs);
    ServerManner manner = cell.scenario->manner;
    manner.proxy = false;
    FaultServer server(manner, TestServerContext(TestCertificate::kGood));
    RecordingInterface process;
    std::vector<std::string> names;
    if (FaultLogOn(process, session, server, cell.scenario->security) != LProcessResultOk) {
      problems_.push_back("no new logon");
    } else if (FaultList(process, session, names) != LProcessResultOk || names != FaultServer::Listed()) {
      problems_.push_back("no listing behind the new logon");
    }
    session.CloseSocket();
  }

  ScratchFolder folder_;
  std::vector<std::string> problems_;
};

/// A part of the cells in a process of its own. It says what it begins, and what is wrong, one line each.
struct Worker {
  pid_t pid = -1;
  int fd = -1;
  std::string pending;  ///< What it said, not yet a whole line.
  std::string cell;     ///< The one it is in.
  size_t done = 0;
};

void Say(int fd, const std::string& line) {
  const std::string text = line + "\n";
  if (write(fd, text.data(), text.size()) != static_cast<ssize_t>(text.size())) _exit(3);
}

/// Settings, too, belong to each process alone.
void UseOwnFolders() {
  const std::string config = std::string(getenv("XDG_CONFIG_HOME")) + "/" + std::to_string(getpid());
  std::filesystem::create_directory(config);
  setenv("XDG_CONFIG_HOME", config.c_str(), 1);
}

[[noreturn]] void RunShare(const std::vector<Cell>& cells, size_t share, int fd) {
  UseOwnFolders();
  int leaks = 0;
  {
    CellRunner runner;
    // What is opened once for all stays open.
    (void)runner.Run({cells[0].scenario, 0, "", &kNoFault});
    for (size_t i = share; i < cells.size(); i += kProcesses) {
      Say(fd, "+" + cells[i].Name());
      for (const std::string& problem : runner.Run(cells[i])) Say(fd, "-" + problem);
    }
  }
#ifdef ORVANE_FINDS_LEAKS
  leaks = __lsan_do_recoverable_leak_check();
#endif
  Say(fd, leaks == 0 ? "." : "-memory leaked in one of this process's cells");
  // The parent's objects are not this process's to destroy.
  _exit(testing::Test::HasFailure() ? 1 : 0);
}

Worker StartWorker(const std::vector<Cell>& cells, size_t share) {
  Worker worker;
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) return worker;
  worker.pid = fork();
  if (worker.pid == 0) {
    close(ends[0]);
    RunShare(cells, share, ends[1]);
  }
  close(ends[1]);
  worker.fd = ends[0];
  return worker;
}

/// False when the worker has ended.
bool Listen(Worker& worker) {
  char buffer[4096];
  const ssize_t size = read(worker.fd, buffer, sizeof buffer);
  if (size <= 0) return false;
  worker.pending.append(buffer, static_cast<size_t>(size));
  size_t end;
  while ((end = worker.pending.find('\n')) != std::string::npos) {
    const std::string line = worker.pending.substr(0, end);
    worker.pending.erase(0, end + 1);
    if (line[0] == '+') {
      worker.cell = line.substr(1);
      ++worker.done;
    } else if (line[0] == '-') {
      ADD_FAILURE() << worker.cell << ": " << line.substr(1);
    } else {
      worker.cell = "the end";
    }
  }
  return true;
}

void EndWorker(Worker& worker) {
  int status = 0;
  (void)waitpid(worker.pid, &status, 0);
  close(worker.fd);
  worker.fd = -1;
  EXPECT_EQ(status, 0) << "the process ended in: " << worker.cell;
}

size_t RunInProcesses(bool secure) {
  const std::vector<Cell> all = CellRunner().AllCells(secure);
  platform::PreferencesClose();
  std::vector<Worker> workers;
  for (size_t i = 0; i < kProcesses; ++i) workers.push_back(StartWorker(all, i));
  const auto end = std::chrono::steady_clock::now() + kLimit;
  size_t open = workers.size();
  while (open > 0) {
    std::vector<pollfd> entries;
    for (const Worker& worker : workers) entries.push_back({worker.fd, POLLIN, 0});
    (void)poll(entries.data(), entries.size(), 1000);
    const bool isOver = std::chrono::steady_clock::now() > end;
    for (size_t i = 0; i < workers.size(); ++i) {
      if (workers[i].fd == -1) continue;
      if (isOver) kill(workers[i].pid, SIGKILL);
      if ((entries[i].revents || isOver) && !Listen(workers[i])) {
        EndWorker(workers[i]);
        --open;
      }
    }
  }
  size_t cells = 0;
  for (const Worker& worker : workers) cells += worker.done;
  EXPECT_EQ(cells, all.size());
  return cells;
}

size_t RunHere(bool secure, const char* wanted) {
  size_t count = 0;
  CellRunner runner;
  for (const Cell& cell : runner.AllCells(secure)) {
    if (!strstr(cell.Name().c_str(), wanted)) continue;
    ++count;
    const auto start = std::chrono::steady_clock::now();
    for (const std::string& problem : runner.Run(cell)) ADD_FAILURE() << cell.Name() << ": " << problem;
    const auto spent = std::chrono::steady_clock::now() - start;
    printf("%5ld ms  %s\n", static_cast<long>(spent / std::chrono::milliseconds(1)), cell.Name().c_str());
  }
  return count;
}

class FaultMatrix : public testing::TestWithParam<bool> {};
std::string ConnectionName(const testing::TestParamInfo<bool>& parameter) {
  return parameter.param ? "Secure" : "Plain";
}
INSTANTIATE_TEST_SUITE_P(Connections, FaultMatrix, testing::Bool(), ConnectionName);

TEST_P(FaultMatrix, EveryCellEndsWell) {
  const auto start = std::chrono::steady_clock::now();
  const char* const wanted = getenv("ORVANE_FAULT_CELL");
  const size_t count = wanted ? RunHere(GetParam(), wanted) : RunInProcesses(GetParam());
  const auto spent = std::chrono::steady_clock::now() - start;
  printf("%zu cells in %ld seconds\n", count, static_cast<long>(spent / std::chrono::seconds(1)));
  if (!wanted) {
    EXPECT_GE(count, kFewestCells);
  }
}

}  // namespace
