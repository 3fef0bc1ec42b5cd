// Alerts: which number each button gives, the check box, and the menu meanwhile.
#include "support/window/alert.h"
#include "support/window/menus.h"
#include "ui/window_fixture.h"

namespace {

using Alert = LAlertWithButtonText;

class Alerts : public WindowTest {
 protected:
  Alerts() { StartProgram(); }
};

TEST_F(Alerts, EachButtonHasItsNumber) {
  const struct {
    const char* press;
    int result;
  } rows[] = {{"はい", 1}, {"キャンセル", 2}, {"いいえ", 3}};
  for (const auto& row : rows) {
    alerts.Expect("保存しますか？", row.press);
    EXPECT_EQ(Alert::DisplayYesNoCancel(&Main(), "保存しますか？", "題", "はい", "いいえ", "キャンセル"), row.result);
  }
  for (const bool agrees : {true, false}) {
    for (int i = 0; i < 2; ++i) alerts.Expect("消しますか？", agrees ? "消す" : "やめる");
    EXPECT_EQ(Alert::DisplayOkCancel(&Main(), "消しますか？", "題", "消す", "やめる"), agrees);
    EXPECT_EQ(Alert::DisplayOkCancelDefaultCancel(&Main(), "消しますか？", "題", "消す", "やめる"), agrees);
  }
  alerts.Hold(true);
  const Meanwhile dismiss([] { return platform::AlertIsOpen(); }, [] { platform::AlertDismiss(); });
  EXPECT_EQ(Alert::DisplayYesNoCancel(&Main(), "?", "題", "はい", "いいえ", "キャンセル"), 2) << "dismissed";
  alerts.Hold(false);
}

TEST_F(Alerts, TheCheckBoxComesBackAlsoWhenCancelled) {
  for (const bool before : {false, true}) {
    bool checked = before;
    alerts.Expect("続けますか？", "キャンセル", before ? 0 : 1);
    EXPECT_EQ(LAlertWithButtonTextAndCheckBox::DisplayYesNoCancel(&Main(), "続けますか？", "題", "今後表示しない",
                                                                  checked, "はい", "いいえ", "キャンセル"),
              2);
    EXPECT_NE(checked, before);
  }
}

TEST_F(Alerts, TheMenuIsOffUntilTheOuterOneIsClosed) {
  alerts.Hold(true);
  unsigned counts[2] = {};
  std::unique_ptr<Meanwhile> inner;
  const Meanwhile outer([] { return platform::AlertIsOpen(); },
                        [&] {
                          counts[0] = LMainMenu::uRefCount;
                          inner = std::make_unique<Meanwhile>([] { return LMainMenu::uRefCount == 2; },
                                                              [&] {
                                                                counts[1] = LMainMenu::uRefCount;
                                                                platform::AlertDismiss();
                                                              });
                          Alert::DisplayOkInfo(&Main(), "内側", "題", "OK");
                          EXPECT_EQ(LMainMenu::uRefCount, 1u);
                          platform::AlertDismiss();
                        });
  Alert::DisplayOkInfo(&Main(), "外側", "題", "OK");
  alerts.Hold(false);
  EXPECT_EQ(counts[0], 1u);
  EXPECT_EQ(counts[1], 2u);
}

TEST_F(Alerts, AHiddenWindowIsShownFirst) {
  platform::WindowShow(Window(), false);
  alerts.Expect("見えますか", "OK");
  Alert::DisplayOkError(&Main(), "見えますか", "題", "OK");
  EXPECT_TRUE(platform::WindowIsVisible(Window()));
}

}  // namespace
