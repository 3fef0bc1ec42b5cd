// Other programs for tests: run to their end through the shell.
#pragma once

#include <array>
#include <cstdio>
#include <string>
#include <sys/wait.h>

struct CommandResult {
  bool Succeeded() const { return WIFEXITED(status) && WEXITSTATUS(status) == 0; }
  /// By this process itself or, as a shell tells it, by its child.
  bool WasKilledBy(int signal) const {
    return (WIFSIGNALED(status) && WTERMSIG(status) == signal) ||
           (WIFEXITED(status) && WEXITSTATUS(status) == 128 + signal);
  }
  bool Says(const std::string& line) const { return ("\n" + output).find("\n" + line + "\n") != std::string::npos; }

  int status = -1;
  std::string output;
};

inline CommandResult RunCommand(const std::string& command) {
  CommandResult result;
  FILE* pipe = popen(command.c_str(), "r");
  if (!pipe) return result;
  std::array<char, 4096> buffer;
  while (const size_t size = fread(buffer.data(), 1, buffer.size(), pipe)) result.output.append(buffer.data(), size);
  result.status = pclose(pipe);
  return result;
}
