// The system calls on files that are written, one thin function each. Any thread.
//
// Results and errno are those of the system call behind each. Every descriptor is close-on-exec.
// A test that simulates a disk links its own definitions of these.
#pragma once

#include <sys/stat.h>
#include <sys/types.h>

#include <cstddef>

namespace platform {

int FileOpen(const char* path, int flags, mode_t mode);
ssize_t FileRead(int fd, void* data, size_t size);
ssize_t FileWrite(int fd, const void* data, size_t size);
off_t FileSeek(int fd, off_t offset, int whence);
int FileTruncate(int fd, off_t size);
int FileSync(int fd);
int FileClose(int fd);
/// flock(2).
int FileLock(int fd, int operation);
int FileStatus(int fd, struct stat& status);
int FileUnlink(const char* path);
int FileRename(const char* from, const char* to);
int FileMakeFolder(const char* path, mode_t mode);
int FileRemoveFolder(const char* path);
int FileChangeMode(const char* path, mode_t mode);

}  // namespace platform
