#include "support/log_pane.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "support/scratch_folder.h"
#include "window_fixture.h"

namespace {

using std::string;

constexpr int kControl = 156;

/// A window with a log control, and the history in a folder of the test's.
class LogPane : public WindowFixture {
 protected:
  LogPane() {
    TextCopy(formerFolder, gLLog.Folder());
    gLLog.SetFolder(scratch.Path("Logs").c_str());
    EXPECT_TRUE(window.Create(platform::WindowKind::kMain, nullptr, "log"));
    window.AddStatusWindow(kControl, "履歴画面");
  }
  ~LogPane() override {
    gLLog.SetFolder(formerFolder);
    window.DestroyCommon();
  }

  /// And not in the middle of one.
  static bool BeginsWithACharacter(const char* text) { return (static_cast<unsigned char>(text[0]) & 0xC0) != 0x80; }

  ScratchFolder scratch;
  LMacWindow window;

 private:
  char formerFolder[kTextSize];
};

TEST_F(LogPane, ShowsTimeTabAndTextCutAtItsLimit) {
  LStatusWindow pane;
  pane.Init(window, kControl);
  pane.DisplayStatus("14:03:22", "接続しました", kLogPlain);
  pane.DisplayStatus("14:03:23", string(300, 'x').c_str(), kLogError);
  EXPECT_EQ(string(pane.Text()), "14:03:22\t接続しました\n14:03:23\t" + string(250, 'x'));
}

TEST_F(LogPane, DropsItsOldestHalfAtACharacter) {
  LStatusWindow pane;
  pane.Init(window, kControl);
  // Each line is 9 + 3 * 31 + 1 bytes, so that byte 2048 lies inside a character.
  string text;
  for (int i = 0; i < 31; ++i) text += "あ";
  string all;
  const string line = "14:03:22\t" + text + "\n";
  while (all.size() < LStatusWindow::kBufferSize - 260) {
    pane.DisplayStatus("14:03:22", text.c_str(), kLogPlain);
    all += line;
    EXPECT_EQ(string(pane.Text()), all) << "nothing goes before the buffer is full";
  }
  pane.DisplayStatus("14:03:22", text.c_str(), kLogPlain);
  const string left = pane.Text();
  EXPECT_TRUE(BeginsWithACharacter(left.c_str()));
  const string whole = all + line;
  size_t from = 2048;
  while (!BeginsWithACharacter(whole.c_str() + from)) ++from;
  EXPECT_GT(from, 2048u);
  EXPECT_EQ(left, whole.substr(from));
}

TEST_F(LogPane, NeverOverflowsWhateverComes) {
  LStatusWindow pane;
  for (int i = 0; i < 500; ++i) {
    pane.DisplayStatus("00:00:00", string(static_cast<size_t>(i * 37 % 600), 'y').c_str(), kLogError);
    ASSERT_LT(strlen(pane.Text()), LStatusWindow::kBufferSize);
  }
}

TEST_F(LogPane, FillsFromSeveralThreads) {
  LLogWindow pane;
  pane.Init(window, kControl);
  LOG("first");
  std::atomic<int> running = 4;
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([i, &running] {
      const string line(static_cast<size_t>(20 + i), static_cast<char>('a' + i));
      for (int n = 0; n < 200; ++n) LOG(line.c_str());
      --running;
    });
  }
  EXPECT_TRUE(PumpUntil([&running] { return running == 0; }));
  for (std::thread& thread : threads) thread.join();
  PumpFor(5);
  // The first line may have lost its beginning in the pane; every other one is whole, there and in the file.
  const string file = scratch.Read("Logs/" + *scratch.Names("Logs").begin());
  EXPECT_EQ(std::count(file.begin(), file.end(), '\n'), 801);
  for (const string& text : {string(pane.Text()), file}) {
    std::istringstream lines(text.substr(text.find('\n') + 1));
    for (string line; std::getline(lines, line);) {
      if (line.back() == '\r') line.pop_back();
      ASSERT_GT(line.size(), 9u);
      EXPECT_EQ(line.substr(9), string(static_cast<size_t>(20 + line[9] - 'a'), line[9]));
    }
  }
}

TEST_F(LogPane, MayGoWhileOthersLog) {
  std::atomic<bool> isToStop = false;
  std::vector<std::thread> threads;
  for (int i = 0; i < 2; ++i) {
    threads.emplace_back([&isToStop] {
      while (!isToStop) {
        LOG("line");
        std::this_thread::sleep_for(std::chrono::microseconds(100));
      }
    });
  }
  for (int i = 0; i < 50; ++i) {
    LLogWindow pane;
    pane.Init(window, kControl);
    PumpFor(2);
  }
  isToStop = true;
  for (std::thread& thread : threads) thread.join();
  PumpFor(5);
}

}  // namespace
