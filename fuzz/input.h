// The input of a target, taken apart piece by piece.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

class FuzzInput {
 public:
  FuzzInput(const uint8_t* bytes, size_t count) : data(bytes), size(count) {}

  /// The next byte; 0 behind the end.
  uint8_t Byte() {
    if (size == 0) return 0;
    --size;
    return *data++;
  }
  /// The next bytes as a number of eight; zeros behind the end.
  uint64_t Word() {
    uint64_t word = 0;
    const size_t taken = std::min(size, sizeof word);
    if (taken != 0) memcpy(&word, data, taken);
    data += taken;
    size -= taken;
    return word;
  }
  /// A text up to the next zero byte or the end.
  std::string Text() {
    std::string text;
    while (const char c = static_cast<char>(Byte())) text += c;
    return text;
  }
  /// All that is left, zeros too.
  std::string Rest() {
    std::string rest(data, data + size);
    size = 0;
    return rest;
  }
  bool IsEmpty() const { return size == 0; }

 private:
  const uint8_t* data;
  size_t size;
};
