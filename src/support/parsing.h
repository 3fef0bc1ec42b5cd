// Small parsers: a cursor, free readers of a growable text, comma-separated items, and the order of names
// with numbers. No reader changes the text it walks, which the caller owns. Nothing here locks.
#pragma once

#include <cstddef>

#include "support/strings.h"
#include "support/text.h"

/// A cursor into a zero-terminated text. What does not fit a field is consumed and dropped.
template <typename T>
class LStringParserTemplate {
 public:
  explicit LStringParserTemplate(const T* text) : cursor(text) {}

  /// Copies to the first byte below 33, and moves past all such bytes but the zero.
  void GetToWhiteSpaceAndSkip(T (&dest)[kTextSize]);
  /// Copies to the end of the line, and moves past one line end: CR, LF, CR LF or LF CR.
  void GetToEndOfLineAndSkip(T (&dest)[kTextSize]);
  /// Copies the text before the first `needle` and moves onto it; without one, the whole rest of the text.
  void GetToString(const T* needle, T (&dest)[kTextSize]);

  const T* cursor;
};

// Each replaces `out` by the text up to its stop and returns the bytes consumed, the stop not counted.

/// Up to the end of the line or of the text.
size_t LParseGetToEndOfLine(const char* text, LStringLongTemplate<char>& out);
/// The same through a writer; the caller terminates.
size_t LParseGetToEndOfLine(const char* text, LStringLongTemplateWriter<char>& writer);
/// Up to the first `ch` or the end.
size_t LParseGetToCharacter(const char* text, char ch, LStringLongTemplate<char>& out);
/// Up to the first byte of `set` or the end.
size_t LParseGetToCharacters(const char* text, const char* set, LStringLongTemplate<char>& out);

/// Walks comma-separated items: `for (it.Next(); !it.IsAtEnd(); it.Next())`. An item may be quoted, with a
/// doubled quote for a quote. White space behind an unquoted item is dropped, and so is white space behind a
/// comma.
template <typename T>
class LCommaSeparatedListIteratorTemplate {
 public:
  explicit LCommaSeparatedListIteratorTemplate(const T* text) : cursor(text) {}

  void Next();
  bool IsAtEnd() const { return bAtEnd; }
  /// The item that Next read; empty before the first and behind the last.
  const LStringLongTemplate<T>& Item() const { return item; }

 private:
  void ReadQuoted();
  void ReadPlain();

  const T* cursor;
  LStringLongTemplate<T> item;
  bool bAtEnd = false;
};

/// The order of names with numbers in them, without regard to ASCII case: "file2" before "file10". Below, at
/// or above zero as strcmp. Bytes above 127 go before ASCII.
int LStringCompareLogical(const char* a, const char* b);
