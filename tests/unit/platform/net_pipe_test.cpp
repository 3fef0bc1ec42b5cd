#include "platform/net_pipe.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include "support/scratch_folder.h"

namespace {

class NetPipe : public testing::Test {
 protected:
  NetPipe() {
    EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK, 0, ends), 0);
    EXPECT_TRUE(pipe.Open());
  }
  ~NetPipe() override {
    for (const int end : ends) close(end);
  }
  /// Sends it, takes it and puts it all into the file; the bytes that went.
  size_t Move(const std::string& bytes, const std::string& path, int flags) {
    const int file = open(path.c_str(), flags | O_CLOEXEC, 0600);
    EXPECT_EQ(write(ends[0], bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    EXPECT_EQ(pipe.TakeFrom(ends[1], bytes.size()), static_cast<ssize_t>(bytes.size()));
    size_t all = 0;
    while (const size_t moved = pipe.PutInto(file, 1000)) all += moved;
    close(file);
    return all;
  }

  int ends[2];
  ScratchFolder folder;
  platform::NetPipe pipe;
};

/// A file that is only appended to takes nothing from a pipe, and a full device takes nothing at all.
TEST_F(NetPipe, IsEmptiedIntoAnyFile) {
  std::string bytes(40000, 0);
  for (size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>(i * 7 >> 3);
  const std::string path = folder.Path("f");
  EXPECT_EQ(Move(bytes, path, O_WRONLY | O_CREAT), bytes.size());
  EXPECT_TRUE(folder.Read("f") == bytes);
  EXPECT_EQ(Move(bytes, path, O_WRONLY | O_APPEND), bytes.size());
  EXPECT_TRUE(folder.Read("f") == bytes + bytes);
  EXPECT_EQ(Move(bytes, "/dev/full", O_WRONLY), bytes.size());
}

}  // namespace
