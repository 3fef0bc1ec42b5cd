// The tabs of platform/window_system.h.
#include <QStyle>
#include <QStyleOptionTabWidgetFrame>
#include <QTabBar>
#include <QTabWidget>

#include "platform/qt/native_window.h"
#include "platform/qt/text.h"

namespace platform {

void TabsAddPage(Window* window, int id, Window* page, const char* title) {
  auto* tabs = window->ControlAs<QTabWidget>(id);
  if (!tabs) return;
  QString text = ShownText(title);
  tabs->addTab(page, text.replace(QLatin1Char('&'), QLatin1String("&&")));
}

int TabsSelected(const Window* window, int id) {
  const auto* tabs = window->ControlAs<QTabWidget>(id);
  return tabs ? tabs->currentIndex() : -1;
}

void TabsSelect(Window* window, int id, int page) {
  if (auto* tabs = window->ControlAs<QTabWidget>(id)) tabs->setCurrentIndex(page);
}

void TabsFrameSize(const Window* window, int id, int& width, int& height) {
  width = height = 0;
  const auto* tabs = window->ControlAs<QTabWidget>(id);
  if (!tabs) return;
  const int frame = 2 * tabs->style()->pixelMetric(QStyle::PM_DefaultFrameWidth, nullptr, tabs);
  width = 2 * frame;
  height = 2 * frame + tabs->tabBar()->sizeHint().height();
}

}  // namespace platform
