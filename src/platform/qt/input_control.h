// A field of one line, which tells its owner when the user leaves it.
#pragma once

#include <QLineEdit>

#include "platform/qt/kept_bytes.h"

namespace platform {

struct Window;

class InputControl : public QLineEdit {
  Q_OBJECT
 public:
  InputControl(Window* window, int id);
  void SetField(const char* text);
  /// What the field stands for by the bytes that were set.
  QByteArray Field() const { return bytes.Of(text()); }

 protected:
  void focusOutEvent(QFocusEvent*) override;

 private:
  Window* owner;
  int controlId;
  KeptBytes bytes;
};

}  // namespace platform
