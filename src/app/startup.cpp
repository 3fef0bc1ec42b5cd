#include "app/startup.h"

#include <clocale>
#include <cstdlib>
#include <cstring>
#include <sys/resource.h>
#include <sys/stat.h>

#include "support/files.h"

int gargc;
char** gargv;
bool bInstallerShouldRun;
bool LApplication::bIsLaunchedFromScheduler;

namespace {

constexpr rlim_t kOpenFiles = 1024;

void RaiseOpenFiles() {
  rlimit limit;
  if (getrlimit(RLIMIT_NOFILE, &limit) != 0 || limit.rlim_cur >= kOpenFiles) return;
  limit.rlim_cur = limit.rlim_max < kOpenFiles ? limit.rlim_max : kOpenFiles;
  setrlimit(RLIMIT_NOFILE, &limit);
}

}  // namespace

void LUnixAppInitCommon(int argc, char** argv) {
  umask(0);
  gargc = argc;
  gargv = argv;
  // A window system may hand its own mark over as the first argument; nothing below is to see it.
  if (argc > 1 && strncmp(argv[1], "-psn", 4) == 0) {
    for (int i = 1; i < argc; ++i) argv[i] = argv[i + 1];
    --gargc;
  }
  setlocale(LC_ALL, "");
  setlocale(LC_NUMERIC, "C");  // Numbers in files and on the wire have a point everywhere.
  RaiseOpenFiles();
}

namespace {

/// The first argument is `name`, with at least so many arguments in all.
bool HasSwitch(const char* name, int arguments) { return gargc - 1 >= arguments && strcmp(gargv[1], name) == 0; }

/// A missing script is no failure, and neither is one that fails.
int RunScript(const char* path) {
  if (!LFile::TestFileExists(path)) return 0;
  char command[kTextSize];
  TextFormat(command, "/bin/bash %s", path);
  [[maybe_unused]] const int status = system(command);
  return 0;
}

}  // namespace

int StartupRunWorker() {
  // No job of this program runs in a process of its own, so that no name is known.
  if (HasSwitch("-exe", 2)) return 1;
  if (HasSwitch("-call_launchctl_script", 2)) return RunScript(gargv[2]);
  if (HasSwitch("-elevated", 2)) return 1;
  bInstallerShouldRun = HasSwitch("-installer", 1);
  return -1;
}

void StartupTakeSwitches() { LApplication::bIsLaunchedFromScheduler = HasSwitch("-scheduled_launch", 1); }
