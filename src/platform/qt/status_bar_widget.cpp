#include "platform/qt/status_bar_widget.h"

#include <QPainter>

namespace platform {

namespace {
constexpr int kPadding = 10;
constexpr int kIconSize = 16;
}  // namespace

StatusBarWidget::StatusBarWidget(QWidget* parent) : QWidget(parent) {
  setAccessibleName(QStringLiteral("ステータスバー"));
}

QSize StatusBarWidget::sizeHint() const { return {0, fontMetrics().height() + 10}; }

StatusBarWidget::Part* StatusBarWidget::At(int part) {
  if (part < 0 || part > 15) return nullptr;
  if (static_cast<size_t>(part) >= parts.size()) parts.resize(static_cast<size_t>(part) + 1);
  return &parts[static_cast<size_t>(part)];
}

void StatusBarWidget::SetWidths(std::vector<int> partWidths) {
  parts.resize(partWidths.size());
  for (size_t i = 0; i < partWidths.size(); ++i) parts[i].width = partWidths[i];
  update();
}

void StatusBarWidget::SetText(int part, const QString& text) {
  if (Part* found = At(part)) found->text = text;
  QStringList all;
  for (const Part& one : parts) all << one.text;
  setAccessibleDescription(all.join(QStringLiteral(" ")));
  update();
}

void StatusBarWidget::SetIcon(int part, const QIcon& icon) {
  if (Part* found = At(part)) found->icon = icon;
  update();
}

void StatusBarWidget::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setPen(palette().color(QPalette::Mid));
  painter.drawLine(0, 0, width(), 0);
  int x = 0;
  for (size_t i = 0; i < parts.size(); ++i) {
    const bool isLast = i + 1 == parts.size();
    const int end = isLast ? width() : qMin(x + parts[i].width, width());
    int left = x + kPadding;
    if (!parts[i].icon.isNull()) {
      parts[i].icon.paint(&painter, left, (height() - kIconSize) / 2, kIconSize, kIconSize);
      left += kIconSize + 6;
    }
    painter.setPen(palette().color(QPalette::WindowText));
    const QRect room(left, 1, end - left - kPadding, height() - 1);
    painter.drawText(room, Qt::AlignVCenter | Qt::AlignLeft,
                     fontMetrics().elidedText(parts[i].text, Qt::ElideMiddle, room.width()));
    x = end;
    if (!isLast) {
      painter.setPen(palette().color(QPalette::Mid));
      painter.drawLine(x, 6, x, height() - 6);
    }
  }
}

}  // namespace platform
