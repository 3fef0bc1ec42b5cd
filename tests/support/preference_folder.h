// A configuration folder of its own for each test of the preference store, and other processes to share it
// with.
#pragma once

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "platform/preferences.h"
#include "support/environment.h"
#include "support/scratch_folder.h"

/// The base of fixtures: the store begins empty and is gone afterwards.
class PreferenceFolder : public testing::Test {
 private:
  const ScratchFolder scratch_;
  const Environment config_{"XDG_CONFIG_HOME", scratch_.Path()};

 protected:
  PreferenceFolder() { platform::PreferencesClose(); }
  ~PreferenceFolder() override { platform::PreferencesClose(); }

  std::string StoreFolder() const { return root + "/orvaneftp"; }
  std::string StoreFile() const { return StoreFolder() + "/preferences.sqlite"; }

  /// All files in the store's folder whose name has `part` in it.
  std::vector<std::string> FilesNamed(const std::string& part) const {
    std::vector<std::string> found;
    for (const auto& entry : std::filesystem::directory_iterator(StoreFolder())) {
      if (entry.path().filename().string().find(part) != std::string::npos) found.push_back(entry.path());
    }
    return found;
  }

  const std::string& root = scratch_.Path();
};

/// Another process on the same store. It starts at once, but does nothing before Start: it must not inherit
/// an open store, while this process may well have opened its own by the time the other one works.
class OtherProcess {
 public:
  explicit OtherProcess(const std::function<bool()>& work) {
    platform::PreferencesClose();
    if (pipe(gate) != 0) abort();
    pid = fork();
    if (pid != 0) {
      close(gate[0]);
      return;
    }
    close(gate[1]);
    char token;
    const bool isStarted = read(gate[0], &token, 1) == 1;
    _exit(isStarted && work() ? 0 : 1);
  }
  OtherProcess(const OtherProcess&) = delete;
  OtherProcess& operator=(const OtherProcess&) = delete;
  ~OtherProcess() {
    close(gate[1]);
    if (pid > 0) Kill();
  }

  void Start() {
    if (write(gate[1], "s", 1) != 1) abort();
  }
  /// True if the work was done and gave true.
  bool Finish() {
    const int status = Reap();
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
  }
  void Kill() {
    kill(pid, SIGKILL);
    Reap();
  }

 private:
  int Reap() {
    int status = 0;
    while (waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }
    pid = -1;
    return status;
  }

  int gate[2] = {-1, -1};
  pid_t pid = -1;
};
