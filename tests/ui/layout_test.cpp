// Where the controls stand: nothing overlaps, is cut, or lies outside, at any scale factor and size. Run once
// for each scale factor.
#include <QApplication>
#include <QPushButton>

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
};

TEST_F(Layout, TheMainWindow) {
  for (const bool hasFilters : {false, true}) {
    Put("Settings/FiltersOn", hasFilters ? "1" : "0");
    StartProgram();
    for (const int id : {kLocalFilter, kLocalFilterApply, kLocalFilterRemove, kRemoteFilter, kRemoteFilterApply,
                         kRemoteFilterRemove}) {
      EXPECT_EQ(platform::ControlIsShown(Window(), id), hasFilters) << id;
    }
    Resize(1200, 800);
    ExpectGood(Window());
    if (hasFilters) SaveScreen(Window(), "main-window-filters");
    Resize(Window()->minimumWidth(), Window()->minimumHeight());
    ExpectGood(Window());
    if (hasFilters) SaveScreen(Window(), "main-window-filters-smallest");
    CloseProgram();
  }
}

TEST_F(Layout, BothPanesAreOfOneWidthAndBottomAndTheDividerKeepsThemApart) {
  StartProgram();
  Resize(1200, 800);
  const platform::Rect local = platform::ControlGetPlace(Window(), kLocalList);
  const platform::Rect remote = platform::ControlGetPlace(Window(), kRemoteList);
  const platform::Rect log = platform::ControlGetPlace(Window(), kHistory);
  EXPECT_NEAR(local.width, remote.width, 5);
  EXPECT_EQ(local.y + local.height, log.y + log.height);
  EXPECT_EQ(local.y, remote.y);
  for (const int way : {-3000, 3000}) {
    DragDivider(way);
    ExpectApart(Window());
  }
}

TEST_F(Layout, TheProgressDialogs) {
  StartProgram();
  for (const bool isExtended : {false, true}) {
    LProcessDialogRunInterface dialog("ファイル一覧をダウンロード中");
    ASSERT_TRUE(dialog._Open(&Main(), isExtended));
    dialog.OpenModalWindow();
    dialog.SetStatus("12個（全345個中）のファイルをダウンロード中", 0);
    dialog.SetStatus("/資料/会議メモ 4月.txt: 100%", 1);
    ui::Pump(30);
    ExpectGood(dialog.Native());
    SaveScreen(dialog.Native(), isExtended ? "progress-extended" : "progress");
    ExpectTabOrder(dialog.Native());
    dialog.CloseModalWindow();
  }
}

TEST_F(Layout, AlertsAreWholeOnTheScreen) {
  StartProgram();
  alerts.Hold(true);
  const auto run = [&](const char* picture, const std::function<void()>& open) {
    const Meanwhile look([] { return platform::AlertIsOpen(); },
                         [&] {
                           ui::Pump(30);
                           QWidget* box = QApplication::activeModalWidget();
                           EXPECT_LT(box->width(), 700) << "a long name is broken";
                           int right = 0, affirmative = 0;
                           for (const auto* button : box->findChildren<QPushButton*>()) {
                             EXPECT_GE(button->width(), button->fontMetrics().horizontalAdvance(button->text()));
                             right = std::max(right, button->x());
                             if (button->text() == QString::fromUtf8("上書きする")) affirmative = button->x();
                           }
                           EXPECT_EQ(affirmative, right) << "the affirmative button stands at the right";
                           SaveScreen(box, picture);
                           platform::AlertDismiss();
                         });
    open();
    EXPECT_TRUE(look.Acted());
  };
  const std::string text = "このファイルのコピー \"" + std::string(200, 'x') + "\" が既に存在します。上書きしますか？";
  run("alert",
      [&] { LAlertWithButtonText::DisplayOkCancel(&Main(), text.c_str(), "上書き", "上書きする", "スキップ"); });
  run("alert-with-box", [&] {
    bool all = false;
    LAlertWithButtonTextAndCheckBox::DisplayYesNoCancel(&Main(), text.c_str(), "上書き", "全てに適用する", all,
                                                        "上書きする", "スキップ", "キャンセル");
  });
  run("alert-error", [&] { LAlertWithButtonText::DisplayOkError(&Main(), text.c_str(), "エラー", "上書きする"); });
  alerts.Hold(false);
}

}  // namespace
