// Files in what the window system carries for a drag or on the clipboard: a list of addresses, as bytes, so that a name
// of any encoding stays what it is.
#pragma once

#include <QByteArray>
#include <QList>
#include <QMimeData>

namespace platform {

constexpr const char* kUriList = "text/uri-list";
/// What many file managers look for on the clipboard: a verb in front of the addresses.
constexpr const char* kCopiedFiles = "x-special/gnome-copied-files";

/// The paths among the addresses that are files of this machine, in their order.
QList<QByteArray> LocalPathsOf(const QMimeData& data);
QByteArray UriListOf(const QList<QByteArray>& paths);
QByteArray CopiedFilesOf(const QList<QByteArray>& paths);

}  // namespace platform
