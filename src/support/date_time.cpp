#include "support/date_time.h"

#include <climits>
#include <langinfo.h>
#include <time.h>

#include "platform/clock.h"
#include "support/strings.h"

const char* const LDateTime::szMonths[12] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                             "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
const char* const LDateTime::szMonthsLong[12] = {"1月", "2月", "3月", "4月",  "5月",  "6月",
                                                 "7月", "8月", "9月", "10月", "11月", "12月"};

std::atomic<int> LDateTime::DateFormatOrder::iOrder{-1};

namespace {

constexpr int kLastYear = INT_MAX;  // What a text of a date can show.

/// False for a year that no int holds.
bool BreakDownAny(int64_t time, tm& parts) {
  const time_t seconds = time;
  return localtime_r(&seconds, &parts) != nullptr && parts.tm_year <= kLastYear - 1900;
}

/// The same, and false for no date.
bool BreakDown(int64_t time, tm& parts) { return time != 0 && BreakDownAny(time, parts); }

void FormatDate(const tm& parts, char (&out)[kTextSize]) {
  TextFormat(out, "%.4d-%.2d-%.2d", parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday);
}

void FormatTime(const tm& parts, char (&out)[kTextSize]) {
  TextFormat(out, "%.2d:%.2d:%.2d", parts.tm_hour, parts.tm_min, parts.tm_sec);
}

/// Years since 1900 for a year of two or of four digits.
int YearOfTm(int year) {
  if (year < 70) return year + 100;
  return year < 1900 ? year : year - 1900;
}

/// Reads a decimal number as the C library's %d does: blanks and a sign may stand before it. Leaves the
/// cursor behind it. A number that no int holds counts as the nearest one. False, with both untouched, if
/// there is none.
bool ReadInt(const char*& cursor, int& value) {
  const char* at = cursor;
  while (*at == ' ' || (*at >= '\t' && *at <= '\r')) ++at;
  const bool negative = *at == '-';
  if (*at == '-' || *at == '+') ++at;
  if (*at < '0' || *at > '9') return false;
  int64_t number = 0;
  for (; *at >= '0' && *at <= '9'; ++at) {
    number = number * 10 + (*at - '0');
    if (number > INT_MAX) number = static_cast<int64_t>(INT_MAX) + (negative ? 1 : 0);
  }
  value = static_cast<int>(negative ? -number : number);
  cursor = at;
  return true;
}

/// Reads up to three numbers with `separator` between them. Stops at the first thing that is neither; the
/// numbers not reached keep their values.
void ReadThree(const char* text, char separator, int& first, int& second, int& third) {
  if (!text || !ReadInt(text, first) || *text++ != separator) return;
  if (!ReadInt(text, second) || *text++ != separator) return;
  ReadInt(text, third);
}

/// Where `field` begins in `format`; -1, before everything, if it does not stand there.
int PositionOf(const char* format, const char* field) {
  const char* found = strstr(format, field);
  return found ? static_cast<int>(found - format) : -1;
}

int PositionInEitherCase(const char* format, const char* field) {
  const char* found = stristrTemplate(format, field);
  return found ? static_cast<int>(found - format) : -1;
}

}  // namespace

void LDateTime::GetDateTime(int64_t time, char (&date)[kTextSize], char (&timeText)[kTextSize]) {
  date[0] = timeText[0] = 0;
  tm parts{};
  if (!BreakDown(time, parts)) return;
  FormatDate(parts, date);
  FormatTime(parts, timeText);
}

void LDateTime::GetDateYYYYHMMHDD(int64_t time, char (&out)[kTextSize]) {
  out[0] = 0;
  tm parts{};
  if (BreakDown(time, parts)) FormatDate(parts, out);
}

void LDateTime::GetTimeHHHMMHSS(int64_t time, char (&out)[kTextSize]) {
  out[0] = 0;
  tm parts{};
  if (BreakDown(time, parts)) TextFormat(out, "%.2d-%.2d-%.2d", parts.tm_hour, parts.tm_min, parts.tm_sec);
}

void LDateTime::GetDateTime(char (&out)[kTextSize]) const {
  out[0] = 0;
  if (iTime == 0) return;
  char date[kTextSize];
  char timeText[kTextSize];
  GetDateTime(iTime, date, timeText);
  if (date[0]) TextFormat(out, "%.100s %.100s", date, timeText);
}

void LDateTime::GetDateTimeInLocalFormat(char (&out)[kTextSize]) const { GetDateTime(out); }

int64_t LDateTime::SetDateTime(int64_t& time, int year, int month, int day, int hour, int minute, int second) {
  tm parts{};
  parts.tm_year = YearOfTm(year);
  parts.tm_mon = month > INT_MIN ? month - 1 : month;
  parts.tm_mday = day;
  parts.tm_hour = hour;
  parts.tm_min = minute;
  parts.tm_sec = second;
  parts.tm_isdst = -1;
  const time_t made = mktime(&parts);
  if (made != -1) time = made;
  return made;
}

int64_t LDateTime::SetDateTime(int64_t& time, const char* date, const char* timeText) {
  if (!date || !date[0]) {
    time = 0;
    return 0;
  }
  int year = 0, month = 1, day = 1, hour = 0, minute = 0, second = 0;
  ReadThree(date, '-', year, month, day);
  ReadThree(timeText, ':', hour, minute, second);
  return SetDateTime(time, year, month, day, hour, minute, second);
}

int64_t LDateTime::AdjustByMonths(int months) const {
  tm parts{};
  if (!BreakDownAny(iTime, parts)) return iTime;
  const int64_t sum = static_cast<int64_t>(parts.tm_mon) + months;
  const int64_t years = sum >= 0 ? sum / 12 : -((11 - sum) / 12);
  const int64_t movedYear = parts.tm_year + 1900 + years;
  if (movedYear < INT_MIN || movedYear > kLastYear) return iTime;
  const int year = static_cast<int>(movedYear);
  const int month = static_cast<int>(sum - years * 12) + 1;
  const int lastDay = GetNumberOfDaysInMonth(year, month);
  int64_t moved = iTime;
  SetDateTime(moved, year, month, parts.tm_mday > lastDay ? lastDay : parts.tm_mday, parts.tm_hour, parts.tm_min,
              parts.tm_sec);
  return moved;
}

int LDateTime::GetNumberOfDaysInMonth(int year, int month) {
  static constexpr int kDays[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  if (month < 1 || month > 12) return 0;
  const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
  return month == 2 && leap ? 29 : kDays[month - 1];
}

int LDateTime::GetTimeZoneOffset() {
  const time_t now = platform::ClockWallSeconds();
  tm parts{};
  if (!localtime_r(&now, &parts)) return 0;
  return static_cast<int>(-parts.tm_gmtoff);
}

int64_t LDateTime::GetBuildDate() { return TimeFromCompileDate(__DATE__); }

int64_t LDateTime::TimeFromCompileDate(const char* text) {
  int month = 0;
  for (int i = 0; i < 12; ++i) {
    if (strncmp(text, szMonths[i], 3) == 0) month = i + 1;
  }
  int day = 1, year = 0;
  const char* cursor = strnlen(text, 3) == 3 ? text + 3 : text;
  if (ReadInt(cursor, day)) ReadInt(cursor, year);
  int64_t time = 0;
  SetDateTime(time, year, month, day, 0, 0, 0);
  return time;
}

void LDateTimeMod::GetDateLocalFormatMod(char (&out)[kTextSize]) const {
  out[0] = 0;
  tm parts{};
  if (!BreakDown(iTime, parts)) return;
  int order = DateFormatOrder::iOrder;
  if (order == -1) DateFormatOrder::iOrder = order = LGetLocaleDateFormatOrder();
  const int year = parts.tm_year + 1900, month = parts.tm_mon + 1, day = parts.tm_mday;
  if (order == kOrderYearMonthDay) {
    TextFormat(out, "%.4d/%.2d/%.2d", year, month, day);
  } else if (order == kOrderMonthDayYear) {
    TextFormat(out, "%.2d/%.2d/%.4d", month, day, year);
  } else {
    TextFormat(out, "%.2d/%.2d/%.4d", day, month, year);
  }
}

int LGetLocaleDateFormatOrder() {
  char format[kTextSize];
  TextCopy(format, nl_langinfo(D_FMT));
  return LDateFormatOrderOf(format);
}

int LDateFormatOrderOf(const char* format) {
  if (strstr(format, "%D")) return kOrderMonthDayYear;
  int month = PositionOf(format, "%m");
  if (month < 0) month = PositionInEitherCase(format, "%b");
  if (month < 0) month = PositionOf(format, "%h");
  int day = PositionOf(format, "%d");
  if (day < 0) day = PositionOf(format, "%e");
  const int year = PositionInEitherCase(format, "%y");
  if (year < month && year < day) return kOrderYearMonthDay;
  return month < day ? kOrderMonthDayYear : kOrderDayMonthYear;
}
