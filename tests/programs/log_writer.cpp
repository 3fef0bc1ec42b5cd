// A running copy of the program as far as its history goes: logs numbered lines, spread evenly over some time.
//
//   log_writer FOLDER NAME LINES SECONDS   logs "NAME 00000 ..." and so on into the folder's daily file, then
//                                          says "shown N", the lines that reached its pane
//
// The clock is the process's own, so that a test may give it another one.
#include <cstdio>
#include <cstdlib>

#include "platform/clock.h"
#include "support/log.h"
#include "support/numbered_lines.h"

namespace {

class CountingPane : public LLogPane {
 public:
  void DisplayStatus(const char*, const char*, unsigned char) override { ++shown; }
  int shown = 0;
};

}  // namespace

int main(int count, char** arguments) {
  if (count != 5) return 2;
  CountingPane pane;
  gLLog.SetFolder(arguments[1]);
  gLLog.SetPane(&pane);
  const char name = arguments[2][0];
  const int lines = atoi(arguments[3]);
  const int64_t begin = platform::ClockWallSeconds();
  const int64_t seconds = atoi(arguments[4]);
  for (int i = 0; i < lines; ++i) {
    while (platform::ClockWallSeconds() < begin + seconds * i / lines) platform::ClockSleepMs(1000);
    LOG(NumberedLine(name, i).c_str());
  }
  gLLog.SetPane(nullptr);
  printf("shown %d\n", pane.shown);
  return 0;
}
