// Where the controls stand: nothing overlaps, is cut, or lies outside, at any scale factor and size. Run once
// for each scale factor.
#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QFontMetrics>
#include <QLabel>
#include <QMessageBox>
#include <QToolBar>
#include <QToolButton>

#include "core/progress_dialog.h"
#include "platform/qt/native_window.h"
#include "support/window/alert.h"
#include "ui/window_fixture.h"

namespace {

class Layout : public WindowTest {
 protected:
  static std::string NameOf(const QWidget* control) {
    return control->objectName().toStdString() + " " + control->accessibleName().toStdString();
  }

  /// The controls that a user sees, in the window's own coordinates.
  static std::vector<QWidget*> Visible(platform::Window* window) {
    std::vector<QWidget*> found;
    for (QWidget* control : window->client->findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
      if (control->isVisible() && !control->isWindow()) found.push_back(control);
    }
    return found;
  }

  static void ExpectApart(platform::Window* window) {
    const std::vector<QWidget*> all = Visible(window);
    EXPECT_GT(all.size(), 3u);
    const QRect room = window->client->rect();
    for (size_t i = 0; i < all.size(); ++i) {
      EXPECT_TRUE(room.contains(all[i]->geometry())) << NameOf(all[i]) << " is outside";
      // The divider may be at the bottom, and the history behind it.
      const bool mayBeGone = all[i] == window->Control(kHistory);
      EXPECT_TRUE(mayBeGone || !all[i]->geometry().isEmpty()) << NameOf(all[i]) << " has no room";
      for (size_t k = i + 1; k < all.size(); ++k) {
        const QRect common = all[i]->geometry() & all[k]->geometry();
        EXPECT_TRUE(common.isEmpty()) << NameOf(all[i]) << " and " << NameOf(all[k]) << " overlap by " << common.width()
                                      << " x " << common.height();
      }
    }
  }

  static void ExpectTextsWhole(platform::Window* window) {
    for (const QWidget* control : window->findChildren<QWidget*>()) {
      if (!control->isVisible()) continue;
      const auto* button = qobject_cast<const QAbstractButton*>(control);
      const auto* label = qobject_cast<const QLabel*>(control);
      if (!button && !(label && label->pixmap().isNull())) continue;
      if (qobject_cast<const QComboBox*>(control->parent())) continue;
      if (button && button->inherits("QToolBarExtension")) {
        ADD_FAILURE() << "a tool bar hides buttons behind its extension: " << NameOf(control->parentWidget());
        continue;
      }
      const auto* tool = qobject_cast<const QToolButton*>(control);
      if (tool && tool->toolButtonStyle() == Qt::ToolButtonIconOnly) continue;
      const QString text = button ? button->text() : label->text();
      EXPECT_GE(control->width(), control->fontMetrics().horizontalAdvance(text)) << text.toStdString();
      EXPECT_GE(control->height(), control->fontMetrics().height()) << text.toStdString();
      if (!button) continue;
      // The width of one of them stands in the window's measures, two pixels under what the style would like.
      constexpr int kTolerance = 3;
      EXPECT_GE(control->width() + kTolerance, control->sizeHint().width()) << text.toStdString();
    }
  }

  void ExpectGood(platform::Window* window) {
    ExpectApart(window);
    ExpectTextsWhole(window);
  }

  void Resize(int width, int height) {
    platform::WindowSetFrame(Window(), {0, 0, width, height});
    ui::Pump(30);
  }
  /// The smallest that the user can make it.
  void ResizeToMinimum() { Resize(Window()->minimumWidth(), Window()->minimumHeight()); }
};

TEST_F(Layout, TheMainWindowAtItsUsualSize) {
  StartProgram();
  Resize(1200, 800);
  ExpectGood(Window());
}

TEST_F(Layout, TheMainWindowAtItsSmallest) {
  StartProgram();
  ResizeToMinimum();
  ExpectGood(Window());
}

TEST_F(Layout, TheMainWindowWithFilters) {
  Put("Settings/FiltersOn", "1");
  StartProgram();
  for (const int id :
       {kLocalFilter, kLocalFilterApply, kLocalFilterRemove, kRemoteFilter, kRemoteFilterApply, kRemoteFilterRemove}) {
    EXPECT_TRUE(platform::ControlIsShown(Window(), id)) << id;
  }
  Resize(1200, 800);
  ExpectGood(Window());
  ResizeToMinimum();
  ExpectGood(Window());
}

TEST_F(Layout, TheDividerAtBothEnds) {
  StartProgram();
  Resize(1200, 800);
  for (const int way : {-3000, 3000}) {
    DragDivider(way);
    ExpectApart(Window());
  }
}

TEST_F(Layout, BothPanesAreOfOneWidthAndBottom) {
  StartProgram();
  Resize(1200, 800);
  const platform::Rect local = platform::ControlGetPlace(Window(), kLocalList);
  const platform::Rect remote = platform::ControlGetPlace(Window(), kRemoteList);
  const platform::Rect log = platform::ControlGetPlace(Window(), kHistory);
  EXPECT_NEAR(local.width, remote.width, 5);
  EXPECT_EQ(local.y + local.height, log.y + log.height);
  EXPECT_EQ(local.y, remote.y);
}

TEST_F(Layout, TheProgressDialog) {
  StartProgram();
  LProcessDialogRunInterface dialog("ファイル一覧をダウンロード中");
  ASSERT_TRUE(dialog._Open(&Main(), false));
  dialog.OpenModalWindow();
  dialog.SetStatus("12個（全345個中）のファイルをダウンロード中", 0);
  dialog.SetStatus("/資料/会議メモ 4月.txt: 100%", 1);
  ui::Pump(30);
  ExpectGood(dialog.Native());
  dialog.CloseModalWindow();
}

TEST_F(Layout, TheExtendedProgressDialog) {
  StartProgram();
  LProcessDialogRunInterface dialog("作業中");
  ASSERT_TRUE(dialog._Open(&Main(), true));
  dialog.OpenModalWindow();
  ui::Pump(30);
  ExpectGood(dialog.Native());
  dialog.CloseModalWindow();
}

TEST_F(Layout, TheLoginDialog) {
  StartProgram();
  const Meanwhile look([] { return Dialog("ユーザーログイン") != nullptr; },
                       [&] {
                         ui::Pump(30);
                         platform::Window* dialog = Dialog("ユーザーログイン");
                         ExpectGood(dialog);
                         for (const int field : {104, 107, 109}) {
                           EXPECT_GE(dialog->Control(field)->height(), dialog->Control(field)->sizeHint().height() - 2);
                         }
                         ui::Press(dialog, kCommandCancel);
                       });
  char password[kTextSize];
  EXPECT_FALSE(OpenUserLoginDlg(&Main(), "ftp.example.jp", "anna", password));
  EXPECT_TRUE(look.Acted());
}

TEST_F(Layout, ALongServerTextInAnAlertStaysOnTheScreen) {
  StartProgram();
  alerts.Hold(true);
  const Meanwhile look([] { return platform::AlertIsOpen(); },
                       [&] {
                         ui::Pump(30);
                         const QWidget* box = QApplication::activeModalWidget();
                         EXPECT_LT(box->width(), 1400);
                         for (const QAbstractButton* button : box->findChildren<QAbstractButton*>()) {
                           EXPECT_GE(button->width(), button->fontMetrics().horizontalAdvance(button->text()));
                         }
                         const QAbstractButton *yes = nullptr, *no = nullptr;
                         for (const QAbstractButton* button : box->findChildren<QAbstractButton*>()) {
                           (button->text() == QString::fromUtf8("上書きする") ? yes : no) = button;
                         }
                         EXPECT_TRUE(yes && no && yes->x() > no->x()) << "the affirmative button stands at the right";
                         platform::AlertDismiss();
                       });
  const std::string text = "このファイルのコピー \"" + std::string(200, 'x') + "\" が既に存在します。上書きしますか？";
  LAlertWithButtonText::DisplayOkCancel(&Main(), text.c_str(), "上書きする", "上書きする", "スキップ");
  alerts.Hold(false);
}

TEST_F(Layout, EveryControlHasAName) {
  Put("Settings/FiltersOn", "1");
  StartProgram();
  int controls = 0;
  for (QWidget* control : Window()->findChildren<QWidget*>()) {
    const bool isOurs = control->objectName().startsWith("control") || qobject_cast<QToolButton*>(control);
    if (!isOurs || control->objectName().startsWith("qt_")) continue;
    ++controls;
    QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(control);
    ASSERT_NE(accessible, nullptr) << NameOf(control);
    EXPECT_FALSE(accessible->text(QAccessible::Name).isEmpty())
        << NameOf(control) << " of " << control->metaObject()->className();
  }
  EXPECT_GT(controls, 40);
}

}  // namespace
