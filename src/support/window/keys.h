// Keys as numbers, as the tables of keys and menus hold them, and the way from a key to its command. Main thread only.
#pragma once

#include "platform/window_system.h"
#include "support/text.h"

class LMacWindow;

/// A key with the keys held beside it, as one number: a named key in the top byte or a character in the low half, and
/// the held keys between them.
class LKey {
 public:
  // The tables call the keys Cmd and Option; they are Ctrl and Alt on the keyboard.
  static constexpr int kCommand = 0x10000, kShift = 0x20000, kOption = 0x40000;
  // Named keys
  static constexpr int kReturn = 0x24000000;
  static constexpr int kDelete = 0x33000000;
  static constexpr int kForwardDelete = 0x75000000;
  static constexpr int kF2 = 0x78000000;
  static constexpr int kLeft = 0x7B000000;
  static constexpr int kRight = 0x7C000000;
  static constexpr int kDown = 0x7D000000;
  static constexpr int kUp = 0x7E000000;
  explicit constexpr LKey(int value) : iValue(value) {}
  /// 0 for a key that no table knows.
  static LKey FromKeyPress(const platform::KeyPress& press);

  int Value() const { return iValue; }
  /// As a menu shows it: "Ctrl+Shift+R". Empty for the key 0.
  void GetDescription(char (&out)[kTextSize]) const;

 private:
  int iValue;
};

/// A row of a key table. The second number is not used.
struct LKeyToCommandMap {
  int key;
  int unused;
  int command;
};

class LKeyHandler {
 public:
  /// Delivers the command of the first row with that key; of a key without a row, that of its alternative form. True if
  /// there was one.
  static bool MapKeyToCommand(LMacWindow& window, int key, const LKeyToCommandMap* table, size_t count);
};

/// The key of the first row with that command; 0 if there is none.
int KeyOfCommand(int command, const LKeyToCommandMap* table, size_t count);
