// Fixed text: zero-terminated UTF-8 in an array whose size the compiler knows.
//
// The one copying and the one formatting function for such arrays. Both take the size from the array,
// always terminate, and cut in silence what does not fit. Nothing else writes into a fixed text.
#pragma once

#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <cstring>

/// Size in bytes of a path, a name or a short field: 259 bytes of text and the terminator.
constexpr size_t kTextSize = 260;

/// Copies at most `size` - 1 bytes of `text` to `out` and terminates it. `text` may lie inside `out`.
/// A null `text` counts as empty. For arrays use TextCopy.
inline void TextCopyBounded(char* out, size_t size, const char* text) {
  if (size == 0) return;
  size_t length = text ? strlen(text) : 0;
  if (length > size - 1) length = size - 1;
  if (length != 0) memmove(out, text, length);
  out[length] = 0;
}

template <size_t N>
void TextCopy(char (&out)[N], const char* text) {
  TextCopyBounded(out, N, text);
}

/// Copies the first `length` bytes of `text`, cut to the array.
template <size_t N>
void TextCopyPart(char (&out)[N], const char* text, size_t length) {
  if (length > N - 1) length = N - 1;
  if (length != 0) memmove(out, text, length);
  out[length] = 0;
}

/// Appends `text` to the text in `out`, cut to the array.
template <size_t N>
void TextAppend(char (&out)[N], const char* text) {
  const size_t length = strnlen(out, N - 1);
  TextCopyBounded(out + length, N - length, text);
}

__attribute__((format(printf, 3, 0))) inline void TextFormatBounded(char* out, size_t size, const char* format,
                                                                    va_list arguments) {
  // vsnprintf gives a negative number on an encoding error and leaves the text unsettled.
  if (vsnprintf(out, size, format, arguments) < 0) out[0] = 0;
}

/// Formats by the rules of the C library's printf, cut to the array. No argument may lie inside `out`.
template <size_t N>
__attribute__((format(printf, 2, 3))) void TextFormat(char (&out)[N], const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  TextFormatBounded(out, N, format, arguments);
  va_end(arguments);
}
