// The order of the readings, and what they share: tokens, numbers, sizes and the year of a date without one.
#include "ftp/list_parser.h"

#include <cstdlib>
#include <cstring>
#include <ctime>

#include "platform/clock.h"
#include "support/strings.h"

namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

/// Bits to shift a number left for its unit letter; -1 for a letter that is no unit.
int BitsOfUnit(char unit) {
  switch (unit) {
    case 'K':
    case 'k': return 10;
    case 'M':
    case 'm': return 20;
    case 'G':
    case 'g': return 30;
    case 'T':
    case 't': return 40;
    default: return -1;
  }
}

}  // namespace

bool LFTPListInfoParser::GetFileInfo(const char* line, FTPNativeFileInfo& info) {
  return GetFileInfo(line, info, LocalToday());
}

bool LFTPListInfoParser::GetFileInfo(const char* line, FTPNativeFileInfo& info, const LocalDate& today) {
  const unsigned long length = strlen(line);
  info = FTPNativeFileInfo();
  if (ParseAsUnixStrict(line, info, today)) return true;
  info = FTPNativeFileInfo();
  if (ParseAsUnix(line, length, info, today)) return true;
  info = FTPNativeFileInfo();
  if (ParseAsDos(line, length, info)) return true;
  info = FTPNativeFileInfo();
  return false;
}

const char* LFTPListInfoParser::GetNextToken(const char* line, unsigned long length, unsigned long& tokenLength,
                                             unsigned long& position, bool restOfLine) {
  while (position < length && line[position] >= 1 && line[position] <= 32) ++position;
  if (position >= length) return nullptr;
  const unsigned long start = position;
  if (restOfLine) {
    position = length;
  } else {
    while (position < length && line[position] != ' ' && line[position] != '\t' && line[position] != '\r' &&
           line[position] != '\n') {
      ++position;
    }
  }
  tokenLength = position - start;
  return line + start;
}

int LFTPListInfoParser::strntoi(const char* text, unsigned long length) {
  char number[kTextSize];
  TextCopyPart(number, text, length);
  return static_cast<int>(strtol(number, nullptr, 10));
}

unsigned long long LFTPListInfoParser::strntoi64(const char* text, unsigned long length) {
  char number[kTextSize];
  TextCopyPart(number, text, length);
  return strtoull(number, nullptr, 10);
}

bool LFTPListInfoParser::ParseSize(const char* text, unsigned long length, unsigned long long& value) {
  if (length == 0) return false;
  unsigned long digits = 0;
  while (digits < length && IsDigit(text[digits])) ++digits;
  if (digits == length || text[digits] == 0) {
    value = strntoi64(text, digits);
    return true;
  }

  const unsigned long unit = length - 1;
  unsigned long point = unit;
  unsigned long long number = 0;
  for (unsigned long i = 0; i < unit; ++i) {
    if (IsDigit(text[i])) {
      number = number * 10 + static_cast<unsigned>(text[i] - '0');
    } else if (text[i] == '.' && i != 0 && point == unit) {
      point = i;
    } else {
      return false;
    }
  }
  const int bits = BitsOfUnit(text[unit]);
  if (bits < 0) return false;
  number <<= bits;
  // The unit letter counts as a place behind the point, and each division drops its remainder: 2.5K is 256.
  for (unsigned long i = point; i < unit; ++i) number /= 10;
  value = number;
  return true;
}

bool LFTPListInfoParser::IsPermissionLetter(char letter) { return letter != 0 && strchr("bcdlps-", letter); }

bool LFTPListInfoParser::IsAllDigits(const char* text, unsigned long length) {
  for (unsigned long i = 0; i < length; ++i) {
    if (!IsDigit(text[i])) return false;
  }
  return length != 0;
}

int LFTPListInfoParser::YearOf(int month, int day, const LocalDate& today) {
  const bool later = month > today.month || (month == today.month && day > today.day);
  return later ? today.year - 1 : today.year;
}

LFTPListInfoParser::LocalDate LFTPListInfoParser::LocalToday() {
  const time_t now = platform::ClockWallSeconds();
  struct tm parts = {};
  localtime_r(&now, &parts);
  return {parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday};
}

bool LFTPGetMLSDAttributesFromLine(const char* line, char (&attributes)[kTextSize]) {
  const char* fact = strstr(line, "mode=");
  if (!fact) return false;
  const char* value = fact + strlen("mode=");
  if (!*value) return false;
  TextCopyPart(attributes, value, strcspn(value, ";"));
  return true;
}
