// The whole window from the keyboard.
#include <QApplication>
#include <QComboBox>
#include <QToolButton>
#include <set>

#include "platform/qt/list_control.h"
#include "platform/qt/native_window.h"
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
  MakeRemote("a.txt", "x");
  MakeLocal("b.txt", "x");
  StartConnected();
  Select(kRemoteList, {"a.txt"});
  std::set<QWidget*> missing;
  for (QWidget* widget : Window()->findChildren<QWidget*>()) {
    if (widget->isVisible() && widget->isEnabled() && (widget->focusPolicy() & Qt::TabFocus) && !widget->focusProxy() &&
        !widget->inherits("QLineEdit")) {
      missing.insert(widget);
    }
  }
  // What a user works with is among them at all.
  for (const int id : {kLocalList, kRemoteList, kLocalPath, kRemotePath, kLocalGo, kRemoteGo, kUploadButton,
                       kDownloadButton, kHistory, kDivider}) {
    EXPECT_TRUE(missing.contains(Window()->Control(id))) << "control " << id << " takes no focus by Tab";
  }
  for (const int bar : {platform::kMainToolBar, kLocalTools, kRemoteTools}) {
    for (QToolButton* button : Window()->ToolBar(bar)->findChildren<QToolButton*>()) {
      if (!button->isVisible() || !button->isEnabled()) continue;
      EXPECT_TRUE(missing.contains(button)) << button->text().toStdString();
    }
  }
  const size_t wanted = missing.size();
  Focus(kLocalList);
  for (size_t step = 0; step < 3 * wanted; ++step) {
    QWidget* focus = QApplication::focusWidget();
    ASSERT_NE(focus, nullptr);
    missing.erase(focus);
    missing.erase(focus->parentWidget());  // A combo box has the focus in its field.
    Key(Qt::Key_Tab);
  }
  EXPECT_EQ(Main().LVGetSelCount(kRemoteList), 1) << "going past a path box enters nothing";
  for (const QWidget* widget : missing) {
    ADD_FAILURE() << "Tab does not reach " << widget->objectName().toStdString() << " "
                  << widget->accessibleName().toStdString() << " " << widget->metaObject()->className();
  }
}

TEST_F(Keyboard, ReturnWithShiftOrAltOpensTheCurrentRow) {
  MakeRemote("資料/会議.txt", "x");
  MakeLocal("写真/海辺.jpg", "x");
  StartConnected();
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

TEST_F(Keyboard, ArrowsMoveAndSpaceOrShiftSelect) {
  for (const char* name : {"a", "b", "c"}) MakeLocal(name, "x");
  StartConnected();
  Focus(kLocalList);
  Key(Qt::Key_Down);
  EXPECT_EQ(CurrentRow(kLocalList), "b");
  ui::Key(Window(), Qt::Key_Down, Qt::ShiftModifier);
  EXPECT_EQ(Main().LVGetSelCount(kLocalList), 2);
  ui::Key(Window(), Qt::Key_A, Qt::ControlModifier);
  EXPECT_EQ(Main().LVGetSelCount(kLocalList), 3);
}

TEST_F(Keyboard, TheDividerMovesByArrows) {
  StartProgram();
  Focus(kDivider);
  const int before = platform::ControlGetPlace(Window(), kDivider).y;
  Key(Qt::Key_Up);
  EXPECT_EQ(platform::ControlGetPlace(Window(), kDivider).y, before - 16);
  Key(Qt::Key_Down);
  EXPECT_EQ(platform::ControlGetPlace(Window(), kDivider).y, before);
}

TEST_F(Keyboard, ReturnPressesTheButtonThatHasTheFocus) {
  MakeRemote("a.txt", "x");
  StartConnected();
  Select(kRemoteList, {"a.txt"});
  Focus(kDownloadButton);
  Key(Qt::Key_Space);
  EXPECT_TRUE(std::filesystem::exists(Local("a.txt")));
}

}  // namespace
