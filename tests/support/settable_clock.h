// A clock that a test sets. The test program links settable_clock.cpp in place of the machine's clocks.
#pragma once

#include <cstdint>
#include <time.h>
#include <vector>

/// A moment of the machine's own zone.
inline int64_t LocalTime(int year, int month, int day, int hour, int minute, int second) {
  tm parts{};
  parts.tm_year = year - 1900;
  parts.tm_mon = month - 1;
  parts.tm_mday = day;
  parts.tm_hour = hour;
  parts.tm_min = minute;
  parts.tm_sec = second;
  parts.tm_isdst = -1;
  return mktime(&parts);
}

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
