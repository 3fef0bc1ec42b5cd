#include "platform/desktop.h"

#include <QDesktopServices>
#include <QUrl>

namespace platform {

bool DesktopOpenFile(const char* path) {
  return QDesktopServices::openUrl(QUrl::fromLocalFile(QString::fromUtf8(path)));
}

bool DesktopShowFolder(const char* path) { return DesktopOpenFile(path); }

}  // namespace platform
