// Pictures of windows and menus for people to look at, written into build/screens of the source tree.
#pragma once

#include <string>

class QWidget;

void SaveScreen(QWidget* widget, const std::string& name);
