#include "platform/qt/label_control.h"

#include <QPainter>

#include "platform/qt/text.h"

namespace platform {

void LabelControl::SetShown(const char* text) {
  newest = text;
  isVisible() ? paced.Changed() : paced.ShowNow();
}

QString LabelControl::Newest() const { return paced.IsWaiting() ? ShownText(newest) : text(); }

void LabelControl::ShowNewest() {
  setText(ShownText(newest));
  if (!toolTip().isEmpty()) setToolTip(QString());
}

void LabelControl::paintEvent(QPaintEvent* event) {
  if (!pixmap().isNull()) return QLabel::paintEvent(event);
  QPainter painter(this);
  painter.setPen(palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, foregroundRole()));
  const QString shown = fontMetrics().elidedText(text(), Qt::ElideMiddle, width());
  if (shown != text()) setToolTip(ToolTipText(text()));
  painter.drawText(rect(), Qt::AlignLeft | Qt::AlignVCenter, shown);
}

}  // namespace platform
