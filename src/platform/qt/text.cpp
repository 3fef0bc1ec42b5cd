#include "platform/qt/text.h"

#include <algorithm>
#include <cstring>

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

}  // namespace

QString ShownText(const char* text, bool keepsLines) {
  QString shown = QString::fromUtf8(text ? text : "");
  for (QChar& c : shown) {
    if (const char16_t visible = VisibleFor(c.unicode(), keepsLines)) c = QChar(visible);
  }
  return shown;
}

QString ShownText(const QByteArray& text, bool keepsLines) { return ShownText(text.constData(), keepsLines); }

void CopyToFixed(const QByteArray& text, char (&out)[kFixedText]) {
  size_t length = std::min<size_t>(static_cast<size_t>(text.size()), kFixedText - 1);
  if (length < static_cast<size_t>(text.size())) {
    while (length > 0 && (static_cast<unsigned char>(text[static_cast<qsizetype>(length)]) & 0xC0) == 0x80) --length;
  }
  memcpy(out, text.constData(), length);
  out[length] = 0;
}

}  // namespace platform
