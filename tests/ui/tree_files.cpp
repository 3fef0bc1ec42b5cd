#include "ui/tree_files.h"

#include <algorithm>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <random>
#include <set>
#include <sys/stat.h>

namespace {

namespace fs = std::filesystem;

/// `%` is the number that tells two names of a form apart.
constexpr const char* kForms[] = {
    "plain%.txt",   "a b%",     "two  blanks%", "\"quoted\"%", "it's%",   "[brackets]%",   "{braces}%",
    "st*r%",        "qu?st%",   ".dot%",        "..two dots%", "-dash%",  "日本語%",       "ファイル 名%",
    "a;size=7; b%", "100 Jan%", "12:30 am%",    "$HOME`x`%",   "#hash&%", "comma, (par)%", "percent%20",
};
constexpr size_t kBlock = 1024 * 1024;
constexpr int64_t kFirstDate = 1300000001;  ///< In 2011.
constexpr int64_t kDateStep = 654321;

std::string NameOf(int number) {
  std::string name = kForms[static_cast<size_t>(number) % std::size(kForms)];
  return name.replace(name.find('%'), 1, std::to_string(number));
}

size_t SizeOf(int number, const TreeSize& size) {
  if (number == size.files - 1) return size.largeBytes;
  return number % 7 == 3 ? 0 : static_cast<size_t>(number) * 7919 % 9000;
}

/// No block is like another one, so that a piece that is missing, doubled or out of place shows.
void WriteBytes(const fs::path& path, size_t bytes, unsigned seed) {
  std::mt19937_64 random(seed);
  std::vector<uint64_t> block(kBlock / sizeof(uint64_t));
  std::generate_n(block.begin(), std::min(block.size(), bytes / sizeof(uint64_t) + 1), [&] { return random(); });
  std::ofstream file(path, std::ios::binary);
  for (size_t done = 0; done < bytes; done += kBlock) {
    block[0] = done ^ seed;
    file.write(reinterpret_cast<const char*>(block.data()),
               static_cast<std::streamsize>(std::min(kBlock, bytes - done)));
  }
}

void SetDate(const fs::path& path, int64_t date) {
  const timespec times[2] = {{date, 0}, {date, 0}};
  utimensat(AT_FDCWD, path.c_str(), times, 0);
}

int64_t DateOf(const fs::path& path) {
  struct stat status = {};
  return stat(path.c_str(), &status) == 0 ? status.st_mtime : -1;
}

bool HaveSameBytes(const fs::path& left, const fs::path& right) {
  if (fs::file_size(left) != fs::file_size(right)) return false;
  std::ifstream a(left, std::ios::binary), b(right, std::ios::binary);
  std::vector<char> ofA(kBlock), ofB(kBlock);
  while (a && b) {
    a.read(ofA.data(), kBlock);
    b.read(ofB.data(), kBlock);
    if (a.gcount() != b.gcount() || memcmp(ofA.data(), ofB.data(), static_cast<size_t>(a.gcount())) != 0) return false;
  }
  return a.eof() && b.eof();
}

std::set<std::string> PathsIn(const std::string& folder) {
  std::set<std::string> paths;
  if (!fs::exists(folder)) return paths;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    paths.insert(entry.path().lexically_relative(folder).string() + (entry.is_directory() ? "/" : ""));
  }
  return paths;
}

}  // namespace

void MakeTreeOfFiles(const std::string& folder, const TreeSize& size) {
  std::vector<fs::path> folders = {folder};
  fs::create_directories(folder);
  for (int i = 0; i < size.folders; ++i) {
    std::string name = "f " + NameOf(i);
    // A server doubles a quote when it tells where it is, and the path is read up to the first one; ProFTPD makes no
    // folder with a star in its name.
    std::erase_if(name, [](char c) { return c == '"' || c == '*'; });
    folders.push_back(folders[static_cast<size_t>(i) / 3] / name);
    fs::create_directory(folders.back());
  }
  // The last folder stays empty.
  const size_t filled = std::max<size_t>(1, folders.size() - 1);
  for (int i = 0; i < size.files; ++i) {
    const fs::path path = folders[static_cast<size_t>(i) % filled] / NameOf(i);
    WriteBytes(path, SizeOf(i, size), static_cast<unsigned>(i) + 1);
    SetDate(path, kFirstDate + i * kDateStep);
  }
}

std::vector<std::string> TreeDifferences(const std::string& left, const std::string& right, Times times) {
  const std::set<std::string> ofLeft = PathsIn(left), ofRight = PathsIn(right);
  std::vector<std::string> differences;
  for (const std::string& path : ofRight) {
    if (ofLeft.count(path) == 0) differences.push_back("right only: " + path);
  }
  for (const std::string& path : ofLeft) {
    const fs::path a = fs::path(left) / path, b = fs::path(right) / path;
    if (ofRight.count(path) == 0) {
      differences.push_back("left only: " + path);
    } else if (path.back() != '/' && !HaveSameBytes(a, b)) {
      differences.push_back("bytes: " + path);
    } else if (path.back() != '/' && times == Times::kCompared && DateOf(a) != DateOf(b)) {
      differences.push_back("date: " + path + " " + std::to_string(DateOf(a)) + " " + std::to_string(DateOf(b)));
    }
  }
  return differences;
}
