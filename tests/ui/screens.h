// Pictures of what the tests see, for people to look at.
#pragma once

#include <string>

class QWidget;

/// Saves a picture of it as build/screens/NAME@SCALE.png.
void SavePicture(QWidget* widget, const std::string& name);
/// The same of a window, a dialog or a menu, and what a screen reader finds there as NAME@SCALE.txt; fails where that
/// is not enough to work with.
void SaveScreen(QWidget* window, const std::string& name);
