// The menu bar and context menus of platform/window_system.h.
#include <QAction>
#include <QCursor>
#include <QMenu>
#include <QPointer>
#include <QToolButton>
#include <utility>

#include "platform/event_loop.h"
#include "platform/qt/native_window.h"
#include "platform/qt/text.h"

namespace platform {

namespace {

/// A key is shown only: it arrives through WindowEvents::OnKey, which knows when text takes it.
QString WithShortcut(const QString& text, const char* shortcut) {
  return shortcut ? text + QLatin1Char('\t') + QString::fromUtf8(shortcut) : text;
}

/// Names of sites and the like hold "&" as a letter, the program's own texts as a mark.
QString Escaped(QString text) { return text.replace(QLatin1Char('&'), QLatin1String("&&")); }

QAction* NewItem(Window* window, QMenu* menu, int id, const QString& text) {
  auto* action = new QAction(text, menu);
  QObject::connect(action, &QAction::triggered, window, [window, id] { window->Choose(id); });
  window->menuItems.insert(id, action);
  return action;
}

QMenu* NewMenu(Window* window, QMenu* parent, const char* title) {
  const QString text = QString::fromUtf8(title);
  QMenu* menu = parent ? parent->addMenu(text) : window->menuBar->addMenu(text);
  QObject::connect(menu, &QMenu::aboutToShow, window,
                   [window] { window->WithOwner([](WindowEvents& owner) { owner.OnMenuOpening(); }); });
  return menu;
}

void AddPopupRow(Window* window, QMenu* menu, const PopupItem& item, bool reports) {
  if (item.id == 0) {
    menu->addSeparator();
    return;
  }
  const QString text = WithShortcut(Escaped(ShownText(item.text)), item.shortcut);
  QAction* action = reports ? NewItem(window, menu, item.id, text) : new QAction(text, menu);
  menu->addAction(action);
  action->setData(item.id);
  action->setEnabled(item.enabled);
  if (reports) window->menuItemEnabled[item.id] = item.enabled;
  action->setCheckable(item.checked);
  action->setChecked(item.checked);
  if (item.isDefault) menu->setDefaultAction(action);
}

}  // namespace

void MenuBarSet(Window* window, const MenuItem* items, size_t count) {
  if (!window->menuBar) {
    window->menuBar = new QMenuBar(window);
    window->menuBar->setNativeMenuBar(false);
    window->menuBar->setAccessibleName(QStringLiteral("メニューバー"));
  }
  window->menuBar->clear();
  window->menuItems.clear();
  QList<QMenu*> open;
  for (size_t i = 0; i < count; ++i) {
    const MenuItem& item = items[i];
    if (item.id == -1 && item.text) {
      open.append(NewMenu(window, open.isEmpty() ? nullptr : open.last(), item.text));
    } else if (item.id == -1) {
      if (!open.isEmpty()) open.removeLast();
    } else if (!open.isEmpty() && item.id == 0) {
      open.last()->addSeparator();
    } else if (!open.isEmpty()) {
      QMenu* menu = open.last();
      menu->addAction(NewItem(window, menu, item.id, WithShortcut(QString::fromUtf8(item.text), item.shortcut)));
    }
  }
  MenuBarEnable(window, !window->menuIsOff);
  window->menuBar->show();
  window->ApplyMinimum();
  window->PlaceBars();
}

void MenuItemEnable(Window* window, int id, bool enable) {
  window->menuItemEnabled[id] = enable;
  for (QAction* action : window->menuItems.values(id)) action->setEnabled(enable && !window->menuIsOff);
}

bool MenuItemIsEnabled(const Window* window, int id) {
  const QAction* action = window->menuItems.value(id);
  return action && action->isEnabled();
}

void MenuItemCheck(Window* window, int id, bool check) {
  for (QAction* action : window->menuItems.values(id)) {
    action->setCheckable(true);
    action->setChecked(check);
  }
}

void MenuItemSetText(Window* window, int id, const char* text) {
  for (QAction* action : window->menuItems.values(id)) {
    const QByteArray key = action->text().section(QLatin1Char('\t'), 1).toUtf8();
    action->setText(WithShortcut(QString::fromUtf8(text), key.isEmpty() ? nullptr : key.constData()));
  }
}

void MenuSubmenuFill(Window* window, const char* title, const PopupItem* items, size_t count) {
  if (!window->menuBar) return;
  for (QMenu* menu : window->menuBar->findChildren<QMenu*>()) {
    if (menu->title() != QString::fromUtf8(title)) continue;
    for (QAction* action : menu->actions()) {
      window->menuItems.removeIf([action](auto& item) { return item.value() == action; });
      menu->removeAction(action);
      action->deleteLater();  // It may be the one whose choice led here.
    }
    for (size_t i = 0; i < count; ++i) AddPopupRow(window, menu, items[i], true);
    MenuBarEnable(window, !window->menuIsOff);
    return;
  }
}

void MenuBarEnable(Window* window, bool enable) {
  window->menuIsOff = !enable;
  for (auto item = window->menuItems.cbegin(); item != window->menuItems.cend(); ++item) {
    item.value()->setEnabled(enable && window->menuItemEnabled.value(item.key(), true));
  }
}

namespace {

/// Where a context menu opens.
QPoint PlaceOf(Window* window, int at) {
  if (!window->keyboardMenuPlace.isNull()) return std::exchange(window->keyboardMenuPlace, QPoint());
  if (const QWidget* control = window->Control(at)) return control->mapToGlobal(QPoint(0, control->height()));
  if (at != 0 && window->mainToolBar) {
    for (const QToolButton* button : window->mainToolBar->findChildren<QToolButton*>()) {
      const QAction* action = button->defaultAction();
      if (action && action->data().toInt() == at) return button->mapToGlobal(QPoint(0, button->height()));
    }
  }
  return QCursor::pos();
}

}  // namespace

void PopupMenuRun(Window* window, const PopupItem* items, size_t count, int atControl) {
  QMenu menu(window);
  for (size_t i = 0; i < count; ++i) AddPopupRow(window, &menu, items[i], false);
  if (const QAction* chosen = menu.exec(PlaceOf(window, atControl))) {
    const int id = chosen->data().toInt();
    EventLoopPost([window = QPointer<Window>(window), id] {
      if (window) window->Choose(id);
    });
  }
}

}  // namespace platform
