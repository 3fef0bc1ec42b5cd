// A server that refuses the stored password, and the dialog that asks for another one.
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
    MakeRemote("a.txt", "x");
    server = std::make_unique<PaneServer>(Remote());
    KeepSite(server->Address(), "wrong");
    OpenProgram();
  }
  void ExpectRefusals(int count) {
    for (; count > 0; --count) alerts.Expect("サーバーにログインできません。", "続行");
  }
  bool IsAsking() const { return Dialog(kLoginTitle) != nullptr; }
  std::string KeptPassword() const { return Field(OpenSite(kSite, server->Address().c_str(), "0"), "Password"); }
};

TEST_F(Login, ShowsServerAndUserAndTakesAPassword) {
  ExpectRefusals(1);
  StartWithWrongPassword();
  const Meanwhile answer([&] { return IsAsking(); },
                         [&] {
                           platform::Window* dialog = Dialog(kLoginTitle);
                           EXPECT_EQ(ui::Text(dialog, kServerField), server->Address());
                           EXPECT_EQ(ui::Text(dialog, kUserField), "anna");
                           EXPECT_EQ(ui::Text(dialog, kPasswordField), "");
                           EXPECT_FALSE(platform::ControlIsEnabled(dialog, kServerField));
                           EXPECT_EQ(LMainMenu::uRefCount, 1u);
                           ui::TypeAndReturn(dialog, kPasswordField, PaneServer::Password());
                         });
  ASSERT_TRUE(ui::WaitUntil([&] { return Setting("CurrentRunHadUpload") == "0"; }));
  EXPECT_TRUE(answer.Acted());
  EXPECT_TRUE(Main().remotePane.bConnected);
  EXPECT_EQ(KeptPassword(), PaneServer::Password());
  EXPECT_THAT(Messages(),
              Contains("ユーザーログインに失敗しました。ユーザー名とパスワードが正しいことを確認してください。"));
}

TEST_F(Login, AsksAgainWhenTheNewPasswordIsRefusedToo) {
  ExpectRefusals(2);
  StartWithWrongPassword();
  std::unique_ptr<Meanwhile> second;
  std::string keptBetween;
  const Meanwhile first([&] { return IsAsking(); },
                        [&] {
                          const platform::Window* asking = Dialog(kLoginTitle);
                          // The dialog of the second question is a new one, or the old one's field is empty again.
                          second = std::make_unique<Meanwhile>(
                              [&, asking] {
                                return IsAsking() && (Dialog(kLoginTitle) != asking ||
                                                      ui::Text(Dialog(kLoginTitle), kPasswordField).empty());
                              },
                              [&] {
                                keptBetween = KeptPassword();
                                ui::TypeAndReturn(Dialog(kLoginTitle), kPasswordField, PaneServer::Password());
                              });
                          ui::TypeAndReturn(Dialog(kLoginTitle), kPasswordField, "wrong too");
                        });
  ASSERT_TRUE(ui::WaitUntil([&] { return Setting("CurrentRunHadUpload") == "0"; }));
  EXPECT_TRUE(second && second->Acted());
  EXPECT_EQ(keptBetween, "wrong too");
  EXPECT_TRUE(Main().remotePane.bConnected);
}

TEST_F(Login, CancelledLeavesTheSiteAsItWasAndForgetsThatItIsCurrent) {
  ExpectRefusals(1);
  StartWithWrongPassword();
  const Meanwhile answer([&] { return IsAsking(); },
                         [&] { EXPECT_TRUE(ui::Press(Dialog(kLoginTitle), kCommandCancel)); });
  ASSERT_TRUE(ui::WaitUntil([&] { return Setting("CurrentRunHadUpload") == "0"; }));
  EXPECT_TRUE(answer.Acted());
  EXPECT_FALSE(Main().remotePane.bConnected);
  EXPECT_EQ(KeptPassword(), "wrong");
  EXPECT_EQ(Setting("Current"), kAbsent);
  EXPECT_EQ(Messages().back(), "接続ボタンをクリックしてサイトに接続する");
  EXPECT_THAT(StatusBar(), HasSubstr("FTPサイトに接続されていません"));
  EXPECT_THAT(Names(kRemoteList), IsEmpty());
}

TEST_F(Login, EscapeCancels) {
  ExpectRefusals(1);
  StartWithWrongPassword();
  const Meanwhile answer([&] { return IsAsking(); }, [&] { ui::Key(Dialog(kLoginTitle), 0x01000000); });
  ASSERT_TRUE(ui::WaitUntil([&] { return Setting("CurrentRunHadUpload") == "0"; }));
  EXPECT_FALSE(Main().remotePane.bConnected);
}

}  // namespace
