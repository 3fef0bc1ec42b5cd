// Running copies of the program that log at once: the one that holds the day's file writes, whole lines only,
// and the other one fills its pane.
#include <algorithm>
#include <csignal>
#include <functional>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "support/commands.h"
#include "support/log.h"
#include "support/numbered_lines.h"
#include "support/scratch_folder.h"
#include "support/settable_clock.h"

namespace {

using std::string;

constexpr int kLines = 10000;
constexpr unsigned kLimitSeconds = 30;  // A copy that hangs ends by itself.

/// What the file holds after the copy's lines from `first` up to `end`.
string FileOf(const char* time, char copy, int first, int end) {
  string text;
  for (int i = first; i < end; ++i) text += time + (" " + NumberedLine(copy, i)) + "\r\n";
  return text;
}

/// For texts too long to print.
testing::AssertionResult IsSame(const string& text, const string& expected) {
  if (text == expected) return testing::AssertionSuccess();
  const size_t at = static_cast<size_t>(
      std::mismatch(text.begin(), text.end(), expected.begin(), expected.end()).first - text.begin());
  return testing::AssertionFailure() << text.size() << " bytes, not " << expected.size() << "; from byte " << at << ": "
                                     << text.substr(at, 80);
}

/// Holds what the pane gets against what was logged.
class CheckingPane : public LLogPane {
 public:
  explicit CheckingPane(char name) : copy(name) {}
  void DisplayStatus(const char*, const char* text, unsigned char) override {
    if (text != NumberedLine(copy, shown++)) isRight = false;
  }
  const char copy;
  int shown = 0;
  bool isRight = true;
};

/// Lets another process go on, once for each opening.
class Gate {
 public:
  Gate() { EXPECT_EQ(pipe(ends), 0); }
  Gate(const Gate&) = delete;
  Gate& operator=(const Gate&) = delete;
  ~Gate() {
    close(ends[0]);
    close(ends[1]);
  }
  void Open() { EXPECT_EQ(write(ends[1], "g", 1), 1); }
  void Wait() {
    char byte;
    EXPECT_EQ(read(ends[0], &byte, 1), 1);
  }

 private:
  int ends[2] = {-1, -1};
};

/// A running copy of the program as far as its history goes: a process that logs numbered lines.
class Copy {
 public:
  Copy(char name, const std::function<void(Copy&)>& run) : pane(name) {
    pid = fork();
    if (pid != 0) return;
    alarm(kLimitSeconds);
    gLLog.SetPane(&pane);
    run(*this);
    gLLog.SetFolder("");  // Closes the file, as the end of the program does.
    _exit(pane.isRight && pane.shown == logged && !testing::Test::HasFailure() ? 0 : 1);
  }
  Copy(const Copy&) = delete;
  Copy& operator=(const Copy&) = delete;
  ~Copy() {
    if (pid > 0) Kill();
  }

  void Log(int count) {
    for (int i = 0; i < count; ++i) LOG(NumberedLine(pane.copy, logged++).c_str());
  }
  /// True if the copy ended well and every line had reached its pane.
  bool Finish() { return Reap() == 0; }
  void Kill() {
    kill(pid, SIGKILL);
    Reap();
  }

 private:
  int Reap() {
    int status = -1;
    EXPECT_EQ(waitpid(pid, &status, 0), pid);
    pid = -1;
    return status;
  }

  CheckingPane pane;
  int logged = 0;
  pid_t pid = -1;
};

/// It is one second before midnight, and waiting for a lock takes no time.
class LogProcesses : public testing::Test {
 protected:
  LogProcesses() {
    midnight = LocalTime(2026, 2, 4, 0, 0, 0);
    clock.Set(midnight - 1);
    TextCopy(formerFolder, gLLog.Folder());
    gLLog.SetFolder(scratch.Path("Logs").c_str());
  }
  ~LogProcesses() override { gLLog.SetFolder(formerFolder); }

  string File(const char* date = "2026-02-03") { return scratch.Read("Logs/" + string(date) + " Orvane FTP履歴.txt"); }

  ScratchFolder scratch;
  SettableClock clock{0};
  int64_t midnight = 0;

 private:
  char formerFolder[kTextSize];
};

constexpr char kBefore[] = "23:59:59";
constexpr char kAfter[] = "00:00:00";

TEST_F(LogProcesses, OnlyTheHolderWrites) {
  Gate held, ended;
  Copy holder('A', [&](Copy& copy) {
    copy.Log(1);
    held.Open();
    copy.Log(kLines - 1);
    ended.Wait();
  });
  Copy other('B', [&](Copy& copy) {
    held.Wait();
    copy.Log(kLines);
    ended.Open();
  });
  EXPECT_TRUE(other.Finish());
  EXPECT_TRUE(holder.Finish());
  EXPECT_TRUE(IsSame(File(), FileOf(kBefore, 'A', 0, kLines)));
}

TEST_F(LogProcesses, AKilledHolderLeavesWholeLinesAndTheFileToTheOther) {
  Gate held, tried, killed;
  Copy holder('A', [&](Copy& copy) {
    copy.Log(1);
    held.Open();
    for (;;) copy.Log(1);
  });
  Copy other('B', [&](Copy& copy) {
    held.Wait();
    copy.Log(100);
    tried.Open();
    killed.Wait();
    copy.Log(100);
  });
  tried.Wait();
  holder.Kill();
  killed.Open();
  EXPECT_TRUE(other.Finish());
  const string file = File();
  const string ofOther = FileOf(kBefore, 'B', 100, 200);
  const size_t split = file.find(string(kBefore) + " B ");
  ASSERT_NE(split, string::npos);
  EXPECT_TRUE(IsSame(file.substr(split), ofOther));
  const string ofHolder = file.substr(0, split);
  const int count = static_cast<int>(std::count(ofHolder.begin(), ofHolder.end(), '\n'));
  EXPECT_TRUE(IsSame(ofHolder, FileOf(kBefore, 'A', 0, count)));
}

/// Each copy lets go of the old day's file with its first line of the new day, and the first of them to do so
/// gets the new file. The other one's turn comes when that copy has ended, if it has lines left then.
TEST_F(LogProcesses, AtMidnightTheNewFileIsForWhoeverComesFirst) {
  Gate held, othersDayEnded, midnightCame;
  Copy holder('A', [&](Copy& copy) {
    copy.Log(1);
    held.Open();
    copy.Log(kLines / 2 - 1);
    othersDayEnded.Wait();
    clock.Set(midnight);
    midnightCame.Open();
    copy.Log(kLines / 2);
  });
  Copy other('B', [&](Copy& copy) {
    held.Wait();
    copy.Log(kLines / 2);
    othersDayEnded.Open();
    midnightCame.Wait();
    clock.Set(midnight);
    copy.Log(kLines / 2);
  });
  EXPECT_TRUE(holder.Finish());
  EXPECT_TRUE(other.Finish());
  EXPECT_TRUE(IsSame(File(), FileOf(kBefore, 'A', 0, kLines / 2)));

  const string file = File("2026-02-04");
  ASSERT_GT(file.size(), sizeof kAfter);
  const char first = file[sizeof kAfter];
  const char second = first == 'A' ? 'B' : 'A';
  const string ofFirst = FileOf(kAfter, first, kLines / 2, kLines);
  ASSERT_TRUE(IsSame(file.substr(0, ofFirst.size()), ofFirst));
  const string rest = file.substr(ofFirst.size());
  const int left = static_cast<int>(std::count(rest.begin(), rest.end(), '\n'));
  EXPECT_TRUE(IsSame(rest, FileOf(kAfter, second, kLines - left, kLines)));
}

// The same with the machine's clock running three hundred times as fast, through midnight, while both log.

/// What a file of two copies shows line by line.
struct Reading {
  int lines = 0;
  int turns = 0;         ///< How often the next line is another copy's.
  bool isWhole = true;   ///< Every line is one that was logged, and each copy's follow one another.
  int next[2] = {0, 0};  ///< Behind the last line of each copy.

  void Read(const string& file, const string& earliest, const string& latest) {
    std::istringstream stream(file);
    char last = 0;
    for (string line; std::getline(stream, line); ++lines) {
      const bool hasHead = line.size() > 17 && line.back() == '\r' && (line[9] == 'A' || line[9] == 'B');
      if (!hasHead || line.substr(0, 8) < earliest || line.substr(0, 8) > latest) isWhole = false;
      if (!isWhole) return;
      const char copy = line[9];
      const int number = atoi(line.c_str() + 11);
      if (line.substr(9) != NumberedLine(copy, number) + "\r") isWhole = false;
      int& expected = next[copy - 'A'];
      if (last == copy && number != expected) isWhole = false;
      if (number < expected) isWhole = false;
      expected = number + 1;
      if (last != 0 && last != copy) ++turns;
      last = copy;
    }
  }
};

TEST(LogUnderAFastClock, TheDaysFilesOfTwoCopiesHoldWholeLinesInTurn) {
  const ScratchFolder scratch;
  const auto command = [&scratch](const char* name) {
    return "faketime -f '@2026-02-03 23:45:00 x300' env ASAN_OPTIONS=detect_leaks=0:verify_asan_link_order=0 "
           "TZ=UTC " ORVANE_LOG_WRITER " " +
           scratch.Path("Logs") + " " + name + " " + std::to_string(kLines) + " 1800 2>&1";
  };
  if (!RunCommand("faketime -f '@2026-02-03 23:45:00 x300' true 2>&1").Succeeded()) {
    GTEST_SKIP() << "faketime is missing";
  }
  CommandResult results[2];
  std::thread other([&] { results[1] = RunCommand(command("B")); });
  results[0] = RunCommand(command("A"));
  other.join();
  for (const CommandResult& result : results) EXPECT_EQ(result.output, "shown " + std::to_string(kLines) + "\n");

  // Each copy's clock began when it started, so that the later one may take over a day that the other has left.
  Reading days;
  days.Read(scratch.Read("Logs/2026-02-03 Orvane FTP履歴.txt"), "23:45:00", "23:59:59");
  EXPECT_TRUE(days.isWhole) << "line " << days.lines;
  EXPECT_LE(days.turns, 1) << "whoever holds the file keeps it to the end of its day";
  const int linesBefore = days.lines;
  EXPECT_GT(linesBefore, 0);
  days.turns = 0;
  days.Read(scratch.Read("Logs/2026-02-04 Orvane FTP履歴.txt"), "00:00:00", "12:00:00");
  EXPECT_TRUE(days.isWhole) << "line " << days.lines;
  EXPECT_LE(days.turns, 1) << "the other's turn comes when the holder has ended";
  EXPECT_GT(days.lines, linesBefore);
}

}  // namespace
