// A field of one line, which tells its owner when the user leaves it.
#pragma once

#include <QLineEdit>

namespace platform {

struct Window;

class InputControl : public QLineEdit {
 public:
  InputControl(Window* window, int id);

 protected:
  void focusOutEvent(QFocusEvent*) override;

 private:
  Window* owner;
  int controlId;
};

}  // namespace platform
