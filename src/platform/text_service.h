// Text operations that need the whole of Unicode.
#pragma once

#include <cstddef>

namespace platform {

constexpr size_t kFixedText = 260;

/// Lower-cases UTF-8 `text` by the user's locale into `out`, cut at a whole character. Any thread.
/// Bytes that are not UTF-8 stay as they are: a name that is lower-cased must still find its file.
void TextLowerCase(const char* text, char (&out)[kFixedText]);

/// What the user sees of a name that is not UTF-8, cut at a whole character. False, with `out` untouched, for one that
/// is. Any thread.
bool TextDecodeName(const char* name, char (&out)[kFixedText]);

}  // namespace platform
