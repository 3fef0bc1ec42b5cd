// A combo box whose field the user may type in, or a plain pull-down list.
#pragma once

#include <QComboBox>

namespace platform {

struct Window;

class ComboControl : public QComboBox {
 public:
  ComboControl(Window* window, int id, bool editable);

 protected:
  bool eventFilter(QObject*, QEvent*) override;
  void focusOutEvent(QFocusEvent*) override;

 private:
  Window* owner;
  int controlId;
  bool leavingField = false;  ///< The field is giving the focus away.
};

}  // namespace platform
