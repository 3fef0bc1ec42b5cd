// A folder for one test, removed with all that is in it.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <set>
#include <string>

#include "support/test_files.h"

class ScratchFolder {
 public:
  explicit ScratchFolder(const std::string& where = "/tmp") : root(where + "/orvane-test-XXXXXX") {
    if (mkdtemp(root.data())) return;
    perror(root.c_str());
    abort();  // Without it a test would write beside it.
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;
  ~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(root, ignored);
  }

  const std::string& Path() const { return root; }
  std::string Path(const std::string& name) const { return root + "/" + name; }

  /// Makes the file with its folders; returns its path.
  std::string Write(const std::string& name, const std::string& content) const {
    const std::string path = Path(name);
    WriteFile(path, content);
    return path;
  }
  std::string MakeFolder(const std::string& name) const {
    std::filesystem::create_directories(Path(name));
    return Path(name);
  }
  std::string Read(const std::string& name) const { return ReadFile(Path(name)); }
  /// True for anything at all, also a link that leads nowhere.
  bool Has(const std::string& name) const {
    return std::filesystem::symlink_status(Path(name)).type() != std::filesystem::file_type::not_found;
  }
  std::set<std::string> Names(const std::string& folder = ".") const {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(Path(folder))) {
      names.insert(entry.path().filename().string());
    }
    return names;
  }

 private:
  std::string root;
};
