// Numbers of a window's state (size, position, sort order, shown bars) in the program's preferences.
//
// The windows stand below the settings store, so they reach the preferences by themselves, under the same keys.
#pragma once

/// The number under "section/key", or `missing` when it is absent or no number.
int WindowStateGet(const char* section, const char* key, int missing);
void WindowStateSet(const char* section, const char* key, int value);
/// Makes what was set durable.
void WindowStateSynchronize();
