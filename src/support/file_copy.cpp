// Copying one file: bytes, owner, mode, times and attributes, in place of an old file in one step.
#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <limits.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include "platform/file_io.h"
#include "support/file_handles.h"
#include "support/files.h"

namespace {

constexpr size_t kCopyBlock = 65536;
constexpr size_t kAttributeLimit = 65536;  // The kernel's, for the list of names and for one value.

bool CopyBytes(int from, int to) {
  std::vector<char> block(kCopyBlock);
  LWriteFileRef writer(to);
  for (;;) {
    const ssize_t size = platform::FileRead(from, block.data(), block.size());
    if (size == 0) return true;
    if (size < 0 && errno == EINTR) continue;
    if (size < 0 || !writer.Write(block.data(), static_cast<size_t>(size))) return false;
  }
}

/// Attributes that the target's file system or our rights refuse are left behind.
void CopyAttributes(int from, int to) {
  std::vector<char> names(kAttributeLimit);
  const ssize_t size = platform::FileListAttributes(from, names.data(), names.size());
  if (size <= 0) return;
  std::vector<char> value(kAttributeLimit);
  for (ssize_t at = 0; at < size; at += static_cast<ssize_t>(strlen(&names[at])) + 1) {
    const ssize_t length = platform::FileGetAttribute(from, &names[at], value.data(), value.size());
    if (length >= 0) platform::FileSetAttribute(to, &names[at], value.data(), static_cast<size_t>(length));
  }
}

/// The mode after the owner, since a change of owner takes set-user-id away, and the times last of all.
void CopyMetadata(int from, int to, const struct stat& status) {
  CopyAttributes(from, to);
  const bool owned = platform::FileChangeOwner(to, status.st_uid, status.st_gid) == 0;
  // To set a user id for someone else's file would hand that user's rights on.
  platform::FileChangeModeOf(to, status.st_mode & (owned ? 07777 : 0777));
  platform::FileSetTimes(to, {status.st_atim, status.st_mtim});
}

/// Fills the new file `to`. Until the copy is whole, only this user can read it.
bool CopyContent(int source, const char* to, bool durable) {
  struct stat status {};
  if (platform::FileStatus(source, status) != 0 || !S_ISREG(status.st_mode)) return false;
  const int target = platform::FileOpen(to, O_WRONLY | O_CREAT | O_EXCL, 0600);
  if (target < 0) return false;
  bool whole = CopyBytes(source, target);
  if (whole) CopyMetadata(source, target, status);
  if (whole && durable) whole = platform::FileSync(target) == 0;
  if (platform::FileClose(target) != 0) whole = false;
  if (!whole) platform::FileUnlink(to);
  return whole;
}

bool CopyLink(const char* from, const char* to) {
  char target[PATH_MAX];
  const ssize_t length = readlink(from, target, sizeof target - 1);
  if (length < 0) return false;
  target[length] = 0;
  return platform::FileMakeLink(target, to) == 0;
}

/// Makes `to`, at which nothing may be, a copy of the file or link `from`.
bool CopyToNew(const char* from, const char* to, bool durable) {
  struct stat status {};
  if (lstat(from, &status) != 0) return false;
  if (S_ISLNK(status.st_mode)) return CopyLink(from, to);
  if (!S_ISREG(status.st_mode)) return false;  // To open a pipe would wait for its other end.
  const int source = platform::FileOpen(from, O_RDONLY | O_NOFOLLOW | O_NONBLOCK, 0);
  if (source < 0) return false;
  const bool whole = CopyContent(source, to, durable);
  platform::FileClose(source);
  return whole;
}

/// A path beside `path`, where a rename can take its place. Longer than a fixed text if it must.
void TemporaryBeside(char (&out)[PATH_MAX], const char* path) {
  static std::atomic<unsigned> counter{0};
  const char* separator = strrchr(path, '/');
  const int folder = separator ? static_cast<int>(separator + 1 - path) : 0;
  TextFormat(out, "%.*s.orvaneftp-%d-%u.tmp", folder, path, static_cast<int>(getpid()), counter++);
}

}  // namespace

bool LFile::CopyFile(const char* from, const char* to) {
  if (!TestFileExists(to)) {
    CopyToNew(from, to, false);
    return true;
  }
  char temporary[PATH_MAX];
  TemporaryBeside(temporary, to);
  if (!CopyToNew(from, temporary, true)) return false;
  if (platform::FileRename(temporary, to) == 0) return true;
  platform::FileUnlink(temporary);
  return false;
}
