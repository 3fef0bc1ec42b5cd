// Dragging to the window and its lists, and out of a list.
#include <QApplication>
#include <QDrag>
#include <QDragEnterEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QPointer>
#include <utility>
#include <vector>

#include "platform/event_loop.h"
#include "platform/file_io.h"
#include "platform/qt/dragged_files.h"
#include "platform/qt/icons.h"
#include "platform/qt/list_control.h"
#include "platform/qt/native_window.h"

namespace platform {

namespace {

constexpr unsigned kEffectCopy = 1;

/// No call to the owner is on the stack, and nothing holds the window off.
bool IsFree(const Window& window) {
  return window.events && window.callDepth == 0 && !EventLoopIsDrawing() && !WindowTopModal() &&
         !QApplication::activeModalWidget();
}

void Answer(QDropEvent& event, unsigned effect) {
  event.setDropAction(effect == kEffectCopy ? Qt::CopyAction : Qt::IgnoreAction);
  event.accept();
}

/// The paths as the contract hands them over. The bytes stay the list's.
std::vector<const char*> PointersOf(const QList<QByteArray>& paths) {
  std::vector<const char*> pointers;
  for (const QByteArray& path : paths) pointers.push_back(path.constData());
  return pointers;
}

}  // namespace

// The window

void WindowTakeDrops(Window* window) { window->setAcceptDrops(true); }

bool Window::TakesDrop(const QDropEvent& event) {
  if (!IsFree(*this) || !event.mimeData()->hasUrls() || !(event.possibleActions() & Qt::CopyAction)) return false;
  // The rows of our own list are files only elsewhere: here they would come down to go up again.
  if (qobject_cast<ListControl*>(event.source())) return false;
  bool isTaken = false;
  WithOwner([&](WindowEvents& owner) { isTaken = owner.OnDropOffered(); });
  return isTaken;
}

void Window::dragEnterEvent(QDragEnterEvent* event) {
  if (TakesDrop(*event)) Answer(*event, kEffectCopy);
}

void Window::dropEvent(QDropEvent* event) {
  if (!TakesDrop(*event)) return;
  const QList<QByteArray> paths = LocalPathsOf(*event->mimeData());
  if (paths.isEmpty()) return;
  Answer(*event, kEffectCopy);
  const std::vector<const char*> pointers = PointersOf(paths);
  WithOwner([&](WindowEvents& owner) { owner.OnDropFiles(pointers.data(), pointers.size()); });
}

// A list that takes drops

void ListControl::dragEnterEvent(QDragEnterEvent* event) {
  if (!owner->TakesDrop(*event)) return event->ignore();
  unsigned effect = kEffectCopy;
  isDraggedOver = true;
  owner->WithOwner([&](WindowEvents& events) { events.OnListDragEnter(controlId, effect); });
  Answer(*event, effect);
}

void ListControl::dragMoveEvent(QDragMoveEvent* event) {
  if (!isDraggedOver || !owner->TakesDrop(*event)) return event->ignore();
  QTreeView::dragMoveEvent(event);  // Scrolls at the edges.
  unsigned effect = kEffectCopy;
  const QPoint at = event->position().toPoint();
  owner->WithOwner([&](WindowEvents& events) { events.OnListDragOver(controlId, at.x(), at.y(), effect); });
  Answer(*event, effect);
}

void ListControl::dragLeaveEvent(QDragLeaveEvent* event) {
  QTreeView::dragLeaveEvent(event);
  if (!isDraggedOver) return;
  isDraggedOver = false;
  owner->WithOwner([&](WindowEvents& events) { events.OnListDragLeave(controlId); });
}

void ListControl::dropEvent(QDropEvent* event) {
  QList<QByteArray> paths;
  if (isDraggedOver && owner->TakesDrop(*event)) paths = LocalPathsOf(*event->mimeData());
  if (paths.isEmpty()) {
    QDragLeaveEvent left;
    dragLeaveEvent(&left);
    return event->ignore();
  }
  isDraggedOver = false;
  QDragLeaveEvent left;
  QTreeView::dragLeaveEvent(&left);  // Ends its scrolling.
  const std::vector<const char*> pointers = PointersOf(paths);
  const QPoint at = event->position().toPoint();
  unsigned effect = kEffectCopy;
  owner->WithOwner([&](WindowEvents& events) {
    events.OnListDrop(controlId, at.x(), at.y(), effect, pointers.data(), pointers.size());
  });
  Answer(*event, effect);
}

// A list that is dragged out of

void ListControl::AllowDragOut() {
  rowModel->dragsOut = true;
  setDragEnabled(true);
}

/// The rows hang on the pointer, and become files when it leaves the list: it is no target of its own rows, and a hand
/// that trembles at a click fetches nothing.
void ListControl::startDrag(Qt::DropActions) {
  dragWaits = true;
  viewport()->setCursor(Qt::ClosedHandCursor);
}

void ListControl::mouseMoveEvent(QMouseEvent* event) {
  if (!dragWaits) return QTreeView::mouseMoveEvent(event);
  const bool isHeld = event->buttons() & Qt::LeftButton;
  if (isHeld && viewport()->rect().contains(event->position().toPoint())) return;
  EndDragWait();
  if (isHeld) DragOut();
}

void ListControl::EndDragWait() {
  dragWaits = false;
  viewport()->unsetCursor();
}

void ListControl::mouseReleaseEvent(QMouseEvent* event) {
  if (dragWaits) EndDragWait();
  QTreeView::mouseReleaseEvent(event);
}

/// Empty if they did not all come.
QList<QByteArray> ListControl::FetchDragged() {
  QList<QByteArray> paths;
  bool isWhole = false;
  const auto add = [&](const char* path) { paths.append(path); };
  owner->WithOwner([&](WindowEvents& events) {
    isWhole = events.OnListDragBegin(controlId) && events.OnListDragNeedsFiles(controlId, true, add);
  });
  for (const QByteArray& path : paths) isWhole = isWhole && FileIsReachable(path.constData());
  return isWhole ? paths : QList<QByteArray>();
}

/// The files are there before the window system hears of the drag: whoever takes them reads them at once, and would not
/// wait for a server. Nor does its drag bear a dialog in its midst. A user who let go meanwhile has them at the next
/// try.
void ListControl::DragOut() {
  if (!IsFree(*owner)) return;
  const QPointer<struct Window> window(owner);
  QList<QByteArray> paths = std::exchange(readyFiles, {});
  if (paths.isEmpty()) paths = FetchDragged();
  if (!window || !window->events) return;
  if (!paths.isEmpty() && !(QGuiApplication::mouseButtons() & Qt::LeftButton)) {
    readyFiles = paths;
  } else if (!paths.isEmpty()) {
    auto* files = new QMimeData;
    files->setData(kUriList, UriListOf(paths));
    auto* drag = new QDrag(this);
    drag->setMimeData(files);
    const ListRow* row = rowModel->RowAt(currentIndex().row());
    if (row) drag->setPixmap(QIconOf(row->icon).pixmap(iconSize()));
    owner->isDragSource = true;
    drag->exec(Qt::CopyAction);
    owner->isDragSource = false;
    if (!owner->events) return owner->deleteLater();
  }
  owner->WithOwner([&](WindowEvents& events) { events.OnListDragFinished(controlId); });
}

}  // namespace platform
