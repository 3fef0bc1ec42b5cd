#include "platform/sqlite/store_file.h"

#include <cerrno>
#include <ctime>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/clock.h"
#include "platform/file_io.h"
#include "platform/folders.h"

namespace platform {

namespace {

constexpr mode_t kFolderMode = 0700;
constexpr mode_t kFileMode = 0600;
constexpr mode_t kOthersRights = 0077;
constexpr int kMaximumTries = 100;

bool Exists(const std::string& path) {
  struct stat status;
  return lstat(path.c_str(), &status) == 0;
}

bool MakeFolders(const std::string& folder) {
  for (size_t slash = folder.find('/', 1); slash != std::string::npos; slash = folder.find('/', slash + 1)) {
    FileMakeFolder(folder.substr(0, slash).c_str(),
                   kFolderMode);  // Mostly there already; the last one tells.
  }
  return FileMakeFolder(folder.c_str(), kFolderMode) == 0 || errno == EEXIST;
}

void TakeRightsFromOthers(const std::string& path) {
  struct stat status;
  if (stat(path.c_str(), &status) != 0 || (status.st_mode & kOthersRights) == 0) return;
  // May fail on a disk that is read-only or not ours; reading is still of use then.
  FileChangeMode(path.c_str(), status.st_mode & 07777 & ~kOthersRights);
}

/// "path.damaged-20240131-235959", with a number behind it if that is taken: an older one is never
/// overwritten.
std::string FreeNameFor(const std::string& path) {
  const time_t now = static_cast<time_t>(ClockWallSeconds());
  struct tm parts = {};
  localtime_r(&now, &parts);
  char time[32];
  if (strftime(time, sizeof time, "%Y%m%d-%H%M%S", &parts) == 0) time[0] = 0;
  const std::string plain = path + ".damaged-" + time;
  std::string name = plain;
  for (int number = 2; Exists(name) && number < kMaximumTries; ++number) name = plain + "-" + std::to_string(number);
  return name;
}

/// An empty one, which is what a finished commit leaves, is of no more use.
void MoveJournal(const std::string& from, const std::string& to) {
  struct stat status;
  if (stat(from.c_str(), &status) != 0) return;
  if (status.st_size == 0) {
    FileUnlink(from.c_str());
  } else {
    FileRename(from.c_str(), to.c_str());
  }
}

/// False if there is no file afterwards; another process may move it away again at any time.
bool Prepare(const std::string& path) {
  const std::string folder = path.substr(0, path.rfind('/'));
  if (!MakeFolders(folder)) return false;
  TakeRightsFromOthers(folder);
  if (Exists(path)) {
    TakeRightsFromOthers(path);
    return true;
  }
  // The database library would make the file readable by all. Its journal takes over the file's mode.
  const int file = FileOpen(path.c_str(), O_RDWR | O_CREAT | O_EXCL, kFileMode);
  if (file < 0) return errno == EEXIST;
  FileClose(file);
  return true;
}

}  // namespace

std::string StoreFilePath() {
  char folder[kFixedText];
  if (!FolderPath(Folder::kConfig, folder)) return {};
  return std::string(folder) + "/orvaneftp/preferences.sqlite";
}

bool StoreFileOpenInPlace(const std::string& path, FileIdentity& identity, int& file) {
  if (path.empty()) return false;
  for (int attempt = 0; attempt < kMaximumTries && Prepare(path); ++attempt) {
    file = FileOpen(path.c_str(), O_RDONLY, 0);
    if (file < 0 && errno == ENOENT) continue;  // Kept aside since it was made sure of.
    if (file < 0) return StoreFileIdentify(path, identity);
    FileLock(file, LOCK_SH);  // Some disks have no locks; the file is of use all the same.
    struct stat status;
    if (FileStatus(file, status) == 0 && StoreFileIdentify(path, identity) &&
        identity == FileIdentity{status.st_dev, status.st_ino}) {
      return true;
    }
    FileClose(file);  // Kept aside between its opening and its lock.
  }
  file = -1;
  return false;
}

bool StoreFileMayBeWritten(const std::string& path) { return faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) == 0; }

bool StoreFileIdentify(const std::string& path, FileIdentity& identity) {
  struct stat status;
  if (path.empty() || stat(path.c_str(), &status) != 0) return false;
  identity = {status.st_dev, status.st_ino};
  return true;
}

bool StoreFileReadCounter(int file, uint32_t& counter) {
  constexpr off_t kPlaceInHeader = 24;
  return FileSeek(file, kPlaceInHeader, SEEK_SET) == kPlaceInHeader &&
         FileRead(file, &counter, sizeof counter) == ssize_t{sizeof counter};
}

std::string StoreFileKeepAside(const std::string& path, const FileIdentity& damaged) {
  const int file = FileOpen(path.c_str(), O_RDONLY, 0);
  if (file < 0) return {};
  std::string kept;
  FileIdentity present;
  // Two processes may find the damage at once. The lock is on the damaged file itself: whoever gets it second
  // sees that the path leads elsewhere by now, and leaves the fresh file alone.
  if (FileLock(file, LOCK_EX) == 0 && StoreFileIdentify(path, present) && present == damaged) {
    const std::string name = FreeNameFor(path);
    // The journal first: one left beside a fresh file would be played back into it.
    MoveJournal(path + "-journal", name + "-journal");
    if (FileRename(path.c_str(), name.c_str()) == 0) kept = name;
  }
  FileClose(file);
  return kept;
}

}  // namespace platform
