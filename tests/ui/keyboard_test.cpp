// The whole window from the keyboard.
#include <QApplication>
#include <QToolButton>

#include "platform/qt/list_control.h"
#include "platform/qt/native_window.h"
#include "ui/layout_checks.h"
#include "ui/window_fixture.h"

namespace {

using testing::ElementsAre;

class Keyboard : public WindowTest {
 protected:
  void Key(Qt::Key key) { ui::Key(Window(), key); }
  void Focus(int control) {
    QWidget* widget = Window()->Control(control);
    EXPECT_TRUE(ui::WaitUntil([&] { return Window()->isActiveWindow(); }, 1000));
    widget->setFocus();
    ASSERT_TRUE(widget->hasFocus()) << control;
  }
};

TEST_F(Keyboard, TabReachesEachControlThatIsOn) {
  Put("Settings/FiltersOn", "1");
  StartConnected({"a.txt"}, {"b.txt"});
  Select(kRemoteList, {"a.txt"});
  // What a user works with takes the focus at all.
  for (const int id : {kLocalList, kRemoteList, kLocalPath, kRemotePath, kLocalGo, kRemoteGo, kUploadButton,
                       kDownloadButton, kHistory, kDivider}) {
    EXPECT_TRUE(Window()->Control(id)->focusPolicy() & Qt::TabFocus) << "control " << id;
  }
  for (const int bar : {platform::kMainToolBar, kLocalTools, kRemoteTools}) {
    for (const QToolButton* button : Window()->ToolBar(bar)->findChildren<QToolButton*>()) {
      EXPECT_TRUE(!button->isVisible() || button->focusPolicy() & Qt::TabFocus) << button->text().toStdString();
    }
  }
  ExpectTabOrder(Window());
  EXPECT_EQ(Main().LVGetSelCount(kRemoteList), 1) << "going past a path box enters nothing";
}

TEST_F(Keyboard, ReturnWithShiftOrAltOpensTheCurrentRow) {
  StartConnected({"資料/会議.txt"}, {"写真/海辺.jpg"});
  Focus(kRemoteList);
  Select(kRemoteList, {"資料"});
  Key(Qt::Key_Return);
  EXPECT_EQ(PathOf(kRemotePath), "/") << "alone it does nothing";
  ui::Key(Window(), Qt::Key_Return, Qt::ShiftModifier);
  EXPECT_EQ(PathOf(kRemotePath), "/資料");
  EXPECT_THAT(Names(kRemoteList), ElementsAre("会議.txt"));
  Focus(kLocalList);
  ui::Key(Window(), Qt::Key_Return, Qt::AltModifier);
  EXPECT_EQ(PathOf(kLocalPath), Local("写真"));
}

TEST_F(Keyboard, AFieldDeletesAWordAndNoFile) {
  StartConnected({}, {"a.txt"});
  for (const Qt::Key key : {Qt::Key_Backspace, Qt::Key_Delete}) {
    Select(kLocalList, {"a.txt"});
    platform::ControlSetText(Window(), kLocalPath, "two words");
    Focus(kLocalPath);
    Key(key == Qt::Key_Delete ? Qt::Key_Home : Qt::Key_End);
    ui::Key(Window(), key, Qt::ControlModifier);
    EXPECT_EQ(PathOf(kLocalPath), key == Qt::Key_Delete ? "words" : "two ");
    EXPECT_TRUE(std::filesystem::exists(Local("a.txt")));
  }
  Focus(kLocalList);
  alerts.Expect("削除", "キャンセル");
  ui::Key(Window(), Qt::Key_Delete, Qt::ControlModifier);
}

TEST_F(Keyboard, ArrowsMoveAndSpaceOrShiftSelect) {
  StartConnected({}, {"a", "b", "c"});
  Focus(kLocalList);
  Key(Qt::Key_Down);
  EXPECT_EQ(CurrentRow(kLocalList), "b");
  ui::Key(Window(), Qt::Key_Down, Qt::ShiftModifier);
  EXPECT_EQ(Main().LVGetSelCount(kLocalList), 2);
  ui::Key(Window(), Qt::Key_A, Qt::ControlModifier);
  EXPECT_EQ(Main().LVGetSelCount(kLocalList), 3);
}

TEST_F(Keyboard, ArrowsMoveTheDividerAndSpacePressesAButton) {
  StartConnected({"a.txt"});
  Focus(kDivider);
  const int before = platform::ControlGetPlace(Window(), kDivider).y;
  Key(Qt::Key_Up);
  EXPECT_EQ(platform::ControlGetPlace(Window(), kDivider).y, before - 16);
  Key(Qt::Key_Down);
  EXPECT_EQ(platform::ControlGetPlace(Window(), kDivider).y, before);
  Select(kRemoteList, {"a.txt"});
  Focus(kDownloadButton);
  Key(Qt::Key_Space);
  EXPECT_TRUE(std::filesystem::exists(Local("a.txt")));
}

}  // namespace
