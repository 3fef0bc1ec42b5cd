// What is right of every window, whatever is in it.
#pragma once

#include <string>

class QWidget;
namespace platform {
struct Window;
}

/// Controls do not overlap, stand inside the window, and have room; those of a group stand wholly in its frame.
void ExpectApart(platform::Window* window);
/// No button or label is narrower or lower than its text.
void ExpectTextsWhole(platform::Window* window);
void ExpectGood(platform::Window* window);
/// A screen reader finds a role and a name for each control, and no two that it would call alike; the rows of lists and
/// the letters of texts aside. Gives what it finds, a line for each, indented like the tree.
std::string ExpectAccessible(QWidget* window);
/// Tab goes through the controls pane by pane from the left, row by row, from left to right, and reaches each that is
/// on.
void ExpectTabOrder(platform::Window* window);
