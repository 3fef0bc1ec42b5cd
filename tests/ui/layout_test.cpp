// Where the controls stand: nothing overlaps, is cut, or lies outside, at any scale factor and size. Run once
// for each scale factor.
#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>

#include "core/progress_dialog.h"
#include "platform/qt/native_window.h"
#include "support/window/alert.h"
#include "ui/layout_checks.h"
#include "ui/screens.h"
#include "ui/window_fixture.h"

namespace {

class Layout : public WindowTest {
 protected:
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
  SaveScreen(Window(), "main-window-filters");
  ResizeToMinimum();
  ExpectGood(Window());
  SaveScreen(Window(), "main-window-filters-smallest");
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
  SaveScreen(dialog.Native(), "progress");
  ExpectTabOrder(dialog.Native());
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
                         SaveScreen(QApplication::activeModalWidget(), "alert");
                         platform::AlertDismiss();
                       });
  const std::string text = "このファイルのコピー \"" + std::string(200, 'x') + "\" が既に存在します。上書きしますか？";
  LAlertWithButtonText::DisplayOkCancel(&Main(), text.c_str(), "上書きする", "上書きする", "スキップ");
  alerts.Hold(false);
}

}  // namespace
