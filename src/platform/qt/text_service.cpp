#include "platform/text_service.h"

#include <QByteArray>
#include <QLocale>
#include <QString>
#include <cstring>

namespace platform {
namespace {

bool IsContinuation(char c) { return (c & 0xC0) == 0x80; }

/// Bytes of the character at `text`: 1 to 4, or 0 if it is not UTF-8. `text` is zero-terminated.
qsizetype CharacterSize(const char* text) {
  const unsigned char lead = static_cast<unsigned char>(*text);
  if (lead < 0x80) return 1;
  const qsizetype size = lead < 0xC2 ? 0 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : lead < 0xF5 ? 4 : 0;
  for (qsizetype i = 1; i < size; ++i) {
    if (!IsContinuation(text[i])) return 0;
  }
  // Overlong forms, surrogates and what lies above U+10FFFF are told by the second byte.
  return size < 3 || QByteArray::fromRawData(text, size).isValidUtf8() ? size : 0;
}

/// Cuts to `limit` bytes, before the character that would be cut in two.
void CutAtCharacter(QByteArray& text, qsizetype limit) {
  if (text.size() <= limit) return;
  qsizetype end = limit;
  while (end > 0 && IsContinuation(text[end])) --end;
  // Stray continuation bytes belong to no character.
  if (end + CharacterSize(text.constData() + end) <= limit) end = limit;
  text.truncate(end);
}

}  // namespace

void TextLowerCase(const char* text, char (&out)[kFixedText]) {
  QByteArray lower;
  const QLocale locale;
  while (*text) {
    const char* end = text;
    while (const qsizetype size = *end ? CharacterSize(end) : 0) end += size;
    lower += locale.toLower(QString::fromUtf8(text, end - text)).toUtf8();
    for (text = end; *text && CharacterSize(text) == 0; ++text) lower += *text;
  }
  CutAtCharacter(lower, kFixedText - 1);
  memcpy(out, lower.constData(), static_cast<size_t>(lower.size()) + 1);
}

}  // namespace platform
