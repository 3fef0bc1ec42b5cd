// Which key means which command, and which keys the menus show.
#include "app/menu_tables.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "app/command_ids.h"

namespace {

struct Recorder : LMacWindow {
  void Command(int id, intptr_t) override { commands.push_back(id); }
  std::vector<int> commands;
};

struct KeyRow {
  const char* shown;
  platform::KeyPress press;  // Code, shift, control, alt.
  int command;
};

class MainKeys : public testing::TestWithParam<KeyRow> {};

TEST_P(MainKeys, LeadToTheirCommand) {
  size_t count = 0;
  const LKeyToCommandMap* table = MainKeyMap(count);
  Recorder window;
  const LKey key = LKey::FromKeyPress(GetParam().press);
  EXPECT_EQ(LKeyHandler::MapKeyToCommand(window, key.Value(), table, count), GetParam().command != 0);
  EXPECT_EQ(window.commands, GetParam().command ? std::vector<int>{GetParam().command} : std::vector<int>{});
  char text[kTextSize];
  key.GetDescription(text);
  EXPECT_STREQ(text, GetParam().shown);
}

using platform::kKeyBackspace;
using platform::kKeyDelete;
using platform::kKeyDown;
using platform::kKeyF2;
using platform::kKeyLeft;
using platform::kKeyReturn;
using platform::kKeyRight;
using platform::kKeyUp;

INSTANTIATE_TEST_SUITE_P(
    All, MainKeys,
    testing::Values(
        KeyRow{"Ctrl+T", {'T', false, true, false}, 1001}, KeyRow{"Ctrl+S", {'S', false, true, false}, 3001},
        KeyRow{"Ctrl+W", {'W', false, true, false}, kCommandHideWindow},
        KeyRow{"Ctrl+U", {'U', false, true, false}, 1003},
        KeyRow{"Ctrl+Delete", {kKeyDelete, false, true, false}, 1010},
        KeyRow{"Ctrl+Delete", {kKeyBackspace, false, true, false}, 1010},
        KeyRow{"F2", {kKeyF2, false, false, false}, 1007}, KeyRow{"Ctrl+D", {'D', false, true, false}, 4001},
        KeyRow{"Shift+Delete", {kKeyDelete, true, false, false}, 4003},
        KeyRow{"Shift+F2", {kKeyF2, true, false, false}, 4004}, KeyRow{"Ctrl+,", {',', false, true, false}, 3002},
        KeyRow{"Alt+←", {kKeyLeft, false, false, true}, 2002}, KeyRow{"Alt+→", {kKeyRight, false, false, true}, 2003},
        KeyRow{"Alt+↑", {kKeyUp, false, false, true}, 2004},
        KeyRow{"Alt+Return", {kKeyReturn, false, false, true}, 1005},
        KeyRow{"Return", {kKeyReturn, false, false, false}, 400},
        KeyRow{"Shift+←", {kKeyLeft, true, false, false}, 4008},
        KeyRow{"Shift+→", {kKeyRight, true, false, false}, 4009}, KeyRow{"Shift+↑", {kKeyUp, true, false, false}, 4010},
        KeyRow{"Shift+Return", {kKeyReturn, true, false, false}, 4002},
        KeyRow{"Ctrl+R", {'R', false, true, false}, 2001}, KeyRow{"Ctrl+Shift+R", {'R', true, true, false}, 4006},
        // Without a row
        KeyRow{"R", {'R', false, false, false}, 0}, KeyRow{"Ctrl+Alt+R", {'R', false, true, true}, 0},
        KeyRow{"Delete", {kKeyDelete, false, false, false}, 0}, KeyRow{"Shift+↓", {kKeyDown, true, false, false}, 0}));

TEST(ToolBarKeys, AreEighteenAndGoToTheSameKeysAsTheMenus) {
  // Tool bar command to the menu's command for the same job.
  const std::vector<std::pair<int, int>> pairs = {{100, 1001},  {3001, 3001}, {kCommandHideWindow, kCommandHideWindow},
                                                  {3002, 3002}, {307, 1010},  {306, 1007},
                                                  {303, 2002},  {304, 2003},  {302, 2004},
                                                  {308, 2001},  {205, 4003},  {206, 4004},
                                                  {201, 4006},  {203, 4008},  {204, 4009},
                                                  {202, 4010},  {191, 1003},  {192, 4001}};
  size_t toolCount = 0, mainCount = 0;
  const LKeyToCommandMap* tools = ToolBarKeyMap(toolCount);
  const LKeyToCommandMap* main = MainKeyMap(mainCount);
  EXPECT_EQ(toolCount, 18u);
  EXPECT_EQ(mainCount, 23u);
  for (const auto& [tool, menu] : pairs) {
    EXPECT_NE(KeyOfCommand(tool, tools, toolCount), 0) << tool;
    EXPECT_EQ(KeyOfCommand(tool, tools, toolCount), KeyOfCommand(menu, main, mainCount)) << tool;
  }
  // Their keys belong to other commands; these only have them to show.
  EXPECT_EQ(KeyOfCommand(7002, main, mainCount), KeyOfCommand(1007, main, mainCount));
  EXPECT_EQ(KeyOfCommand(7001, main, mainCount), KeyOfCommand(1010, main, mainCount));
}

}  // namespace
