#include "platform/qt/kept_bytes.h"

#include <QStringList>

#include "platform/qt/text.h"

namespace platform {

QString KeptBytes::Keep(const QByteArray& text) {
  bytes = text;
  shown = ShownName(bytes);
  return shown;
}

QByteArray KeptBytes::Of(const QString& current) const {
  if (current == shown) return bytes;
  // A path is shown part by part.
  const QList<QByteArray> keptParts = bytes.split('/');
  const QStringList shownParts = shown.split(QLatin1Char('/'));
  const QStringList parts = current.split(QLatin1Char('/'));
  QByteArray text;
  bool isKept = true;
  for (qsizetype i = 0; i < parts.size(); ++i) {
    isKept = isKept && i < shownParts.size() && i < keptParts.size() && parts[i] == shownParts[i];
    if (i > 0) text += '/';
    text += isKept ? keptParts[i] : parts[i].toUtf8();
  }
  return text;
}

}  // namespace platform
