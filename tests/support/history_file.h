// Reads back what a test wrote to the history: sends the daily file to a folder of its own, which is removed at the
// end, and gives the lines without their time. Main thread; they may be nested, and then the inner one gets the lines.
#pragma once

#include <algorithm>
#include <cstring>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "support/log.h"
#include "support/scratch_folder.h"

/// As messages name the peer at "host:port".
inline std::string PeerInHistory(const std::string& address) {
  const size_t colon = address.find(':');
  return address.substr(0, colon) + "（ポート" + address.substr(colon + 1) + "）";
}

class HistoryFile {
 public:
  HistoryFile() : former_folder_(gLLog.Folder()) { gLLog.SetFolder(folder_.Path().c_str()); }
  HistoryFile(const HistoryFile&) = delete;
  HistoryFile& operator=(const HistoryFile&) = delete;
  ~HistoryFile() { gLLog.SetFolder(former_folder_.c_str()); }

  /// The texts of all lines so far, in order.
  std::vector<std::string> Lines() const {
    constexpr size_t kTimeSize = 9;  // "hh:mm:ss "
    std::vector<std::string> lines;
    for (const std::string& day : folder_.Names()) {
      std::istringstream stream(folder_.Read(day));
      for (std::string line; std::getline(stream, line);) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        lines.push_back(line.size() > kTimeSize ? line.substr(kTimeSize) : line);
      }
    }
    return lines;
  }
  /// Those that are neither a command nor a reply.
  std::vector<std::string> Messages() const {
    std::vector<std::string> messages = Lines();
    std::erase_if(messages,
                  [](const std::string& line) { return line.starts_with(kCommand) || line.starts_with(kReply); });
    return messages;
  }
  /// The commands that went out, in order. A password is masked.
  std::vector<std::string> Commands() const {
    std::vector<std::string> commands;
    for (const std::string& line : Lines()) {
      if (line.starts_with(kCommand)) commands.push_back(line.substr(strlen(kCommand)));
    }
    return commands;
  }
  /// How many lines have `part` in them.
  size_t Count(const std::string& part) const {
    const std::vector<std::string> lines = Lines();
    return static_cast<size_t>(std::count_if(
        lines.begin(), lines.end(), [&part](const std::string& line) { return line.find(part) != std::string::npos; }));
  }

  /// The last command, without reading all.
  std::string LastCommand() const {
    constexpr std::streamoff kEnough = 2048;
    const std::set<std::string> days = folder_.Names();
    if (days.empty()) return {};
    std::ifstream stream(folder_.Path(*days.rbegin()), std::ios::binary | std::ios::ate);
    stream.seekg(std::max<std::streamoff>(stream.tellg() - std::streampos(kEnough), 0));
    const std::string text{std::istreambuf_iterator<char>(stream), {}};
    const size_t at = text.rfind(kCommand);
    return at == std::string::npos ? "" : text.substr(at, text.find('\r', at) - at).substr(strlen(kCommand));
  }

 private:
  static constexpr char kCommand[] = "コマンド: ";
  static constexpr char kReply[] = "応答: ";

  const std::string former_folder_;
  const ScratchFolder folder_;
};
