#include "platform/qt/accessibility.h"

#include <QAccessible>
#include <QAccessibleWidget>

#include "platform/qt/divider.h"
#include "platform/qt/native_window.h"
#include "platform/qt/status_bar_widget.h"

namespace platform {

namespace {

class RoleOnly : public QAccessibleWidget {
 public:
  RoleOnly(QWidget* widget, QAccessible::Role role) : QAccessibleWidget(widget, role) {}
};

QAccessible::Role RoleOf(WindowKind kind) {
  switch (kind) {
    case WindowKind::kMain: return QAccessible::Window;
    case WindowKind::kPage: return QAccessible::PropertyPage;
    default: return QAccessible::Dialog;
  }
}

/// Qt asks for each class of the object, from its own down to QObject, until one has an answer.
QAccessibleInterface* RolesOfOurs(const QString& className, QObject* object) {
  // Qt has none for the tabs and what stands behind them as a whole.
  if (className == QLatin1String("QTabWidget")) return new RoleOnly(qobject_cast<QWidget*>(object), QAccessible::Pane);
  if (!object || !className.startsWith(QLatin1String("platform::"))) return nullptr;
  if (auto* window = qobject_cast<Window*>(object)) return new RoleOnly(window, RoleOf(window->kind));
  if (auto* bar = qobject_cast<StatusBarWidget*>(object)) return new RoleOnly(bar, QAccessible::StatusBar);
  if (auto* divider = qobject_cast<Divider*>(object)) return new RoleOnly(divider, QAccessible::Splitter);
  return nullptr;
}

}  // namespace

void AccessibilityInit() { QAccessible::installFactory(&RolesOfOurs); }

}  // namespace platform
