// Reads back the daily file of the history, while the window has the pane: sends the log to a folder of its
// own and gives the lines without their time. Main thread; one at a time.
#pragma once

#include <algorithm>
#include <cstring>
#include <dirent.h>
#include <fstream>
#include <iterator>
#include <stdlib.h>
#include <string>
#include <unistd.h>
#include <vector>

#include "support/log.h"

class HistoryFile {
 public:
  HistoryFile() : former_folder_(gLLog.Folder()) {
    char folder[] = "/tmp/orvane-history-XXXXXX";
    folder_ = mkdtemp(folder) ? folder : "";
    gLLog.SetFolder(folder_.c_str());
  }
  HistoryFile(const HistoryFile&) = delete;
  HistoryFile& operator=(const HistoryFile&) = delete;
  ~HistoryFile() {
    gLLog.SetFolder(former_folder_.c_str());
    for (const std::string& file : Files()) unlink(file.c_str());
    rmdir(folder_.c_str());
  }

  /// The texts of all lines so far, in order.
  std::vector<std::string> Lines() const {
    constexpr size_t kTimeSize = 9;  // "hh:mm:ss "
    std::vector<std::string> lines;
    for (const std::string& file : Files()) {
      std::ifstream stream(file, std::ios::binary);
      for (std::string line; std::getline(stream, line);) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        lines.push_back(line.size() > kTimeSize ? line.substr(kTimeSize) : line);
      }
    }
    return lines;
  }
  /// Those that are neither a command nor a reply.
  std::vector<std::string> Messages() const {
    std::vector<std::string> messages;
    for (const std::string& line : Lines()) {
      if (line.rfind("コマンド: ", 0) != 0 && line.rfind("応答: ", 0) != 0) messages.push_back(line);
    }
    return messages;
  }
  /// The commands that went out, in order. A password is masked.
  std::vector<std::string> Commands() const {
    static const std::string kMark = "コマンド: ";
    std::vector<std::string> commands;
    for (const std::string& line : Lines()) {
      if (line.rfind(kMark, 0) == 0) commands.push_back(line.substr(kMark.size()));
    }
    return commands;
  }

  /// The last of them, without reading all.
  std::string LastCommand() const {
    constexpr std::streamoff kEnough = 2048;
    const std::vector<std::string> files = Files();
    if (files.empty()) return {};
    std::ifstream stream(files.back(), std::ios::binary | std::ios::ate);
    stream.seekg(std::max<std::streamoff>(stream.tellg() - std::streampos(kEnough), 0));
    const std::string text{std::istreambuf_iterator<char>(stream), {}};
    const size_t at = text.rfind("コマンド: ");
    return at == std::string::npos ? "" : text.substr(at, text.find('\r', at) - at).substr(strlen("コマンド: "));
  }

 private:
  std::vector<std::string> Files() const {
    std::vector<std::string> files;
    DIR* directory = folder_.empty() ? nullptr : opendir(folder_.c_str());
    if (!directory) return files;
    while (const dirent* entry = readdir(directory)) {
      if (entry->d_name[0] != '.') files.push_back(folder_ + "/" + entry->d_name);
    }
    closedir(directory);
    return files;
  }

  std::string former_folder_;
  std::string folder_;
};
