// Message boxes of platform/window_system.h.
#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QFileDialog>
#include <QHeaderView>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTreeView>

#include "platform/qt/icons.h"
#include "platform/qt/native_window.h"
#include "platform/qt/text.h"

namespace platform {

namespace {
QList<QMessageBox*> gOpenAlerts;

/// A line is broken at blanks and between Japanese letters: a very long name of others gets such places too.
QString Breakable(const QString& text) {
  constexpr int kLongest = 60;
  constexpr QChar kFirstOfEastAsia(0x2E80);
  QString broken;
  int run = 0;
  for (const QChar letter : text) {
    const bool mayBreak = run >= kLongest && !letter.isLowSurrogate() && !letter.isMark();
    if (mayBreak) broken += QChar(0x200B);
    run = letter.isSpace() || letter >= kFirstOfEastAsia || mayBreak ? 0 : run + 1;
    broken += letter;
  }
  return broken;
}
}  // namespace

int AlertRun(Window* parent, Alert& alert) {
  QMessageBox box(parent);
  box.setWindowModality(Qt::ApplicationModal);
  constexpr int kInformation = 901, kError = 902, kIconSize = 48;
  const QIcon& picture = QIconOf(IconFromResource(alert.isError ? kError : kInformation));
  box.setIconPixmap(picture.pixmap(QSize(kIconSize, kIconSize), box.devicePixelRatioF()));
  if (auto* icon = box.findChild<QLabel*>(QStringLiteral("qt_msgboxex_icon_label"))) {
    icon->setAccessibleName(alert.isError ? QStringLiteral("エラー") : QStringLiteral("情報"));
  }
  box.setWindowTitle(ShownText(alert.title));
  box.setTextFormat(Qt::PlainText);  // A server's words are never markup.
  box.setText(Breakable(ShownText(alert.message, true)));

  QPushButton* buttons[3] = {};
  for (int i = 0; i < 3; ++i) {
    if (!alert.buttons[i] || !alert.buttons[i][0]) continue;
    // The role of the first puts it at the right by the desktop's habit, the others left of it.
    buttons[i] =
        box.addButton(QString::fromUtf8(alert.buttons[i]), i == 0 ? QMessageBox::AcceptRole : QMessageBox::RejectRole);
  }
  if (buttons[0]) box.setDefaultButton(buttons[0]);
  if (buttons[1]) {
    box.setEscapeButton(buttons[1]);
  } else if (buttons[0]) {
    box.setEscapeButton(buttons[0]);
  }
  QCheckBox* check = nullptr;
  if (alert.checkBox) {
    check = new QCheckBox(QString::fromUtf8(alert.checkBox), &box);
    check->setChecked(alert.checked);
    box.setCheckBox(check);
  }
  // Where no window manager does it, the keyboard goes back to the parent by this; a user who works in another program
  // by then is left in peace.
  bool isOurs = false;
  QObject::connect(&box, &QDialog::finished,
                   [&isOurs] { isOurs = QGuiApplication::applicationState() == Qt::ApplicationActive; });
  gOpenAlerts.append(&box);
  box.exec();
  gOpenAlerts.removeOne(&box);
  if (isOurs && parent) parent->window()->activateWindow();
  if (check) alert.checked = check->isChecked();
  for (int i = 0; i < 3; ++i) {
    if (buttons[i] && box.clickedButton() == buttons[i]) return i + 1;
  }
  return 2;
}

bool AlertIsOpen() { return !gOpenAlerts.isEmpty(); }

bool AlertDismiss() {
  if (QWidget* menu = QApplication::activePopupWidget()) return menu->close();
  if (gOpenAlerts.isEmpty()) return false;
  gOpenAlerts.last()->reject();
  return true;
}

bool FolderChoose(Window* parent, const char* title, char (&path)[kFixedText]) {
  // The panel knows no names but in UTF-8: it begins in the last folder above that it can show.
  QByteArray start(path);
  while (!start.isValidUtf8()) start.truncate(start.lastIndexOf('/'));
  QFileDialog panel(parent, QString::fromUtf8(title), QFile::decodeName(start));
  panel.setFileMode(QFileDialog::Directory);
  panel.setOption(QFileDialog::ShowDirsOnly);
  // Where the desktop has no panel of its own: what it tells beside the names is for files, and in English.
  if (auto* list = panel.findChild<QTreeView*>(QStringLiteral("treeView"))) {
    for (int column = 1; column < list->model()->columnCount(); ++column) list->hideColumn(column);
    list->header()->setStretchLastSection(true);
  }
  if (panel.exec() != QDialog::Accepted || panel.selectedFiles().isEmpty()) return false;
  const QByteArray bytes = QFile::encodeName(panel.selectedFiles().first());
  if (bytes.size() >= static_cast<qsizetype>(kFixedText)) return false;
  CopyToFixed(bytes, path);
  return true;
}

void CursorSetWaiting(bool waiting) {
  if (waiting) {
    QApplication::setOverrideCursor(Qt::WaitCursor);
  } else {
    QApplication::restoreOverrideCursor();
  }
}

}  // namespace platform
