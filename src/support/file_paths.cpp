// The text of paths: joining, taking apart, the way between two, free names.
#include "support/files.h"

namespace {

constexpr size_t kFolderLimit = kTextSize - 2;  // Leaves room for one separator.

bool IsSeparator(char c) { return c == '/' || c == '\\'; }

/// The last separator, or null.
const char* LastSeparator(const char* path) {
  const char* last = nullptr;
  for (; *path; ++path) {
    if (IsSeparator(*path)) last = path;
  }
  return last;
}

/// The file's name in `path`.
const char* FileOf(const char* path) {
  const char* last = LastSeparator(path);
  return last ? last + 1 : path;
}

}  // namespace

void LFile::_MakeFilePath(char (&out)[kTextSize], const char* folder, const char* name, const char* ext) {
  char path[kTextSize];
  TextCopyPart(path, folder, strnlen(folder, kFolderLimit));
  const size_t length = strlen(path);
  if (length != 0 && !IsSeparator(path[length - 1])) TextAppend(path, "/");
  TextAppend(path, name);
  TextAppend(path, ext);
  TextCopy(out, path);
}

void LFile::_GetFolderFromPath(char (&out)[kTextSize], const char* path) {
  const char* last = LastSeparator(path);
  if (!last) {
    out[0] = 0;
  } else if (last == path) {
    TextCopy(out, "/");
  } else {
    TextCopyPart(out, path, static_cast<size_t>(last - path));
  }
}

void LFile::_GetBaseFolderFromPath(char (&out)[kTextSize], const char* path) {
  size_t length = strnlen(path, 2);
  while (path[length] && !IsSeparator(path[length])) ++length;
  TextCopyPart(out, path, length);
}

void LFile::_GetFileFromPath(char (&out)[kTextSize], const char* path) { TextCopy(out, FileOf(path)); }

void LFile::_GetFileNameFromPath(char (&out)[kTextSize], const char* path) {
  const char* file = FileOf(path);
  const char* dot = strrchr(file, '.');
  TextCopyPart(out, file, dot && dot != file ? static_cast<size_t>(dot - file) : strlen(file));
}

void LFile::_GetFileExtensionFromPath(char (&out)[kTextSize], const char* path) {
  TextCopy(out, strrchr(FileOf(path), '.'));
}

void LFile::MakeRelativeFolder(char (&out)[kTextSize], const char* from, const char* to) {
  char start[kTextSize];
  TextCopyPart(start, from, strnlen(from, kFolderLimit));
  const size_t length = strlen(start);
  if (length == 0 || start[length - 1] != '/') TextAppend(start, "/");
  const char* left = start;
  while (*left && *left == *to) ++left, ++to;
  char relative[kTextSize] = "";
  for (; *left; ++left) {
    if (*left == '/') TextAppend(relative, "../");
  }
  TextAppend(relative, *to == '/' ? to + 1 : to);
  TextCopy(out, relative);
}

void LFile::MakeUniqueOrderedFilePath(char (&out)[kTextSize], const char* folder, const char* name, const char* ext) {
  char path[kTextSize];
  char previous[kTextSize];
  _MakeFilePath(path, folder, name, ext);
  for (unsigned number = 0; TestFileExists(path); ++number) {
    TextCopy(previous, path);
    char numbered[kTextSize];
    TextFormat(numbered, "%s_%u", name, number);
    _MakeFilePath(path, folder, numbered, ext);
    // The number was cut away: every further try would ask for the same path.
    if (strcmp(path, previous) == 0) {
      out[0] = 0;
      return;
    }
  }
  TextCopy(out, path);
}
