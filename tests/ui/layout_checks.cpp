#include "ui/layout_checks.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QFontMetrics>
#include <QGroupBox>
#include <QLabel>
#include <QTabBar>
#include <QToolBar>
#include <QToolButton>
#include <algorithm>
#include <gtest/gtest.h>
#include <set>
#include <utility>
#include <vector>

#include "app/command_ids.h"
#include "platform/qt/native_window.h"
#include "ui_driver.h"

namespace {

std::string NameOf(const QWidget* control) {
  return control->objectName().toStdString() + " " + control->accessibleName().toStdString();
}

/// The controls that a user sees, in the window's own coordinates.
std::vector<QWidget*> Visible(platform::Window* window) {
  std::vector<QWidget*> found;
  for (QWidget* control : window->client->findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
    if (control->isVisible() && !control->isWindow()) found.push_back(control);
  }
  return found;
}

bool Frames(const QWidget* frame, const QWidget* control) {
  const auto* group = qobject_cast<const QGroupBox*>(frame);
  return group && group->geometry().contains(control->geometry());
}

}  // namespace

void ExpectApart(platform::Window* window) {
  const std::vector<QWidget*> all = Visible(window);
  EXPECT_GT(all.size(), 3u);
  const QRect room = window->client->rect();
  for (size_t i = 0; i < all.size(); ++i) {
    EXPECT_TRUE(room.contains(all[i]->geometry())) << NameOf(all[i]) << " is outside";
    // The divider may be at the bottom, and the history behind it.
    const bool mayBeGone = all[i] == window->Control(kHistory);
    EXPECT_TRUE(mayBeGone || !all[i]->geometry().isEmpty()) << NameOf(all[i]) << " has no room";
    for (size_t k = i + 1; k < all.size(); ++k) {
      const QRect common = all[i]->geometry() & all[k]->geometry();
      EXPECT_TRUE(common.isEmpty() || Frames(all[i], all[k]) || Frames(all[k], all[i]))
          << NameOf(all[i]) << " and " << NameOf(all[k]) << " overlap by " << common.width() << " x "
          << common.height();
    }
  }
}

void ExpectTextsWhole(platform::Window* window) {
  for (const QWidget* control : window->findChildren<QWidget*>()) {
    if (!control->isVisible()) continue;
    const auto* button = qobject_cast<const QAbstractButton*>(control);
    const auto* label = qobject_cast<const QLabel*>(control);
    if (!button && !(label && label->pixmap().isNull())) continue;
    if (qobject_cast<const QComboBox*>(control->parent())) continue;
    if (button && button->inherits("QToolBarExtension")) {
      ADD_FAILURE() << "a tool bar hides buttons behind its extension: " << NameOf(control->parentWidget());
      continue;
    }
    const auto* tool = qobject_cast<const QToolButton*>(control);
    if (tool && tool->toolButtonStyle() == Qt::ToolButtonIconOnly) continue;
    const QString text = button ? button->text() : label->text();
    EXPECT_GE(control->width(), control->fontMetrics().horizontalAdvance(text)) << text.toStdString();
    EXPECT_GE(control->height(), control->fontMetrics().height()) << text.toStdString();
    if (!button) continue;
    // The width of one of them stands in the window's measures, two pixels under what the style would like.
    constexpr int kTolerance = 3;
    EXPECT_GE(control->width() + kTolerance, control->sizeHint().width()) << text.toStdString();
  }
}

void ExpectGood(platform::Window* window) {
  ExpectApart(window);
  ExpectTextsWhole(window);
}

int ExpectNames(platform::Window* window) {
  int controls = 0;
  for (QWidget* control : window->findChildren<QWidget*>()) {
    const bool isOurs = control->objectName().startsWith("control") || qobject_cast<QToolButton*>(control);
    if (!isOurs || control->objectName().startsWith("qt_") || control->objectName().startsWith("Scroll")) continue;
    ++controls;
    QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(control);
    EXPECT_TRUE(accessible && !accessible->text(QAccessible::Name).isEmpty())
        << NameOf(control) << " of " << control->metaObject()->className();
  }
  return controls;
}

void ExpectTabOrder(platform::Window* window) {
  std::set<const QWidget*> missing;
  for (const QWidget* control : window->findChildren<QWidget*>()) {
    const auto* radio = qobject_cast<const QAbstractButton*>(control);
    const bool isOffRadio = radio && radio->group() && !radio->isChecked();  // The arrows go to it.
    if (control->isVisible() && control->isEnabled() && !isOffRadio && !control->focusProxy() &&
        (control->focusPolicy() & Qt::TabFocus) && control->objectName().startsWith("control") &&
        !dynamic_cast<const platform::Window*>(control)) {
      missing.insert(control);
    }
  }
  ASSERT_FALSE(missing.empty());
  // From the first of them, wherever the focus was.
  const auto placeOf = [&](const QWidget* control) {
    constexpr int kLine = 16;  // Of a tall control, its first line counts.
    return control->mapTo(window, QPoint(0, std::min(control->height() / 2, kLine)));
  };
  const auto isBefore = [&](const QWidget* a, const QWidget* b) {
    return std::pair(placeOf(a).y(), placeOf(a).x()) < std::pair(placeOf(b).y(), placeOf(b).x());
  };
  const QWidget* const first = *std::min_element(missing.begin(), missing.end(), isBefore);
  const_cast<QWidget*>(first)->setFocus();
  QPoint last(-1, -1);
  for (const QWidget* focus = first; missing.size() > 0;) {
    missing.erase(focus);
    const QPoint place = placeOf(focus);
    constexpr int kSameRow = 12;
    const bool isBack = place.y() < last.y() - kSameRow || (place.y() <= last.y() + kSameRow && place.x() < last.x());
    EXPECT_TRUE(last.x() < 0 || !isBack) << "the focus goes back to " << NameOf(focus);
    last = place;
    ui::Key(window, Qt::Key_Tab);
    focus = QApplication::focusWidget();
    if (focus == first) break;
    // Round again from the top.
    if (qobject_cast<const QTabBar*>(focus)) last = QPoint(-1, -1);
  }
  for (const QWidget* control : missing) ADD_FAILURE() << "Tab does not reach " << NameOf(control);
}
