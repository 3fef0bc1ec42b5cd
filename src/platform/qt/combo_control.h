// A combo box whose field the user may type in, or a plain pull-down list.
#pragma once

#include <QComboBox>

#include "platform/qt/kept_bytes.h"

namespace platform {

struct Window;

class ComboControl : public QComboBox {
  Q_OBJECT
 public:
  ComboControl(Window* window, int id, bool editable);
  void SetField(const char* text);
  /// What the field stands for by the bytes that were set or that the chosen row has.
  QByteArray Field() const;
  /// The bytes of a row; empty if there is none.
  QByteArray Row(int row) const { return itemData(row).toByteArray(); }
  /// The field shows this row.
  void KeepRow(int row) { fieldBytes.Keep(Row(row)); }

 protected:
  bool eventFilter(QObject*, QEvent*) override;
  void focusOutEvent(QFocusEvent*) override;

 private:
  Window* owner;
  int controlId;
  KeptBytes fieldBytes;
  bool leavingField = false;  ///< The field is giving the focus away.
};

}  // namespace platform
