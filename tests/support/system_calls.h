// What strace writes about a process that runs with -y -xx: one system call a line, texts in hexadecimal.
#pragma once

#include <cstdlib>
#include <fstream>
#include <map>
#include <string>
#include <vector>

struct SystemCall {
  std::string name;
  int number;  ///< The how manieth of this name in its process, from 1: what strace's injection counts.
  std::string arguments;
  bool hasFailed;

  /// The file behind the descriptor that is the first argument.
  std::string File() const { return Decoded(Between(arguments, "<", ">")); }
  /// The first text among the arguments.
  std::string Text() const { return Decoded(Between(arguments, "\"", "\"")); }
  long LastNumber() const { return strtol(arguments.c_str() + arguments.rfind(' ') + 1, nullptr, 10); }
  bool Has(const char* flag) const { return arguments.find(flag) != std::string::npos; }

 private:
  static std::string Between(const std::string& text, const char* open, const char* close) {
    const size_t start = text.find(open);
    if (start == std::string::npos) return {};
    const size_t end = text.find(close, start + 1);
    return text.substr(start + 1, end - start - 1);
  }
  static std::string Decoded(const std::string& text) {
    std::string bytes;
    for (size_t at = 0; at < text.size();) {
      const bool isEscaped = text.compare(at, 2, "\\x") == 0;
      bytes += isEscaped ? static_cast<char>(strtol(text.substr(at + 2, 2).c_str(), nullptr, 16)) : text[at];
      at += isEscaped ? 4 : 1;
    }
    return bytes;
  }
};

inline std::vector<SystemCall> ReadSystemCalls(const std::string& log) {
  std::vector<SystemCall> calls;
  std::map<std::string, int> numbers;
  std::ifstream file(log);
  for (std::string line; std::getline(file, line);) {
    const size_t open = line.find('(');
    const size_t close = line.rfind(") ");
    if (open == std::string::npos || close == std::string::npos || line[0] == '+') continue;
    const std::string name = line.substr(0, open);
    const bool hasFailed = line.find("= -1", close) != std::string::npos;
    calls.push_back({name, ++numbers[name], line.substr(open + 1, close - open - 1), hasFailed});
  }
  return calls;
}
