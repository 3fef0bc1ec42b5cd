// A server that refuses the stored password, and the dialog that asks for another one.
#include <Qt>
#include <memory>

#include "support/window/menus.h"
#include "ui/window_fixture.h"

namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* kLoginTitle = "ユーザーログイン";
constexpr int kServerField = 104;
constexpr int kUserField = 107;
constexpr int kPasswordField = 109;

class Login : public WindowTest {
 protected:
  void StartWithWrongPassword() {
    Serve("wrong");
    OpenProgram();
  }
  void ExpectRefusals(int count) {
    for (; count > 0; --count) alerts.Expect("サーバーにログインできません。", "続行");
  }
};

TEST_F(Login, ShowsServerAndUserAndTakesAPassword) {
  ExpectRefusals(1);
  StartWithWrongPassword();
  const auto answer = InLogin([&](platform::Window* dialog) {
    EXPECT_EQ(ui::Text(dialog, kServerField), server->Address());
    EXPECT_EQ(ui::Text(dialog, kUserField), "anna");
    EXPECT_EQ(ui::Text(dialog, kPasswordField), "");
    EXPECT_FALSE(platform::ControlIsEnabled(dialog, kServerField));
    EXPECT_EQ(LMainMenu::uRefCount, 1u);
    ui::TypeAndReturn(dialog, kPasswordField, PaneServer::Password());
  });
  ASSERT_TRUE(WaitForTheStart());
  EXPECT_TRUE(answer->Acted());
  EXPECT_TRUE(Main().remotePane.bConnected);
  EXPECT_EQ(SiteField("Password"), PaneServer::Password());
  EXPECT_THAT(Messages(),
              Contains("ユーザーログインに失敗しました。ユーザー名とパスワードが正しいことを確認してください。"));
}

TEST_F(Login, AsksAgainWhenTheNewPasswordIsRefusedToo) {
  ExpectRefusals(2);
  StartWithWrongPassword();
  std::unique_ptr<Meanwhile> second;
  std::string keptBetween;
  const auto first = InLogin([&](platform::Window* asking) {
    // The dialog of the second question is a new one, or the old one's field is empty again.
    second = std::make_unique<Meanwhile>(
        [asking] {
          platform::Window* dialog = Dialog(kLoginTitle);
          return dialog && (dialog != asking || ui::Text(dialog, kPasswordField).empty());
        },
        [&] {
          keptBetween = SiteField("Password");
          ui::TypeAndReturn(Dialog(kLoginTitle), kPasswordField, PaneServer::Password());
        });
    ui::TypeAndReturn(asking, kPasswordField, "wrong too");
  });
  ASSERT_TRUE(WaitForTheStart());
  EXPECT_TRUE(second && second->Acted());
  EXPECT_EQ(keptBetween, "wrong too");
  EXPECT_TRUE(Main().remotePane.bConnected);
}

TEST_F(Login, CancelledLeavesTheSiteAsItWasAndForgetsThatItIsCurrent) {
  ExpectRefusals(1);
  StartWithWrongPassword();
  const auto answer = InLogin([](platform::Window* dialog) { ui::Key(dialog, Qt::Key_Escape); });
  ASSERT_TRUE(WaitForTheStart());
  EXPECT_TRUE(answer->Acted());
  EXPECT_FALSE(Main().remotePane.bConnected);
  EXPECT_EQ(SiteField("Password"), "wrong");
  EXPECT_EQ(Setting("Current"), kAbsent);
  EXPECT_EQ(Messages().back(), "接続ボタンをクリックしてサイトに接続する");
  EXPECT_THAT(StatusBar(), HasSubstr("FTPサイトに接続されていません"));
  EXPECT_THAT(Names(kRemoteList), IsEmpty());
}

}  // namespace
