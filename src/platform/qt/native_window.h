// A native window: the map from control id to widget, and the way of events to the owner.
#pragma once

#include <QEventLoop>
#include <QHash>
#include <QLabel>
#include <QMenuBar>
#include <QPoint>
#include <QPointer>
#include <QSize>
#include <QToolBar>
#include <QWidget>

#include "platform/window_system.h"

namespace platform {

class ListControl;
class StatusBarWidget;

/// Controls lie in `client`, which is inset from the window's border so that nothing touches it.
struct Window : public QWidget {
  Q_OBJECT
 public:
  Window(WindowEvents& owner, WindowKind windowKind, Window* parentWindow);
  ~Window() override;

  /// Hands an event to the owner, which may do anything meanwhile, also give this window back.
  void Send(int command, intptr_t value = 0);
  /// The same for what the user has chosen, by pointer or key: it begins when a name that is being edited is settled.
  void Choose(int command);
  /// A name that is being edited in a list is taken as it stands. The owner may do anything, as in Send.
  void FinishEditing();
  /// Runs `call` with the owner, under the same care.
  template <typename Call>
  void WithOwner(Call call);

  QWidget* Control(int id) const { return controls.value(id); }
  template <typename T>
  T* ControlAs(int id) const {
    return qobject_cast<T*>(controls.value(id));
  }
  ListControl* List(int id) const;
  QToolBar* ToolBar(int id) const;
  /// The command that an event of a control is bound to; 0 for none.
  int Bound(int id, ControlEvent event) const { return bindings.value({id, static_cast<int>(event)}); }
  void SendBound(int id, ControlEvent event);

  WindowEvents* events;  ///< Null once the window was given back.
  WindowKind kind;
  int callDepth = 0;          ///< Calls into the owner that are on the stack.
  bool isDragSource = false;  ///< A drag out of one of its lists is on the stack.
  QWidget* client;
  QMenuBar* menuBar = nullptr;
  QToolBar* mainToolBar = nullptr;
  StatusBarWidget* statusBar = nullptr;
  QHash<int, QWidget*> controls;
  class QButtonGroup* radioGroup = nullptr;  ///< The one that the next radio button joins.
  QPointer<QLabel> lastLabel;                ///< The one that belongs to the next field.
  QString radioTitle;                        ///< Title of the group box above them.
  QHash<QPair<int, int>, int> bindings;      ///< (id, event) to command.
  QMultiHash<int, QAction*> menuItems;       ///< A command may stand in several menus.
  QHash<int, bool> menuItemEnabled;          ///< The items' own state while the whole bar is off.
  bool menuIsOff = false;
  QSize minimumClient;       ///< Without the menu bar; empty for none.
  QPoint keyboardMenuPlace;  ///< Where the next context menu opens if a key asked for it; null for the pointer.

  /// Space between the window's border and the controls at left and right.
  int Inset() const { return kind == WindowKind::kMain ? 8 : 0; }
  /// Whether what is dragged over this window or a list of it may be dropped there now.
  bool TakesDrop(const class QDropEvent& event);
  void PlaceBars();
  void ApplyMinimum();

 protected:
  void resizeEvent(QResizeEvent*) override;
  void closeEvent(QCloseEvent*) override;
  void keyPressEvent(QKeyEvent*) override;
  void showEvent(QShowEvent*) override;
  void hideEvent(QHideEvent*) override;
  void changeEvent(QEvent*) override;
  void dragEnterEvent(QDragEnterEvent*) override;
  void dropEvent(QDropEvent*) override;
  bool eventFilter(QObject*, QEvent*) override;
};

template <typename Call>
void Window::WithOwner(Call call) {
  if (!events) return;
  const QPointer<Window> self(this);
  ++callDepth;
  call(*events);
  if (self) --callDepth;
}

}  // namespace platform
