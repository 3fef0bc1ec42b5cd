#include "platform/qt/text.h"

#include <QTextDocument>
#include <algorithm>
#include <cstring>

#include "platform/qt/legacy_names.h"

namespace platform {

namespace {

bool ChangesDirection(char16_t c) {
  return (c >= 0x202A && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069) || c == 0x200E || c == 0x200F || c == 0x061C;
}

/// What stands for a character that must not act on the display; 0 if it may.
char16_t VisibleFor(char16_t c, bool keepsLines) {
  if (keepsLines && (c == '\n' || c == '\t' || c == '\r')) return 0;
  if (c < 0x20) return static_cast<char16_t>(0x2400 + c);
  if (c == 0x7F) return 0x2421;
  if ((c >= 0x80 && c < 0xA0) || ChangesDirection(c) || c == 0x2028 || c == 0x2029) return 0xFFFD;
  return 0;
}

QString Harmless(QString shown, bool keepsLines) {
  for (QChar& c : shown) {
    if (const char16_t visible = VisibleFor(c.unicode(), keepsLines)) c = QChar(visible);
  }
  return shown;
}

}  // namespace

QString ShownText(const char* text, bool keepsLines) { return ShownText(QByteArray(text), keepsLines); }

QString ShownText(const QByteArray& text, bool keepsLines) { return Harmless(LinesFromBytes(text), keepsLines); }

QString ShownName(const QByteArray& name) { return Harmless(NameFromBytes(name), false); }

QString ToolTipText(const QString& shown) {
  return Qt::mightBeRichText(shown) ? Qt::convertFromPlainText(shown, Qt::WhiteSpaceNormal) : shown;
}

void CopyToFixed(const QByteArray& text, char (&out)[kFixedText]) {
  size_t length = std::min<size_t>(static_cast<size_t>(text.size()), kFixedText - 1);
  if (length < static_cast<size_t>(text.size())) {
    while (length > 0 && (static_cast<unsigned char>(text[static_cast<qsizetype>(length)]) & 0xC0) == 0x80) --length;
  }
  memcpy(out, text.constData(), length);
  out[length] = 0;
}

}  // namespace platform
