// Which key means which command, and which keys the menus show.
#include "app/menu_tables.h"

#include <gtest/gtest.h>
#include <map>
#include <vector>

#include "app/command_ids.h"

namespace {

struct Recorder : LMacWindow {
  void Command(int id, intptr_t) override { commands.push_back(id); }
  std::vector<int> commands;
};

using platform::kKeyBackspace;
using platform::kKeyDelete;
using platform::kKeyDown;
using platform::kKeyReturn;

/// The keys that no menu shows; the others stand beside their rows there.
TEST(MainKeys, LeadToTheirCommand) {
  const struct {
    const char* shown;
    platform::KeyPress press;  // Code, shift, control, alt.
    std::vector<int> commands;
  } rows[] = {
      {"Ctrl+T", {'T', false, true, false}, {1001}},
      {"Ctrl+W", {'W', false, true, false}, {kCommandHideWindow}},
      {"Ctrl+Delete", {kKeyBackspace, false, true, false}, {1010}},
      {"Return", {kKeyReturn, false, false, false}, {400}},
      {"R", {'R', false, false, false}, {}},
      {"Ctrl+Alt+R", {'R', false, true, true}, {}},
      {"Delete", {kKeyDelete, false, false, false}, {}},
      {"Shift+↓", {kKeyDown, true, false, false}, {}},
  };
  size_t count = 0;
  const LKeyToCommandMap* table = MainKeyMap(count);
  for (const auto& row : rows) {
    Recorder window;
    const LKey key = LKey::FromKeyPress(row.press);
    EXPECT_EQ(LKeyHandler::MapKeyToCommand(window, key.Value(), table, count), !row.commands.empty()) << row.shown;
    EXPECT_EQ(window.commands, row.commands) << row.shown;
    char text[kTextSize];
    key.GetDescription(text);
    EXPECT_STREQ(text, row.shown);
  }
}

TEST(ToolBarKeys, AreThoseOfTheMenus) {
  // Tool bar command to the menu's command for the same job, where the two differ.
  const std::map<int, int> menus = {{100, 1001}, {307, 1010}, {306, 1007}, {303, 2002}, {304, 2003},
                                    {302, 2004}, {308, 2001}, {205, 4003}, {206, 4004}, {201, 4006},
                                    {203, 4008}, {204, 4009}, {202, 4010}, {191, 1003}, {192, 4001}};
  size_t toolCount = 0, mainCount = 0;
  const LKeyToCommandMap* tools = ToolBarKeyMap(toolCount);
  const LKeyToCommandMap* main = MainKeyMap(mainCount);
  EXPECT_GT(toolCount, menus.size());
  for (size_t i = 0; i < toolCount; ++i) {
    const int tool = tools[i].command;
    const int menu = menus.count(tool) ? menus.at(tool) : tool;
    EXPECT_NE(KeyOfCommand(menu, main, mainCount), 0) << tool;
    EXPECT_EQ(KeyOfCommand(tool, tools, toolCount), KeyOfCommand(menu, main, mainCount)) << tool;
  }
  // Their keys belong to other commands; these only have them to show.
  EXPECT_EQ(KeyOfCommand(7002, main, mainCount), KeyOfCommand(1007, main, mainCount));
  EXPECT_EQ(KeyOfCommand(7001, main, mainCount), KeyOfCommand(1010, main, mainCount));
}

}  // namespace
