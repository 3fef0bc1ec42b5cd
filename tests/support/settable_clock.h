// A clock that a test sets. The test program links settable_clock.cpp in place of the machine's clocks.
#pragma once

#include <cstdint>
#include <vector>

/// While it lives, the wall clock stands where it was put and sleeps take no time.
class SettableClock {
 public:
  explicit SettableClock(int64_t wallSeconds);
  SettableClock(const SettableClock&) = delete;
  SettableClock& operator=(const SettableClock&) = delete;
  ~SettableClock();

  void Set(int64_t wallSeconds);
  /// The sleeps asked for since it was made, in milliseconds.
  std::vector<unsigned> Sleeps() const;
};
