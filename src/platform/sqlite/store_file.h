// Where the preference file lies, with the modes that keep it private, and how a damaged one is kept aside.
#pragma once

#include <cstdint>
#include <string>
#include <sys/types.h>

namespace platform {

/// The file's identity on disk, to notice that a path leads to another file than the one opened.
struct FileIdentity {
  dev_t device = 0;
  ino_t node = 0;
  bool operator==(const FileIdentity&) const = default;
};

/// Absolute path of the preference file; empty if the desktop names no folder or the path is too long.
std::string StoreFilePath();
/// Opens it for reading, under a shared lock that keeps it in its place. Makes the folders (0700) and an empty file
/// (0600) where there are none, and takes other users' rights away from what is there. False if there is no file
/// afterwards. `file` is the caller's to close; -1 where it cannot be opened, and then nothing is held.
bool StoreFileOpenInPlace(const std::string& path, FileIdentity& identity, int& file);
/// By its permissions and the disk's.
bool StoreFileMayBeWritten(const std::string& path);
/// False if nothing is there.
bool StoreFileIdentify(const std::string& path, FileIdentity& identity);
/// The database's own counter of commits, from the file's header. Every commit changes it before it is
/// complete. The descriptor must not be closed while a database is open on the file: that would take the
/// database's locks away.
bool StoreFileReadCounter(int file, uint32_t& counter);
/// Renames the file and its journal; returns the file's new path, empty if it is still in its place. Does
/// nothing when the path leads to another file than `damaged`: another process was quicker. Waits until no process
/// holds the file in its place. No database may be open on it.
std::string StoreFileKeepAside(const std::string& path, const FileIdentity& damaged);

}  // namespace platform
