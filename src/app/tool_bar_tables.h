// What stands in the three tool bars of the main window.
#pragma once

#include <cstddef>

#include "support/window/bars.h"

const LToolBar::ToolBarItem* MainToolBarItems(size_t& count);
const LToolBar::ToolBarItem* LocalToolBarItems(size_t& count);
const LToolBar::ToolBarItem* RemoteToolBarItems(size_t& count);
