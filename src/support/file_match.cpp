// Names by pattern: the wildcard rule, and the iterator over a folder.
#include <sys/stat.h>

#include "support/files.h"

namespace {

enum class Match {
  kYes,
  kNo,
  kNever,  ///< Nor with any later start: a star tried every position behind it in vain.
};

Match MatchFrom(const char* pattern, const char* name);

/// `rest` is the pattern behind a star that stands at `name`.
Match MatchStar(const char* rest, const char* name) {
  if (!*rest) return Match::kYes;
  for (; *name; ++name) {
    const Match match = MatchFrom(rest, name);
    if (match != Match::kNo) return match;
  }
  return Match::kNever;
}

/// Without kNever a pattern of many stars would try their positions in all combinations.
Match MatchFrom(const char* pattern, const char* name) {
  for (; *name; ++pattern, ++name) {
    if (!*pattern) return Match::kNo;
    if (*pattern == '?' || *pattern == *name) continue;
    return *pattern == '*' ? MatchStar(pattern + 1, name) : Match::kNo;
  }
  while (*pattern == '*') ++pattern;
  return *pattern ? Match::kNo : Match::kYes;
}

bool IsFolder(const char* path) {
  struct stat status {};
  return stat(path, &status) == 0 && S_ISDIR(status.st_mode);
}

bool IsRegularFile(const char* path) {
  struct stat status {};
  return stat(path, &status) == 0 && S_ISREG(status.st_mode);
}

}  // namespace

bool LFile::IsMatch(const char* pattern, const char* name) { return MatchFrom(pattern, name) == Match::kYes; }

bool LIsDotName(const char* name) { return strcmp(name, ".") == 0 || strcmp(name, "..") == 0; }

LFile::FolderIterator::~FolderIterator() { Close(); }

void LFile::FolderIterator::Close() {
  if (pFolder) closedir(pFolder);
  pFolder = nullptr;
  pEntry = nullptr;
}

bool LFile::FolderIterator::Open(const char* folder, const char* pattern) {
  Close();
  if (!TestFileExists(folder) || !IsFolder(folder)) return false;
  pFolder = opendir(folder);
  if (!pFolder) return false;
  TextCopy(szFolder, folder);
  TextCopy(szPattern, pattern);
  return Next();
}

bool LFile::FolderIterator::Open(const char* path) {
  if (!IsRegularFile(path)) return Open(path, "*");
  char folder[kTextSize];
  char file[kTextSize];
  _GetFolderFromPath(folder, path);
  _GetFileFromPath(file, path);
  return Open(folder, file);
}

bool LFile::FolderIterator::Next() {
  if (!pFolder) return false;
  while ((pEntry = readdir(pFolder)) != nullptr) {
    if (_Matches(pEntry->d_name)) return true;
  }
  Close();
  return false;
}

bool LFile::FolderIterator::_Matches(const char* name) const {
  constexpr char kArchiveLeftover[] = "__MACOSX";
  if (LIsDotName(name) || strncmp(name, kArchiveLeftover, sizeof kArchiveLeftover - 1) == 0) return false;
  char pattern[kTextSize];
  char lowered[kTextSize];
  TextCopy(pattern, szPattern);
  TextCopy(lowered, name);
  TextLowerAscii(pattern);
  TextLowerAscii(lowered);
  return IsMatch(pattern, lowered);
}

bool LFile::FolderIteratorAllFiles::_Matches(const char*) const { return true; }
