#include "client/remote_paths.h"

#include <sys/stat.h>

#include "support/files.h"
#include "support/log.h"
#include "support/strings.h"
#include "support/window/window.h"

int RemoteCompareFileSizes(const char* a, const char* b, bool ascending) {
  if (!*b) return *a ? 1 : 0;
  if (!*a) return -1;
  const size_t lengthA = strlen(a);
  const size_t lengthB = strlen(b);
  int order;
  if (lengthA != lengthB) {
    order = lengthA > lengthB ? 1 : -1;
  } else {
    order = strcmp(a, b);
  }
  return ascending ? order : -order;
}

void RemotePathOfLocal(char (&out)[kTextSize], const char* localBase, const char* remoteBase, const char* localPath) {
  const size_t skipped = strlen(localBase);
  const size_t length = strlen(localPath);
  char rest[kTextSize];
  TextCopy(rest, localPath + (skipped < length ? skipped : length));
  for (char* c = rest; *c; ++c) {
    if (*c == '\\') *c = '/';
  }
  const char* relative = rest[0] == '/' ? rest + 1 : rest;
  TextFormat(out, "%s/%s", strcmp(remoteBase, "/") == 0 ? "" : remoteBase, relative);
}

void RemoteJoin(char (&out)[kTextSize], const char* folder, const char* name) {
  const size_t length = strlen(folder);
  const bool closed = length != 0 && folder[length - 1] == '/';
  char joined[kTextSize];
  TextFormat(joined, closed ? "%s%s" : "%s/%s", folder, name);
  TextCopy(out, joined);
}

void RemoteLinkTarget(char (&out)[kTextSize], const char* text) {
  TextCopyPart(out, text, strcspn(text, "->"));
  LStringTrimWhiteSpace(out);
}

void RemoteCleanName(char (&out)[kTextSize], const char* name, bool noSpaces, bool lowerCase) {
  TextCopy(out, name);
  for (char* c = out; noSpaces && *c; ++c) {
    if (*c == ' ') *c = '_';
  }
  if (lowerCase) LCharsetsLowerCase(out);
}

bool RemoteNameIsPlain(const char* name) {
  return name[0] != 0 && !LIsDotName(name) && strpbrk(name, "/\\") == nullptr;
}

bool RemoteNameIsTrusted(const char* name, const char* shown) {
  if (RemoteNameIsPlain(name)) return true;
  LOGWARNF("疑わしい名前のファイル（%s）のダウンロードをスキップします", shown);
  return false;
}

bool RemoteIsDotEntry(const char* name) {
  return LIsDotName(name) || strcmp(name, "./") == 0 || strcmp(name, "../") == 0;
}

bool TransferPathFits(const char* folder, const char* name) {
  if (strlen(folder) + 1 + strlen(name) < kTextSize) return true;
  LOGWARNF("パスが長すぎるためスキップします：%s", name);
  return false;
}

int64_t LocalModifiedTime(const char* path) {
  struct stat status;
  return stat(path, &status) == 0 ? status.st_mtime : 0;
}

bool LocalIsFolder(const char* path) {
  struct stat status;
  return stat(path, &status) == 0 && S_ISDIR(status.st_mode);
}

namespace PaneUtils {

void GetUpPath(const char* path, char (&out)[kTextSize], const char* root) {
  const size_t length = strlen(path);
  const bool closed = length != 0 && (path[length - 1] == '/' || path[length - 1] == '\\');
  LFile::_GetFolderFromPath(out, path);
  if (closed) {
    char above[kTextSize];
    LFile::_GetFolderFromPath(above, out);
    TextCopy(out, above);
  }
  if (!out[0]) TextCopy(out, root);
}

void LVSetCurSelVisible(LMacWindow& window, int list, int row) {
  if (row < 0) return;
  window.LVSetCurSel(list, row);
  window.LVEnsureVisible(list, row);
}

void LVSetCurSelVisible(LMacWindow& window, int list, const char* name) {
  if (*name) LVSetCurSelVisible(window, list, window.LVFindString(list, name));
}

}  // namespace PaneUtils
