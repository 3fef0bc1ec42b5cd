// A disk that keeps for certain only what was synchronised: after a power cut any part of the later writes
// may be on it, or torn, and names that were made later may be missing.
#pragma once

#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "support/system_calls.h"

/// The files of one folder, as a process's system calls left them.
class VolatileDisk {
 public:
  enum class Fate { kLost, kTorn, kWritten };
  /// Of the write `index` of `count` to the file that are not synchronised.
  using Chooser = std::function<Fate(const std::string& file, size_t index, size_t count)>;

  explicit VolatileDisk(std::string path) : folder(std::move(path)) {}

  /// False for a call that this disk does not know how to follow.
  bool Follow(const SystemCall& call) {
    if (call.hasFailed) return true;
    if (call.name == "openat") {
      if (call.Has("O_CREAT") && IsInside(call.Text())) files.try_emplace(NameOf(call.Text()));
      return !call.Has("O_TRUNC");
    }
    if (call.File() == folder) {
      for (auto& [name, file] : files) file.isNameDurable = true;
      return true;
    }
    if (!IsInside(call.File())) return call.name != "rename" && call.name != "unlink";
    File& file = files[NameOf(call.File())];
    if (call.name == "pwrite64") {
      file.pending.push_back({static_cast<size_t>(call.LastNumber()), call.Text(), false});
    } else if (call.name == "ftruncate") {
      file.pending.push_back({static_cast<size_t>(call.LastNumber()), "", true});
    } else if (call.name == "fdatasync" || call.name == "fsync") {
      for (const Write& write : file.pending) Apply(file.durable, write, write.data.size());
      file.pending.clear();
    } else {
      return false;
    }
    return true;
  }

  /// Writes the files into the folder `target`. A name that is not durable is there if `areNamesWritten`.
  void CutPower(const std::string& target, bool areNamesWritten, const Chooser& choose) const {
    std::filesystem::remove_all(target);
    std::filesystem::create_directories(target);
    for (const auto& [name, file] : files) {
      if (!file.isNameDurable && !areNamesWritten) continue;
      std::string content = file.durable;
      for (size_t i = 0; i < file.pending.size(); ++i) {
        const Write& write = file.pending[i];
        const Fate fate = choose(name, i, file.pending.size());
        // A disk writes sectors whole.
        const size_t torn = write.data.size() / 2 / kSector * kSector;
        if (fate != Fate::kLost) Apply(content, write, fate == Fate::kTorn ? torn : write.data.size());
      }
      std::ofstream(target + "/" + name, std::ios::binary) << content;
    }
  }

  bool IsSettled() const {
    for (const auto& [name, file] : files) {
      if (!file.isNameDurable || !file.pending.empty()) return false;
    }
    return true;
  }

 private:
  static constexpr size_t kSector = 512;

  struct Write {
    size_t offset;
    std::string data;
    bool isTruncate;  ///< Cuts the file to `offset`.
  };
  struct File {
    std::string durable;
    std::vector<Write> pending;
    bool isNameDurable = false;
  };

  static void Apply(std::string& content, const Write& write, size_t size) {
    if (write.isTruncate) {
      content.resize(write.offset);
    } else if (size != 0) {
      if (content.size() < write.offset + size) content.resize(write.offset + size);
      content.replace(write.offset, size, write.data, 0, size);
    }
  }
  bool IsInside(const std::string& path) const { return path.compare(0, folder.size() + 1, folder + "/") == 0; }
  std::string NameOf(const std::string& path) const { return path.substr(folder.size() + 1); }

  std::string folder;
  std::map<std::string, File> files;
};
