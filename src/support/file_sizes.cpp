// Sizes as texts.
#include "support/files.h"

void LFile::GetSizeFormattedBytes(uint64_t size, char (&out)[kTextSize]) {
  static constexpr struct {
    unsigned shift;
    const char* unit;
  } kUnits[] = {{40, "TB"}, {30, "GB"}, {20, "MB"}, {10, "KB"}, {0, "Bytes"}};
  for (const auto& entry : kUnits) {
    const unsigned long long whole = size >> entry.shift;
    if (whole == 0 && entry.shift != 0) continue;
    TextFormat(out, "%llu %s", whole, entry.unit);
    return;
  }
}

void FormatFileSize(char (&out)[kTextSize], uint64_t size, int unit) {
  static constexpr struct {
    uint64_t divisor;
    const char* name;
  } kUnits[] = {{1, "B"}, {1024, "KB"}, {1048576, "MB"}};
  const auto& entry = kUnits[unit == kUnitKB || unit == kUnitMB ? unit : kUnitBytes];
  const unsigned long long whole = size / entry.divisor + (size % entry.divisor != 0 ? 1 : 0);
  char digits[32];
  TextFormat(digits, "%llu", whole);
  out[0] = 0;
  const size_t count = strlen(digits);
  for (size_t i = 0; i < count; ++i) {
    if (i != 0 && (count - i) % 3 == 0) TextAppend(out, ",");
    const char digit[2] = {digits[i], 0};
    TextAppend(out, digit);
  }
  TextAppend(out, " ");
  TextAppend(out, entry.name);
}
