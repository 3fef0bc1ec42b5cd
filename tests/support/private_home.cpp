// Gives each test program folders of its own for data, settings and caches, so that no test writes into the
// user's and no two test processes wait for each other's files.
//
// It runs before the objects of static storage are made, some of which ask for those folders, and what it
// made is removed after they are gone.
#include <cstdio>
#include <filesystem>
#include <stdlib.h>
#include <unistd.h>

namespace {

char root[] = "/tmp/orvane-test-XXXXXX";
pid_t maker = 0;

void SetBelowRoot(const char* variable, const char* folder) {
  char path[sizeof root + 32];
  snprintf(path, sizeof path, "%s/%s", root, folder);
  std::filesystem::create_directory(path);
  setenv(variable, path, 1);
}

__attribute__((constructor(101))) void MakePrivateHome() {
  if (!mkdtemp(root)) abort();
  maker = getpid();
  SetBelowRoot("HOME", "home");
  SetBelowRoot("XDG_DATA_HOME", "data");
  SetBelowRoot("XDG_CONFIG_HOME", "config");
  SetBelowRoot("XDG_CACHE_HOME", "cache");
}

/// A child that a test forked ends here, too; the folders are its parent's.
__attribute__((destructor(101))) void RemovePrivateHome() {
  if (getpid() != maker) return;
  std::error_code ignored;
  std::filesystem::remove_all(root, ignored);
}

}  // namespace
