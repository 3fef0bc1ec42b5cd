#include "platform/desktop.h"

#include <QDesktopServices>
#include <QUrl>

namespace platform {

bool DesktopOpenFile(const char* path) {
  // Byte by byte: not every name is UTF-8.
  return QDesktopServices::openUrl(QUrl::fromEncoded("file://" + QByteArray(path).toPercentEncoding("/")));
}

bool DesktopShowFolder(const char* path) { return DesktopOpenFile(path); }

}  // namespace platform
