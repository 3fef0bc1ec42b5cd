// What stands in the menus and which keys mean which command: the tables of the main window.
#pragma once

#include <cstddef>

#include "support/window/menus.h"

/// The menus between the frame's own.
const LMenuItem* MainMenuItems(size_t& count);
/// The first row of a key wins: a later one only gives its command a key to show.
const LKeyToCommandMap* MainKeyMap(size_t& count);
/// The keys shown in the tool tips of the tool bars.
const LKeyToCommandMap* ToolBarKeyMap(size_t& count);

// The menus of the window's frame, around those above
const LMenuItem* ApplicationMenuItems(size_t& count);
const LMenuItem* WindowAndHelpMenuItems(size_t& count);

constexpr const char* kConnectMenuTitle = "接続";  ///< The submenu that holds the sites.
constexpr const char* kHideFilters = "フィルタを隠す ";
constexpr const char* kShowFilters = "フィルタを表示 ";
constexpr const char* kHideToolBar = "ツールバー隠す";
constexpr const char* kShowToolBar = "ツールバー表示";
