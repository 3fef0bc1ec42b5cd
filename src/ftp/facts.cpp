#include "ftp/facts.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "support/date_time.h"

namespace {

/// Takes a number of at most `width` digits off the front of `text`.
int TakeNumber(const char*& text, size_t width) {
  char part[kTextSize];
  const size_t length = std::min(strlen(text), width);
  TextCopyPart(part, text, length);
  text += length;
  return static_cast<int>(strtol(part, nullptr, 10));
}

}  // namespace

bool FtpFactValue(const char* line, const char* fact, char (&value)[kTextSize]) {
  const char* found = strstr(line, fact);
  if (!found) return false;
  found += strlen(fact);
  TextCopyPart(value, found, strcspn(found, ";"));
  return true;
}

int64_t FtpNumber(const char* text) { return strtoll(text, nullptr, 10); }

void FtpTimeFromStamp(const char* stamp, int64_t& time) {
  const char* rest = stamp;
  const int year = TakeNumber(rest, 4);
  const int month = TakeNumber(rest, 2);
  const int day = TakeNumber(rest, 2);
  const int hour = TakeNumber(rest, 2);
  const int minute = TakeNumber(rest, 2);
  const int second = TakeNumber(rest, kTextSize);
  int64_t local = 0;
  if (LDateTime::SetDateTime(local, year, month, day, hour, minute, second) == -1) return;
  time = local - LDateTime::GetTimeZoneOffset();
}

bool FtpTypeIsLink(const char* type) {
  if (strncmp(type, "os.", 3) != 0) return false;
  const char* equals = strchr(type, '=');
  return equals && strncmp(equals + 1, "slink", 5) == 0;
}
