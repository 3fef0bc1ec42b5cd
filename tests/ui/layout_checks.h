// What is right of every window, whatever is in it.
#pragma once

#include <string>

namespace platform {
struct Window;
}

/// Controls do not overlap, stand inside the window, and have room; those of a group stand wholly in its frame.
void ExpectApart(platform::Window* window);
/// No button or label is narrower or lower than its text.
void ExpectTextsWhole(platform::Window* window);
void ExpectGood(platform::Window* window);
/// A screen reader finds a name for each control; their number.
int ExpectNames(platform::Window* window);
/// Tab goes through the controls row by row, from left to right, and reaches each that is on.
void ExpectTabOrder(platform::Window* window);
