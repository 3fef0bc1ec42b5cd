#include "platform/qt/divider.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include "platform/qt/native_window.h"

namespace platform {

Divider::Divider(Window* window, int id) : QWidget(window->client), owner(window), controlId(id) {
  setCursor(Qt::SizeVerCursor);
  setFocusPolicy(Qt::TabFocus);
}

void Divider::Report(int top) {
  owner->WithOwner([this, top](WindowEvents& events) { events.OnDividerMoved(controlId, top); });
}

void Divider::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(palette().color(hasFocus() ? QPalette::Highlight : QPalette::Mid));
  painter.drawRoundedRect(QRectF(width() / 2.0 - 18, height() / 2.0 - 1, 36, 2), 1, 1);
}

void Divider::mousePressEvent(QMouseEvent* event) { grabbedAt = event->pos().y(); }

void Divider::mouseMoveEvent(QMouseEvent* event) {
  if (event->buttons() & Qt::LeftButton) Report(mapToParent(event->pos()).y() - grabbedAt);
}

void Divider::keyPressEvent(QKeyEvent* event) {
  constexpr int kStep = 16;
  if (event->key() == Qt::Key_Up) {
    Report(y() - kStep);
  } else if (event->key() == Qt::Key_Down) {
    Report(y() + kStep);
  } else {
    QWidget::keyPressEvent(event);
  }
}

}  // namespace platform
