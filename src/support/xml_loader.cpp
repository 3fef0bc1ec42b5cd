// The lexical steps of the XML reader: bytes, names, values and character references.
#include <cstdint>

#include "support/ascii.h"
#include "support/unicode.h"
#include "support/xml.h"

namespace {

using Loader = LXMLLoaderTemplate<char>;

constexpr size_t kBytesBetweenQuestions = 512;
constexpr size_t kReferenceLimit = 23;  // Bytes behind the `&`, the semicolon counted.

constexpr char kReferenceUnfinished[] =
    "アンドマーク（&）で始まる文字列は、セミコロン（;）で終了する必要があります。"
    "'&'を'&amp;'に置き換えるか制御文字列の最後に';'を加えてください。";

bool IsNameEnd(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '/' || c == '=' || c == '>'; }

/// These begin raw text, which may follow without anything between.
bool IsWholeName(const char* name, size_t length) {
  if (length == 3) return strcmp(name, "!--") == 0;
  return length == 8 && (strcmp(name, "!DOCTYPE") == 0 || strcmp(name, "![CDATA[") == 0);
}

/// Hands each byte of a name or value to `put`, until a byte outside quotes ends it or `put` says that it is
/// whole. Returns the last byte read.
template <typename Put>
char LoadWord(Loader& loader, Put put) {
  char quote = 0;
  for (;;) {
    const char c = loader.GetChar();
    if (c == 0 || (quote == 0 && IsNameEnd(c))) return c;
    if (c == '&') {
      char character[kTextSize];
      XMLAmpChar(loader, character);
      for (const char* at = character; *at; ++at) {
        if (put(*at)) return c;
      }
    } else if (c == quote) {
      quote = 0;
    } else if (quote == 0 && (c == '"' || c == '\'')) {
      quote = c;
    } else if (put(c)) {
      return c;
    }
  }
}

/// A number of any length, of which the low 16 bits count.
char16_t UnitFromText(const char* digits, unsigned base) {
  uint32_t unit = 0;
  for (; *digits; ++digits) {
    const int digit = HexDigitValue(*digits);
    if (digit >= 0) unit = (unit * base + static_cast<uint32_t>(digit)) & 0xFFFF;
  }
  return static_cast<char16_t>(unit);
}

bool IsDecimal(const char* text) { return *text && text[strspn(text, "0123456789")] == 0; }

/// Reads the reference up to its semicolon, which is dropped.
bool LoadReference(Loader& loader, char (&reference)[kReferenceLimit]) {
  for (char& out : reference) {
    const char c = loader.GetChar();
    out = 0;
    if (c == ';') return true;
    if (c == 0 || c == '\t' || c == '\n' || c == ' ') return false;
    out = c;
  }
  return false;
}

}  // namespace

template <typename T>
T LXMLLoaderTemplate<T>::GetChar() {
  const T c = PeekChar();
  if (c == 0) return 0;
  ++position;
  if (!IsLineEnd(c)) {
    ++column;
    return c;
  }
  const T second = PeekChar();
  if (IsLineEnd(second) && second != c) ++position;
  ++line;
  column = 1;
  return '\n';
}

template <typename T>
void LXMLLoaderTemplate<T>::SetError(const char* format, ...) {
  if (error[0]) return;
  char message[kTextSize];
  va_list arguments;
  va_start(arguments, format);
  TextFormatBounded(message, sizeof message, format, arguments);
  va_end(arguments);
  TextFormat(error, "Ln %ld, Col %ld: %s", line, column, message);
}

template <typename T>
bool LXMLLoaderTemplate<T>::IsToStop() {
  if (bStopped || !process || position - askedAt < kBytesBetweenQuestions) return bStopped;
  askedAt = position;
  bStopped = pAskToStop(*process);
  return bStopped;
}

template struct LXMLLoaderTemplate<char>;

char XMLLoadTag(Loader& loader, char (&name)[kTextSize]) {
  size_t length = 0;
  name[0] = 0;
  return LoadWord(loader, [&](char c) {
    if (length == kTextSize - 1) return false;
    name[length++] = c;
    name[length] = 0;
    return IsWholeName(name, length);
  });
}

char XMLLoadAttribute(Loader& loader, LStringLongTemplate<char>& value) {
  value = "";
  if (loader.PeekChar() == ' ') loader.GetChar();
  return LoadWord(loader, [&](char c) {
    value.Append(c);
    return false;
  });
}

void XMLAmpChar(Loader& loader, char (&out)[kTextSize]) {
  static constexpr struct {
    const char* name;
    const char* character;
  } kNamed[] = {{"amp", "&"}, {"gt", ">"}, {"lt", "<"}, {"quot", "\""}, {"apos", "'"}};

  out[0] = 0;
  char reference[kReferenceLimit];
  if (!LoadReference(loader, reference)) return loader.SetError("%s", kReferenceUnfinished);
  const bool isHexadecimal = reference[0] == '#' && reference[1] == 'x';
  if (isHexadecimal || (reference[0] == '#' && IsDecimal(reference + 1))) {
    const char16_t units[] = {isHexadecimal ? UnitFromText(reference + 2, 16) : UnitFromText(reference + 1, 10), 0};
    LCopyUTF8FromUnicode(out, units, kTextSize);
    return;
  }
  // A name that is not known is lost, and the file still loads.
  TextCopy(out, "&");
  for (const auto& entry : kNamed) {
    if (strcmp(reference, entry.name) == 0) TextCopy(out, entry.character);
  }
}
