#include "support/unicode.h"

#include <cstdint>
#include <cstring>
#include <memory>

#include "support/text.h"

namespace {

constexpr char32_t kReplacement = 0xFFFD;
constexpr char32_t kUnicodeEnd = 0x110000;

bool IsContinuation(unsigned char c) { return c >= 0x80 && c <= 0xBF; }

bool IsSurrogate(char32_t c) { return c >= 0xD800 && c <= 0xDFFF; }

/// Bytes of the character that a lead byte opens, by its high bits alone; 0 for a continuation byte, 0xFE and
/// 0xFF.
size_t SizeOfLead(unsigned char lead) {
  if (lead < 0x80) return 1;
  if (lead < 0xC0) return 0;
  if (lead < 0xE0) return 2;
  if (lead < 0xF0) return 3;
  if (lead < 0xF8) return 4;
  if (lead < 0xFC) return 5;
  return lead < 0xFE ? 6 : 0;
}

/// Where a text of which the bytes up to `last` fit is to be cut.
size_t CutAtCharacter(const char* text, size_t last) {
  for (size_t at = last + 1; at-- > 0;) {
    const size_t size = SizeOfLead(static_cast<unsigned char>(text[at]));
    if (size == 0) continue;
    // An ASCII byte goes too, even where it fits: a truncated name is defined so.
    return size > 1 && at + size == last + 1 ? last + 1 : at;
  }
  return 0;
}

/// The smallest and the greatest second byte behind a lead byte: they exclude overlong forms, surrogates and
/// what lies above U+10FFFF.
bool IsSecondByte(unsigned char lead, unsigned char second) {
  switch (lead) {
    case 0xE0: return second >= 0xA0 && second <= 0xBF;
    case 0xED: return second >= 0x80 && second <= 0x9F;
    case 0xF0: return second >= 0x90 && second <= 0xBF;
    case 0xF4: return second >= 0x80 && second <= 0x8F;
    default: return IsContinuation(second);
  }
}

/// Reads one character of at least one byte and gives its size in bytes; 0 for an illegal sequence.
size_t DecodeUtf8(const char* text, char32_t& character) {
  const unsigned char* bytes = reinterpret_cast<const unsigned char*>(text);
  const unsigned char lead = bytes[0];
  if (lead < 0x80) {
    character = lead;
    return 1;
  }
  if (lead < 0xC2 || lead > 0xF4 || !IsSecondByte(lead, bytes[1])) return 0;
  const size_t size = SizeOfLead(lead);
  character = lead & (0x7Fu >> size);
  for (size_t i = 1; i < size; ++i) {
    if (!IsContinuation(bytes[i])) return 0;
    character = character << 6 | (bytes[i] & 0x3Fu);
  }
  return size;
}

size_t Utf8Size(char32_t character) {
  if (character < 0x80) return 1;
  if (character < 0x800) return 2;
  return character < 0x10000 ? 3 : 4;
}

void EncodeUtf8(char* dest, char32_t character, size_t size) {
  for (size_t i = size - 1; i > 0; --i) {
    dest[i] = static_cast<char>(0x80 | (character & 0x3F));
    character >>= 6;
  }
  static constexpr unsigned marks[] = {0, 0, 0xC0, 0xE0, 0xF0};
  dest[0] = static_cast<char>(marks[size] | character);
}

}  // namespace

size_t utf8strlcpy(char* dest, const char* src, size_t size) {
  const size_t length = strlen(src);
  if (length < size) {
    TextCopyBounded(dest, size, src);
    return length;
  }
  const size_t cut = size < 2 ? 0 : CutAtCharacter(src, size - 2);
  memmove(dest, src, cut);
  dest[cut] = 0;
  return cut;
}

int LCopyUTF8FromUTF32Native(char* dest, const char32_t* src, size_t size) {
  int result = kUnicodeClean;
  size_t written = 0;
  for (; *src; ++src) {
    const bool isLegal = *src < kUnicodeEnd;
    const char32_t character = isLegal ? *src : kReplacement;
    if (!isLegal) result = kUnicodeIllegal;
    const size_t needed = Utf8Size(character);
    if (needed > size - written) break;
    EncodeUtf8(dest + written, character, needed);
    written += needed;
  }
  dest[written] = 0;
  return result;
}

int LCopyUTF32FromUTF8Native(char32_t* dest, const char* src, size_t size) {
  if (size == 0) return kUnicodeNoRoom;
  int result = kUnicodeClean;
  size_t written = 0;
  while (*src) {
    char32_t character;
    const size_t consumed = DecodeUtf8(src, character);
    if (consumed == 0) {
      result = kUnicodeIllegal;
      break;
    }
    if (written == size - 1) {
      result = kUnicodeNoRoom;
      break;
    }
    dest[written++] = character;
    src += consumed;
  }
  dest[written] = 0;
  return result;
}

void LCopyUnicodeFromUTF32(char16_t* dest, const char32_t* src, size_t size) {
  if (size == 0) return;
  size_t written = 0;
  for (; *src; ++src) {
    const char32_t character = *src < kUnicodeEnd ? *src : kReplacement;
    const size_t needed = character < 0x10000 ? 1 : 2;
    if (needed > size - 1 - written) break;
    if (needed == 1) {
      dest[written++] = static_cast<char16_t>(character);
    } else {
      dest[written++] = static_cast<char16_t>(0xD800 + ((character - 0x10000) >> 10));
      dest[written++] = static_cast<char16_t>(0xDC00 + (character & 0x3FF));
    }
  }
  dest[written] = 0;
}

void LCopyUTF32FromUnicode(char32_t* dest, const char16_t* src, size_t size) {
  if (size == 0) return;
  size_t written = 0;
  while (*src && written < size - 1) {
    const char32_t unit = *src++;
    if (!IsSurrogate(unit)) {
      dest[written++] = unit;
      continue;
    }
    dest[written++] = 0x10000 + ((unit & 0x3FF) << 10 | (*src & 0x3FF));
    // The one unit that is looked at: behind the terminator there is nothing to read.
    if (*src) ++src;
  }
  dest[written] = 0;
}

int LCopyUnicodeFromUTF8(char16_t* dest, const char* src, size_t size) {
  if (size == 0) return kUnicodeNoRoom;
  const std::unique_ptr<char32_t[]> characters(new char32_t[size]);
  const int result = LCopyUTF32FromUTF8Native(characters.get(), src, size);
  LCopyUnicodeFromUTF32(dest, characters.get(), size);
  return result;
}

int LCopyUTF8FromUnicode(char* dest, const char16_t* src, size_t size) {
  if (size == 0) return kUnicodeNoRoom;
  const std::unique_ptr<char32_t[]> characters(new char32_t[size]);
  LCopyUTF32FromUnicode(characters.get(), src, size);
  return LCopyUTF8FromUTF32Native(dest, characters.get(), size - 1);
}
