#include "app/startup.h"

#include <clocale>
#include <cstring>
#include <sys/resource.h>
#include <sys/stat.h>

int gargc;
char** gargv;

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

int StartupRunWorker() {
  if (gargc >= 2 && strcmp(gargv[1], "-elevated") == 0) return 1;
  return -1;
}
