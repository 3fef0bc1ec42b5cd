#include "platform/qt/input_control.h"

#include <QFocusEvent>
#include <QPointer>

#include "platform/qt/native_window.h"

namespace platform {

InputControl::InputControl(Window* window, int id) : QLineEdit(window->client), owner(window), controlId(id) {
  setTextMargins(4, 0, 4, 0);
}

void InputControl::SetField(const char* text) {
  setText(echoMode() == QLineEdit::Normal ? bytes.Keep(text) : QString::fromUtf8(text));
}

void InputControl::focusOutEvent(QFocusEvent* event) {
  QLineEdit::focusOutEvent(event);
  // A box or a menu above the window, or another program, takes the keyboard and gives it back.
  const Qt::FocusReason reason = event->reason();
  if (reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason) return;
  owner->SendBound(controlId, ControlEvent::kFocusLost);
}

}  // namespace platform
