// The demo's walk: what a user would do on the first day, in the real window, by clicks.
//
// Connects to the demo's site as the program does at its start, brings files down, sends files up, takes a picture of
// the window, and compares every file with its copy byte for byte. One line for each step, a last line with the
// counts; the exit status is 0 only if all of it went well.
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iterator>
#include <sstream>
#include <string>
#include <unistd.h>
#include <vector>

#include "app/app_delegate.h"
#include "app/command_ids.h"
#include "app/main_dialog.h"
#include "app/startup.h"
#include "platform/clock.h"
#include "platform/event_loop.h"
#include "sites/store/settings.h"
#include "support/log.h"
#include "ui_driver.h"

namespace {

constexpr int kConnectMs = 30000;
constexpr unsigned kWatchdogMs = 300000;

std::string Wanted(const char* variable) {
  const char* value = getenv(variable);
  if (value && *value) return value;
  fprintf(stderr, "orvaneftp-demo: %s is not set\n", variable);
  exit(2);
}

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) {
    if (!line.empty()) lines.push_back(line);
  }
  return lines;
}

std::string Content(const std::string& path, bool& found) {
  std::ifstream file(path, std::ios::binary);
  found = file.good();
  return {std::istreambuf_iterator<char>(file), {}};
}

class Walk {
 public:
  explicit Walk(MainDialog& dialog) : main(dialog), window(dialog.Native()) {}

  bool Step(const char* name, const std::function<bool(std::string&)>& act) {
    const int64_t start = platform::ClockMonotonicMs();
    std::string detail;
    const bool ok = act(detail);
    ++steps;
    if (!ok) ++failures;
    printf("demo: %d. %s: %s%s%s (%lld ms)\n", steps, name, ok ? "ok" : "FAILED", detail.empty() ? "" : ", ",
           detail.c_str(), static_cast<long long>(platform::ClockMonotonicMs() - start));
    fflush(stdout);
    return ok;
  }

  bool Connected(std::string& detail) {
    const bool connected = ui::WaitUntil([&] { return main.remotePane.bConnected; }, kConnectMs);
    ui::WaitUntil([&] { return platform::WindowTopModal() == nullptr; }, kConnectMs);
    detail = main.remotePane.szServer;
    return connected;
  }

  bool Listed(std::string& detail) {
    const std::vector<std::string> names = ui::Column(window, kRemoteList, 0);
    detail = std::to_string(names.size()) + " rows in " + main.remotePane.szCurrentDirectory;
    return !names.empty() && ui::Text(window, kRemotePath) == "/";
  }

  bool Move(int list, int button, const std::vector<std::string>& names, std::string& detail) {
    platform::ListSelectAll(window, list, false);
    for (const std::string& name : names) {
      if (!SelectOne(list, name)) {
        detail = "no row " + name;
        return false;
      }
    }
    detail = std::to_string(names.size()) + " files";
    return ui::Press(window, button);
  }

  /// Compares the named files of two folders.
  bool Compare(const std::vector<std::string>& names, const std::string& from, const std::string& to,
               std::string& detail) {
    int same = 0;
    unsigned long long bytes = 0;
    for (const std::string& name : names) {
      bool foundFrom = false, foundTo = false;
      const std::string original = Content(from + "/" + name, foundFrom);
      const std::string copy = Content(to + "/" + name, foundTo);
      const bool identical = foundFrom && foundTo && original == copy;
      if (!identical) fprintf(stderr, "demo: %s differs or is missing\n", name.c_str());
      same += identical ? 1 : 0;
      bytes += original.size();
    }
    compared += static_cast<int>(names.size());
    identicalFiles += same;
    detail = std::to_string(same) + " of " + std::to_string(names.size()) + " identical, " + std::to_string(bytes) +
             " bytes";
    return same == static_cast<int>(names.size());
  }

  int Finish() const {
    printf("demo: %d steps, %d failed; %d of %d files identical\n", steps, failures, identicalFiles, compared);
    return failures == 0 && compared > 0 && identicalFiles == compared ? 0 : 1;
  }

 private:
  bool SelectOne(int list, const std::string& name) {
    const int row = main.LVFindString(list, name.c_str());
    if (row < 0) return false;
    platform::ListSelect(window, list, row, true);
    return true;
  }

  MainDialog& main;
  platform::Window* window;
  int steps = 0;
  int failures = 0;
  int compared = 0;
  int identicalFiles = 0;
};

int Run(MainDialog& dialog) {
  const std::vector<std::string> down = Lines(Wanted("ORVANE_DEMO_DOWNLOADS"));
  const std::vector<std::string> up = Lines(Wanted("ORVANE_DEMO_UPLOADS"));
  const std::string local = Wanted("ORVANE_DEMO_LOCAL");
  const std::string remote = Wanted("ORVANE_DEMO_REMOTE");
  Walk walk(dialog);
  const ui::Alerts alerts;
  using Text = std::string;

  if (!walk.Step("connect", [&](Text& detail) { return walk.Connected(detail); })) return walk.Finish();
  walk.Step("list", [&](Text& detail) { return walk.Listed(detail); });
  walk.Step("download", [&](Text& detail) { return walk.Move(kRemoteList, kDownloadButton, down, detail); });
  walk.Step("upload", [&](Text& detail) { return walk.Move(kLocalList, kUploadButton, up, detail); });
  walk.Step("no question was asked", [&](Text& detail) { return (detail = alerts.Complaints()).empty(); });
  walk.Step("picture", [&](Text& detail) {
    ui::Pump(300);
    detail = Wanted("ORVANE_DEMO_SCREENSHOT");
    return ui::Grab(dialog.Native(), detail.c_str());
  });
  walk.Step("compare downloads", [&](Text& detail) { return walk.Compare(down, remote, local, detail); });
  walk.Step("compare uploads", [&](Text& detail) { return walk.Compare(up, local, remote, detail); });
  walk.Step("history", [&](Text& detail) {
    detail = gLLog.Folder();
    return true;
  });
  return walk.Finish();
}

}  // namespace

int main(int argc, char** argv) {
  LUnixAppInitCommon(argc, argv);
  platform::ApplicationInit(gargc, gargv);
  LAppDelegate delegate;
  if (!delegate.WillFinishLaunching()) return 1;
  delegate.DidFinishLaunching();
  platform::WindowSetFrame(delegate.Dialog()->Native(), {20, 20, 1200, 800});
  // A dialog that waits for an answer would hold the walk for ever.
  platform::Timer* watchdog = platform::TimerCreate([] {
    fprintf(stderr, "orvaneftp-demo: the walk does not come to its end\n");
    _exit(1);
  });
  platform::TimerArm(watchdog, kWatchdogMs);
  int status = 1;
  platform::EventLoopPost([&] {
    status = Run(*delegate.Dialog());
    delegate.Dialog()->CmExit();
  });
  platform::ApplicationRun();
  return status;
}
