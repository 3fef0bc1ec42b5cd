// Reads one line of a directory listing: of LIST, which has no standard form, and the mode fact of an MLSD
// line.
//
// No state: a line is read alone, by any thread. Works on raw bytes and makes no assumption about the
// encoding of a server's listing, which is why the month table holds keys in several legacy encodings side by
// side. A line's form is chosen only by the order of the readings: strict Unix, tolerant Unix, DOS. The
// strict reading is exact on every ordinary line and so runs first; each later one accepts more.
#pragma once

#include <cstdint>

#include "support/text.h"

class LFTPListInfoParser {
 public:
  /// What a line tells of one entry.
  struct FTPNativeFileInfo {
    /// In the server's time; no zone.
    struct LastModified {
      int year = 0;  ///< As the line gives it, two digits or four; 0 while none has been worked out.
      int month = 0;
      int day = 0;
      int hour = 0;
      int minute = 0;
      bool dateKnown = false;
      bool timeKnown = false;
    };

    char name[kTextSize] = {};  ///< Of a link with its arrow and target, as the server wrote it.
    char owner[kTextSize] = {};
    char group[kTextSize] = {};       ///< In the tolerant reading also every token that found no other place.
    char attributes[kTextSize] = {};  ///< The permission token, as "drwxr-xr-x".
    uint64_t size = 0;                ///< Bytes.
    bool isDirectory = false;
    bool isSymbolicLink = false;
    char linkTarget[kTextSize] = {};  ///< Stays empty: a name may hold an arrow, so a link's name is not split.
    LastModified lastModified;
  };

  /// A day of the local calendar.
  struct LocalDate {
    int year;
    int month;  ///< 1 to 12.
    int day;
  };

  struct Month {
    const char* key;  ///< Raw bytes, ASCII letters in lower case.
    int number;       ///< 1 to 12; 0 in the row that ends the table.
  };
  static const Month mMonths[];

  /// True if some reading worked; otherwise `info` is empty. The second form is told what day it is.
  [[nodiscard]] static bool GetFileInfo(const char* line, FTPNativeFileInfo& info);
  [[nodiscard]] static bool GetFileInfo(const char* line, FTPNativeFileInfo& info, const LocalDate& today);

  // The readings. They fill a cleared record; what one that fails has left in it means nothing.
  [[nodiscard]] static bool ParseAsUnixStrict(const char* line, FTPNativeFileInfo& info);
  [[nodiscard]] static bool ParseAsUnixStrict(const char* line, FTPNativeFileInfo& info, const LocalDate& today);
  [[nodiscard]] static bool ParseAsUnix(const char* line, unsigned long length, FTPNativeFileInfo& info);
  [[nodiscard]] static bool ParseAsUnix(const char* line, unsigned long length, FTPNativeFileInfo& info,
                                        const LocalDate& today);
  [[nodiscard]] static bool ParseAsDos(const char* line, unsigned long length, FTPNativeFileInfo& info);

  /// Number of the first row of the month table whose key is `key`, byte for byte; 0 if there is none.
  static int GetMonth(const char* key);
  /// The same for a token in any letter case.
  static int GetMonthOfToken(const char* token, unsigned long length);

  /// Skips bytes 1 to 32 from `position` and gives the token there: up to a blank, tab, "\r" or "\n", or all
  /// that is left of the line. `position` moves behind the token. Null if nothing is left.
  static const char* GetNextToken(const char* line, unsigned long length, unsigned long& tokenLength,
                                  unsigned long& position, bool restOfLine);

  /// The number at the start of the first `length` characters (at most 259 of them), as atoi reads it: 0
  /// without digits.
  static int strntoi(const char* text, unsigned long length);
  static unsigned long long strntoi64(const char* text, unsigned long length);

  /// A size in digits, or with a unit letter K, M, G or T behind it.
  [[nodiscard]] static bool ParseSize(const char* text, unsigned long length, unsigned long long& value);
  /// Three fields split by "-", "." or "/": month, day and year in the order the first field tells.
  [[nodiscard]] static bool ParseShortDate(const char* text, unsigned long length,
                                           FTPNativeFileInfo::LastModified& date);
  /// Hours and minutes, with AM or PM behind them or without.
  [[nodiscard]] static bool ParseTime(const char* text, unsigned long length, FTPNativeFileInfo::LastModified& date);

  // Shared by the readings.
  /// b c d l p s -: with one of these a permission token begins, and no DOS date.
  static bool IsPermissionLetter(char letter);
  static bool IsAllDigits(const char* text, unsigned long length);  ///< False for an empty text.
  /// A listing date is never in the future: the latest year that puts month and day not behind `today`.
  static int YearOf(int month, int day, const LocalDate& today);
  static LocalDate LocalToday();
};

/// Copies the value of the fact "mode=" to `attributes`. False, with nothing copied, if the line has no such
/// fact or ends behind its "=".
[[nodiscard]] bool LFTPGetMLSDAttributesFromLine(const char* line, char (&attributes)[kTextSize]);
