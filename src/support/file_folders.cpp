// Work on whole folders, and what is asked of one.
#include <sys/stat.h>
#include <unistd.h>

#include "platform/file_io.h"
#include "support/files.h"

namespace {

/// Joins by the separator of the file system alone, since a backslash may be part of a local name. False if
/// the whole path does not fit: the cut one could name another entry.
bool JoinWhole(char (&out)[kTextSize], const char* folder, const char* name) {
  const size_t length = strlen(folder);
  const bool separated = length != 0 && folder[length - 1] == '/';
  if (length + (separated ? 0 : 1) + strlen(name) >= kTextSize) return false;
  TextCopy(out, folder);
  if (!separated) TextAppend(out, "/");
  TextAppend(out, name);
  return true;
}

/// The type bits of the entry itself; 0 if there is none.
mode_t TypeOf(const char* path) {
  struct stat status {};
  return lstat(path, &status) == 0 ? status.st_mode & S_IFMT : 0;
}

bool LeadsToFolder(const char* path) {
  struct stat status {};
  return stat(path, &status) == 0 && S_ISDIR(status.st_mode);
}

/// Calls `work` with the path of each entry, `.` and `..` left out. False if any call was, or a path did not
/// fit.
template <typename Work>
bool ForEachEntry(const char* folder, Work work) {
  bool all = true;
  LFile::FolderIteratorAllFiles iterator;
  if (!iterator.Open(folder)) return all;
  do {
    char path[kTextSize];
    if (LIsDotName(iterator.Name())) continue;
    if (!JoinWhole(path, folder, iterator.Name()) || !work(path)) all = false;
  } while (iterator.Next());
  return all;
}

enum class Locked { kStays, kGoes };

bool DeleteTree(const char* path, Locked locked) {
  if (!path[0]) return false;
  if (TypeOf(path) == S_IFLNK) return platform::FileUnlink(path) == 0;
  // What locks an entry here is a folder that does not let its own owner remove things from it; entries have
  // no flag of their own that the owner could lift.
  if (locked == Locked::kGoes) platform::FileChangeMode(path, 0700);
  ForEachEntry(path, [locked](const char* entry) {
    return TypeOf(entry) == S_IFDIR ? DeleteTree(entry, locked) : platform::FileUnlink(entry) == 0;
  });
  return platform::FileRemoveFolder(path) == 0;
}

/// Copies one entry of a folder.
bool CopyEntryTo(const char* from, const char* toFolder) {
  char to[kTextSize];
  const char* separator = strrchr(from, '/');
  if (!JoinWhole(to, toFolder, separator ? separator + 1 : from)) return false;
  if (TypeOf(from) != S_IFDIR) return LFile::CopyFile(from, to);
  platform::FileMakeFolder(to, 0777);
  return LeadsToFolder(to) && LFile::CopyFolderFiles(from, to);
}

}  // namespace

bool LFile::TestFileExists(const char* path) {
  return access(path, F_OK) == 0 || (path[0] && platform::FileIsReachable(path));
}

bool LFile::IsSubFolder(const char* folder, const char* path) {
  struct stat wanted {};
  if (stat(folder, &wanted) != 0) return false;
  char step[kTextSize];
  char top[kTextSize];
  TextCopy(step, path);
  _GetBaseFolderFromPath(top, step);
  while (step[0]) {
    struct stat status {};
    if (stat(step, &status) == 0 && status.st_dev == wanted.st_dev && status.st_ino == wanted.st_ino) return true;
    if (strcmp(step, top) == 0) return false;
    _GetFolderFromPath(step, step);
  }
  return false;
}

uint64_t LFile::GetDriveFreeSpace(const char* path) {
  return platform::FileFreeSpace(TestFileExists(path) ? path : "/");
}

bool LFile::CreateFolderTree(const char* path) {
  char parent[kTextSize];
  _GetFolderFromPath(parent, path);
  if (parent[0] && !TestFileExists(parent) && !CreateFolderTree(parent)) return false;
  return platform::FileMakeFolder(path, 0777) == 0;
}

bool LFile::DeleteFolderTree(const char* path) { return DeleteTree(path, Locked::kStays); }

bool LFile::DeleteFolderTreeAlways(const char* path) { return DeleteTree(path, Locked::kGoes); }

bool LFile::DeleteFolderAndFiles(const char* path) {
  ForEachEntry(path, [](const char* entry) { return TypeOf(entry) == S_IFDIR || platform::FileUnlink(entry) == 0; });
  return platform::FileRemoveFolder(path) == 0;
}

bool LFile::CopyFolderFiles(const char* from, const char* to) {
  if (!LeadsToFolder(from)) return false;
  if (!LeadsToFolder(to) && !CreateFolderTree(to)) return false;
  return ForEachEntry(from, [to](const char* entry) { return CopyEntryTo(entry, to); });
}

bool LFile::SetFolderSecurityAllAccess(const char* path) {
  const mode_t type = TypeOf(path);
  if (type == 0 || type == S_IFLNK) return false;
  bool all = platform::FileChangeMode(path, 0777) == 0;
  if (type != S_IFDIR) return all;
  const bool below = ForEachEntry(
      path, [](const char* entry) { return TypeOf(entry) == S_IFLNK || SetFolderSecurityAllAccess(entry); });
  return all && below;
}
