// A configuration folder of its own for each test of the preference store, and other processes to share it
// with.
#pragma once

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "platform/preferences.h"

/// The base of fixtures: the store begins empty and is gone afterwards.
class PreferenceFolder : public testing::Test {
 protected:
  PreferenceFolder() {
    char made[] = "/tmp/orvane-preferences-XXXXXX";
    if (!mkdtemp(made)) abort();
    root = made;
    if (const char* before = getenv("XDG_CONFIG_HOME")) configBefore = before;
    setenv("XDG_CONFIG_HOME", root.c_str(), 1);
    platform::PreferencesClose();
  }

  ~PreferenceFolder() override {
    platform::PreferencesClose();
    if (configBefore.empty()) {
      unsetenv("XDG_CONFIG_HOME");
    } else {
      setenv("XDG_CONFIG_HOME", configBefore.c_str(), 1);
    }
    std::error_code ignored;
    std::filesystem::remove_all(root, ignored);
  }

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

  static std::string ReadFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
  }

  static void WriteFile(const std::string& path, const std::string& content) {
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream(path, std::ios::binary | std::ios::trunc) << content;
  }

  static unsigned ModeOf(const std::string& path) {
    struct stat status;
    return stat(path.c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
  }

  std::string root;

 private:
  std::string configBefore;
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

/// While it lives, file permissions count: root, as tests may run in a container, would pass over them.
class OrdinaryUser {
 public:
  explicit OrdinaryUser(const std::string& folderToOwn) {
    if (geteuid() != 0) return;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folderToOwn)) Own(entry.path());
    Own(folderToOwn);
    wasRoot = seteuid(kNobody) == 0;
  }
  OrdinaryUser(const OrdinaryUser&) = delete;
  OrdinaryUser& operator=(const OrdinaryUser&) = delete;
  ~OrdinaryUser() {
    if (wasRoot && seteuid(0) != 0) abort();
  }

 private:
  static constexpr uid_t kNobody = 65534;
  static void Own(const std::string& path) {
    if (chown(path.c_str(), kNobody, kNobody) != 0) abort();
  }
  bool wasRoot = false;
};
