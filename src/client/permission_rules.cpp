#include "client/permission_rules.h"

#include <initializer_list>

void PermissionTextOfValues(char (&out)[kTextSize], unsigned char owner, unsigned char group, unsigned char others,
                            char first, bool numeric) {
  if (numeric) return TextFormat(out, "0%d", owner * 100 + group * 10 + others);
  const char start[2] = {first, 0};
  TextCopy(out, start);
  for (const unsigned char digit : {owner, group, others}) {
    const char letters[4] = {digit >= 4 ? 'r' : '-', digit >= 6 ? 'w' : '-', digit == 7 ? 'x' : '-', 0};
    TextAppend(out, letters);
  }
}
