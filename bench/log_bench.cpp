// What the history costs: 100,000 lines in one session, to the day's file and to the pane of the real window.
//
// Usage: log_bench [lines]. Folders of its own, a window that no screen shows; set QT_QPA_PLATFORM for
// another. Once in one go, and once with the window pumped after every line, as a job does that waits for
// each reply. Exit status 0 only if every line is in the file.
#include <QElapsedTimer>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "app/command_ids.h"
#include "in_program.h"
#include "platform/event_loop.h"
#include "support/log.h"
#include "ui_driver.h"

namespace {

constexpr int kDefaultLines = 100000;

double Seconds(const QElapsedTimer& clock) { return static_cast<double>(clock.nsecsElapsed()) / 1e9; }

long LinesInFiles() {
  long count = 0;
  for (const auto& entry : std::filesystem::directory_iterator(gLLog.Folder())) {
    std::ifstream file(entry.path(), std::ios::binary);
    count += std::count(std::istreambuf_iterator<char>(file), {}, '\n');
  }
  return count;
}

/// True if all lines came to the file and the last one to the window.
bool Measure(const char* name, MainDialog& dialog, int lines, bool isPumped) {
  const long before = LinesInFiles();
  QElapsedTimer clock;
  clock.start();
  char last[kTextSize] = {};
  for (int i = 0; i < lines; ++i) {
    TextFormat(last, "%s: /public_html/写真/%06d.jpg を受信しました。", name, i);
    LOG(last);
    if (isPumped) platform::EventLoopPump();
  }
  const double logged = Seconds(clock);
  const bool isShown = ui::LogShows(dialog.Native(), kHistory, last);
  const long written = LinesInFiles() - before;
  printf("%s: %d lines in %.2f s, %.1f us a line; the last one %s after %.2f s; %ld in the file\n", name, lines, logged,
         logged / lines * 1e6, isShown ? "shown" : "NOT SHOWN", Seconds(clock), written);
  return isShown && written == lines;
}

}  // namespace

int main(int argc, char** argv) {
  const int lines = argc > 1 ? atoi(argv[1]) : kDefaultLines;
  if (lines <= 0) {
    fprintf(stderr, "usage: log_bench [lines]\n");
    return 2;
  }
  int failures = 0;
  const int status = RunInProgram(argc, argv, [&](MainDialog& dialog) {
    dialog.TimerReset(MainDialog::kTimerStartup);  // It would ask for a site.
    if (!Measure("in one go", dialog, lines, false)) ++failures;
    if (!Measure("pumped", dialog, lines, true)) ++failures;
  });
  return status == 0 ? failures : status;
}
