// Conversions between UTF-8, UTF-16 and UTF-32 of zero-terminated text. Pure functions; any thread.
//
// Each takes the size of `dest` in units of `dest`, and cuts what does not fit at a whole character.
#pragma once

#include <cstddef>

// Results of the conversions between UTF-8 and UTF-32.
constexpr int kUnicodeClean = 0;
constexpr int kUnicodeNoRoom = 1;   ///< The destination ran out.
constexpr int kUnicodeIllegal = 2;  ///< An illegal sequence or value was met.

/// strlcpy that never leaves a cut character: it drops it. A text cut at an ASCII byte loses this byte too.
/// Returns the length of the text in `dest`. Size 0 still writes a terminator: `dest` has at least one byte.
size_t utf8strlcpy(char* dest, const char* src, size_t size);

/// UTF-32 to UTF-8, up to the first character that does not fit. The terminator is not counted in `size`:
/// `dest` has `size` + 1 bytes. A value above U+10FFFF is written as U+FFFD and gives kUnicodeIllegal, else
/// kUnicodeClean.
int LCopyUTF8FromUTF32Native(char* dest, const char32_t* src, size_t size);

/// UTF-8 to UTF-32. Stops at an illegal sequence (overlong forms, surrogates, values above U+10FFFF and cut
/// characters are such) with kUnicodeIllegal, and with kUnicodeNoRoom behind `size` - 1 characters. Always
/// terminates.
int LCopyUTF32FromUTF8Native(char32_t* dest, const char* src, size_t size);

/// UTF-32 to UTF-16; always terminates. A pair that does not fit whole is left out, and a value above
/// U+10FFFF is written as U+FFFD.
void LCopyUnicodeFromUTF32(char16_t* dest, const char32_t* src, size_t size);

/// UTF-16 to UTF-32; always terminates. Any unit from 0xD800 to 0xDFFF makes a character with the unit behind
/// it, whatever that is.
void LCopyUTF32FromUnicode(char32_t* dest, const char16_t* src, size_t size);

/// These two go through at most `size` - 1 characters of UTF-32 and give the result of the half that reads or
/// writes UTF-8. They always terminate within `size` units.
int LCopyUnicodeFromUTF8(char16_t* dest, const char* src, size_t size);
int LCopyUTF8FromUnicode(char* dest, const char16_t* src, size_t size);
