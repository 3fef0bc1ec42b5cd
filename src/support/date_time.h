// Dates: one signed 64-bit count of seconds since the start of 1970, UTC, and its texts in local time.
//
// 0 means no date: each text form of 0 is empty. Any thread. All rules of local time are the C library's, so
// TZ and the machine's own zone decide.
#pragma once

#include <atomic>
#include <cstdint>

#include "support/text.h"

class LDateTime {
 public:
  /// "Jan" to "Dec": what the listing lines of servers carry.
  static const char* const szMonths[12];
  /// "1月" to "12月".
  static const char* const szMonthsLong[12];

  LDateTime() = default;
  explicit LDateTime(int64_t time) : iTime(time) {}

  // Texts. The outputs are emptied first and stay empty for a time of 0 and for one that has no calendar
  // date.

  /// "2026-02-03" and "14:03:22".
  static void GetDateTime(int64_t time, char (&date)[kTextSize], char (&timeText)[kTextSize]);
  /// "2026-02-03".
  static void GetDateYYYYHMMHDD(int64_t time, char (&out)[kTextSize]);
  /// "14-03-22", fit for a file name.
  static void GetTimeHHHMMHSS(int64_t time, char (&out)[kTextSize]);
  /// "2026-02-03 14:03:22".
  void GetDateTime(char (&out)[kTextSize]) const;
  /// The same text as GetDateTime.
  void GetDateTimeInLocalFormat(char (&out)[kTextSize]) const;

  // Setting. Both give what mktime gave; on its failure (-1) `time` keeps its value. A year below 70 lies in
  // the 2000s, one from 70 to 1899 counts from 1900. Parts out of their range carry over, as mktime does it.

  static int64_t SetDateTime(int64_t& time, int year, int month, int day, int hour, int minute, int second);
  /// Reads "2024-5-31" and "14:03:22"; what a text leaves out is January, 1 or 0. An empty date sets 0, gives
  /// 0.
  static int64_t SetDateTime(int64_t& time, const char* date, const char* timeText);

  /// This time moved by whole months, the day clipped to the length of the month it arrives in.
  int64_t AdjustByMonths(int months) const;

  /// 0 for a month outside 1 to 12.
  static int GetNumberOfDaysInMonth(int year, int month);
  /// Seconds to add to local time to get UTC at this moment: negative east of Greenwich.
  static int GetTimeZoneOffset();
  /// Local midnight of the day this program was compiled.
  static int64_t GetBuildDate();
  /// The same for a day as the compiler writes it: "Feb  3 2026".
  static int64_t TimeFromCompileDate(const char* text);

  /// How the user's locale orders the parts of a date: what LGetLocaleDateFormatOrder gives.
  struct DateFormatOrder {
    static std::atomic<int> iOrder;  ///< -1 until the locale was asked.
  };

  int64_t iTime = 0;
};

/// A date as the lists show it.
class LDateTimeMod : public LDateTime {
 public:
  using LDateTime::LDateTime;

  /// The date by the locale's order, which is read once in a run: "2026/02/03", "02/03/2026" or "03/02/2026".
  void GetDateLocalFormatMod(char (&out)[kTextSize]) const;
};

constexpr int kOrderMonthDayYear = 0;
constexpr int kOrderDayMonthYear = 1;
constexpr int kOrderYearMonthDay = 2;

/// The order of the present locale, one of the above.
int LGetLocaleDateFormatOrder();
/// The order that a date format of the C library (D_FMT) shows.
int LDateFormatOrderOf(const char* format);
