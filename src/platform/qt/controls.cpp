// Making controls, and the operations on any control of platform/window_system.h.
#include <QAbstractButton>
#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QFrame>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabBar>
#include <QTabWidget>
#include <QTextDocument>
#include <QToolButton>
#include <QToolTip>

#include "platform/qt/combo_control.h"
#include "platform/qt/divider.h"
#include "platform/qt/icons.h"
#include "platform/qt/input_control.h"
#include "platform/qt/label_control.h"
#include "platform/qt/list_control.h"
#include "platform/qt/log_control.h"
#include "platform/qt/native_window.h"
#include "platform/qt/progress_control.h"
#include "platform/qt/text.h"

namespace platform {

namespace {

QWidget* NewButton(Window* window, int id, ControlKind kind, const QString& text) {
  QAbstractButton* button = nullptr;
  if (kind == ControlKind::kIconButton || kind == ControlKind::kIconTextButton) {
    auto* tool = new QToolButton(window->client);
    tool->setToolButtonStyle(kind == ControlKind::kIconButton ? Qt::ToolButtonIconOnly : Qt::ToolButtonTextBesideIcon);
    tool->setFocusPolicy(Qt::TabFocus);
    button = tool;
  } else {
    auto* push = new QPushButton(window->client);
    push->setAutoDefault(false);
    push->setDefault(kind == ControlKind::kDefaultButton);
    // A click in a dialog leaves the focus in the field: what happens when the user leaves it is not to come between
    // the press and the release of a button.
    if (window->kind != WindowKind::kMain) push->setFocusPolicy(Qt::TabFocus);
    button = push;
  }
  button->setText(text);
  QObject::connect(button, &QAbstractButton::clicked, window, [window, id] {
    const int bound = window->Bound(id, ControlEvent::kClick);
    window->Choose(bound ? bound : id);
  });
  return button;
}

QWidget* NewInput(Window* window, int id, bool isPassword) {
  auto* input = new InputControl(window, id);
  if (isPassword) input->setEchoMode(QLineEdit::Password);
  QObject::connect(input, &QLineEdit::textEdited, window,
                   [window, id] { window->SendBound(id, ControlEvent::kTextEdited); });
  return input;
}

QWidget* NewCheck(Window* window, int id, QAbstractButton* button, const QString& text) {
  button->setText(text);
  QObject::connect(button, &QAbstractButton::clicked, window, [window, id] { window->Send(id); });
  return button;
}

QWidget* NewRadio(Window* window, int id, const QString& text) {
  auto* radio = new QRadioButton(window->client);
  if (!window->radioGroup) window->radioGroup = new QButtonGroup(window);
  window->radioGroup->addButton(radio);
  // Two groups may offer the same words.
  if (!window->radioTitle.isEmpty()) radio->setAccessibleName(window->radioTitle + QStringLiteral("：") + text);
  return NewCheck(window, id, radio, text);
}

QWidget* NewGroup(Window* window, const QString& title) {
  window->radioGroup = nullptr;
  window->radioTitle = title;
  return new QGroupBox(title, window->client);
}

QWidget* NewTabs(Window* window, int id) {
  auto* tabs = new QTabWidget(window->client);
  QObject::connect(tabs, &QTabWidget::currentChanged, window,
                   [window, id] { window->SendBound(id, ControlEvent::kSelectionChange); });
  return tabs;
}

QWidget* NewLine(Window* window) {
  auto* line = new QFrame(window->client);
  line->setFrameShape(QFrame::HLine);
  line->setFrameShadow(QFrame::Sunken);
  return line;
}

QWidget* NewToolBar(Window* window) {
  auto* bar = new QToolBar(window->client);
  bar->setIconSize(QSize(20, 20));
  bar->setMovable(false);
  return bar;
}

QWidget* NewControl(Window* window, int id, ControlKind kind, const QString& text) {
  switch (kind) {
    case ControlKind::kStatic: return new LabelControl(text, window->client);
    case ControlKind::kIcon: return new QLabel(window->client);
    case ControlKind::kInput: return NewInput(window, id, false);
    case ControlKind::kPassword: return NewInput(window, id, true);
    case ControlKind::kCheckBox: return NewCheck(window, id, new QCheckBox(window->client), text);
    case ControlKind::kRadioButton: return NewRadio(window, id, text);
    case ControlKind::kButton:
    case ControlKind::kDefaultButton:
    case ControlKind::kIconButton:
    case ControlKind::kIconTextButton:
      return NewButton(window, id, kind, kind == ControlKind::kIconButton ? QString() : text);
    case ControlKind::kComboBox: return new ComboControl(window, id, true);
    case ControlKind::kPullDownList: return new ComboControl(window, id, false);
    case ControlKind::kList: return new ListControl(window, id);
    case ControlKind::kProgressBar: return new ProgressControl(window->client);
    case ControlKind::kGroup: return NewGroup(window, text);
    case ControlKind::kLine: return NewLine(window);
    case ControlKind::kLog: return new LogControl(window->client);
    case ControlKind::kTabs: return NewTabs(window, id);
    case ControlKind::kToolBar: return NewToolBar(window);
    case ControlKind::kDivider: return new Divider(window, id);
  }
  return nullptr;
}

/// Such a control is called what it shows, also when that changes.
bool ShowsText(ControlKind kind) {
  switch (kind) {
    case ControlKind::kStatic:
    case ControlKind::kCheckBox:
    case ControlKind::kRadioButton:
    case ControlKind::kButton:
    case ControlKind::kDefaultButton:
    case ControlKind::kIconTextButton:
    case ControlKind::kGroup: return true;
    default: return false;
  }
}

/// A field belongs to the label that was made before it: of a pull-down list a screen reader has no other name.
void JoinLabel(Window* window, QWidget* control, ControlKind kind) {
  const bool isField = kind == ControlKind::kInput || kind == ControlKind::kPassword ||
                       kind == ControlKind::kComboBox || kind == ControlKind::kPullDownList;
  if (isField && window->lastLabel) window->lastLabel->setBuddy(control);
  window->lastLabel = kind == ControlKind::kStatic ? qobject_cast<QLabel*>(control) : nullptr;
}

void SetName(QWidget* control, const QString& name) {
  control->setAccessibleName(name);
  // The part of it that the keyboard is in.
  if (auto* combo = qobject_cast<QComboBox*>(control); combo && combo->lineEdit()) {
    combo->lineEdit()->setAccessibleName(name);
  }
  if (auto* tabs = qobject_cast<QTabWidget*>(control)) tabs->tabBar()->setAccessibleName(name);
}

}  // namespace

void ControlCreate(Window* window, int id, ControlKind kind, const char* text, const Rect& place) {
  QWidget* control = NewControl(window, id, kind, ShownText(text));
  if (!control) return;
  if (text && !ShowsText(kind)) SetName(control, ShownText(text));
  control->setObjectName(QStringLiteral("control%1").arg(id));
  JoinLabel(window, control, kind);
  delete window->controls.value(id);
  window->controls.insert(id, control);
  ControlMove(window, id, place);
  control->show();
}

bool ControlExists(const Window* window, int id) { return window->controls.contains(id); }

void ControlMove(Window* window, int id, const Rect& place) {
  if (QWidget* control = window->Control(id)) {
    control->setGeometry(place.x + window->Inset(), place.y, qMax(place.width, 0), qMax(place.height, 0));
  }
}

Rect ControlGetPlace(const Window* window, int id) {
  const QWidget* control = window->Control(id);
  if (!control) return {0, 0, 0, 0};
  return {control->x() - window->Inset(), control->y(), control->width(), control->height()};
}

void ControlEnable(Window* window, int id, bool enable) {
  if (QWidget* control = window->Control(id)) control->setEnabled(enable);
}

bool ControlIsEnabled(const Window* window, int id) {
  const QWidget* control = window->Control(id);
  return control && control->isEnabled();
}

void ControlShow(Window* window, int id, bool show) {
  if (QWidget* control = window->Control(id)) control->setVisible(show);
}

bool ControlIsShown(const Window* window, int id) {
  const QWidget* control = window->Control(id);
  return control && !control->isHidden();
}

void ControlFocus(Window* window, int id) {
  if (QWidget* control = window->Control(id)) control->setFocus();
}

void ControlSetText(Window* window, int id, const char* text) {
  if (auto* label = window->ControlAs<LabelControl>(id)) {
    label->SetShown(text);
  } else if (auto* input = window->ControlAs<InputControl>(id)) {
    input->SetField(text);
  } else if (auto* combo = window->ControlAs<ComboControl>(id)) {
    combo->SetField(text);
  } else if (auto* button = window->ControlAs<QAbstractButton>(id)) {
    button->setText(ShownText(text));
  }
}

void ControlGetText(const Window* window, int id, char (&text)[kFixedText]) {
  QByteArray found;
  if (auto* label = window->ControlAs<LabelControl>(id)) {
    found = label->Newest().toUtf8();
  } else if (auto* input = window->ControlAs<InputControl>(id)) {
    found = input->Field();
  } else if (auto* combo = window->ControlAs<ComboControl>(id)) {
    found = combo->Field();
  } else if (auto* button = window->ControlAs<QAbstractButton>(id)) {
    found = button->text().toUtf8();
  }
  CopyToFixed(found, text);
}

void ControlSetTextLimit(Window* window, int id, int characters) {
  if (auto* input = window->ControlAs<QLineEdit>(id)) input->setMaxLength(characters);
  if (auto* combo = window->ControlAs<QComboBox>(id); combo && combo->lineEdit())
    combo->lineEdit()->setMaxLength(characters);
}

void ControlSetPrompt(Window* window, int id, const char* text) {
  const QString prompt = QString::fromUtf8(text);
  if (auto* input = window->ControlAs<QLineEdit>(id)) input->setPlaceholderText(prompt);
  if (auto* combo = window->ControlAs<QComboBox>(id); combo && combo->lineEdit())
    combo->lineEdit()->setPlaceholderText(prompt);
  if (ListControl* list = window->List(id)) list->SetPrompt(prompt);
}

void ControlSetToolTip(Window* window, int id, const char* text) {
  if (QWidget* control = window->Control(id)) control->setToolTip(ToolTipText(ShownText(text, true)));
}

void ControlSetName(Window* window, int id, const char* name) {
  if (QWidget* control = window->Control(id)) SetName(control, ShownText(name));
}

void ControlSetIcon(Window* window, int id, Icon icon, int size) {
  if (auto* label = window->ControlAs<QLabel>(id)) {
    label->setPixmap(QIconOf(icon).pixmap(QSize(size, size), label->devicePixelRatioF()));
  } else if (auto* button = window->ControlAs<QAbstractButton>(id)) {
    button->setIcon(QIconOf(icon));
    button->setIconSize(QSize(size, size));
  }
}

void ControlSetCheck(Window* window, int id, bool check) {
  if (auto* button = window->ControlAs<QAbstractButton>(id)) button->setChecked(check);
}

bool ControlGetCheck(const Window* window, int id) {
  const auto* button = window->ControlAs<QAbstractButton>(id);
  return button && button->isChecked();
}

void ControlSetProgress(Window* window, int id, double fraction) {
  if (auto* bar = window->ControlAs<ProgressControl>(id)) bar->SetFraction(fraction);
}

void ControlBubbleTip(Window* window, int id, const char* text) {
  const QWidget* control = window->Control(id);
  const QWidget* at = control && control->isVisible() ? control : window;
  // Only rich text is broken into lines.
  const QString lines = Qt::convertFromPlainText(ShownText(text, true), Qt::WhiteSpaceNormal);
  QToolTip::showText(at->mapToGlobal(QPoint(8, at->height())), lines, window->window());
}

void ControlSetColors(Window* window, int id, unsigned text, unsigned background) {
  if (auto* log = window->ControlAs<LogControl>(id)) log->SetColors(text, background);
}

void LogSetText(Window* window, int id, const char* text) {
  if (auto* log = window->ControlAs<LogControl>(id)) log->SetLog(text);
}

void ControlBindEvent(Window* window, int id, ControlEvent event, int command) {
  window->bindings.insert({id, static_cast<int>(event)}, command);
}

}  // namespace platform
