#include "support/codecs.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "support/ascii.h"

namespace {

// URI

bool IsPlainInUri(unsigned char c) {
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c && strchr("!-._~", c));
}

/// A byte that is no digit counts as 0.
unsigned HexValue(char c) { return static_cast<unsigned>(std::max(HexDigitValue(c), 0)); }

/// The one decoder. `stops(byte)` tells a stop character.
template <typename Writer, typename Stops>
size_t DecodeUri(Writer& writer, const char* text, Stops stops) {
  const char* cursor = text;
  while (*cursor && !stops(*cursor)) {
    if (*cursor != '%') {
      writer.Put(*cursor == '+' ? ' ' : *cursor);
      ++cursor;
      continue;
    }
    if (!cursor[1] || !cursor[2]) return static_cast<size_t>(cursor - text) + strlen(cursor);
    const unsigned code = HexValue(cursor[1]) * 16 + HexValue(cursor[2]);
    if (code != 0 || cursor[2] != '0') writer.Put(static_cast<char>(code));
    cursor += 3;
  }
  return static_cast<size_t>(cursor - text);
}

// Base64

constexpr size_t kGroupsInLine = 19;
constexpr char kBase64Alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr uint8_t kNotBase64 = 64;

struct Base64Values {
  uint8_t of[256];  ///< The six bits of a character; kNotBase64 outside the alphabet.
};

constexpr Base64Values MakeBase64Values() {
  Base64Values values{};
  for (uint8_t& value : values.of) value = kNotBase64;
  for (uint8_t i = 0; i < 64; ++i) values.of[static_cast<unsigned char>(kBase64Alphabet[i])] = i;
  return values;
}

constexpr Base64Values kBase64Values = MakeBase64Values();

/// Puts the `count` first characters of the group that `bits` make (24 bits, first character highest).
template <typename Put>
void PutGroup(uint32_t bits, size_t count, Put put) {
  for (size_t i = 0; i < count; ++i) put(kBase64Alphabet[bits >> (18 - 6 * i) & 63]);
}

template <typename Put>
void EncodeBase64(const unsigned char* data, size_t size, unsigned flags, Put put) {
  const size_t groups = size / 3;
  for (size_t group = 0; group < groups; ++group, data += 3) {
    PutGroup(uint32_t{data[0]} << 16 | uint32_t{data[1]} << 8 | data[2], 4, put);
    // A short last group never breaks its line, even where its padding fills it.
    if (flags & kBase64NoLineBreaks || (group + 1) % kGroupsInLine != 0) continue;
    put('\r');
    put('\n');
  }
  const size_t rest = size % 3;
  if (rest == 0) return;
  PutGroup(uint32_t{data[0]} << 16 | (rest == 2 ? uint32_t{data[1]} << 8 : 0), rest + 1, put);
  if (flags & kBase64NoPadding) return;
  for (size_t i = rest; i < 3; ++i) put('=');
}

}  // namespace

template <typename Writer>
void LURIEncodeToWriterDirect(Writer& writer, const char* text) {
  static const char digits[] = "0123456789ABCDEF";
  for (; *text; ++text) {
    const unsigned char c = static_cast<unsigned char>(*text);
    if (IsPlainInUri(c)) {
      writer.Put(*text);
      continue;
    }
    writer.Put('%');
    writer.Put(digits[c >> 4]);
    writer.Put(digits[c & 15]);
  }
}

template <typename Writer>
size_t LURIDecodeToWriterDirect(Writer& writer, const char* text) {
  return DecodeUri(writer, text, [](char) { return false; });
}

template <typename Writer>
size_t LURIDecodeToWriterDirect(Writer& writer, const char* text, char stopChar) {
  return DecodeUri(writer, text, [stopChar](char c) { return c == stopChar; });
}

template <typename Writer>
size_t LURIDecodeToWriterDirect(Writer& writer, const char* text, const char* stopChars) {
  return DecodeUri(writer, text, [stopChars](char c) { return strchr(stopChars, c) != nullptr; });
}

size_t Base64EncodeGetRequiredLength(size_t size, unsigned flags) {
  const size_t groups = size / 3;
  const size_t rest = size % 3;
  size_t length = groups * 4;
  if (!(flags & kBase64NoLineBreaks)) length += groups / kGroupsInLine * 2;
  if (rest != 0) length += flags & kBase64NoPadding ? rest + 1 : 4;
  return length;
}

size_t LBase64Encode(const void* data, size_t size, char* out, unsigned flags) {
  char* end = out;
  EncodeBase64(static_cast<const unsigned char*>(data), size, flags, [&end](char c) { *end++ = c; });
  return static_cast<size_t>(end - out);
}

void LBase64Encode(const void* data, size_t size, LStringLongTemplate<char>& out, unsigned flags) {
  out.length = 0;
  out.GrowToSize(Base64EncodeGetRequiredLength(size, flags) + 1);
  out.length = LBase64Encode(data, size, out.data, flags);
  out.data[out.length] = 0;
}

void LBase64Encode(const void* data, size_t size, LFixedLengthStringWriterTemplate<char>& out, unsigned flags) {
  EncodeBase64(static_cast<const unsigned char*>(data), size, flags, [&out](char c) { out.Put(c); });
}

void LBase64Decode(const char* text, size_t size, LSizedArray<unsigned char>& out) {
  out.SetArrayCapacityLarge((size + 3) / 4 * 3);
  if (!out.data) return;
  size_t written = 0;
  uint32_t bits = 0;
  unsigned bitCount = 0;
  for (size_t i = 0; i < size && text[i]; ++i) {
    const uint8_t value = kBase64Values.of[static_cast<unsigned char>(text[i])];
    if (value == kNotBase64) continue;
    bits = bits << 6 | value;
    bitCount += 6;
    if (bitCount < 8) continue;
    bitCount -= 8;
    out.data[written++] = static_cast<unsigned char>(bits >> bitCount);
  }
  out.size = written;
}

#define INSTANTIATE_URI(Writer)                                         \
  template void LURIEncodeToWriterDirect(Writer&, const char*);         \
  template size_t LURIDecodeToWriterDirect(Writer&, const char*);       \
  template size_t LURIDecodeToWriterDirect(Writer&, const char*, char); \
  template size_t LURIDecodeToWriterDirect(Writer&, const char*, const char*);
INSTANTIATE_URI(LStringLongTemplateWriter<char>)
INSTANTIATE_URI(LStringLongTemplateAppender<char>)
INSTANTIATE_URI(LFixedLengthStringWriterTemplate<char>)
#undef INSTANTIATE_URI
