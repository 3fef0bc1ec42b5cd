#include "platform/clipboard.h"

#include <QApplication>
#include <QClipboard>
#include <QMimeData>

#include "platform/qt/dragged_files.h"

namespace platform {

namespace {

QList<QByteArray> FilesOnClipboard() {
  const QMimeData* data = QApplication::clipboard()->mimeData();
  return data ? LocalPathsOf(*data) : QList<QByteArray>();
}

}  // namespace

bool ClipboardHasFiles() { return !FilesOnClipboard().isEmpty(); }

void ClipboardGetFiles(const std::function<void(const char*)>& add) {
  for (const QByteArray& path : FilesOnClipboard()) add(path.constData());
}

void ClipboardSetFiles(const char* const* paths, size_t count) {
  const QList<QByteArray> files(paths, paths + count);
  auto* data = new QMimeData;  // The clipboard's own.
  data->setData(kUriList, UriListOf(files));
  data->setData(kCopiedFiles, CopiedFilesOf(files));
  QApplication::clipboard()->setMimeData(data);
}

}  // namespace platform
