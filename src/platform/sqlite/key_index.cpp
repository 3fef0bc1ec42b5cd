#include "platform/sqlite/key_index.h"

#include <algorithm>
#include <utility>

namespace platform {

namespace {

int LowerAscii(char c) { return c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : static_cast<unsigned char>(c); }

/// "/" weighs less than any byte of a name, and the end of a key less than "/": so "a", "a/b", "a b" is the
/// order, and the keys of the name "a" are not torn apart by the name "a b".
int Weight(char c) { return c == '/' ? 1 : LowerAscii(c) + 1; }

int CompareWithoutCase(std::string_view left, std::string_view right) {
  const size_t common = std::min(left.size(), right.size());
  for (size_t i = 0; i < common; ++i) {
    const int difference = Weight(left[i]) - Weight(right[i]);
    if (difference != 0) return difference;
  }
  if (left.size() == right.size()) return 0;
  return left.size() < right.size() ? -1 : 1;
}

bool IsBefore(std::string_view left, std::string_view right) {
  const int order = CompareWithoutCase(left, right);
  return order != 0 ? order < 0 : left < right;
}

std::string_view NameBehind(std::string_view key, size_t prefix, size_t limit) {
  const std::string_view rest = key.substr(prefix);
  return rest.substr(0, std::min(rest.find('/'), limit));
}

}  // namespace

void KeyIndex::Assign(std::vector<std::string> fresh) {
  keys = std::move(fresh);
  std::sort(keys.begin(), keys.end(), IsBefore);
}

void KeyIndex::Insert(std::string_view key) {
  const auto place = std::lower_bound(keys.begin(), keys.end(), key, IsBefore);
  if (place == keys.end() || *place != key) keys.emplace(place, key);
}

void KeyIndex::Remove(std::string_view key) {
  const auto place = std::lower_bound(keys.begin(), keys.end(), key, IsBefore);
  if (place != keys.end() && *place == key) keys.erase(place);
}

size_t KeyIndex::FirstWithPrefix(std::string_view prefix) const {
  const auto first = std::partition_point(
      keys.begin(), keys.end(), [prefix](const std::string& key) { return CompareWithoutCase(key, prefix) < 0; });
  return static_cast<size_t>(first - keys.begin());
}

bool KeyIndex::StartsWith(std::string_view key, std::string_view prefix) {
  return key.size() >= prefix.size() && CompareWithoutCase(key.substr(0, prefix.size()), prefix) == 0;
}

std::string_view KeyIndex::NextName(std::string_view prefix, std::string_view previous, size_t limit) const {
  const auto first = keys.begin() + static_cast<std::ptrdiff_t>(FirstWithPrefix(prefix));
  // An empty name never comes after `previous`, so that it is passed over with the rest.
  const auto next = std::partition_point(first, keys.end(), [=](const std::string& key) {
    return StartsWith(key, prefix) && CompareWithoutCase(NameBehind(key, prefix.size(), limit), previous) <= 0;
  });
  if (next == keys.end() || !StartsWith(*next, prefix)) return {};
  return NameBehind(*next, prefix.size(), limit);
}

}  // namespace platform
