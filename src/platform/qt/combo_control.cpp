#include "platform/qt/combo_control.h"

#include <QKeyEvent>
#include <QLineEdit>

#include "platform/qt/native_window.h"
#include "platform/qt/text.h"

namespace platform {

ComboControl::ComboControl(Window* window, int id, bool editable)
    : QComboBox(window->client), owner(window), controlId(id) {
  setEditable(editable);
  setInsertPolicy(QComboBox::NoInsert);
  setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  setMinimumContentsLength(4);
  connect(this, &QComboBox::activated, window, [this] {
    if (leavingField) return;
    KeepRow(currentIndex());
    owner->SendBound(controlId, ControlEvent::kSelectionChange);
  });
  if (!editable) return;
  setCompleter(nullptr);
  lineEdit()->installEventFilter(this);
  connect(this, &QComboBox::editTextChanged, window, [this] {
    if (lineEdit()->isModified()) owner->SendBound(controlId, ControlEvent::kTextEdited);
  });
}

void ComboControl::SetField(const char* text) { setEditText(fieldBytes.Keep(text)); }

QByteArray ComboControl::Field() const { return isEditable() ? fieldBytes.Of(currentText()) : Row(currentIndex()); }

void ComboControl::focusOutEvent(QFocusEvent* event) {
  // Qt calls it a choice when the focus leaves a text that stands in the list. It is none.
  leavingField = true;
  QComboBox::focusOutEvent(event);
  leavingField = false;
}

bool ComboControl::eventFilter(QObject* watched, QEvent* event) {
  if (watched == lineEdit() && event->type() == QEvent::KeyPress) {
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key == Qt::Key_Return || key == Qt::Key_Enter) {
      // Qt would also report a choice from the list when the text stands there: one Return, one command.
      owner->SendBound(controlId, ControlEvent::kReturn);
      return true;
    }
  }
  return QComboBox::eventFilter(watched, event);
}

namespace {

ComboControl* ComboOf(const Window* window, int id) { return window->ControlAs<ComboControl>(id); }

/// Qt selects the first row of an empty box by itself and changes the field with its rows; here neither happens.
template <typename Change>
void KeepField(QComboBox* combo, Change change) {
  if (!combo) return;
  const QString text = combo->currentText();
  const int current = combo->currentIndex();
  const QSignalBlocker quiet(combo);
  change(*combo);
  if (combo->isEditable()) {
    combo->setCurrentIndex(-1);
    combo->setEditText(text);
  } else {
    combo->setCurrentIndex(current);
  }
}

}  // namespace

void ComboInsert(Window* window, int id, int row, const char* text) {
  KeepField(ComboOf(window, id), [&](QComboBox& combo) { combo.insertItem(row, ShownName(text), QByteArray(text)); });
}

void ComboDelete(Window* window, int id, int row) {
  KeepField(ComboOf(window, id), [&](QComboBox& combo) { combo.removeItem(row); });
}

void ComboClear(Window* window, int id) {
  KeepField(ComboOf(window, id), [&](QComboBox& combo) { combo.clear(); });
}

int ComboCount(const Window* window, int id) {
  const QComboBox* combo = ComboOf(window, id);
  return combo ? combo->count() : 0;
}

int ComboFind(const Window* window, int id, const char* text) {
  const QComboBox* combo = ComboOf(window, id);
  return combo ? combo->findData(QByteArray(text)) : -1;
}

void ComboGetRow(const Window* window, int id, int row, char (&text)[kFixedText]) {
  const ComboControl* combo = ComboOf(window, id);
  CopyToFixed(combo ? combo->Row(row) : QByteArray(), text);
}

void ComboSelect(Window* window, int id, int row) {
  ComboControl* combo = ComboOf(window, id);
  if (!combo) return;
  const QSignalBlocker quiet(combo);
  combo->setCurrentIndex(row);
  combo->KeepRow(row);
  if (row < 0 && combo->isEditable()) combo->clearEditText();
}

int ComboSelected(const Window* window, int id) {
  const QComboBox* combo = ComboOf(window, id);
  return combo ? combo->currentIndex() : -1;
}

}  // namespace platform
