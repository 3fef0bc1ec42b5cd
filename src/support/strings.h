// Growable text, the writers that fill it, the system's own formatting routine, and lists of texts.
//
// All text is zero-terminated UTF-8 in bytes. Short fields live in fixed arrays (support/text.h); text of
// unknown length lives in LStringLongTemplate. tplprintf is a template on the writer, so that one routine
// feeds a growable text and a fixed array alike. Nothing here locks: a text belongs to one thread at a time.
#pragma once

#include <cstdarg>
#include <cstddef>

#include "support/text.h"

/// Growable text. Owns its bytes; copies are deep. Growing never fails but by ending the process.
template <typename T>
class LStringLongTemplate {
 public:
  LStringLongTemplate() = default;
  explicit LStringLongTemplate(const T* text);
  LStringLongTemplate(const LStringLongTemplate& other);
  LStringLongTemplate(LStringLongTemplate&& other) noexcept;
  ~LStringLongTemplate() { delete[] data; }

  /// The new bytes are made before the old ones go, so that `text` may lie inside this text.
  LStringLongTemplate& operator=(const T* text);
  LStringLongTemplate& operator=(const LStringLongTemplate& other);
  LStringLongTemplate& operator=(LStringLongTemplate&& other) noexcept;

  void Append(const T* text);
  void Append(const T* text, size_t size);
  void Append(T character);
  void Append(const LStringLongTemplate& other);

  /// Makes room for `size` bytes, terminator counted; keeps the text. Never shrinks. Returns true.
  bool GrowToSize(size_t size);

  /// Replaces the text by the formatted one (rules of tplprintf); returns its length in bytes.
  size_t sprintf(const T* format, ...);
  /// Appends the formatted text (rules of tplprintf).
  void tsprintfappend(const T* format, ...);

  /// The text, never null: the empty text for a string that was never given one.
  const T* Text() const { return data ? data : Empty(); }
  operator const T*() const { return Text(); }
  bool IsEmpty() const { return length == 0; }

  T* data = nullptr;    ///< Owned, from array new; null until the first text. Use Text() to read.
  size_t length = 0;    ///< Bytes, terminator not counted.
  size_t capacity = 0;  ///< Bytes allocated, terminator counted; 0 with null data.

 private:
  static const T* Empty();
  void Assign(const T* text, size_t size);
};

/// Writes into a growable text. The caller terminates the text after the last write.
template <typename T>
struct LStringLongTemplateWriter {
  explicit LStringLongTemplateWriter(LStringLongTemplate<T>& target) : string(&target) {}
  void Put(T character);
  void Write(const T* text, size_t size);
  size_t Length() const { return string->length; }

  LStringLongTemplate<T>* string;
};

/// The same, handed out for appending: character by character the two behave alike.
template <typename T>
struct LStringLongTemplateAppender : LStringLongTemplateWriter<T> {
  using LStringLongTemplateWriter<T>::LStringLongTemplateWriter;
};

/// Writes into a fixed array and drops what does not fit. The caller terminates at `length`.
template <typename T>
struct LFixedLengthStringWriterTemplate {
  template <size_t N>
  explicit LFixedLengthStringWriterTemplate(T (&target)[N]) : buffer(target), capacity(N - 1) {}
  void Put(T character) {
    if (length < capacity) buffer[length++] = character;
  }
  void Write(const T* text, size_t size) {
    for (size_t i = 0; i < size && length < capacity; ++i) buffer[length++] = text[i];
  }
  size_t Length() const { return length; }
  void Terminate() { buffer[length] = 0; }

  T* buffer;  ///< Not owned.
  size_t length = 0;
  size_t capacity;  ///< The array's size less one, for the terminator.
};

/// Puts a zero-terminated text through a writer, byte by byte.
template <typename Writer>
void tplstrcpy(Writer& writer, const char* text) {
  while (*text) writer.Put(*text++);
}

/// The system's formatting routine, for any writer. Not a full printf:
/// a directive is `%`, a run of `.`, digits, `L`, `l` and `z`, and one conversion byte. `%s` copies the whole
/// text whatever width or precision says, and a null pointer writes nothing; `%%` is a percent sign; all else
/// goes through the C library with one 64-bit word (`e`, `f`, `g`: a double). A null format writes nothing.
/// Returns the writer's length; the caller terminates.
template <typename Writer>
size_t tplprintf(Writer& writer, const char* format, va_list arguments);

size_t sprintf(LStringLongTemplate<char>& string, const char* format, ...);
void tsprintfappend(LStringLongTemplate<char>& string, const char* format, ...);
/// These two do not terminate.
size_t sprintf(LFixedLengthStringWriterTemplate<char>& writer, const char* format, ...);
size_t tplwprintf(LFixedLengthStringWriterTemplate<char>& writer, const char* format, ...);

/// A list of owned texts, always closed by a null pointer, so that anything that walks a null-terminated
/// array of texts can take it as it is. Grows eightfold.
template <typename T>
class LStringListTemplate {
 public:
  LStringListTemplate();
  LStringListTemplate(const LStringListTemplate&) = delete;
  LStringListTemplate& operator=(const LStringListTemplate&) = delete;
  ~LStringListTemplate();

  void Add(const T* text);
  void Add(const LStringLongTemplate<T>& text);
  /// Adds `size` bytes (at least 1), the first zeroed; returns them for the caller to fill. The list owns
  /// them.
  T* Add(size_t size);
  void Clear();

  T** strings;  ///< `count` owned texts and a null.
  size_t count = 0;
  size_t capacity;  ///< Pointers that fit, the closing null not counted.

 private:
  void AddOwned(T* text);
};

/// Trimming at both ends, in place.
void LStringTrim(char* text);            ///< Removes blanks (byte 32) only.
void LStringTrimWhiteSpace(char* text);  ///< Removes every byte below 33.
void LStringTrimFormatting(char* text);  ///< Removes every byte below 32, so it keeps blanks.

/// First match of `needle` in `haystack` without regard to ASCII case; null if there is none.
const char* stristrTemplate(const char* haystack, const char* needle);

/// Lower-cases in place, all of Unicode, by the locale's rules; the result is cut to the array.
void LCharsetsLowerCase(char (&text)[kTextSize]);

/// ASCII lower case of the whole text, in place; bytes from 0x80 stay as they are.
void TextLowerAscii(char* text);
