// Lines of a history by which a test sees whose they are, which ones are missing, and whether one is torn.
#pragma once

#include <string>

#include "support/text.h"

/// "A 00042 " and up to 199 bytes more, so that lines begin and end at all places of the file's blocks.
inline std::string NumberedLine(char copy, int number) {
  char head[16];
  TextFormat(head, "%c %05d ", copy, number);
  return head + std::string(static_cast<size_t>(number * 37 % 200), static_cast<char>('a' + number % 26));
}
