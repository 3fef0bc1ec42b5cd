#include "support/log.h"

#include <algorithm>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <string>
#include <sys/file.h>
#include <unistd.h>
#include <vector>

#include "support/files.h"
#include "support/scratch_folder.h"
#include "support/settable_clock.h"

namespace {

using std::string;

struct PaneLine {
  string time;
  string text;
  int level;
  bool operator==(const PaneLine&) const = default;
};
void PrintTo(const PaneLine& line, std::ostream* out) {
  *out << line.time << ' ' << line.text << " (" << line.level << ')';
}

class RecordingPane : public LLogPane {
 public:
  void DisplayStatus(const char* time, const char* text, unsigned char level) override {
    lines.push_back({time, text, level});
  }
  std::vector<PaneLine> lines;
};

/// The process's log writes into a folder of the test's, at 14:03:22 on 3 February 2026, and shows in a pane.
class LogTest : public testing::Test {
 protected:
  LogTest() {
    clock.Set(LocalTime(2026, 2, 3, 14, 3, 22));
    TextCopy(formerFolder, gLLog.Folder());
    gLLog.SetFolder(scratch.Path("Logs").c_str());
    gLLog.SetPane(&pane);
  }
  ~LogTest() override {
    gLLog.SetPane(nullptr);
    gLLog.SetFolder(formerFolder);
  }

  string File(const char* date = "2026-02-03") { return scratch.Read("Logs/" + string(date) + " Orvane FTP履歴.txt"); }
  string FilePath() { return scratch.Path("Logs/2026-02-03 Orvane FTP履歴.txt"); }
  /// The text and level of the pane's newest line.
  std::pair<string, int> Newest() {
    if (pane.lines.empty()) return {"", -1};
    return {pane.lines.back().text, pane.lines.back().level};
  }

  ScratchFolder scratch;
  SettableClock clock{0};
  RecordingPane pane;

 private:
  char formerFolder[kTextSize];
};

/// Holds the lock of a file as another running copy of the program does.
class OtherHolder {
 public:
  explicit OtherHolder(const string& path) : file(open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666)) {
    EXPECT_EQ(flock(file, LOCK_EX | LOCK_NB), 0);
  }
  OtherHolder(const OtherHolder&) = delete;
  OtherHolder& operator=(const OtherHolder&) = delete;
  ~OtherHolder() { close(file); }

 private:
  int file;
};

TEST_F(LogTest, EachFunctionWritesALineAndShowsItsLevel) {
  LOG("");
  LOG("", "");
  LOGF("%s", "");
  EXPECT_FALSE(scratch.Has("Logs")) << "an empty text writes nothing";
  LOG("plain");
  LOG("joined ", "of two");
  LOGERROR("error");
  LOGWARN("warning");
  LOGINFO("information");
  LOGF("%d%s", 7, "あ");
  LOGERRORF("e%d", 1);
  LOGWARNF("w%d", 2);
  LOGFTPCOMMAND("LIST\r\n");
  LOGFTPRESPONSE("226 done.\r\n");
  const std::vector<PaneLine> expected = {
      {"14:03:22", "plain", 0},
      {"14:03:22", "joined of two", 0},
      {"14:03:22", "error", 1},
      {"14:03:22", "warning", 2},
      {"14:03:22", "information", 3},
      {"14:03:22", "7あ", 0},
      {"14:03:22", "e1", 1},
      {"14:03:22", "w2", 2},
      {"14:03:22", "コマンド: LIST", 4},
      {"14:03:22", "応答:  226 done.", 5},
  };
  EXPECT_EQ(pane.lines, expected);
  string file;
  for (const auto& line : expected) file += line.time + " " + line.text + "\r\n";
  EXPECT_EQ(File(), file);
}

TEST_F(LogTest, PasswordsAreMasked) {
  const struct {
    const char* command;
    const char* text;
  } rows[] = {
      {"PASS secret\r\n", "コマンド: ******"}, {"PASS a b\r\n", "コマンド: ***"},
      {"PASS あ\r\n", "コマンド: ***"},  // One for each byte.
      {"PASS secret", "コマンド: ******"},     {"PASS", "コマンド: "},
      {"PASSWORD x\r\n", "コマンド: *****"},   {"pass secret\r\n", "コマンド: pass secret"},
      {"PASV\r\n", "コマンド: PASV"},          {" PASS x\r\n", "コマンド:  PASS x"},
  };
  for (const auto& row : rows) {
    LOGFTPCOMMAND(row.command);
    EXPECT_EQ(Newest(), std::make_pair(string(row.text), 4)) << row.command;
  }
}

TEST_F(LogTest, TextsAreCutToTheirBuffers) {
  const string label = "コマンド: ";
  for (const size_t length : {0u, 500u, 511u, 512u, 519u, 520u, 600u}) {
    const string x(length, 'x');
    pane.lines.clear();
    LOGF("%s", x.c_str());
    EXPECT_EQ(Newest().first, x.substr(0, 511)) << length;
    LOGFTPCOMMAND(("X" + x).c_str());
    EXPECT_EQ(Newest().first, (label + "X" + x).substr(0, 519)) << length;
    LOGFTPRESPONSE(("2" + x).c_str());
    EXPECT_EQ(Newest().first, ("応答:  2" + x).substr(0, 519)) << length;
    LOGFTPCOMMAND(("PASS " + x).c_str());
    EXPECT_EQ(Newest().first, (label + string(length, '*')).substr(0, 519)) << length;
  }
  const string large(10 << 20, 'x');
  LOG(large.c_str());
  EXPECT_TRUE(Newest().first == large);
  EXPECT_NE(File().find(" " + large + "\r\n"), string::npos);
}

TEST_F(LogTest, ANewDayBeginsANewFileOrGoesOnWithOne) {
  scratch.Write("Logs/2026-02-04 Orvane FTP履歴.txt", "00:00:00 another copy\r\n");
  clock.Set(LocalTime(2026, 2, 3, 23, 59, 59));
  LOG("before");
  clock.Set(LocalTime(2026, 2, 4, 0, 0, 0));
  LOG("after");
  EXPECT_EQ(File(), "23:59:59 before\r\n");
  EXPECT_EQ(File("2026-02-04"), "00:00:00 another copy\r\n00:00:00 after\r\n");
  OtherHolder free(FilePath());  // The file of the day before is closed, so its lock is to be had.
  clock.Set(LocalTime(2026, 3, 4, 8, 0, 0));
  LOG("March");
  EXPECT_EQ(File("2026-02-04"), "00:00:00 another copy\r\n00:00:00 after\r\n08:00:00 March\r\n")
      << "only the day of the month is compared";
}

TEST_F(LogTest, WhatCannotBeWrittenStillReachesThePane) {
  scratch.Write("Logs", "a file where the folder should be");
  LOG("lost for the file");
  EXPECT_EQ(Newest().first, "lost for the file");
  std::filesystem::remove(scratch.Path("Logs"));
  LOG("kept");
  EXPECT_EQ(File(), "14:03:22 kept\r\n") << "each line tries again";
}

TEST_F(LogTest, WhileAnotherHoldsTheFileOnlyThePaneFills) {
  scratch.MakeFolder("Logs");
  const long before = OpenDescriptors();
  {
    OtherHolder other(FilePath());
    LOG("one");
    LOG("two");
    EXPECT_EQ(clock.Sleeps(), (std::vector<unsigned>{16, 32, 64, 128, 256, 16, 32, 64, 128, 256}));
    EXPECT_EQ(OpenDescriptors(), before + 3) << "what was opened in vain stays open";
  }
  EXPECT_EQ(pane.lines.size(), 2u);
  EXPECT_EQ(File(), "");
  LOG("three");
  EXPECT_EQ(File(), "14:03:22 three\r\n");
}

TEST_F(LogTest, TheFileIsNotLeftOpenToOtherPrograms) {
  LOG("x");
  int seen = 0;
  for (int file = 0; file < 256; ++file) {
    std::error_code none;
    if (std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(file), none) != FilePath()) continue;
    ++seen;
    EXPECT_NE(fcntl(file, F_GETFD) & FD_CLOEXEC, 0);
  }
  EXPECT_EQ(seen, 1);
}

TEST(LogLifetime, AClosedLogIsSilent) {
  const ScratchFolder scratch;
  RecordingPane pane;
  alignas(LLog) static unsigned char place[sizeof(LLog)];
  auto* log = new (place) LLog;
  log->SetFolder(scratch.Path().c_str());
  log->SetPane(&pane);
  log->LogWithoutEmailing("one", kLogPlain);
  log->~LLog();
  // As code does that runs while the process ends.
  log->LogWithoutEmailing("two", kLogPlain);
  log->Log("three", "", kLogPlain);
  EXPECT_EQ(pane.lines.size(), 1u);
}

}  // namespace
