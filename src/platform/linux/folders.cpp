// The user's folders by the XDG base directories and the desktop's user-dirs.dirs.
#include "platform/folders.h"

#include <cstdlib>
#include <fstream>
#include <limits.h>
#include <pwd.h>
#include <string>
#include <string_view>
#include <unistd.h>

namespace platform {
namespace {

using Path = std::string;  ///< Empty if the desktop names none.

/// The value of an environment variable if it is an absolute path. The base directories say that a relative
/// one is to be ignored.
Path AbsoluteFromEnvironment(const char* name) {
  const char* value = getenv(name);
  return value && value[0] == '/' ? Path(value) : Path();
}

Path Home() {
  Path home = AbsoluteFromEnvironment("HOME");
  if (!home.empty()) return home;
  passwd entry{};
  passwd* found = nullptr;
  char buffer[16384];
  if (getpwuid_r(getuid(), &entry, buffer, sizeof buffer, &found) != 0 || !found || !found->pw_dir) return {};
  return found->pw_dir[0] == '/' ? Path(found->pw_dir) : Path();
}

Path BelowHome(std::string_view relative) {
  Path home = Home();
  if (home.empty()) return {};
  return home.append("/").append(relative);
}

Path BaseFolder(const char* variable, std::string_view relative) {
  Path folder = AbsoluteFromEnvironment(variable);
  return folder.empty() ? BelowHome(relative) : folder;
}

/// Takes the text between double quotes, a backslash standing for the byte behind it. False without both
/// quotes.
bool ReadQuoted(std::string_view text, Path& out) {
  if (text.empty() || text[0] != '"') return false;
  for (size_t i = 1; i < text.size(); ++i) {
    if (text[i] == '"') return true;
    if (text[i] == '\\' && i + 1 < text.size()) ++i;
    out += text[i];
  }
  return false;
}

std::string_view SkipBlanks(std::string_view text) {
  const size_t start = text.find_first_not_of(" \t");
  return start == std::string_view::npos ? std::string_view() : text.substr(start);
}

/// The folder that one line of user-dirs.dirs gives to `key`; empty if the line is about something else. The
/// file is written for a shell, but only two forms of value are valid: "$HOME/folder" and an absolute path.
Path FolderFromLine(std::string_view line, std::string_view key) {
  line = SkipBlanks(line);
  if (line.substr(0, key.size()) != key) return {};
  line = SkipBlanks(line.substr(key.size()));
  if (line.empty() || line[0] != '=') return {};
  Path value;
  if (!ReadQuoted(SkipBlanks(line.substr(1)), value)) return {};
  constexpr std::string_view kHomeVariable = "$HOME";
  if (value.compare(0, kHomeVariable.size(), kHomeVariable) == 0) {
    const Path rest = value.substr(kHomeVariable.size());
    if (!rest.empty() && rest[0] != '/') return {};
    const Path home = Home();
    return home.empty() ? Path() : home + rest;
  }
  return !value.empty() && value[0] == '/' ? value : Path();
}

/// The last line that names the folder counts, as it would for a shell.
Path UserDirectory(std::string_view key) {
  std::ifstream file(BaseFolder("XDG_CONFIG_HOME", ".config") + "/user-dirs.dirs");
  Path folder;
  for (std::string line; std::getline(file, line);) {
    Path found = FolderFromLine(line, key);
    if (!found.empty()) folder = std::move(found);
  }
  return folder;
}

Path SystemApplications() {
  const char* value = getenv("XDG_DATA_DIRS");
  std::string_view list = value && value[0] ? value : "/usr/local/share/:/usr/share/";
  while (!list.empty()) {
    const std::string_view entry = list.substr(0, list.find(':'));
    list.remove_prefix(entry.size() < list.size() ? entry.size() + 1 : list.size());
    if (entry.empty() || entry[0] != '/') continue;
    Path folder = Path(entry) + "/applications";
    if (access(folder.c_str(), F_OK) == 0) return folder;
  }
  return {};
}

Path ProgramFolder() {
  char target[PATH_MAX];
  const ssize_t length = readlink("/proc/self/exe", target, sizeof target);
  if (length <= 0 || static_cast<size_t>(length) == sizeof target) return {};
  const std::string_view path(target, static_cast<size_t>(length));
  return Path(path.substr(0, path.rfind('/')));
}

Path Find(Folder folder) {
  switch (folder) {
    case Folder::kHome: return Home();
    case Folder::kDocuments: return UserDirectory("XDG_DOCUMENTS_DIR");
    case Folder::kDownloads: return UserDirectory("XDG_DOWNLOAD_DIR");
    case Folder::kApplications: {
      Path data = BaseFolder("XDG_DATA_HOME", ".local/share");
      return data.empty() ? data : data + "/applications";
    }
    case Folder::kCaches: return BaseFolder("XDG_CACHE_HOME", ".cache");
    case Folder::kData: return BaseFolder("XDG_DATA_HOME", ".local/share");
    case Folder::kConfig: return BaseFolder("XDG_CONFIG_HOME", ".config");
    case Folder::kSystemApplications: return SystemApplications();
    case Folder::kProgram: return ProgramFolder();
  }
  return {};
}

/// One separator for each run, none at the end.
Path Tidy(const Path& path) {
  Path tidy;
  for (const char c : path) {
    if (c != '/' || tidy.empty() || tidy.back() != '/') tidy += c;
  }
  if (tidy.size() > 1 && tidy.back() == '/') tidy.pop_back();
  return tidy;
}

}  // namespace

bool FolderPath(Folder folder, char (&out)[kFixedText]) {
  out[0] = 0;
  const Path path = Tidy(Find(folder));
  if (path.empty() || path.size() >= kFixedText) return false;
  path.copy(out, path.size());
  out[path.size()] = 0;
  return true;
}

}  // namespace platform
