#include "platform/qt/native_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QDrag>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScreen>
#include <QToolButton>

#include "platform/qt/list_control.h"
#include "platform/qt/status_bar_widget.h"
#include "platform/qt/text.h"

namespace platform {

namespace {

struct ModalRun {
  Window* window;
  QEventLoop* loop;  // Null for a session that code on the stack pumps.
};
QList<ModalRun>& ModalRuns() {
  static QList<ModalRun> runs;
  return runs;
}

Qt::WindowFlags FlagsOf(WindowKind kind) {
  switch (kind) {
    case WindowKind::kMain: return Qt::Window;
    case WindowKind::kPage: return Qt::Widget;
    case WindowKind::kDialog:
    case WindowKind::kResizable:
      return Qt::Dialog | Qt::WindowTitleHint | Qt::WindowCloseButtonHint | Qt::CustomizeWindowHint;
    case WindowKind::kProgress: return Qt::Dialog | Qt::WindowTitleHint | Qt::CustomizeWindowHint;
  }
  return Qt::Window;
}

/// A text field keeps plain keys to itself.
bool TakesText(const QWidget* widget) {
  return qobject_cast<const QLineEdit*>(widget) || qobject_cast<const QComboBox*>(widget) ||
         (qobject_cast<const QPlainTextEdit*>(widget) && !qobject_cast<const QPlainTextEdit*>(widget)->isReadOnly());
}

/// In a text field; anywhere else the same keys delete files.
bool DeletesWord(QKeyEvent& event) {
  return event.matches(QKeySequence::DeleteStartOfWord) || event.matches(QKeySequence::DeleteEndOfWord);
}

int CodeOf(const QKeyEvent& event) {
  switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter: return kKeyReturn;
    case Qt::Key_Delete: return kKeyDelete;
    case Qt::Key_Backspace: return kKeyBackspace;
    case Qt::Key_Left: return kKeyLeft;
    case Qt::Key_Up: return kKeyUp;
    case Qt::Key_Right: return kKeyRight;
    case Qt::Key_Down: return kKeyDown;
    default: break;
  }
  if (event.key() >= Qt::Key_F1 && event.key() <= Qt::Key_F12) return kKeyF1 + (event.key() - Qt::Key_F1);
  return event.key() < 0x110000 ? event.key() : 0;
}

}  // namespace

Window::Window(WindowEvents& owner, WindowKind windowKind, Window* parentWindow)
    : QWidget(parentWindow, FlagsOf(windowKind)), events(&owner), kind(windowKind), client(new QWidget(this)) {
  client->setObjectName("client");
  if (kind == WindowKind::kMain) qApp->installEventFilter(this);
}

Window::~Window() = default;

void Window::Send(int command, intptr_t value) {
  WithOwner([=](WindowEvents& owner) { owner.OnCommand(command, value); });
}

void Window::Choose(int command) {
  const QPointer<Window> self(this);
  FinishEditing();
  if (self) Send(command);
}

void Window::FinishEditing() {
  const QPointer<Window> self(this);
  for (QWidget* control : QList<QWidget*>(controls.values())) {
    if (auto* list = qobject_cast<ListControl*>(control)) list->FinishEditing();
    if (!self) return;
  }
}

void Window::SendBound(int id, ControlEvent event) {
  if (const int command = Bound(id, event)) Send(command);
}

ListControl* Window::List(int id) const { return qobject_cast<ListControl*>(controls.value(id)); }

QToolBar* Window::ToolBar(int id) const {
  return id == kMainToolBar ? mainToolBar : qobject_cast<QToolBar*>(controls.value(id));
}

void Window::PlaceBars() {
  const int menuHeight = menuBar ? menuBar->sizeHint().height() : 0;
  if (menuBar) menuBar->setGeometry(0, 0, width(), menuHeight);
  client->setGeometry(0, menuHeight, width(), height() - menuHeight);
  if (mainToolBar) mainToolBar->setGeometry(0, 0, client->width(), mainToolBar->sizeHint().height());
  if (statusBar) {
    const int barHeight = statusBar->sizeHint().height();
    statusBar->setGeometry(0, client->height() - barHeight, client->width(), barHeight);
  }
}

void Window::ApplyMinimum() {
  if (minimumClient.isEmpty()) return;
  const int menuHeight = menuBar ? menuBar->sizeHint().height() : 0;
  setMinimumSize(minimumClient.width() + 2 * Inset(), minimumClient.height() + menuHeight);
}

void Window::resizeEvent(QResizeEvent*) {
  PlaceBars();
  WithOwner([](WindowEvents& owner) { owner.OnResized(); });
}

void Window::closeEvent(QCloseEvent* event) {
  event->ignore();
  const QPointer<Window> self(this);
  FinishEditing();
  if (self && kind != WindowKind::kProgress) WithOwner([](WindowEvents& owner) { owner.OnCloseRequested(); });
}

void Window::keyPressEvent(QKeyEvent* event) {
  if (kind == WindowKind::kPage) return QWidget::keyPressEvent(event);  // The sheet has the buttons.
  if (kind != WindowKind::kMain && event->key() == Qt::Key_Escape) {
    // Escape on the progress dialog is its cancel button, like everywhere.
    if (auto* cancel = Control(0x6E6F7421); cancel && cancel->isEnabled()) Send(0x6E6F7421);
    return;
  }
  if (kind != WindowKind::kMain && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)) {
    if (auto* ok = Control(0x6F6B2020); ok && ok->isEnabled()) Send(0x6F6B2020);
    return;
  }
  QWidget::keyPressEvent(event);
}

void Window::showEvent(QShowEvent*) {
  WithOwner([](WindowEvents& owner) { owner.OnShownOrHidden(true); });
}

void Window::hideEvent(QHideEvent*) {
  WithOwner([](WindowEvents& owner) { owner.OnShownOrHidden(false); });
}

void Window::changeEvent(QEvent* event) {
  if (event->type() == QEvent::ActivationChange) {
    WithOwner([this](WindowEvents& owner) { owner.OnActivated(isActiveWindow()); });
  }
  QWidget::changeEvent(event);
}

bool Window::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress || QApplication::activeModalWidget() || QApplication::activePopupWidget()) {
    return false;
  }
  auto* widget = qobject_cast<QWidget*>(watched);
  if (!widget || widget->window() != this || widget != QApplication::focusWidget()) return false;
  auto& key = static_cast<QKeyEvent&>(*event);
  const Qt::KeyboardModifiers modifiers = key.modifiers();
  if (TakesText(widget) && !(modifiers & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier))) return false;
  if (TakesText(widget) && DeletesWord(key)) return false;
  const KeyPress press = {CodeOf(key), bool(modifiers & Qt::ShiftModifier), bool(modifiers & Qt::ControlModifier),
                          bool(modifiers & Qt::AltModifier)};
  bool handled = false;
  WithOwner([&](WindowEvents& owner) { handled = press.code != 0 && owner.OnKey(press); });
  return handled;
}

// Windows

Window* WindowCreate(WindowEvents& events, WindowKind kind, Window* parent) { return new Window(events, kind, parent); }

void WindowDestroy(Window* window) {
  window->events = nullptr;
  window->hide();
  // The window may be on the stack below this call: a click that led here, or an event of it. A drag has a loop of its
  // own, which ends first.
  if (window->isDragSource) {
    QDrag::cancel();
  } else if (window->callDepth == 0) {
    delete window;
  } else {
    window->deleteLater();
  }
}

void WindowShow(Window* window, bool show) { window->setVisible(show); }
bool WindowIsVisible(const Window* window) { return window->isVisible(); }

void WindowRaise(Window* window) {
  if (window->isMinimized()) window->showNormal();
  window->show();
  window->raise();
  window->activateWindow();
}

void WindowSetTitle(Window* window, const char* title) {
  window->setWindowTitle(ShownText(title));
  if (window->kind == WindowKind::kPage) window->setAccessibleName(window->windowTitle());
}

void WindowSetClientSize(Window* window, int width, int height) {
  const int menuHeight = window->menuBar ? window->menuBar->sizeHint().height() : 0;
  const QSize size(width + 2 * window->Inset(), height + menuHeight);
  if (window->kind == WindowKind::kDialog || window->kind == WindowKind::kProgress) {
    window->setFixedSize(size);
  } else {
    window->resize(size);
  }
}

void WindowSetMinimumClientSize(Window* window, int width, int height) {
  window->minimumClient = QSize(width, height);
  window->ApplyMinimum();
}

void WindowGetClientSize(const Window* window, int& width, int& height) {
  const int menuHeight = window->menuBar ? window->menuBar->sizeHint().height() : 0;
  width = window->width() - 2 * window->Inset();
  height = window->height() - menuHeight;
}

Rect WindowGetFrame(const Window* window) { return {window->x(), window->y(), window->width(), window->height()}; }

void WindowSetFrame(Window* window, const Rect& frame) {
  QRect place(frame.x, frame.y, frame.width, frame.height);
  const QScreen* screen = QApplication::screenAt(place.center());
  if (!screen) screen = QApplication::primaryScreen();
  if (screen) {
    const QRect room = screen->availableGeometry();
    place.setSize(place.size().boundedTo(room.size()));
    place.moveRight(qMin(place.right(), room.right()));
    place.moveBottom(qMin(place.bottom(), room.bottom()));
    place.moveLeft(qMax(place.left(), room.left()));
    place.moveTop(qMax(place.top(), room.top()));
  }
  window->resize(place.size());
  window->move(place.topLeft());
}

bool WindowIsMaximized(const Window* window) { return window->isMaximized(); }

void WindowMaximize(Window* window, bool maximize) {
  const Qt::WindowStates states = window->windowState();
  window->setWindowState(maximize ? states | Qt::WindowMaximized : states & ~Qt::WindowMaximized);
}

void WindowMinimize(Window* window) { window->showMinimized(); }
bool WindowIsMinimized(const Window* window) { return window->isMinimized(); }

void WindowCenter(Window* window, const Window* other) {
  QRect around;
  if (other && other->isVisible()) {
    around = other->frameGeometry();
  } else if (const QScreen* screen = QApplication::primaryScreen()) {
    around = screen->availableGeometry();
  }
  QRect place(QPoint(0, 0), window->size());
  place.moveCenter(around.center());
  window->move(place.topLeft());
}

void WindowDialogUnits(const Window* window, double& horizontal, double& vertical) {
  const QFontMetricsF metrics(window->font());
  // The mean width of the letters, as dialog units have always been taken; Japanese glyphs would double it.
  const QString letters = QStringLiteral("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz");
  horizontal = metrics.horizontalAdvance(letters) / static_cast<double>(letters.size());
  vertical = metrics.height();
}

void WindowSetTabOrder(Window* window, const int* ids, size_t count) {
  QWidget* last = nullptr;
  const auto append = [&last](QWidget* widget) {
    if (last && widget) QWidget::setTabOrder(last, widget);
    if (widget) last = widget;
  };
  for (size_t i = 0; i < count; ++i) {
    const QToolBar* bar = window->ToolBar(ids[i]);
    if (!bar) {
      append(window->Control(ids[i]));
      continue;
    }
    for (QAction* action : bar->actions()) {
      auto* button = qobject_cast<QToolButton*>(bar->widgetForAction(action));
      if (button) append(button);
    }
  }
}

double WindowScaleFactor(const Window* window) { return window->devicePixelRatioF(); }

// Modal runs

namespace {

/// Where no window manager does it, the keyboard goes back to the parent by this. A user who works in another
/// program by then is left in peace.
void HideAndReturn(Window* window) {
  const bool isOurs = QGuiApplication::applicationState() == Qt::ApplicationActive;
  window->hide();
  if (isOurs && window->parentWidget()) window->parentWidget()->activateWindow();
}

}  // namespace

int WindowRunModal(Window* window) {
  QEventLoop loop;
  ModalRuns().append({window, &loop});
  window->setWindowModality(Qt::ApplicationModal);
  window->show();
  window->raise();
  window->activateWindow();
  const int code = loop.exec();
  ModalRuns().removeLast();
  HideAndReturn(window);
  return code;
}

void WindowEndModal(Window* window, int code) {
  for (const ModalRun& run : ModalRuns()) {
    if (run.window == window && run.loop) run.loop->exit(code);
  }
}

void WindowBeginSession(Window* window) {
  ModalRuns().append({window, nullptr});
  window->hide();  // A new modality counts from the next showing.
  window->setWindowModality(Qt::ApplicationModal);
  window->show();
  window->raise();
}

void WindowEndSession(Window* window) {
  for (qsizetype i = ModalRuns().size(); i-- > 0;) {
    if (ModalRuns()[i].window == window && !ModalRuns()[i].loop) {
      ModalRuns().removeAt(i);
      break;
    }
  }
  HideAndReturn(window);
}

WindowEvents* WindowTopModal() { return ModalRuns().isEmpty() ? nullptr : ModalRuns().last().window->events; }

}  // namespace platform
