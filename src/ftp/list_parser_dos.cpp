// The DOS reading: date, time, size or <DIR>, name.
#include <cstring>

#include "ftp/list_parser.h"

namespace {

using Parser = LFTPListInfoParser;
using LastModified = Parser::FTPNativeFileInfo::LastModified;

/// What the first field of a short date was, and so what the other two are.
enum class Order { kYearFirst, kDayFirst, kMonthFirst };

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsSeparator(char c) { return c == '-' || c == '.' || c == '/'; }

/// Length of the field at the start of the text: up to a separator or the end.
unsigned long FieldLength(const char* text, unsigned long length) {
  unsigned long field = 0;
  while (field < length && !IsSeparator(text[field])) ++field;
  return field;
}

bool ReadFirstField(const char* field, unsigned long length, char separator, LastModified& date, Order& order) {
  order = Order::kMonthFirst;
  if (!Parser::IsAllDigits(field, length)) {
    date.month = Parser::GetMonthOfToken(field, length);
    return date.month != 0;
  }
  const int value = Parser::strntoi(field, length);
  if (length == 4) {
    order = Order::kYearFirst;
    date.year = value;
    return value >= 1900;
  }
  if (length > 2 || value == 0) return false;
  if (separator != '.' && value < 13) {
    date.month = value;
    return true;
  }
  order = Order::kDayFirst;
  date.day = value;
  return separator != '.' || value < 32;
}

bool ReadMonth(int value, LastModified& date) {
  date.month = value;
  return value >= 1 && value <= 12;
}

bool ReadDay(int value, LastModified& date) {
  date.day = value;
  return value >= 1 && value <= 31;
}

int FullYear(int year) {
  if (year < 50) return year + 2000;
  return year < 1000 ? year + 1900 : year;
}

void ReadSizeOrDirectory(const char* token, unsigned long length, Parser::FTPNativeFileInfo& info) {
  if (length == strlen("<DIR>") && memcmp(token, "<DIR>", length) == 0) {
    info.isDirectory = true;
    info.size = 0;
    return;
  }
  char digits[kTextSize];
  unsigned long count = 0;
  for (unsigned long i = 0; i < length && count < kTextSize - 1; ++i) {
    if (token[i] != ',') digits[count++] = token[i];
  }
  info.size = Parser::strntoi64(digits, count);
}

}  // namespace

bool LFTPListInfoParser::ParseShortDate(const char* text, unsigned long length, LastModified& date) {
  const unsigned long first = FieldLength(text, length);
  if (first == 0 || first == length) return false;
  Order order;
  if (!ReadFirstField(text, first, text[first], date, order)) return false;
  text += first + 1;
  length -= first + 1;

  const unsigned long second = FieldLength(text, length);
  if (second == length) return false;
  const int middle = strntoi(text, second);
  if (!(order == Order::kMonthFirst ? ReadDay(middle, date) : ReadMonth(middle, date))) return false;
  text += second + 1;
  length -= second + 1;

  const int last = strntoi(text, FieldLength(text, length));
  if (order == Order::kYearFirst) {
    if (!ReadDay(last, date)) return false;
  } else {
    date.year = FullYear(last);
  }
  date.dateKnown = true;
  return true;
}

bool LFTPListInfoParser::ParseTime(const char* text, unsigned long length, LastModified& date) {
  unsigned long i = 0;
  int hour = 0;
  for (; i < length && IsDigit(text[i]); ++i) {
    hour = hour * 10 + (text[i] - '0');
    if (hour > 24) return false;
  }
  if (i == 0 || i == length || text[i] != ':') return false;

  int minute = 0;
  for (++i; i < length && IsDigit(text[i]); ++i) {
    minute = minute * 10 + (text[i] - '0');
    if (minute > 59) return false;
  }
  if (i < length) {
    // Only a capital P is the afternoon; with any other mark 12 is the hour after midnight.
    if (text[i] == 'P') {
      if (hour <= 11) hour += 12;
    } else if (hour == 12) {
      hour = 0;
    }
  }
  date.hour = hour;
  date.minute = minute;
  date.timeKnown = true;
  return true;
}

bool LFTPListInfoParser::ParseAsDos(const char* line, unsigned long length, FTPNativeFileInfo& info) {
  unsigned long position = 0;
  unsigned long size = 0;
  const char* token = GetNextToken(line, length, size, position, false);
  if (!token || IsPermissionLetter(token[0]) || IsAllDigits(token, size)) return false;
  if (!ParseShortDate(token, size, info.lastModified)) return false;

  token = GetNextToken(line, length, size, position, false);
  if (!token || !ParseTime(token, size, info.lastModified)) return false;

  token = GetNextToken(line, length, size, position, false);
  if (!token) return false;
  ReadSizeOrDirectory(token, size, info);

  if (position >= length) return false;
  const char* name = GetNextToken(line, length, size, position, true);
  if (!name) return true;  // Blanks alone: an entry without a name.
  while (size != 0 && (name[size - 1] == '\r' || name[size - 1] == '\n')) --size;
  TextCopyPart(info.name, name, size);
  return true;
}
