// Single bytes of ASCII, whatever the locale. Any thread.
#pragma once

inline bool IsLineEnd(int byte) { return byte == '\r' || byte == '\n'; }

/// Bytes from 0x80 stay as they are.
inline char UpperAscii(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

/// The value of a hexadecimal digit of either case; -1 for any other byte.
inline int HexDigitValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return c >= 'a' && c <= 'f' ? c - 'a' + 10 : -1;
}
