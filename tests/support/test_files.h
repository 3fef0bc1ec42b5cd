// What files hold, and what this process holds open, in tests.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <sys/stat.h>

/// Empty where there is none.
inline std::string ReadFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// Makes the file anew, with its folders.
inline void WriteFile(const std::string& path, const std::string& content) {
  std::filesystem::create_directories(std::filesystem::path(path).parent_path());
  std::ofstream(path, std::ios::binary | std::ios::trunc) << content;
}

/// 0 where there is no file.
inline unsigned ModeOf(const std::string& path) {
  struct stat status;
  return stat(path.c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
}

/// How many descriptors this process has, with one for the question itself.
inline long OpenDescriptors() {
  return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), std::filesystem::directory_iterator());
}

/// Bytes that tell their place, so that a lost, doubled or moved piece shows.
inline std::string TestBytes(size_t size, unsigned step = 2654435761u) {
  std::string bytes(size, 0);
  for (size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>((i * step) >> 13);
  return bytes;
}
