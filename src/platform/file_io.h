// The system calls on files that are written, one thin function each. Any thread.
//
// Results and errno are those of the system call behind each. Every descriptor is close-on-exec.
// A test that simulates a disk links its own definitions of these.
#pragma once

#include <cstddef>
#include <sys/stat.h>
#include <sys/types.h>
#include <sys/uio.h>

namespace platform {

int FileOpen(const char* path, int flags, mode_t mode);
/// mkostemp(3) with that mode: `path` ends in "XXXXXX", which becomes what makes the name unique.
int FileMakeTemporary(char* path, mode_t mode);
ssize_t FileRead(int fd, void* data, size_t size);
ssize_t FileWrite(int fd, const void* data, size_t size);
/// writev(2): the pieces one behind the other, in one write.
ssize_t FileWritePieces(int fd, const iovec* pieces, int count);
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

// What a faithful copy of a file needs beside its bytes.

int FileChangeModeOf(int fd, mode_t mode);
int FileChangeOwner(int fd, uid_t user, gid_t group);
/// Access time, then modification time.
int FileSetTimes(int fd, const timespec (&times)[2]);
/// Makes the symbolic link `path` that holds `target`.
int FileMakeLink(const char* target, const char* path);
/// flistxattr(2), fgetxattr(2), fsetxattr(2). Access control lists are attributes, too.
ssize_t FileListAttributes(int fd, char* names, size_t size);
ssize_t FileGetAttribute(int fd, const char* name, void* value, size_t size);
int FileSetAttribute(int fd, const char* name, const void* value, size_t size);
/// setxattr(2), which follows links.
int FileSetPathAttribute(const char* path, const char* name, const void* value, size_t size);

// Questions about a path.

/// True if the entry itself is there, even one that a question about the file behind it refuses: a link
/// that leads nowhere.
bool FileIsReachable(const char* path);
/// Free bytes of the file system that holds `path`; 0 if it does not say.
unsigned long long FileFreeSpace(const char* path);

}  // namespace platform
