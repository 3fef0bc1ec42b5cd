#include "support/window/keys.h"

#include "support/window/window.h"

namespace {

constexpr int kHeldMask = LKey::kCommand | LKey::kShift | LKey::kOption;

constexpr struct {
  int platform;
  int key;
  const char* name;
} kNames[] = {
    {platform::kKeyReturn, LKey::kReturn, "Return"},
    {platform::kKeyDelete, LKey::kForwardDelete, "Delete"},
    // The table's other delete key is the one above the Return key here; either of the two will do for both.
    {platform::kKeyBackspace, LKey::kDelete, "Delete"},
    {platform::kKeyF2, LKey::kF2, "F2"},
    {platform::kKeyLeft, LKey::kLeft, "←"},
    {platform::kKeyRight, LKey::kRight, "→"},
    {platform::kKeyDown, LKey::kDown, "↓"},
    {platform::kKeyUp, LKey::kUp, "↑"},
};

/// A key that stands for another one which has no row of its own.
int AlternativeOf(int key) {
  const int held = key & kHeldMask;
  switch (key & ~kHeldMask) {
    case LKey::kDelete: return held | LKey::kForwardDelete;
    case LKey::kForwardDelete: return held | LKey::kDelete;
    default: return 0;
  }
}

const LKeyToCommandMap* FindKey(int key, const LKeyToCommandMap* table, size_t count) {
  for (size_t i = 0; i < count; ++i) {
    if (table[i].key == key) return &table[i];
  }
  return nullptr;
}

}  // namespace

LKey LKey::FromKeyPress(const platform::KeyPress& press) {
  int value = press.code < 0x10000 ? press.code : 0;
  for (const auto& name : kNames) {
    if (name.platform == press.code) value = name.key;
  }
  if (value == 0) return LKey(0);
  return LKey(value | (press.control ? kCommand : 0) | (press.shift ? kShift : 0) | (press.alt ? kOption : 0));
}

void LKey::GetDescription(char (&out)[kTextSize]) const {
  out[0] = 0;
  if (iValue == 0) return;
  if (iValue & kCommand) TextAppend(out, "Ctrl+");
  if (iValue & kOption) TextAppend(out, "Alt+");
  if (iValue & kShift) TextAppend(out, "Shift+");
  for (const auto& name : kNames) {
    if (name.key == (iValue & ~kHeldMask)) return TextAppend(out, name.name);
  }
  const char character[2] = {static_cast<char>(iValue & 0x7F), 0};
  TextAppend(out, character);
}

bool LKeyHandler::MapKeyToCommand(LMacWindow& window, int key, const LKeyToCommandMap* table, size_t count) {
  const LKeyToCommandMap* row = FindKey(key, table, count);
  if (!row) row = FindKey(AlternativeOf(key), table, count);
  if (!row) return false;
  if (window.Native()) platform::WindowFinishEditing(window.Native());
  window.Command(row->command, 0);
  return true;
}

int KeyOfCommand(int command, const LKeyToCommandMap* table, size_t count) {
  for (size_t i = 0; i < count; ++i) {
    if (table[i].command == command) return table[i].key;
  }
  return 0;
}
