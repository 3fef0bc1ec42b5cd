// Everything the program does to paths, folders and the local file system.
//
// A path is zero-terminated UTF-8 in a text of kTextSize bytes; one that does not fit is cut without an
// error, and longer paths are not supported. Where a path is parsed, `/` and the backslash both separate. Any
// thread: nothing here keeps state. Results are a boolean or an empty output; nothing shows a message.
#pragma once

#include <cstdint>
#include <dirent.h>

#include "platform/folders.h"
#include "support/strings.h"
#include "support/text.h"

class LMacWindow;

class LFile {
 public:
  class FolderIterator;
  class FolderIteratorAllFiles;

  // The text of paths.

  /// `folder`, a separator if it needs one, `name` and `ext`. At most 258 bytes of the folder are taken.
  /// `out` may be `folder`.
  static void _MakeFilePath(char (&out)[kTextSize], const char* folder, const char* name, const char* ext);
  /// What stands before the last separator; "/" if that is the first byte, empty without a separator.
  static void _GetFolderFromPath(char (&out)[kTextSize], const char* path);
  /// For a path under the root: its top folder.
  static void _GetBaseFolderFromPath(char (&out)[kTextSize], const char* path);
  static void _GetFileFromPath(char (&out)[kTextSize], const char* path);
  /// The file's name without its extension. A dot in front makes a hidden file, not an extension.
  static void _GetFileNameFromPath(char (&out)[kTextSize], const char* path);
  /// The extension with its dot, or empty.
  static void _GetFileExtensionFromPath(char (&out)[kTextSize], const char* path);
  /// The way from the folder `from` to `to`. Compares bytes, not components.
  static void MakeRelativeFolder(char (&out)[kTextSize], const char* from, const char* to);
  /// A path at which nothing exists: with `name`, or else with name_0, name_1 and so on. Empty if a path of
  /// this length leaves no room for a number that is free.
  static void MakeUniqueOrderedFilePath(char (&out)[kTextSize], const char* folder, const char* name, const char* ext);
  /// Wildcards: `?` for one byte, `*` for any run. Case sensitive. A `*` that meets a literal `*` in the name
  /// stands for that byte alone.
  static bool IsMatch(const char* pattern, const char* name);

  // Tests and sizes.

  static bool TestFileExists(const char* path);
  /// True if `path` is `folder` or lies in it, also through links and other spellings.
  static bool IsSubFolder(const char* folder, const char* path);
  /// Free bytes of the volume of `path`, of the root volume if nothing is there; 0 if unknown.
  static uint64_t GetDriveFreeSpace(const char* path);
  /// Whole units, cut: "1 KB" for 1536.
  static void GetSizeFormattedBytes(uint64_t size, char (&out)[kTextSize]);

  // Folders. A path that is a link to a folder counts as a link: deleting removes it, not what it leads to.

  /// Makes `path` and whatever is missing above it. False if it could not be made and false, too, if it was
  /// there.
  static bool CreateFolderTree(const char* path);
  /// False unless the folder is gone. An entry whose path would be cut stays, since the cut path may be
  /// another's.
  static bool DeleteFolderTree(const char* path);
  /// Also removes what its owner has locked.
  static bool DeleteFolderTreeAlways(const char* path);
  /// Removes the files of the folder, and the folder if that leaves it empty.
  static bool DeleteFolderAndFiles(const char* path);
  /// Copies what is in `from` into `to`, which is made if it is missing. False if anything could not be
  /// copied.
  static bool CopyFolderFiles(const char* from, const char* to);
  /// Copies bytes, mode, times and attributes; a link is copied as a link. An existing `to` is replaced in
  /// one step, or stays as it was with result false; without one the result is true, whatever happened.
  static bool CopyFile(const char* from, const char* to);
  /// Mode 0777 for the entry and everything below it. What links lead to is left alone.
  static bool SetFolderSecurityAllAccess(const char* path);

  // Panels of the machine, modal on `parent`. Main thread.

  /// Asks for a folder, starting at `path`; the choice comes back in it. False, with `path` unchanged, when cancelled
  /// or when the chosen path is longer than a text.
  static bool BrowseFolder(LMacWindow* parent, const char* title, char (&path)[kTextSize]);

  // Special folders, each without a trailing separator.

  /// The platform's folder of that kind; if it has none, `fallback` below the home folder, which is made.
  static void GetUserSpecialFolder(char (&out)[kTextSize], platform::Folder kind, const char* fallback);
  static void GetUserDocumentsFolder(char (&out)[kTextSize]);
  static void GetUserDownloadFolder(char (&out)[kTextSize]);
  static void GetUserApplicationsFolder(char (&out)[kTextSize]);
  /// The caches folder, made if it is missing.
  static void GetTempFolder(char (&out)[kTextSize]);
  /// The program's own folder for the user's data, made if it is missing.
  static void GetUserDataFolderApp(char (&out)[kTextSize]);
  /// A folder in that one, made if it is missing.
  static void GetUserDataFolderAppSubFolder(const char* sub, char (&out)[kTextSize]);
  static void GetApplicationsFolder(char (&out)[kTextSize]);
  /// Where the program and its resources lie.
  static void GetProgramFolderApp(char (&out)[kTextSize]);
};

/// The names in a folder that match a pattern, without regard to ASCII case. Leaves out `.`, `..` and names
/// that begin with "__MACOSX". Use: `if (iterator.Open(...)) do { ... } while (iterator.Next());`
class LFile::FolderIterator {
 public:
  FolderIterator() = default;
  FolderIterator(const FolderIterator&) = delete;
  FolderIterator& operator=(const FolderIterator&) = delete;
  virtual ~FolderIterator();

  /// Stands on the first match; false if there is no such folder or no match.
  bool Open(const char* folder, const char* pattern);
  /// For a regular file: that file in its folder; otherwise all of the folder `path`. No wildcards.
  bool Open(const char* path);
  /// False, and closed, after the last match.
  bool Next();
  /// The present entry's name; empty if there is none. Valid until the next call.
  const char* Name() const { return pEntry ? pEntry->d_name : ""; }
  void Close();

  virtual bool _Matches(const char* name) const;

 protected:
  DIR* pFolder = nullptr;    ///< Owned; null when closed.
  dirent* pEntry = nullptr;  ///< Belongs to pFolder.
  char szFolder[kTextSize] = {};
  char szPattern[kTextSize] = {};
};

/// Every name, `.` and `..` included: callers skip those themselves.
class LFile::FolderIteratorAllFiles : public LFile::FolderIterator {
 public:
  bool _Matches(const char* name) const override;
};

/// `name` is `.` or `..`.
bool LIsDotName(const char* name);

/// flock(2) with a time limit: tries, then waits 1/32 of it, and twice as long after each further try.
/// `operation` includes LOCK_NB. 0, or -1 for a failure and when the limit is over.
int flocktimed(int descriptor, int operation, unsigned milliseconds);

enum LFileSizeUnit { kUnitBytes = 0, kUnitKB = 1, kUnitMB = 2 };
/// The size in the unit, rounded up, with commas between the thousands: "1,234,567 B".
void FormatFileSize(char (&out)[kTextSize], uint64_t size, int unit);

// Whole files of text. A reader waits 5000 ms for its lock and a writer 500 ms, which keeps two running
// copies of the program from tearing each other's files.

/// False on any failure and for more than 3,000,000,000 bytes, with `out` unchanged.
bool LLoadText(const char* path, LStringLongTemplate<char>& out);
/// The same, as UTF-8 by the byte order mark, which is dropped. Without a mark the text is taken as it
/// stands.
bool LLoadTextAutoChar(const char* path, LStringLongTemplate<char>& out);
/// Replaces the file's text and marks the file as UTF-8 for other programs; no byte order mark. A file whose
/// lock is not to be had keeps its text.
bool LSaveText(const char* path, const char* text);
bool LSaveTextAsUTF8(const char* path, const LStringLongTemplate<char>& text);
