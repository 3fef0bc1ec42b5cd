#include "support/window/window_state.h"

#include <cstdlib>

#include "platform/preferences.h"
#include "support/program.h"
#include "support/text.h"

int WindowStateGet(const char* section, const char* key, int missing) {
  char path[kTextSize];
  TextFormat(path, "%s/%s", section, key);
  int result = missing;
  platform::PreferencesCopyValue(kPreferenceDomain, path, [&](const char* value) {
    char* end = nullptr;
    const long number = strtol(value, &end, 10);
    if (end != value) result = static_cast<int>(number);
  });
  return result;
}

void WindowStateSet(const char* section, const char* key, int value) {
  char path[kTextSize];
  char text[32];
  TextFormat(path, "%s/%s", section, key);
  TextFormat(text, "%d", value);
  platform::PreferencesSetValue(kPreferenceDomain, path, text);
}

void WindowStateSynchronize() { platform::PreferencesSynchronize(kPreferenceDomain); }
