#include "platform/net_pipe.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

#include "platform/file_io.h"

namespace platform {

namespace {

constexpr int kCapacity = 262144;
constexpr size_t kCopy = 16384;

}  // namespace

NetPipe::~NetPipe() {
  for (const int end : ends) {
    if (end != -1) close(end);
  }
}

bool NetPipe::Open() {
  if (pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0) return false;
  // A smaller one only takes more rounds.
  (void)fcntl(ends[1], F_SETPIPE_SZ, kCapacity);
  return true;
}

ssize_t NetPipe::TakeFrom(int socket, size_t size) {
  ssize_t taken;
  do {
    taken = splice(socket, nullptr, ends[1], nullptr, size, SPLICE_F_MOVE | SPLICE_F_NONBLOCK);
  } while (taken == -1 && errno == EINTR);
  return taken;
}

size_t NetPipe::PutInto(int file, size_t size) {
  const ssize_t moved = splice(ends[0], nullptr, file, nullptr, size, SPLICE_F_MOVE);
  return moved > 0 ? static_cast<size_t>(moved) : CopyInto(file, size);
}

/// Some file systems take no bytes from a pipe, and a full disk takes none at all: the pipe has to be emptied even so.
size_t NetPipe::CopyInto(int file, size_t size) {
  char bytes[kCopy];
  const ssize_t got = read(ends[0], bytes, std::min(size, sizeof bytes));
  if (got <= 0) return 0;
  for (ssize_t done = 0; done < got;) {
    const ssize_t written = FileWrite(file, bytes + done, static_cast<size_t>(got - done));
    if (written <= 0) break;
    done += written;
  }
  return static_cast<size_t>(got);
}

}  // namespace platform
