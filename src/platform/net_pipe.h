// Bytes on their way from a socket into a file, without a copy of them in this process: the kernel's pipe between the
// two. One thread.
#pragma once

#include <cstddef>
#include <sys/types.h>

namespace platform {

class NetPipe {
 public:
  NetPipe() = default;
  NetPipe(const NetPipe&) = delete;
  NetPipe& operator=(const NetPipe&) = delete;
  ~NetPipe();

  /// False where there are no descriptors left; nothing is to be asked of it then.
  [[nodiscard]] bool Open();
  /// Takes what has come, at most `size`, off the socket. Result and errno are those of recv(2); EINVAL where the
  /// system cannot do it this way. The pipe must be empty: of a full one EAGAIN would say nothing about the socket.
  ssize_t TakeFrom(int socket, size_t size);
  /// Puts at most `size` of it into the file at its position. How many bytes have left the pipe: 0 when it is empty.
  /// What the file does not take, on a full disk, is lost.
  size_t PutInto(int file, size_t size);

 private:
  size_t CopyInto(int file, size_t size);

  int ends[2] = {-1, -1};
};

}  // namespace platform
