#include "platform/text_service.h"

#include <QByteArray>
#include <QLocale>
#include <QString>
#include <cstring>

#include "platform/qt/legacy_names.h"
#include "platform/qt/text.h"

namespace platform {
namespace {

bool IsContinuation(char c) { return (c & 0xC0) == 0x80; }

/// Cuts to `limit` bytes, before the character that would be cut in two.
void CutAtCharacter(QByteArray& text, qsizetype limit) {
  if (text.size() <= limit) return;
  qsizetype end = limit;
  while (end > 0 && IsContinuation(text[end])) --end;
  // Stray continuation bytes belong to no character.
  if (end + Utf8CharacterSize(text.constData() + end) <= limit) end = limit;
  text.truncate(end);
}

}  // namespace

void TextLowerCase(const char* text, char (&out)[kFixedText]) {
  QByteArray lower;
  const QLocale locale;
  while (*text) {
    const char* end = text;
    while (const qsizetype size = *end ? Utf8CharacterSize(end) : 0) end += size;
    lower += locale.toLower(QString::fromUtf8(text, end - text)).toUtf8();
    for (text = end; *text && Utf8CharacterSize(text) == 0; ++text) lower += *text;
  }
  CutAtCharacter(lower, kFixedText - 1);
  memcpy(out, lower.constData(), static_cast<size_t>(lower.size()) + 1);
}

bool TextDecodeName(const char* name, char (&out)[kFixedText]) {
  const QByteArray bytes = QByteArray::fromRawData(name, static_cast<qsizetype>(strlen(name)));
  if (bytes.isValidUtf8()) return false;
  CopyToFixed(NameFromBytes(bytes), out);
  return true;
}

}  // namespace platform
