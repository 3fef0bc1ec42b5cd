#include "ui/layout_checks.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QFontMetrics>
#include <QGroupBox>
#include <QLabel>
#include <QMetaEnum>
#include <QTabBar>
#include <QToolBar>
#include <QToolButton>
#include <algorithm>
#include <gtest/gtest.h>
#include <set>
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

namespace {

/// What stands in a window, as a screen reader walks through it.
class AccessibleWalk {
 public:
  std::string Listing() const { return listing; }
  size_t Controls() const { return known.size(); }

  void Visit(QAccessibleInterface* node, int depth, const QString& place) {
    if (!node || node->state().invisible) return;
    const QAccessible::Role role = node->role();
    const QString name = node->text(QAccessible::Name);
    const QString kind = QString::fromLatin1(QMetaEnum::fromType<QAccessible::Role>().valueToKey(role));
    listing += std::string(2 * static_cast<size_t>(depth), ' ') + kind.toStdString() + " \"" + name.toStdString() +
               "\"" + (node->state().disabled ? " off" : "") + "\n";
    if (IsControl(*node)) Check(place, kind, name);
    // Its name is what it shows; what it is for stands in its field or on its label.
    const bool isBare = role == QAccessible::ComboBox && node->childCount() < 2 && node->relations().isEmpty();
    EXPECT_FALSE(isBare) << "no label for " << name.toStdString();
    if (IsOneThing(role)) return;
    const bool isPlace = role == QAccessible::ToolBar || role == QAccessible::PopupMenu;
    for (int i = 0; i < node->childCount(); ++i) Visit(node->child(i), depth + 1, isPlace ? name : place);
  }

 private:
  /// Frames, lines and what Qt puts in between are none; whatever the keyboard reaches is.
  static bool IsControl(QAccessibleInterface& node) {
    switch (node.role()) {
      case QAccessible::Client: return node.state().focusable;
      case QAccessible::Border:
      case QAccessible::Separator:
      case QAccessible::LayeredPane:
      case QAccessible::Grouping:
      case QAccessible::Pane: return false;
      case QAccessible::PopupMenu: return false;  // Of the same name as what opens it, or of none.
      case QAccessible::StaticText: return !node.text(QAccessible::Name).isEmpty();
      default: return true;
    }
  }
  static bool IsOneThing(QAccessible::Role role) {
    return role == QAccessible::Tree || role == QAccessible::List || role == QAccessible::Table ||
           role == QAccessible::EditableText;
  }
  void Check(const QString& place, const QString& kind, const QString& name) {
    EXPECT_TRUE(kind != "NoRole" && kind != "Client") << "no role: " << name.toStdString();
    EXPECT_FALSE(name.trimmed().isEmpty()) << "no name: a " << kind.toStdString() << " in\n" << listing;
    EXPECT_TRUE(known.insert(place + "/" + kind + "/" + name).second)
        << "two of them: " << kind.toStdString() << " " << name.toStdString();
  }

  std::string listing;
  std::set<QString> known;
};

}  // namespace

std::string ExpectAccessible(QWidget* window) {
  AccessibleWalk walk;
  walk.Visit(QAccessible::queryAccessibleInterface(window), 0, {});
  EXPECT_GE(walk.Controls(), 1u) << walk.Listing();
  return walk.Listing();
}

namespace {

/// What the Tab key should reach. An editable combo box stands for its field, a group of radio buttons for the chosen
/// one.
bool TakesTab(const QWidget* control) {
  const auto* radio = qobject_cast<const QAbstractButton*>(control);
  const bool isOffRadio = radio && radio->group() && !radio->isChecked();
  return control->isVisible() && control->isEnabled() && (control->focusPolicy() & Qt::TabFocus) &&
         !control->focusProxy() && !isOffRadio && !control->isWindow() &&
         !qobject_cast<QComboBox*>(control->parent()) && !dynamic_cast<const platform::Window*>(control);
}

/// The pane of the main window, or of a dialog the only one; then the row, then the place in it.
struct Place {
  int pane, y, x;
  bool operator<(const Place& other) const {
    constexpr int kSameRow = 12;
    if (pane != other.pane) return pane < other.pane;
    return y < other.y - kSameRow || (y <= other.y + kSameRow && x < other.x);
  }
};

Place PlaceOf(platform::Window* window, const QWidget* control) {
  constexpr int kLine = 16;  // Of a tall control, its first line counts.
  const QPoint at = control->mapTo(window, QPoint(0, std::min(control->height() / 2, kLine)));
  if (!window->mainToolBar) return {0, at.y(), at.x()};
  if (window->mainToolBar->isAncestorOf(control)) return {0, 0, at.x()};
  const int left = window->Control(kLocalList)->geometry().right(), right = window->Control(kRemoteList)->x();
  return {at.x() < left ? 1 : at.x() < right ? 2 : 3, at.y(), at.x()};
}

}  // namespace

void ExpectTabOrder(platform::Window* window) {
  std::vector<QWidget*> wanted;
  for (QWidget* control : window->findChildren<QWidget*>()) {
    if (TakesTab(control)) wanted.push_back(control);
  }
  ASSERT_FALSE(wanted.empty());
  ASSERT_TRUE(ui::WaitUntil([&] { return window->isActiveWindow(); }, 2000));
  const auto isBefore = [&](QWidget* a, QWidget* b) { return PlaceOf(window, a) < PlaceOf(window, b); };
  QWidget* const first = *std::min_element(wanted.begin(), wanted.end(), isBefore);
  std::set<QWidget*> missing(wanted.begin(), wanted.end());
  first->setFocus();
  QWidget* last = nullptr;
  for (size_t step = 0; step <= 2 * wanted.size() && !missing.empty(); ++step) {
    QWidget* focus = QApplication::focusWidget();
    ASSERT_NE(focus, nullptr);
    if (qobject_cast<QComboBox*>(focus->parent())) focus = focus->parentWidget();
    // Once round, the tabs come first.
    if (focus == first || qobject_cast<QTabBar*>(focus)) last = nullptr;
    missing.erase(focus);
    EXPECT_TRUE(!last || !isBefore(focus, last))
        << "the focus goes back from " << NameOf(last) << " to " << NameOf(focus);
    last = focus;
    ui::Key(window, Qt::Key_Tab);
  }
  for (const QWidget* control : missing) ADD_FAILURE() << "Tab does not reach " << NameOf(control);
}
