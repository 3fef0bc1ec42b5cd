// The keys of one domain in an order that answers questions about prefixes without a scan.
//
// Order: without regard to ASCII case, "/" before any other byte; keys that differ only by case follow their
// bytes. So all keys under one prefix lie together, and among them all keys under one name. Not locked: the
// store's lock guards it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

class KeyIndex {
 public:
  void Assign(std::vector<std::string> keys);
  void Insert(std::string_view key);
  void Remove(std::string_view key);

  const std::vector<std::string>& Keys() const { return keys; }
  /// Position of the first key that starts with `prefix`, or where it would stand.
  size_t FirstWithPrefix(std::string_view prefix) const;
  /// The name after `previous` under `prefix`, cut to `limit` bytes; empty if there is none. Points into a
  /// key.
  std::string_view NextName(std::string_view prefix, std::string_view previous, size_t limit) const;

  /// Without regard to ASCII case.
  static bool StartsWith(std::string_view key, std::string_view prefix);

 private:
  std::vector<std::string> keys;
};

}  // namespace platform
