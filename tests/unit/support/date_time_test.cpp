#include "support/date_time.h"

#include <climits>
#include <gtest/gtest.h>
#include <string>
#include <time.h>

#include "support/environment.h"
#include "support/settable_clock.h"

namespace {

using Text = char[kTextSize];

constexpr int64_t kMoment = 1770098602;  // 2026-02-03 06:03:22 UTC.

// POSIX rules, so that the tests need no zone files.
constexpr char kTokyo[] = "JST-9";
constexpr char kNewYork[] = "EST5EDT,M3.2.0,M11.1.0";
constexpr char kKathmandu[] = "NPT-5:45";

TEST(DateTime, TextsAreInLocalTime) {
  const struct {
    const char* zone;
    const char* date;
    const char* time;
    const char* hyphens;
  } rows[] = {
      {"UTC0", "2026-02-03", "06:03:22", "06-03-22"},     {kTokyo, "2026-02-03", "15:03:22", "15-03-22"},
      {kNewYork, "2026-02-03", "01:03:22", "01-03-22"},   {"PST8", "2026-02-02", "22:03:22", "22-03-22"},
      {kKathmandu, "2026-02-03", "11:48:22", "11-48-22"},
  };
  for (const auto& row : rows) {
    const TimeZone zone(row.zone);
    Text date, time, day, hyphens, both, local;
    LDateTime::GetDateTime(kMoment, date, time);
    LDateTime::GetDateYYYYHMMHDD(kMoment, day);
    LDateTime::GetTimeHHHMMHSS(kMoment, hyphens);
    LDateTime(kMoment).GetDateTime(both);
    LDateTime(kMoment).GetDateTimeInLocalFormat(local);
    EXPECT_STREQ(date, row.date) << row.zone;
    EXPECT_STREQ(time, row.time) << row.zone;
    EXPECT_STREQ(day, row.date) << row.zone;
    EXPECT_STREQ(hyphens, row.hyphens) << row.zone;
    EXPECT_EQ(std::string(both), std::string(row.date) + " " + row.time) << row.zone;
    EXPECT_STREQ(local, both) << row.zone;
  }
}

TEST(DateTime, NoDateHasNoText) {
  // The last has a year that no int holds.
  for (const int64_t time : {int64_t{0}, INT64_MAX}) {
    Text date = "left over", clock = "left over", both = "left over";
    LDateTime::GetDateTime(time, date, clock);
    LDateTime(time).GetDateTimeInLocalFormat(both);
    EXPECT_EQ(std::string(date) + clock + both, "") << time;
    LDateTimeMod(time).GetDateLocalFormatMod(both);
    EXPECT_STREQ(both, "") << time;
  }
}

TEST(DateTime, SetFromPartsTakesYearsOfTwoAndFourDigits) {
  const TimeZone zone("UTC0");
  const struct {
    int year;
    const char* date;
  } rows[] = {
      {0, "2000-05-06"},    {24, "2024-05-06"},  {69, "2069-05-06"},   {70, "1970-05-06"},
      {99, "1999-05-06"},   {124, "2024-05-06"}, {1899, "3799-05-06"}, {1900, "1900-05-06"},
      {2024, "2024-05-06"}, {-5, "1995-05-06"},  {9999, "9999-05-06"},
  };
  for (const auto& row : rows) {
    int64_t time = 1;
    EXPECT_EQ(LDateTime::SetDateTime(time, row.year, 5, 6, 7, 8, 9), time);
    Text out;
    LDateTime::GetDateYYYYHMMHDD(time, out);
    EXPECT_STREQ(out, row.date) << row.year;
  }
}

TEST(DateTime, SetFromPartsFollowsSummerTimeAndCarries) {
  const TimeZone zone(kNewYork);
  const struct {
    int month, day, hour, minute;
    int64_t expected;
  } rows[] = {
      {1, 15, 12, 0, 1768496400},   // Winter: 17:00 UTC.
      {7, 15, 12, 0, 1784131200},   // Summer: 16:00 UTC.
      {13, 15, 12, 0, 1800032400},  // January of the next year.
      {1, 32, 12, 0, 1769965200},   // 1 February.
      {1, 1, 0, -60, 1767240000},   // An hour before the year.
  };
  for (const auto& row : rows) {
    int64_t time = 0;
    LDateTime::SetDateTime(time, 2026, row.month, row.day, row.hour, row.minute, 0);
    EXPECT_EQ(time, row.expected) << row.month << '-' << row.day;
  }
}

TEST(DateTime, AFailureLeavesTheTimeAsItWas) {
  const TimeZone zone("UTC0");
  int64_t time = 77;
  EXPECT_EQ(LDateTime::SetDateTime(time, INT_MAX, INT_MAX, INT_MAX, INT_MAX, INT_MAX, INT_MAX), -1);
  EXPECT_EQ(LDateTime::SetDateTime(time, "1969-12-31", "23:59:59"), -1);
  EXPECT_EQ(time, 77);
  EXPECT_EQ(LDateTime::SetDateTime(time, "", "12:00:00"), 0);
  EXPECT_EQ(time, 0) << "an empty text is no date, and no failure";
}

TEST(DateTime, SetFromText) {
  const TimeZone zone("UTC0");
  const struct {
    const char* date;
    const char* time;
    const char* result;
  } rows[] = {
      {"2024-5-31", "14:03:22", "2024-05-31 14:03:22"},
      {"2024-5", "", "2024-05-01 00:00:00"},
      {"24-12-31", "23:59", "2024-12-31 23:59:00"},
      {"2024-05-31 ", "14:03:22.5", "2024-05-31 14:03:22"},
      {" 2024- 5-\t6", "+1: 2:+3", "2024-05-06 01:02:03"},  // Blanks and a sign before each number.
      {"2024 -5-6", "1 :2:3", "2024-01-01 01:00:00"},       // None before what separates.
      {"2024/5/6", "1.2.3", "2024-01-01 01:00:00"},         // What does not fit ends the reading.
      {"abc", "x", "2000-01-01 00:00:00"},                  // The year's start value is 0.
      {"2024--1-1", "0:0:-1", "2023-10-31 23:59:59"},       // A negative month and second carry.
  };
  for (const auto& row : rows) {
    int64_t time = 5;
    LDateTime::SetDateTime(time, row.date, row.time);
    Text out;
    LDateTime(time).GetDateTime(out);
    EXPECT_STREQ(out, row.result) << row.date << " | " << row.time;
  }
}

TEST(DateTime, ANumberThatNoIntHoldsCountsAsTheNearestOne) {
  const TimeZone zone("UTC0");
  const struct {
    const char* text;
    int second;
  } rows[] = {{"0:0:2147483648", INT_MAX}, {"0:0:-99999999999999999999", INT_MIN}};
  for (const auto& row : rows) {
    int64_t read = 0, nearest = 0;
    LDateTime::SetDateTime(read, "2040-1-1", row.text);
    LDateTime::SetDateTime(nearest, 2040, 1, 1, 0, 0, row.second);
    EXPECT_EQ(read, nearest) << row.text;
  }
}

TEST(DateTime, MonthsAreAddedWithTheDayClipped) {
  const struct {
    const char* from;
    int months;
    const char* to;
  } rows[] = {
      {"2024-03-31", -1, "2024-02-29 13:14:15"}, {"2023-03-31", -1, "2023-02-28 13:14:15"},
      {"2023-12-05", 1, "2024-01-05 13:14:15"},  {"2024-01-31", -13, "2022-12-31 13:14:15"},
      {"2026-02-15", 1, "2026-03-15 13:14:15"},  // Into summer time.
      {"2024-10-31", 25, "2026-11-30 13:14:15"},
  };
  const TimeZone zone(kNewYork);
  for (const auto& row : rows) {
    int64_t time = 0;
    LDateTime::SetDateTime(time, row.from, "13:14:15");
    Text out;
    LDateTime(LDateTime(time).AdjustByMonths(row.months)).GetDateTime(out);
    EXPECT_STREQ(out, row.to) << row.from << ' ' << row.months;
  }
  EXPECT_EQ(LDateTime(INT64_MAX).AdjustByMonths(1), INT64_MAX) << "no year that an int holds";
}

TEST(DateTime, DaysInMonth) {
  const struct {
    int year, month, days;
  } rows[] = {{2026, 12, 31}, {2026, 4, 30}, {2024, 2, 29}, {1900, 2, 28}, {2000, 2, 29}, {2026, 13, 0}};
  for (const auto& row : rows) {
    EXPECT_EQ(LDateTime::GetNumberOfDaysInMonth(row.year, row.month), row.days) << row.year << '-' << row.month;
  }
}

TEST(DateTime, TheOffsetLeadsFromLocalTimeToUtc) {
  SettableClock clock(kMoment);
  const struct {
    const char* zone;
    int64_t now;
    int offset;
  } rows[] = {{"UTC0", kMoment, 0},
              {kTokyo, kMoment, -9 * 3600},
              {kKathmandu, kMoment, -(5 * 3600 + 45 * 60)},
              {kNewYork, kMoment, 5 * 3600},
              {kNewYork, 1784131200, 4 * 3600}};
  for (const auto& row : rows) {
    const TimeZone zone(row.zone);
    clock.Set(row.now);
    EXPECT_EQ(LDateTime::GetTimeZoneOffset(), row.offset) << row.zone << ' ' << row.now;
  }
}

TEST(DateTime, CompileDatesAreLocalMidnights) {
  const TimeZone zone(kTokyo);
  Text out;
  LDateTime(LDateTime::TimeFromCompileDate("Feb  3 2026")).GetDateTime(out);
  EXPECT_STREQ(out, "2026-02-03 00:00:00");
  LDateTime(LDateTime::TimeFromCompileDate("Xyz 15 2026")).GetDateTime(out);
  EXPECT_STREQ(out, "2025-12-15 00:00:00") << "month 0 is the one before January";
  EXPECT_GT(LDateTime::GetBuildDate(), 1735689600) << "2025 began before, unless the machine's clock is off";
}

TEST(DateTime, TheOrderFollowsTheFormat) {
  const struct {
    const char* format;
    int order;
  } rows[] = {
      {"%Y年%m月%d日", kOrderYearMonthDay}, {"%D", kOrderMonthDayYear},
      {"%d/%m/%y", kOrderDayMonthYear},     {"%e %b %Y", kOrderDayMonthYear},
      {"%B %d %Y", kOrderMonthDayYear},     {"%M %d %m %y", kOrderDayMonthYear},  // Minutes are no month.
      {"%d/%m", kOrderYearMonthDay},  // Without a year the year counts as first.
      {"%Y %d", kOrderMonthDayYear},  // Nor is there a month, which then stands before the year, too.
      {"%m/%Y", kOrderDayMonthYear},  // Without a day the day counts as first.
  };
  for (const auto& row : rows) EXPECT_EQ(LDateFormatOrderOf(row.format), row.order) << row.format;
}

TEST(DateTime, ListsShowTheDateInTheLocalesOrder) {
  const TimeZone zone("UTC0");
  std::string shown;
  for (const int order : {kOrderYearMonthDay, kOrderMonthDayYear, kOrderDayMonthYear, -1}) {
    LDateTime::DateFormatOrder::iOrder = order;
    Text out;
    LDateTimeMod(kMoment).GetDateLocalFormatMod(out);
    if (order != -1) shown += std::string(out) + ' ';
  }
  EXPECT_EQ(shown, "2026/02/03 02/03/2026 03/02/2026 ");
  EXPECT_EQ(LDateTime::DateFormatOrder::iOrder, LGetLocaleDateFormatOrder()) << "asked for where it is not known";
}

}  // namespace
