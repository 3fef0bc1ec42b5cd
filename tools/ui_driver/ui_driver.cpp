#include "ui_driver.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPixmap>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabBar>
#include <QTabWidget>
#include <QTextDocumentFragment>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>
#include <QToolTip>
#include <QtTest/QTest>

#include "platform/qt/list_control.h"
#include "platform/qt/native_window.h"

namespace ui {

void Pump(int ms) { QTest::qWait(ms); }

bool WaitUntil(const std::function<bool()>& condition, int ms) {
  QElapsedTimer clock;
  clock.start();
  while (!condition()) {
    if (clock.elapsed() > ms) return false;
    QTest::qWait(5);
  }
  return true;
}

namespace {

/// Qt's testing events reach a widget past a modal window; a user's do not.
bool IsHeldOff(const QWidget* widget) {
  const QWidget* modal = QApplication::activeModalWidget();
  return modal && modal != widget->window();
}

}  // namespace

bool Press(platform::Window* window, int id) {
  QWidget* control = window->Control(id);
  if (!control || !control->isVisible() || !control->isEnabled() || IsHeldOff(control)) return false;
  // A box or a radio button hears clicks on its mark and its text, which stand at the left.
  const bool isMark = qobject_cast<QCheckBox*>(control) || qobject_cast<QRadioButton*>(control);
  QTest::mouseClick(control, Qt::LeftButton, {}, isMark ? QPoint(8, control->height() / 2) : QPoint());
  return true;
}

bool PressTool(platform::Window* window, int bar, int command) {
  QToolBar* tools = window->ToolBar(bar);
  if (!tools || IsHeldOff(tools)) return false;
  for (QToolButton* button : tools->findChildren<QToolButton*>()) {
    const QAction* action = button->defaultAction();
    if (!action || action->data().toInt() != command || !button->isEnabled()) continue;
    QTest::mouseClick(button, Qt::LeftButton, {}, QPoint(8, button->height() / 2));
    return true;
  }
  return false;
}

namespace {

QPoint PlaceOfRow(platform::ListControl* list, const char* name) {
  for (int row = 0; row < list->model()->rowCount(); ++row) {
    const platform::ListRow* found = list->Rows().RowAt(row);
    if (!found || found->cells[0] != name) continue;
    const QModelIndex index = list->model()->index(row, 0);
    list->scrollTo(index);
    return list->visualRect(index).center();
  }
  return {-1, -1};
}

}  // namespace

bool SelectRows(platform::Window* window, int list, std::initializer_list<const char*> names) {
  platform::ListControl* control = window->List(list);
  if (!control || IsHeldOff(control)) return false;
  Qt::KeyboardModifiers held = Qt::NoModifier;
  for (const char* name : names) {
    const QPoint place = PlaceOfRow(control, name);
    if (place.x() < 0) return false;
    QTest::mouseClick(control->viewport(), Qt::LeftButton, held, place);
    held = Qt::ControlModifier;
  }
  return true;
}

bool DoubleClickRow(platform::Window* window, int list, const char* name) {
  platform::ListControl* control = window->List(list);
  if (!control || IsHeldOff(control)) return false;
  const QPoint place = PlaceOfRow(control, name);
  if (place.x() < 0) return false;
  QTest::mouseClick(control->viewport(), Qt::LeftButton, {}, place);
  QTest::mouseDClick(control->viewport(), Qt::LeftButton, {}, place);
  return true;
}

namespace {

/// Qt's own typing knows the keys of an ASCII keyboard only; other letters come as an input method sends
/// them.
void Type(QWidget* field, const QString& text) {
  for (const QChar letter : text) {
    if (letter.unicode() < 0x80) {
      QTest::keyClick(field, letter.toLatin1());
      continue;
    }
    QKeyEvent event(QEvent::KeyPress, Qt::Key_unknown, Qt::NoModifier, QString(letter));
    QApplication::sendEvent(field, &event);
  }
}

}  // namespace

bool TypeAndReturn(platform::Window* window, int id, const char* text) {
  auto* combo = window->ControlAs<QComboBox>(id);
  QLineEdit* field = combo ? combo->lineEdit() : window->ControlAs<QLineEdit>(id);
  if (!field || !field->isVisible() || !field->isEnabled()) return false;
  QTest::mouseClick(field, Qt::LeftButton);
  field->selectAll();
  Type(field, QString::fromUtf8(text));
  QTest::keyClick(field, Qt::Key_Return);
  return true;
}

bool Fill(platform::Window* window, int id, const std::string& text) {
  auto* combo = window->ControlAs<QComboBox>(id);
  QLineEdit* field = combo ? combo->lineEdit() : window->ControlAs<QLineEdit>(id);
  if (!field || !field->isVisible() || !field->isEnabled()) return false;
  QTest::mouseClick(field, Qt::LeftButton);
  field->selectAll();
  field->insert(QString::fromStdString(text));
  return true;
}

bool ChooseRow(platform::Window* window, int id, int row) {
  auto* combo = window->ControlAs<QComboBox>(id);
  if (!combo || !combo->isVisible() || !combo->isEnabled()) return false;
  combo->setFocus();
  combo->showPopup();
  combo->view()->setCurrentIndex(combo->model()->index(row, 0));
  QTest::keyClick(combo->view(), Qt::Key_Return);
  return true;
}

namespace {

QTabWidget* TabsOf(const platform::Window* sheet) {
  return sheet ? sheet->client->findChild<QTabWidget*>(QString(), Qt::FindDirectChildrenOnly) : nullptr;
}

}  // namespace

platform::Window* Page(platform::Window* sheet, int page) {
  const QTabWidget* tabs = TabsOf(sheet);
  return tabs ? dynamic_cast<platform::Window*>(tabs->widget(page)) : nullptr;
}

bool PressTab(platform::Window* sheet, int page) {
  const QTabWidget* tabs = TabsOf(sheet);
  if (!tabs || page >= tabs->count()) return false;
  QTest::mouseClick(tabs->tabBar(), Qt::LeftButton, {}, tabs->tabBar()->tabRect(page).center());
  return tabs->currentIndex() == page;
}

void Key(platform::Window* window, int key, int modifiers) {
  QWidget* target = QApplication::focusWidget() ? QApplication::focusWidget() : window;
  QTest::keyClick(target, static_cast<Qt::Key>(key), static_cast<Qt::KeyboardModifier>(modifiers));
}

bool EditRow(platform::Window* window, int list, const char* text, int key) {
  platform::ListControl* control = window->List(list);
  if (!control) return false;
  QLineEdit* field = nullptr;
  // One that was closed may still be on its way out.
  for (auto* one : control->viewport()->findChildren<QLineEdit*>()) {
    if (one->isVisible()) field = one;
  }
  if (!field) return false;
  if (!text) {
    QTest::keyClick(field, Qt::Key_Escape);
    Pump(1);
    return true;
  }
  field->selectAll();
  field->insert(QString::fromUtf8(text));
  if (key != 0) QTest::keyClick(field, static_cast<Qt::Key>(key));
  Pump(1);
  return true;
}

namespace {

/// The text without its key and its marks.
QString ItemText(const QAction* action) {
  return action->text().section(QLatin1Char('\t'), 0, 0).replace(QLatin1String("&"), QString());
}

}  // namespace

bool ChooseFromMenuBar(platform::Window* window, std::initializer_list<const char*> texts) {
  if (!window->menuBar) return false;
  QList<QAction*> actions = window->menuBar->actions();
  QAction* found = nullptr;
  for (const char* text : texts) {
    found = nullptr;
    for (QAction* action : actions) {
      if (!found && ItemText(action) == QString::fromUtf8(text)) found = action;
    }
    if (!found) return false;
    if (!found->menu()) break;
    // A menu that opens asks for the state of its items.
    QMetaObject::invokeMethod(found->menu(), "aboutToShow");
    actions = found->menu()->actions();
  }
  if (!found->isEnabled() || IsHeldOff(window->menuBar)) return false;
  found->trigger();
  return true;
}

void ChooseFromNextMenu(const char* text) {
  const QString wanted = QString::fromUtf8(text);
  auto* look = new QTimer(qApp);
  QObject::connect(look, &QTimer::timeout, look, [look, wanted] {
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    if (!menu) return;
    look->stop();
    look->deleteLater();
    for (QAction* action : menu->actions()) {
      if (!action->text().contains(wanted)) continue;
      QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(action).center());
      return;
    }
    menu->close();
  });
  look->start(10);
}

std::string Text(platform::Window* window, int id) {
  char text[platform::kFixedText];
  platform::ControlGetText(window, id, text);
  return text;
}

std::string BubbleTip() {
  if (!QToolTip::isVisible()) return {};
  return QTextDocumentFragment::fromHtml(QToolTip::text()).toPlainText().toStdString();
}

bool LogShows(platform::Window* window, int id, const std::string& part) {
  const auto* log = qobject_cast<QPlainTextEdit*>(window->Control(id));
  return log && WaitUntil([&] { return log->toPlainText().contains(QString::fromStdString(part)); });
}

std::vector<std::string> Column(platform::Window* window, int list, int column) {
  std::vector<std::string> cells;
  for (int row = 0; row < platform::ListCount(window, list); ++row) {
    char text[platform::kFixedText];
    platform::ListGetCell(window, list, row, column, text);
    cells.emplace_back(text);
  }
  return cells;
}

bool Grab(platform::Window* window, const char* path) { return window->grab().save(QString::fromUtf8(path), "PNG"); }

platform::Window* ModalWindow() { return dynamic_cast<platform::Window*>(QApplication::activeModalWidget()); }

// Alerts

struct Alerts::Timer {
  QTimer timer;
};

Alerts::Alerts() : timer(new Timer) {
  QObject::connect(&timer->timer, &QTimer::timeout, &timer->timer, [this] { Look(); });
  timer->timer.start(5);
}

Alerts::~Alerts() { delete timer; }

void Alerts::Expect(const std::string& text, const char* button, int check) { queue.push_back({text, button, check}); }

std::string Alerts::Complaints() const {
  std::string all = complaints;
  for (const Expected& one : queue) all += "an alert did not come: " + one.text + "\n";
  return all;
}

void Alerts::Look() {
  if (held) return;
  if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
    if (box->isVisible()) Answer(*box);
  }
}

void Alerts::Answer(QMessageBox& box) {
  QStringList texts = {box.windowTitle(), box.text()};
  if (box.checkBox()) texts += box.checkBox()->text();
  for (const QAbstractButton* button : box.buttons()) texts += button->text();
  last = texts.join('\n').toStdString();
  if (queue.empty() && agreesToAll) {
    box.defaultButton() ? box.defaultButton()->click() : box.accept();
    return;
  }
  if (queue.empty()) {
    complaints += "an alert was not expected: " + box.text().toStdString() + "\n";
    box.reject();
    return;
  }
  const Expected expected = queue.front();
  queue.erase(queue.begin());
  if (!box.text().contains(QString::fromStdString(expected.text))) {
    complaints += "an alert says \"" + box.text().toStdString() + "\" in place of \"" + expected.text + "\"\n";
  }
  if (expected.check >= 0 && box.checkBox()) box.checkBox()->setChecked(expected.check != 0);
  for (QAbstractButton* button : box.buttons()) {
    if (button->text() != QString::fromStdString(expected.button)) continue;
    button->click();
    return;
  }
  complaints += "an alert has no button \"" + expected.button + "\"\n";
  box.reject();
}

}  // namespace ui
