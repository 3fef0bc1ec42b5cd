#include "platform/memory_info.h"

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace platform {
namespace {

/// Reads the beginning of a file of /proc, which is made anew at each reading; empty if there is none.
template <size_t N>
void ReadProcFile(const char* path, char (&out)[N]) {
  out[0] = 0;
  const int fd = open(path, O_RDONLY | O_CLOEXEC);
  if (fd < 0) return;
  const ssize_t size = read(fd, out, N - 1);
  out[size > 0 ? size : 0] = 0;
  close(fd);
}

/// The figure of a line such as "MemFree:  123 kB", in bytes. False without such a line.
bool ReadFigure(const char* text, const char* label, uint64_t& bytes) {
  const char* line = strstr(text, label);
  if (!line) return false;
  bytes = strtoull(line + strlen(label), nullptr, 10) * 1024;
  return true;
}

}  // namespace

uint64_t MemoryFreeAndInactive() {
  char text[4096];
  ReadProcFile("/proc/meminfo", text);
  uint64_t unused = 0;
  uint64_t inactive = 0;
  if (!ReadFigure(text, "MemFree:", unused) || !ReadFigure(text, "\nInactive:", inactive)) return 0;
  return unused + inactive;
}

uint64_t MemoryResident() {
  // Two figures in pages: the whole address space and the part that is in memory.
  char text[256];
  ReadProcFile("/proc/self/statm", text);
  const char* resident = strchr(text, ' ');
  if (!resident) return 0;
  return strtoull(resident, nullptr, 10) * static_cast<uint64_t>(sysconf(_SC_PAGESIZE));
}

bool MemoryDataLimit(uint64_t& bytes) {
  rlimit limit;
  if (getrlimit(RLIMIT_DATA, &limit) != 0) return false;
  bytes = limit.rlim_cur == RLIM_INFINITY ? UINT64_MAX : limit.rlim_cur;
  return true;
}

}  // namespace platform
