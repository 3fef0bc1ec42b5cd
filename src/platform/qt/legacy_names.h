// Bytes that should be UTF-8 and may not be: names that older Japanese servers send in CP932 or EUC-JP. For display
// only, what goes back to a server stays the bytes it gave. Any thread.
//
// Valid UTF-8 is taken as it is, also where its last character was cut. Else a name is what it says as a whole in CP932
// or in EUC-JP, and where it can be either, the one with fewer half-width katakana and user-defined characters, CP932
// if they have the same: EUC-JP read as CP932 is a row of half-width katakana, while CP932 seldom passes for EUC-JP. So
// a name that is in CP932 half-width katakana alone may be taken for EUC-JP. A name that is neither shows those of its
// bytes that are not UTF-8 as "\xE9".
#pragma once

#include <QByteArray>
#include <QString>

namespace platform {

/// Bytes of the character at `text`: 1 to 4, or 0 if it is not UTF-8. `text` is zero-terminated.
qsizetype Utf8CharacterSize(const char* text);

/// One name; or a path, each of whose parts is read as a list of its folder shows it. No half of a character is a "/".
QString NameFromBytes(const QByteArray& name);

/// Lines of the program's own UTF-8 with names in between: of a line that is not UTF-8, what stands between its
/// characters of three bytes and more is taken for names.
QString LinesFromBytes(const QByteArray& lines);

}  // namespace platform
