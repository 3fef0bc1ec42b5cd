// Tool bars and the status bar of platform/window_system.h.
#include <QAction>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QStyleOptionToolButton>
#include <QToolBar>
#include <QToolButton>

#include "platform/qt/icons.h"
#include "platform/qt/native_window.h"
#include "platform/qt/status_bar_widget.h"
#include "platform/qt/text.h"

namespace platform {

namespace {

/// A button with an arrow beside it; the arrow is a command of its own.
class DropDownButton : public QToolButton {
 public:
  DropDownButton(Window* window, int command, QWidget* parent) : QToolButton(parent), owner(window), dropDown(command) {
    setPopupMode(QToolButton::MenuButtonPopup);
    setMenu(new QMenu(this));  // Draws the arrow; its rows come from the command.
  }

 protected:
  void mousePressEvent(QMouseEvent* event) override {
    QStyleOptionToolButton option;
    initStyleOption(&option);
    const QRect arrow = style()->subControlRect(QStyle::CC_ToolButton, &option, QStyle::SC_ToolButtonMenu, this);
    if (event->button() == Qt::LeftButton && arrow.contains(event->pos())) {
      owner->Choose(dropDown);
      return;
    }
    QToolButton::mousePressEvent(event);
  }
  void keyPressEvent(QKeyEvent* event) override {
    if (event->key() == Qt::Key_Down) {
      owner->Choose(dropDown);
      return;
    }
    QToolButton::keyPressEvent(event);
  }

 private:
  Window* owner;
  int dropDown;
};

QAction* NewAction(Window* window, const ToolBarItem& item, QToolBar* bar) {
  auto* action = new QAction(QIconOf(IconFromResource(item.icon)), QString::fromUtf8(item.label), bar);
  action->setIconText(QString::fromUtf8(item.label));  // Left to itself it loses a trailing "...".
  action->setData(item.command);
  action->setToolTip(QString::fromUtf8(item.toolTip ? item.toolTip : item.label));
  const int command = item.command;
  QObject::connect(action, &QAction::triggered, window, [window, command] { window->Choose(command); });
  return action;
}

/// By the keyboard, and by name for a screen reader.
void MakeReachable(QWidget* button, const QAction* action) {
  if (!button) return;
  button->setAccessibleName(action->text());
  button->setFocusPolicy(Qt::TabFocus);
}

QToolBar* MainBar(Window* window) {
  if (!window->mainToolBar) {
    auto* bar = new QToolBar(window->client);
    bar->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    bar->setIconSize(QSize(28, 28));
    bar->setMovable(false);
    bar->setAccessibleName(QStringLiteral("ツールバー"));
    bar->show();
    window->mainToolBar = bar;
  }
  return window->mainToolBar;
}

StatusBarWidget& StatusBarOf(Window* window) {
  if (!window->statusBar) {
    window->statusBar = new StatusBarWidget(window->client);
    window->statusBar->show();
    window->PlaceBars();
  }
  return *window->statusBar;
}

}  // namespace

void ToolBarSet(Window* window, int id, const ToolBarItem* items, size_t count) {
  QToolBar* bar = id == kMainToolBar ? MainBar(window) : window->ToolBar(id);
  if (!bar) return;
  bar->clear();
  for (size_t i = 0; i < count; ++i) {
    if (items[i].command == 0) {
      if (i != 0) bar->addSeparator();
      continue;
    }
    QAction* action = NewAction(window, items[i], bar);
    if (items[i].dropDown != 0) {
      auto* button = new DropDownButton(window, items[i].dropDown, bar);
      button->setDefaultAction(action);
      button->setToolButtonStyle(bar->toolButtonStyle());
      MakeReachable(button, action);
      bar->addWidget(button);
    } else {
      bar->addAction(action);
      MakeReachable(bar->widgetForAction(action), action);
    }
  }
  window->PlaceBars();
}

void ToolBarEnableItem(Window* window, int id, int command, bool enable) {
  QToolBar* bar = window->ToolBar(id);
  if (!bar) return;
  for (QAction* action : bar->findChildren<QAction*>(Qt::FindDirectChildrenOnly)) {
    if (action->data().toInt() == command) action->setEnabled(enable);
  }
}

void ToolBarShow(Window* window, int id, bool show) {
  if (QToolBar* bar = window->ToolBar(id)) bar->setVisible(show);
}

int ToolBarHeight(const Window* window, int id) {
  const QToolBar* bar = window->ToolBar(id);
  return bar ? bar->sizeHint().height() : 0;
}

void StatusBarSet(Window* window, int count, const int* widths) {
  StatusBarOf(window).SetWidths(std::vector<int>(widths, widths + count));
}

void StatusBarSetText(Window* window, int part, const char* text) {
  StatusBarOf(window).SetText(part, ShownText(text));
}

void StatusBarSetIcon(Window* window, int part, Icon icon) { StatusBarOf(window).SetIcon(part, QIconOf(icon)); }

int StatusBarHeight(const Window* window) { return window->statusBar ? window->statusBar->sizeHint().height() : 0; }

}  // namespace platform
