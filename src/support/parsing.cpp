#include "support/parsing.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "support/ascii.h"

namespace {

bool IsWhiteSpaceOrEnd(char c) { return static_cast<unsigned char>(c) < 33; }

/// Behind the white space at `cursor`.
const char* SkipWhiteSpace(const char* cursor) {
  while (*cursor && IsWhiteSpaceOrEnd(*cursor)) ++cursor;
  return cursor;
}

/// Puts the bytes up to the end of the text or to one that `stops` tells; returns how many.
template <typename Stops>
size_t PutUntil(LStringLongTemplateWriter<char>& writer, const char* text, Stops stops) {
  size_t consumed = 0;
  while (text[consumed] && !stops(text[consumed])) writer.Put(text[consumed++]);
  return consumed;
}

template <typename Stops>
size_t ReadUntil(LStringLongTemplate<char>& out, const char* text, Stops stops) {
  out.GrowToSize(kTextSize);
  out.length = 0;
  LStringLongTemplateWriter<char> writer(out);
  const size_t consumed = PutUntil(writer, text, stops);
  out.data[out.length] = 0;
  return consumed;
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

size_t DigitsAt(const char* text) {
  size_t count = 0;
  while (IsDigit(text[count])) ++count;
  return count;
}

/// The low 32 bits of the number that the digits at `text` make.
int32_t NumberAt(const char* text, size_t digits) {
  constexpr size_t kFit = 18;  // So many always fit into 64 bits.
  if (digits > kFit) return static_cast<int32_t>(strtol(text, nullptr, 10));
  int64_t number = 0;
  for (size_t i = 0; i < digits; ++i) number = number * 10 + (text[i] - '0');
  return static_cast<int32_t>(number);
}

/// The difference as a machine word has it: very large numbers may go round and change its sign.
int Difference(int32_t a, int32_t b) {
  return static_cast<int32_t>(static_cast<uint32_t>(a) - static_cast<uint32_t>(b));
}

}  // namespace

// LStringParserTemplate

template <typename T>
void LStringParserTemplate<T>::GetToWhiteSpaceAndSkip(T (&dest)[kTextSize]) {
  const T* start = cursor;
  while (!IsWhiteSpaceOrEnd(*cursor)) ++cursor;
  TextCopyPart(dest, start, static_cast<size_t>(cursor - start));
  cursor = SkipWhiteSpace(cursor);
}

template <typename T>
void LStringParserTemplate<T>::GetToEndOfLineAndSkip(T (&dest)[kTextSize]) {
  const size_t length = strcspn(cursor, "\r\n");
  TextCopyPart(dest, cursor, length);
  cursor += length;
  if (!*cursor) return;
  const T other = *cursor == '\r' ? '\n' : '\r';
  cursor += cursor[1] == other ? 2 : 1;
}

template <typename T>
void LStringParserTemplate<T>::GetToString(const T* needle, T (&dest)[kTextSize]) {
  const T* match = strstr(cursor, needle);
  const T* end = match ? match : cursor + strlen(cursor);
  TextCopyPart(dest, cursor, static_cast<size_t>(end - cursor));
  cursor = end;
}

// Free readers

size_t LParseGetToEndOfLine(const char* text, LStringLongTemplate<char>& out) {
  return ReadUntil(out, text, IsLineEnd);
}

size_t LParseGetToEndOfLine(const char* text, LStringLongTemplateWriter<char>& writer) {
  return PutUntil(writer, text, IsLineEnd);
}

size_t LParseGetToCharacter(const char* text, char ch, LStringLongTemplate<char>& out) {
  return ReadUntil(out, text, [ch](char c) { return c == ch; });
}

size_t LParseGetToCharacters(const char* text, const char* set, LStringLongTemplate<char>& out) {
  return ReadUntil(out, text, [set](char c) { return strchr(set, c) != nullptr; });
}

// LCommaSeparatedListIteratorTemplate

template <typename T>
void LCommaSeparatedListIteratorTemplate<T>::Next() {
  if (!*cursor) {
    item = "";
    bAtEnd = true;
    return;
  }
  if (*cursor == '"') {
    ReadQuoted();
  } else {
    ReadPlain();
  }
  cursor = SkipWhiteSpace(cursor);
}

template <typename T>
void LCommaSeparatedListIteratorTemplate<T>::ReadQuoted() {
  ++cursor;
  cursor += LParseGetToCharacter(cursor, '"', item);
  if (*cursor) ++cursor;
  while (*cursor == '"') {
    ++cursor;
    LStringLongTemplate<T> more;
    cursor += LParseGetToCharacter(cursor, '"', more);
    if (*cursor) ++cursor;
    item.Append('"');
    item.Append(more);
  }
  while (*cursor && *cursor != ',') ++cursor;
  if (*cursor) ++cursor;
}

template <typename T>
void LCommaSeparatedListIteratorTemplate<T>::ReadPlain() {
  cursor += LParseGetToCharacter(cursor, ',', item);
  if (*cursor) ++cursor;
  while (item.length != 0 && IsWhiteSpaceOrEnd(item.data[item.length - 1])) --item.length;
  item.data[item.length] = 0;
}

int LStringCompareLogical(const char* a, const char* b) {
  while (*a) {
    if (!*b) return 1;
    if (!IsDigit(*a) || !IsDigit(*b)) {
      const int upperA = static_cast<signed char>(UpperAscii(*a++));
      const int upperB = static_cast<signed char>(UpperAscii(*b++));
      if (upperA != upperB) return upperA > upperB ? 1 : -1;
      continue;
    }
    const size_t digitsOfA = DigitsAt(a);
    const size_t digitsOfB = DigitsAt(b);
    const int32_t numberA = NumberAt(a, digitsOfA);
    const int32_t numberB = NumberAt(b, digitsOfB);
    if (numberA != numberB) return Difference(numberA, numberB);
    a += digitsOfA;
    b += digitsOfB;
    // Equal numbers at the end of both: more leading zeros make the greater.
    if (!*a && !*b && digitsOfA != digitsOfB) return digitsOfA > digitsOfB ? 1 : -1;
  }
  return *b ? -1 : 0;
}

template class LStringParserTemplate<char>;
template class LCommaSeparatedListIteratorTemplate<char>;
