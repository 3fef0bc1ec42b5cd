#include "support/strings.h"

#include <algorithm>
#include <cctype>
#include <cstdint>

#include "platform/text_service.h"
#include "support/ascii.h"

namespace {

constexpr size_t kFirstCapacity = 260;
constexpr size_t kWriterLimit = 0x20000000;  // 512 MiB: above it a writer drops bytes and never fails.
constexpr size_t kDirectiveLimit = 257;

/// One directive behind its percent sign: the run of flags and the conversion byte.
struct Directive {
  char bytes[kDirectiveLimit + 1];
  char conversion;
};

bool IsDirectiveByte(char c) { return c == '.' || (c >= '0' && c <= '9') || c == 'L' || c == 'l' || c == 'z'; }

/// Reads the directive at `cursor`, which stands behind the percent sign; returns the cursor behind it.
const char* ReadDirective(const char* cursor, Directive& directive) {
  size_t length = 0;
  for (; IsDirectiveByte(*cursor); ++cursor) {
    if (length < kDirectiveLimit) directive.bytes[length++] = *cursor;
  }
  directive.bytes[length] = 0;
  directive.conversion = *cursor;
  return *cursor ? cursor + 1 : cursor;
}

/// The flags without its length letters: the length is chosen again for the type that is passed.
void CopyWithoutLengths(char (&out)[kDirectiveLimit + 1], const char* bytes) {
  char* end = out;
  for (; *bytes; ++bytes) {
    if (!strchr("Llz", *bytes)) *end++ = *bytes;
  }
  *end = 0;
}

void FormatDouble(char (&out)[kTextSize], const Directive& directive, double value) {
  char flags[kDirectiveLimit + 1];
  CopyWithoutLengths(flags, directive.bytes);
  char format[kDirectiveLimit + 3];
  TextFormat(format, "%%%s%c", flags, directive.conversion);
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
  TextFormat(out, format, value);
#pragma GCC diagnostic pop
}

void FormatWord(char (&out)[kTextSize], const Directive& directive, uint64_t word) {
  out[0] = 0;
  // The C library would store through the word; the directive shows nothing in any case.
  if (directive.conversion == 'n') return;
  // To the C library these open a directive that never ends: it writes nothing.
  if (strchr("-+ #'I*hjqtZ", directive.conversion)) return;
  const bool isNumber = strchr("diouxXU", directive.conversion);
  bool isWord = directive.conversion != 'c';
  char flags[kDirectiveLimit + 1];
  if (isNumber) {
    isWord = directive.conversion == 'U' || strpbrk(directive.bytes, "Llz");
    CopyWithoutLengths(flags, directive.bytes);
  } else {
    TextCopy(flags, directive.bytes);
  }
  char format[kDirectiveLimit + 5];
  TextFormat(format, "%%%s%s%c", flags, isNumber && isWord ? "ll" : "",
             directive.conversion == 'U' ? 'u' : directive.conversion);
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
  if (isWord) {
    TextFormat(out, format, static_cast<unsigned long long>(word));
  } else {
    TextFormat(out, format, static_cast<unsigned>(word));
  }
#pragma GCC diagnostic pop
}

}  // namespace

// LStringLongTemplate

template <typename T>
const T* LStringLongTemplate<T>::Empty() {
  static const T empty[1] = {};
  return empty;
}

template <typename T>
LStringLongTemplate<T>::LStringLongTemplate(const T* text) {
  Assign(text, strlen(text));
}

template <typename T>
LStringLongTemplate<T>::LStringLongTemplate(const LStringLongTemplate& other) {
  if (other.data) Assign(other.data, other.length);
}

template <typename T>
LStringLongTemplate<T>::LStringLongTemplate(LStringLongTemplate&& other) noexcept
    : data(other.data), length(other.length), capacity(other.capacity) {
  other.data = nullptr;
  other.length = other.capacity = 0;
}

template <typename T>
void LStringLongTemplate<T>::Assign(const T* text, size_t size) {
  T* fresh = new T[size + 1];
  std::copy_n(text, size, fresh);
  fresh[size] = 0;
  delete[] data;
  data = fresh;
  length = size;
  capacity = size + 1;
}

template <typename T>
LStringLongTemplate<T>& LStringLongTemplate<T>::operator=(const T* text) {
  Assign(text, strlen(text));
  return *this;
}

template <typename T>
LStringLongTemplate<T>& LStringLongTemplate<T>::operator=(const LStringLongTemplate& other) {
  // Also from itself: the bytes are made anew, as long as the text.
  if (other.data) {
    Assign(other.data, other.length);
  } else {
    delete[] data;
    data = nullptr;
    length = capacity = 0;
  }
  return *this;
}

template <typename T>
LStringLongTemplate<T>& LStringLongTemplate<T>::operator=(LStringLongTemplate&& other) noexcept {
  std::swap(data, other.data);
  std::swap(length, other.length);
  std::swap(capacity, other.capacity);
  return *this;
}

template <typename T>
bool LStringLongTemplate<T>::GrowToSize(size_t size) {
  if (capacity >= size) return true;
  T* fresh = new T[size];
  std::copy_n(data, length, fresh);
  fresh[length] = 0;
  delete[] data;
  data = fresh;
  capacity = size;
  return true;
}

template <typename T>
void LStringLongTemplate<T>::Append(const T* text, size_t size) {
  const size_t needed = length + size + 1;
  if (needed <= capacity) {
    std::copy_n(text, size, data + length);
  } else {
    // `text` may lie inside the old bytes, so they stay until it is copied.
    T* old = data;
    const size_t grown = std::max(needed + capacity, kFirstCapacity);
    T* fresh = new T[grown];
    std::copy_n(old, length, fresh);
    std::copy_n(text, size, fresh + length);
    delete[] old;
    data = fresh;
    capacity = grown;
  }
  length += size;
  data[length] = 0;
}

template <typename T>
void LStringLongTemplate<T>::Append(const T* text) {
  Append(text, strlen(text));
}

template <typename T>
void LStringLongTemplate<T>::Append(T character) {
  Append(&character, 1);
}

template <typename T>
void LStringLongTemplate<T>::Append(const LStringLongTemplate& other) {
  if (other.length != 0) Append(other.data, other.length);
}

// Writers

template <typename T>
void LStringLongTemplateWriter<T>::Put(T character) {
  if (string->capacity == 0) string->GrowToSize(kFirstCapacity);
  string->data[string->length++] = character;
  if (string->length < string->capacity) return;
  if (string->capacity > kWriterLimit || !string->GrowToSize(string->capacity * 4)) --string->length;
}

template <typename T>
void LStringLongTemplateWriter<T>::Write(const T* text, size_t size) {
  if (string->capacity == 0) string->GrowToSize(kFirstCapacity);
  // The steps of Put, taken at once.
  const size_t needed = string->length + size + 1;
  size_t grown = string->capacity;
  while (grown < needed && grown <= kWriterLimit) grown *= 4;
  string->GrowToSize(grown);
  size = std::min(size, grown - string->length - 1);
  std::copy_n(text, size, string->data + string->length);
  string->length += size;
}

template <typename Writer>
size_t tplprintf(Writer& writer, const char* format, va_list arguments) {
  if (!format) return 0;
  for (const char* cursor = format; *cursor;) {
    if (*cursor != '%') {
      writer.Put(*cursor++);
      continue;
    }
    Directive directive;
    cursor = ReadDirective(cursor + 1, directive);
    if (directive.conversion == 0) break;
    if (directive.conversion == '%') {
      writer.Put('%');
    } else if (directive.conversion == 's') {
      if (const char* text = va_arg(arguments, const char*)) tplstrcpy(writer, text);
    } else {
      char formatted[kTextSize];
      if (strchr("aAeEfFgG", directive.conversion)) {
        FormatDouble(formatted, directive, va_arg(arguments, double));
      } else {
        FormatWord(formatted, directive, va_arg(arguments, uint64_t));
      }
      tplstrcpy(writer, formatted);
    }
  }
  return writer.Length();
}

/// Writes behind what `string` holds, and terminates.
static size_t FormatInto(LStringLongTemplate<char>& string, const char* format, va_list arguments) {
  string.GrowToSize(kFirstCapacity);
  LStringLongTemplateAppender<char> appender(string);
  tplprintf(appender, format, arguments);
  string.data[string.length] = 0;
  return string.length;
}

template <typename T>
size_t LStringLongTemplate<T>::sprintf(const T* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  length = 0;
  const size_t written = FormatInto(*this, format, arguments);
  va_end(arguments);
  return written;
}

template <typename T>
void LStringLongTemplate<T>::tsprintfappend(const T* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  FormatInto(*this, format, arguments);
  va_end(arguments);
}

size_t sprintf(LStringLongTemplate<char>& string, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  string.length = 0;
  const size_t written = FormatInto(string, format, arguments);
  va_end(arguments);
  return written;
}

void tsprintfappend(LStringLongTemplate<char>& string, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  FormatInto(string, format, arguments);
  va_end(arguments);
}

size_t sprintf(LFixedLengthStringWriterTemplate<char>& writer, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const size_t length = tplprintf(writer, format, arguments);
  va_end(arguments);
  return length;
}

size_t tplwprintf(LFixedLengthStringWriterTemplate<char>& writer, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const size_t length = tplprintf(writer, format, arguments);
  va_end(arguments);
  return length;
}

// LStringListTemplate

template <typename T>
LStringListTemplate<T>::LStringListTemplate() : strings(new T*[256]), capacity(255) {
  strings[0] = nullptr;
}

template <typename T>
LStringListTemplate<T>::~LStringListTemplate() {
  Clear();
  delete[] strings;
}

template <typename T>
void LStringListTemplate<T>::Clear() {
  for (size_t i = 0; i < count; ++i) delete[] strings[i];
  count = 0;
  strings[0] = nullptr;
}

template <typename T>
void LStringListTemplate<T>::AddOwned(T* text) {
  if (count == capacity) {
    T** grown = new T*[8 * count + 8];
    std::copy_n(strings, count, grown);
    delete[] strings;
    strings = grown;
    capacity = 8 * count + 7;
  }
  strings[count++] = text;
  strings[count] = nullptr;
}

template <typename T>
T* LStringListTemplate<T>::Add(size_t size) {
  T* text = new T[std::max<size_t>(size, 1)];
  text[0] = 0;
  AddOwned(text);
  return text;
}

template <typename T>
void LStringListTemplate<T>::Add(const T* text) {
  const size_t size = strlen(text) + 1;
  std::copy_n(text, size, Add(size));
}

template <typename T>
void LStringListTemplate<T>::Add(const LStringLongTemplate<T>& text) {
  std::copy_n(text.Text(), text.length + 1, Add(text.length + 1));
}

// Trimming and searching

namespace {

template <typename Drops>
void TrimBothEnds(char* text, Drops drops) {
  size_t begin = 0;
  size_t end = strlen(text);
  while (begin < end && drops(static_cast<unsigned char>(text[begin]))) ++begin;
  while (end > begin && drops(static_cast<unsigned char>(text[end - 1]))) --end;
  memmove(text, text + begin, end - begin);
  text[end - begin] = 0;
}

}  // namespace

void LStringTrim(char* text) {
  TrimBothEnds(text, [](unsigned char c) { return c == ' '; });
}

void LStringTrimWhiteSpace(char* text) {
  TrimBothEnds(text, [](unsigned char c) { return c < 33; });
}

void LStringTrimFormatting(char* text) {
  TrimBothEnds(text, [](unsigned char c) { return c < 32; });
}

const char* stristrTemplate(const char* haystack, const char* needle) {
  const size_t length = strlen(needle);
  const size_t room = strlen(haystack);
  if (length > room) return nullptr;
  for (size_t start = 0; start + length <= room; ++start) {
    size_t i = 0;
    while (i < length && UpperAscii(haystack[start + i]) == UpperAscii(needle[i])) ++i;
    if (i == length) return haystack + start;
  }
  return nullptr;
}

void LCharsetsLowerCase(char (&text)[kTextSize]) {
  char lower[kTextSize];
  platform::TextLowerCase(text, lower);
  TextCopy(text, lower);
}

void TextLowerAscii(char* text) {
  for (; *text; ++text) {
    if (*text >= 'A' && *text <= 'Z') *text = static_cast<char>(*text - 'A' + 'a');
  }
}

template class LStringLongTemplate<char>;
template struct LStringLongTemplateWriter<char>;
template struct LStringLongTemplateAppender<char>;
template class LStringListTemplate<char>;
template size_t tplprintf(LStringLongTemplateWriter<char>&, const char*, va_list);
template size_t tplprintf(LStringLongTemplateAppender<char>&, const char*, va_list);
template size_t tplprintf(LFixedLengthStringWriterTemplate<char>&, const char*, va_list);
