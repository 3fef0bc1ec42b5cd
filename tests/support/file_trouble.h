// What goes wrong with the files of this machine, made real for one test: rights that also bind the super-user, and a
// disk that is small.
#pragma once

#include <fcntl.h>
#include <linux/capability.h>
#include <string>
#include <sys/syscall.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

/// While it lives, the rights of files hold for this thread whoever runs it. Programs started before are not touched.
class RightsHold {
 public:
  RightsHold() {
    syscall(SYS_capget, &header_, former_);
    __user_cap_data_struct fewer[2] = {former_[0], former_[1]};
    fewer[0].effective &= ~((1u << CAP_DAC_OVERRIDE) | (1u << CAP_DAC_READ_SEARCH));
    syscall(SYS_capset, &header_, fewer);
  }
  RightsHold(const RightsHold&) = delete;
  RightsHold& operator=(const RightsHold&) = delete;
  ~RightsHold() { syscall(SYS_capset, &header_, former_); }

 private:
  __user_cap_header_struct header_ = {_LINUX_CAPABILITY_VERSION_3, 0};
  __user_cap_data_struct former_[2] = {};
};

/// A file system in memory of that size, mounted where only a process of its own sees it, and gone with that process.
class SmallDisk {
 public:
  explicit SmallDisk(size_t mebibytes) {
    int toChild[2], fromChild[2];
    // No other program gets an end: it would keep the disk for as long as it runs.
    if (pipe2(toChild, O_CLOEXEC) != 0 || pipe2(fromChild, O_CLOEXEC) != 0) return;
    pid_ = fork();
    if (pid_ == 0) {
      dup2(toChild[0], STDIN_FILENO);
      dup2(fromChild[1], STDOUT_FILENO);
      // It ends when this process does: then the pipe has no writer.
      const std::string command =
          "mount -t tmpfs -o size=" + std::to_string(mebibytes) + "m,mode=0777 none /mnt && echo ready && read ended";
      execlp("unshare", "unshare", "-rm", "sh", "-c", command.c_str(), nullptr);
      _exit(127);
    }
    close(toChild[0]);
    close(fromChild[1]);
    end_ = toChild[1];
    char answer[6] = {};
    isMounted_ = read(fromChild[0], answer, sizeof answer) == sizeof answer;
    close(fromChild[0]);
  }
  SmallDisk(const SmallDisk&) = delete;
  SmallDisk& operator=(const SmallDisk&) = delete;
  ~SmallDisk() {
    close(end_);
    waitpid(pid_, nullptr, 0);
  }

  bool IsMounted() const { return isMounted_; }
  std::string Folder() const { return "/proc/" + std::to_string(pid_) + "/root/mnt"; }

 private:
  pid_t pid_ = -1;
  int end_ = -1;
  bool isMounted_ = false;
};
