// What every operation that fills a fixed text shows at the lengths where an off-by-one would.
#pragma once

#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/text.h"

constexpr size_t kBoundaries[] = {0, 258, 259, 260, 261};

/// An operation that is given a text and fills `out` with it, `before` in front of it and `behind` after it.
struct FixedTextFiller {
  const char* name;
  std::string before;
  std::string behind;
  std::function<void(const std::string& text, char (&out)[kTextSize])> fill;
};

/// Each result is cut at 259 bytes and terminated, and nothing is written behind the array.
inline void ExpectCutAtTheArray(const std::vector<FixedTextFiller>& fillers) {
  for (const FixedTextFiller& filler : fillers) {
    for (const size_t length : kBoundaries) {
      char guarded[kTextSize + 1];
      memset(guarded, '#', sizeof guarded);
      char(&out)[kTextSize] = reinterpret_cast<char(&)[kTextSize]>(guarded);
      const std::string text(length, 'x');
      filler.fill(text, out);
      EXPECT_EQ(out, (filler.before + text + filler.behind).substr(0, kTextSize - 1)) << filler.name << ' ' << length;
      EXPECT_EQ(guarded[kTextSize], '#') << filler.name << ' ' << length;
    }
  }
}
