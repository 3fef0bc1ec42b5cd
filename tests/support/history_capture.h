// Reads back what a test wrote to the history. The daily file goes to a folder that is removed at the end.
// Main thread; captures may be nested, and then the inner one gets the lines.
#pragma once

#include <filesystem>
#include <stdlib.h>
#include <string>
#include <vector>

#include "support/log.h"

class HistoryCapture : private LLogPane {
 public:
  struct Line {
    unsigned char level;
    std::string text;
  };

  HistoryCapture() : former_pane_(gLLog.Pane()), former_folder_(gLLog.Folder()) {
    char folder[] = "/tmp/orvane-history-XXXXXX";
    folder_ = mkdtemp(folder) ? folder : "";
    gLLog.SetFolder(folder_.c_str());
    gLLog.SetPane(this);
  }
  HistoryCapture(const HistoryCapture&) = delete;
  HistoryCapture& operator=(const HistoryCapture&) = delete;
  ~HistoryCapture() {
    gLLog.SetPane(former_pane_);
    gLLog.SetFolder(former_folder_.c_str());
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }

  /// Everything so far, in order.
  const std::vector<Line>& All() const { return lines_; }
  std::vector<std::string> Lines() const {
    std::vector<std::string> texts;
    for (const Line& line : lines_) texts.push_back(line.text);
    return texts;
  }
  /// What is neither a command nor a reply.
  std::vector<std::string> Messages() const {
    std::vector<std::string> texts;
    for (const Line& line : lines_) {
      if (line.level < kLogCommand) texts.push_back(line.text);
    }
    return texts;
  }

 private:
  void DisplayStatus(const char* /*time*/, const char* text, unsigned char level) override {
    lines_.push_back({level, text});
  }

  LLogPane* former_pane_;
  std::string former_folder_;
  std::string folder_;
  std::vector<Line> lines_;
};
