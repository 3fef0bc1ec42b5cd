// Cuts received bytes into the short texts that replies and listings are made of. No ownership, any thread.
#pragma once

#include <cstddef>

#include "support/text.h"

/// Walks bytes that end at every line feed, carriage return or zero byte; a line feed and a carriage return
/// side by side, in either order, end one piece and not two. The bytes outlive the walk.
class FtpLinePieces {
 public:
  FtpLinePieces(const char* bytes, size_t size) : pNext(bytes), pEnd(bytes + size) {}

  /// The next piece, perhaps empty, cut at 259 bytes; what is longer is dropped. False behind the last byte.
  [[nodiscard]] bool Next(char (&piece)[kTextSize]);

 private:
  const char* pNext;
  const char* pEnd;
};
