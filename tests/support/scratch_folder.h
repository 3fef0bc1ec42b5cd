// A folder for one test, removed with all that is in it.
#pragma once

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <set>
#include <stdlib.h>
#include <string>

class ScratchFolder {
 public:
  ScratchFolder() {
    char pattern[] = "/tmp/orvane-scratch-XXXXXX";
    EXPECT_NE(mkdtemp(pattern), nullptr);
    root = pattern;
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
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream(path, std::ios::binary) << content;
    return path;
  }
  std::string MakeFolder(const std::string& name) const {
    std::filesystem::create_directories(Path(name));
    return Path(name);
  }
  std::string Read(const std::string& name) const {
    std::ifstream file(Path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
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
