// Between UTF-8 bytes and Qt's text.
#pragma once

#include <QByteArray>
#include <QString>

#include "platform/text_service.h"

namespace platform {

/// Text as the user may see it: control characters and marks that change the direction of writing are made
/// visible, so that a name from a server cannot pose as another. Tabs and line ends stay if `keepsLines`.
/// The text is the program's own, perhaps with names in it; what is not UTF-8 is read by legacy_names.h.
QString ShownText(const char* text, bool keepsLines = false);
QString ShownText(const QByteArray& text, bool keepsLines = false);
/// The same for a text that is one name or path and nothing else.
QString ShownName(const QByteArray& name);
/// A shown text for a tool tip, which would take what looks like markup for markup.
QString ToolTipText(const QString& shown);

/// Copies UTF-8 into a fixed text, cut at a whole character.
void CopyToFixed(const QByteArray& text, char (&out)[kFixedText]);
inline void CopyToFixed(const QString& text, char (&out)[kFixedText]) { CopyToFixed(text.toUtf8(), out); }

}  // namespace platform
