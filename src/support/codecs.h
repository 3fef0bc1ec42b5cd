// URI and Base64 codecs. Pure functions of their arguments; any thread.
#pragma once

#include <cstddef>

#include "support/containers.h"
#include "support/strings.h"

/// Percent-encodes each byte but ASCII letters, digits and `!`, `-`, `.`, `_`, `~`. For any writer of
/// support/strings.h; the caller terminates.
template <typename Writer>
void LURIEncodeToWriterDirect(Writer& writer, const char* text);

/// Decodes up to the end of the text, or up to the first stop character, which is looked for before decoding:
/// an encoded one does not stop. `+` is a blank. A byte that is no hexadecimal digit counts as 0, "%00"
/// writes nothing, and a `%` with fewer than two bytes behind it ends the text. Returns the bytes consumed,
/// stop character not counted. For any writer of support/strings.h; the caller terminates.
template <typename Writer>
size_t LURIDecodeToWriterDirect(Writer& writer, const char* text);
template <typename Writer>
size_t LURIDecodeToWriterDirect(Writer& writer, const char* text, char stopChar);
template <typename Writer>
size_t LURIDecodeToWriterDirect(Writer& writer, const char* text, const char* stopChars);

// Flags of Base64 encoding.
constexpr unsigned kBase64NoPadding = 1;     ///< No `=` at the end.
constexpr unsigned kBase64NoLineBreaks = 2;  ///< No CR LF after each 19 whole groups of 4 characters.

/// The exact length of the encoded text in bytes, without a terminator.
[[nodiscard]] size_t Base64EncodeGetRequiredLength(size_t size, unsigned flags);

/// Replaces the text of `out`.
void LBase64Encode(const void* data, size_t size, LStringLongTemplate<char>& out, unsigned flags);
/// The caller terminates.
void LBase64Encode(const void* data, size_t size, LFixedLengthStringWriterTemplate<char>& out, unsigned flags);
/// `out` has room for Base64EncodeGetRequiredLength bytes and is not terminated. Returns the bytes written.
size_t LBase64Encode(const void* data, size_t size, char* out, unsigned flags);

/// Decodes up to `size` bytes of `text`, or up to a zero byte. All bytes outside the alphabet are skipped,
/// and a last group that is short gives as many whole bytes as its bits make. `out.size` is the bytes
/// decoded: 0 too if there is no memory for them.
void LBase64Decode(const char* text, size_t size, LSizedArray<unsigned char>& out);
