#include "platform/qt/dragged_files.h"

#include <QSysInfo>

namespace platform {

namespace {

/// Empty if the address is no file of this machine.
QByteArray LocalPathOf(QByteArray address) {
  constexpr const char* kScheme = "file:";
  if (!address.toLower().startsWith(kScheme)) return {};
  address.remove(0, static_cast<qsizetype>(strlen(kScheme)));
  if (address.startsWith("//")) {
    const qsizetype end = address.indexOf('/', 2);
    const QByteArray host = address.mid(2, end - 2);
    const bool isHere = host.isEmpty() || host == "localhost" || host == QSysInfo::machineHostName().toUtf8();
    if (end < 0 || !isHere) return {};
    address.remove(0, end);
  }
  QByteArray path = QByteArray::fromPercentEncoding(address);
  // Some mark a folder so, and its own name is wanted.
  while (path.size() > 1 && path.endsWith('/')) path.chop(1);
  // A zero would cut the path to another one.
  return path.startsWith('/') && !path.contains('\0') ? path : QByteArray();
}

QByteArray AddressOf(const QByteArray& path) { return "file://" + path.toPercentEncoding("/"); }

}  // namespace

QList<QByteArray> LocalPathsOf(const QMimeData& data) {
  QList<QByteArray> paths;
  const char* format = data.hasFormat(kUriList) ? kUriList : kCopiedFiles;
  for (const QByteArray& line : data.data(format).split('\n')) {
    const QByteArray path = LocalPathOf(line.trimmed());
    if (!path.isEmpty()) paths.append(path);
  }
  return paths;
}

QByteArray UriListOf(const QList<QByteArray>& paths) {
  QByteArray list;
  for (const QByteArray& path : paths) list += AddressOf(path) + "\r\n";
  return list;
}

QByteArray CopiedFilesOf(const QList<QByteArray>& paths) {
  QByteArray list = "copy";
  for (const QByteArray& path : paths) list += "\n" + AddressOf(path);
  return list;
}

}  // namespace platform
