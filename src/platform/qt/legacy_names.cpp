#include "platform/qt/legacy_names.h"

#include <QList>
#include <QStringDecoder>
#include <algorithm>
#include <optional>

namespace platform {

namespace {

bool IsContinuation(char c) { return (c & 0xC0) == 0x80; }

/// Bytes of the character that begins with `lead`; 0 if none does.
qsizetype SizeByLead(char lead) {
  const auto c = static_cast<unsigned char>(lead);
  if (c < 0x80) return 1;
  return c < 0xC2 ? 0 : c < 0xE0 ? 2 : c < 0xF0 ? 3 : c < 0xF5 ? 4 : 0;
}

/// Fixed texts are cut at a byte. Only letters of three bytes and more before the cut tell it from another encoding.
bool IsCutUtf8(const QByteArray& text) {
  qsizetype end = text.size();
  while (end > 0 && IsContinuation(text[end - 1])) --end;
  if (end == 0 || text.size() - end + 1 >= SizeByLead(text[end - 1])) return false;
  const QByteArray whole = text.left(end - 1);
  const auto isLong = [](char c) { return SizeByLead(c) >= 3; };
  return whole.isValidUtf8() && std::any_of(whole.begin(), whole.end(), isLong);
}

QString WithVisibleBytes(const QByteArray& bytes) {
  QString text;
  for (qsizetype at = 0; at < bytes.size();) {
    const qsizetype size = Utf8CharacterSize(bytes.constData() + at);
    if (size > 0) {
      text += QString::fromUtf8(bytes.constData() + at, size);
    } else {
      text += QLatin1String("\\x") + QString::number(static_cast<unsigned char>(bytes[at]), 16).toUpper();
    }
    at += std::max<qsizetype>(size, 1);
  }
  return text;
}

/// The table for CP932 turns three control characters round, as mainframes had them.
void TurnControlsBack(QString& text) {
  for (QChar& c : text) {
    if (c == QChar(0x1C)) {
      c = QChar(0x1A);
    } else if (c == QChar(0x1A)) {
      c = QChar(0x7F);
    } else if (c == QChar(0x7F)) {
      c = QChar(0x1C);
    }
  }
}

/// Nothing where a byte has no meaning. Both tables have some for the control characters above 0x80: no name does.
std::optional<QString> DecodeWhole(const char* encoding, const QByteArray& bytes) {
  QStringDecoder decoder(encoding);      // For this text alone: a decoder that is reset still tells of the last error.
  if (!decoder.isValid()) return {};     // A Qt without these encodings.
  QString text = decoder(bytes + '\n');  // Behind half a character the line end is an error.
  if (decoder.hasError() || !text.endsWith(QLatin1Char('\n'))) return {};
  text.chop(1);
  const auto isNone = [](QChar c) { return (c >= QChar(0x80) && c < QChar(0xA0)) || c == QChar::ReplacementCharacter; };
  if (std::any_of(text.cbegin(), text.cend(), isNone)) return {};
  return text;
}

/// Half-width katakana and user-defined characters.
qsizetype CountUnlikely(const QString& text) {
  return std::count_if(text.cbegin(), text.cend(), [](QChar c) {
    return (c >= QChar(0xFF61) && c <= QChar(0xFF9F)) || (c >= QChar(0xE000) && c <= QChar(0xF8FF));
  });
}

std::optional<QString> DecodeLegacy(const QByteArray& bytes) {
  std::optional<QString> first = DecodeWhole("windows-31j", bytes);
  std::optional<QString> second = DecodeWhole("EUC-JP", bytes);
  if (first) TurnControlsBack(*first);
  if (!first || !second) return first ? first : second;
  return CountUnlikely(*second) < CountUnlikely(*first) ? second : first;
}

QString PartFromBytes(const QByteArray& part) {
  if (part.isValidUtf8()) return QString::fromUtf8(part);
  if (IsCutUtf8(part)) return WithVisibleBytes(part);
  const std::optional<QString> legacy = DecodeLegacy(part);
  return legacy ? *legacy : WithVisibleBytes(part);
}

QString LineFromBytes(const QByteArray& line) {
  if (IsCutUtf8(line)) return WithVisibleBytes(line);
  QString text;
  qsizetype nameBegin = 0;
  for (qsizetype at = 0; at < line.size();) {
    const qsizetype size = Utf8CharacterSize(line.constData() + at);
    if (size >= 3) {
      text += NameFromBytes(line.mid(nameBegin, at - nameBegin)) + QString::fromUtf8(line.constData() + at, size);
      nameBegin = at + size;
    }
    at += std::max<qsizetype>(size, 1);
  }
  return text + NameFromBytes(line.mid(nameBegin));
}

}  // namespace

qsizetype Utf8CharacterSize(const char* text) {
  const qsizetype size = SizeByLead(*text);
  for (qsizetype i = 1; i < size; ++i) {
    if (!IsContinuation(text[i])) return 0;
  }
  // Overlong forms, surrogates and what lies above U+10FFFF are told by the second byte.
  return size < 3 || QByteArray::fromRawData(text, size).isValidUtf8() ? size : 0;
}

QString NameFromBytes(const QByteArray& name) {
  if (name.isValidUtf8()) return QString::fromUtf8(name);
  QString text;
  for (const QByteArray& part : name.split('/')) text += PartFromBytes(part) + QLatin1Char('/');
  text.chop(1);
  return text;
}

QString LinesFromBytes(const QByteArray& lines) {
  if (lines.isValidUtf8()) return QString::fromUtf8(lines);
  QString text;
  for (const QByteArray& line : lines.split('\n')) text += LineFromBytes(line) + QLatin1Char('\n');
  text.chop(1);
  return text;
}

}  // namespace platform
