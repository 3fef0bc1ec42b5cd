// The menu bar and context menus of platform/window_system.h.
#include <QAction>
#include <QCursor>
#include <QMenu>
#include <QTimer>

#include "platform/qt/native_window.h"
#include "platform/qt/text.h"

namespace platform {

namespace {

QAction* AddItem(Window* window, QMenu* menu, const MenuItem& item) {
  QAction* action = menu->addAction(QString::fromUtf8(item.text));
  if (item.shortcut) {
    // Shown only: the key itself arrives through WindowEvents::OnKey, which knows when text takes it.
    action->setText(action->text() + QStringLiteral("\t") + QString::fromUtf8(item.shortcut));
  }
  const int id = item.id;
  QObject::connect(action, &QAction::triggered, window, [window, id] { window->Send(id); });
  window->menuItems.insert(id, action);
  return action;
}

}  // namespace

void MenuBarSet(Window* window, const MenuItem* items, size_t count) {
  if (!window->menuBar) {
    window->menuBar = new QMenuBar(window);
    window->menuBar->setNativeMenuBar(false);
  }
  window->menuBar->clear();
  window->menuItems.clear();
  QList<QMenu*> open;
  for (size_t i = 0; i < count; ++i) {
    const MenuItem& item = items[i];
    if (item.id == -1 && item.text) {
      const QString title = QString::fromUtf8(item.text);
      open.append(open.isEmpty() ? window->menuBar->addMenu(title) : open.last()->addMenu(title));
    } else if (item.id == -1) {
      if (!open.isEmpty()) open.removeLast();
    } else if (!open.isEmpty() && item.id == 0) {
      open.last()->addSeparator();
    } else if (!open.isEmpty()) {
      AddItem(window, open.last(), item);
    }
  }
  window->menuBar->show();
  window->PlaceBars();
}

void MenuItemEnable(Window* window, int id, bool enable) {
  window->menuItemEnabled[id] = enable;
  if (QAction* action = window->menuItems.value(id)) action->setEnabled(enable && !window->menuIsOff);
}

bool MenuItemIsEnabled(const Window* window, int id) {
  const QAction* action = window->menuItems.value(id);
  return action && action->isEnabled();
}

void MenuItemCheck(Window* window, int id, bool check) {
  if (QAction* action = window->menuItems.value(id)) {
    action->setCheckable(true);
    action->setChecked(check);
  }
}

void MenuItemSetText(Window* window, int id, const char* text) {
  if (QAction* action = window->menuItems.value(id)) action->setText(QString::fromUtf8(text));
}

void MenuSubmenuFill(Window* window, int beforeId, const MenuItem* items, size_t count) {
  QAction* fixed = window->menuItems.value(beforeId);
  auto* menu = fixed ? qobject_cast<QMenu*>(fixed->parent()) : nullptr;
  if (!menu) return;
  for (QAction* action : menu->actions()) {
    if (action == fixed) break;
    menu->removeAction(action);
    action->deleteLater();
  }
  for (size_t i = 0; i < count; ++i) {
    if (items[i].id == 0) {
      menu->insertSeparator(fixed);
      continue;
    }
    auto* action = new QAction(ShownText(items[i].text), menu);
    const int id = items[i].id;
    QObject::connect(action, &QAction::triggered, window, [window, id] { window->Send(id); });
    menu->insertAction(fixed, action);
    window->menuItems.insert(id, action);
  }
}

void MenuBarEnable(Window* window, bool enable) {
  window->menuIsOff = !enable;
  for (auto item = window->menuItems.cbegin(); item != window->menuItems.cend(); ++item) {
    item.value()->setEnabled(enable && window->menuItemEnabled.value(item.key(), true));
  }
}

void PopupMenuRun(Window* window, const PopupItem* items, size_t count, int atControl) {
  QMenu menu(window);
  for (size_t i = 0; i < count; ++i) {
    if (items[i].id == 0) {
      menu.addSeparator();
      continue;
    }
    QAction* action = menu.addAction(ShownText(items[i].text));
    action->setData(items[i].id);
    action->setEnabled(items[i].enabled);
    action->setCheckable(items[i].checked);
    action->setChecked(items[i].checked);
    if (items[i].isDefault) menu.setDefaultAction(action);
  }
  QPoint at = QCursor::pos();
  if (const QWidget* control = window->Control(atControl)) at = control->mapToGlobal(QPoint(0, control->height()));
  if (const QAction* chosen = menu.exec(at)) {
    const int id = chosen->data().toInt();
    QTimer::singleShot(0, window, [window, id] { window->Send(id); });
  }
}

}  // namespace platform
