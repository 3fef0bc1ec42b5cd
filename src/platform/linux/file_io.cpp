// The system calls on files, as Linux has them.
#include "platform/file_io.h"

#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/file.h>
#include <sys/statfs.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace platform {

int FileOpen(const char* path, int flags, mode_t mode) { return open(path, flags | O_CLOEXEC, mode); }

int FileMakeTemporary(char* path, mode_t mode) {
  const int file = mkostemp(path, O_CLOEXEC);
  if (file != -1) fchmod(file, mode);
  return file;
}

ssize_t FileRead(int fd, void* data, size_t size) { return read(fd, data, size); }

ssize_t FileWrite(int fd, const void* data, size_t size) { return write(fd, data, size); }

ssize_t FileWritePieces(int fd, const iovec* pieces, int count) { return writev(fd, pieces, count); }

off_t FileSeek(int fd, off_t offset, int whence) { return lseek(fd, offset, whence); }

int FileTruncate(int fd, off_t size) { return ftruncate(fd, size); }

int FileSync(int fd) { return fsync(fd); }

int FileClose(int fd) { return close(fd); }

int FileLock(int fd, int operation) { return flock(fd, operation); }

int FileStatus(int fd, struct stat& status) { return fstat(fd, &status); }

int FileUnlink(const char* path) { return unlink(path); }

int FileRename(const char* from, const char* to) { return rename(from, to); }

int FileMakeFolder(const char* path, mode_t mode) { return mkdir(path, mode); }

int FileRemoveFolder(const char* path) { return rmdir(path); }

int FileChangeMode(const char* path, mode_t mode) { return chmod(path, mode); }

int FileChangeModeOf(int fd, mode_t mode) { return fchmod(fd, mode); }

int FileChangeOwner(int fd, uid_t user, gid_t group) { return fchown(fd, user, group); }

int FileSetTimes(int fd, const timespec (&times)[2]) { return futimens(fd, times); }

int FileMakeLink(const char* target, const char* path) { return symlink(target, path); }

ssize_t FileListAttributes(int fd, char* names, size_t size) { return flistxattr(fd, names, size); }

ssize_t FileGetAttribute(int fd, const char* name, void* value, size_t size) {
  return fgetxattr(fd, name, value, size);
}

int FileSetAttribute(int fd, const char* name, const void* value, size_t size) {
  return fsetxattr(fd, name, value, size, 0);
}

int FileSetPathAttribute(const char* path, const char* name, const void* value, size_t size) {
  return setxattr(path, name, value, size, 0);
}

bool FileIsReachable(const char* path) {
  struct stat status {};
  return lstat(path, &status) == 0;
}

unsigned long long FileFreeSpace(const char* path) {
  struct statfs status {};
  if (statfs(path, &status) != 0) return 0;
  return static_cast<unsigned long long>(status.f_bfree) * static_cast<unsigned long long>(status.f_bsize);
}

}  // namespace platform
