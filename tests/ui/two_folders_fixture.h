// Verbs for tests that set the local folder beside the one on the server.
#pragma once

#include <fcntl.h>
#include <set>
#include <sys/stat.h>

#include "support/recording_interface.h"
#include "ui/transfer_fixture.h"

class TwoFoldersTest : public TransferTest {
 protected:
  static constexpr time_t kOld = 1000000000;
  static constexpr time_t kNew = kOld + 86400;

  static void SetTime(const std::string& path, time_t time) {
    const timespec times[2] = {{time, 0}, {time, 0}};
    EXPECT_EQ(utimensat(AT_FDCWD, path.c_str(), times, 0), 0) << path;
  }
  void MakeBoth(const std::string& name, time_t local, time_t remote) {
    MakeLocal(name, "local");
    MakeRemote(name, "remote");
    SetTime(Local(name), local);
    SetTime(Remote(name), remote);
  }
  /// The messages without those about OPTS, which this server does not take.
  Texts Told() {
    Texts told = Messages();
    std::erase_if(told, [](const std::string& line) { return line.starts_with("Reply Gave Unexpected Response"); });
    return told;
  }
  /// All files with what short ones hold, and the empty folders, in order: "a.txt=a b/".
  static std::string Found(const std::string& folder) {
    std::set<std::string> found;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
      const std::string path = entry.path().lexically_relative(folder).string();
      if (entry.is_regular_file()) {
        found.insert(entry.file_size() < 10 ? path + "=" + ReadFile(entry.path()) : path);
      } else if (std::filesystem::is_empty(entry)) {
        found.insert(path + "/");
      }
    }
    std::string all;
    for (const std::string& one : found) all += (all.empty() ? "" : " ") + one;
    return all;
  }
};
