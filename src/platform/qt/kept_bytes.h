// The bytes behind a field that shows them as text. Until the user changes the text, it stands for these bytes; a path
// that was changed keeps those of the folders before the change, as the server knows them by no other.
#pragma once

#include <QByteArray>
#include <QString>

namespace platform {

class KeptBytes {
 public:
  /// Takes `text`; gives what to show for it.
  QString Keep(const QByteArray& text);
  /// What `current` stands for: what was typed is UTF-8.
  QByteArray Of(const QString& current) const;

 private:
  QString shown;
  QByteArray bytes;
};

}  // namespace platform
