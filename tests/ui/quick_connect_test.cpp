// Quick connect, saved and not saved.
#include "support/scripted_server.h"
#include "ui/site_fixture.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

using Q = LQuickConnectDlg;

class QuickConnect : public SiteTest {
 protected:
  void StartWithServer() {
    MakeRemote("a.txt", "x");
    server = std::make_unique<PaneServer>(Remote());
    StartProgram();
  }
  void OpenQuick(Steps::Action action) {
    Steps steps;
    steps.In(kQuick, std::move(action));
    PressTool(platform::kMainToolBar, kCommandQuickConnect);
    EXPECT_TRUE(steps.AreDone());
  }
  void FillServer(platform::Window* dialog, const char* password = PaneServer::Password()) {
    Fill(dialog, Q::kServer, Host());
    Fill(dialog, Q::kPort, Port());
    Fill(dialog, Q::kUser, PaneServer::User());
    Fill(dialog, Q::kPassword, password);
  }
};

TEST_F(QuickConnect, UnsavedConnectsAndLeavesNoSite) {
  StartWithServer();
  OpenQuick([&](platform::Window* dialog) {
    EXPECT_FALSE(platform::ControlIsEnabled(dialog, Q::kSavePassword));
    EXPECT_EQ(platform::ComboCount(dialog, Q::kProtection), 3);
    FillServer(dialog);
    ui::Key(dialog, Qt::Key_Return);
  });
  EXPECT_TRUE(Main().remotePane.bConnected);
  EXPECT_THAT(Names(kRemoteList), ElementsAre("a.txt"));
  EXPECT_EQ(Setting("Current"), "クイック接続");
  EXPECT_EQ(Setting("CurrentServer"), server->Address());
  EXPECT_EQ(Setting("CurrentUser"), "anna");
  EXPECT_THAT(Sites(), IsEmpty());
  EXPECT_TRUE(ui::WaitUntil([&] { return StatusBar().find("にannaとして接続中") != std::string::npos; }, 2000));
  ExpectUsable();
  EXPECT_THAT(Sites(), IsEmpty()) << "the folders of an unsaved session are not kept";
  EXPECT_EQ(CloseProgram(), 0);
  EXPECT_EQ(Setting("Current"), kAbsent) << "the next start does not reconnect";
}

TEST_F(QuickConnect, SavedIsASiteWithTheNextNumber) {
  StartWithServer();
  for (const char* label : {"クイック接続 1", "クイック接続 3"}) KeepRecord(label, kNowhere, "anna");
  OpenQuick([&](platform::Window* dialog) {
    FillServer(dialog);
    Press(dialog, Q::kSave);
    EXPECT_TRUE(platform::ControlIsEnabled(dialog, Q::kSavePassword));
    Press(dialog, Q::kSavePassword);
    Press(dialog, kCommandOk);
  });
  EXPECT_TRUE(Main().remotePane.bConnected);
  EXPECT_EQ(Setting("Current"), "クイック接続 2");
  const LSharedSettingsRecord site = OpenSite("クイック接続 2", server->Address().c_str(), "0");
  EXPECT_EQ(Field(site, "Password"), PaneServer::Password());
  EXPECT_EQ(Field(site, "RemP"), "1");
  EXPECT_EQ(Field(site, "UseSFTP"), "0");
  EXPECT_EQ(Field(site, "UseRecentRemote"), kAbsent);
  EXPECT_EQ(Field(site, "RecentRemoteDirectory"), "/");
  EXPECT_EQ(CloseProgram(), 0);
  EXPECT_EQ(Setting("Current"), kAbsent);
}

TEST_F(QuickConnect, ASavedSiteStaysThoughItCannotBeConnected) {
  StartProgram();
  for (const char* label : {"クイック接続 1", "クイック接続 2"}) {
    // Twice: an anonymous logon is tried with the built-in password, too.
    for (int i = 0; i < 2; ++i) alerts.Expect("サーバーに接続できません", "続行");
    Steps steps;
    steps
        .In(kQuick,
            [&](platform::Window* dialog) {
              Fill(dialog, Q::kServer, kNowhere);
              Press(dialog, Q::kSave);
              Press(dialog, kCommandOk);
            })
        .In("ユーザーログイン", [&](platform::Window* dialog) { Press(dialog, kCommandCancel); });
    PressTool(platform::kMainToolBar, kCommandQuickConnect);
    EXPECT_EQ(alerts.Complaints(), "");
    EXPECT_EQ(Field(OpenSite(label, kNowhere, "0"), "UserName"), "anonymous");
  }
  EXPECT_EQ(AccountsNumSites(), 2);
  EXPECT_EQ(Setting("Current"), kAbsent);
}

TEST_F(QuickConnect, RefusalsKeepTheDialogOpen) {
  StartProgram();
  const Texts before = All();
  OpenQuick([&](platform::Window* dialog) {
    const auto refused = [&](int field, const char* tip) {
      Press(dialog, kCommandOk);
      EXPECT_EQ(ui::ModalWindow(), dialog);
      EXPECT_THAT(ui::BubbleTip(), HasSubstr(tip));
      EXPECT_TRUE(dialog->Control(field)->hasFocus());
    };
    for (const char* text : {"", "localhost"}) {
      Fill(dialog, Q::kServer, text);
      refused(Q::kServer, "FTPサーバーを入力してください。ドメイン形式（例：");
    }
    Fill(dialog, Q::kServer, kNowhere);
    Press(dialog, Q::kSave);
    Press(dialog, Q::kSavePassword);
    refused(Q::kPassword, "「パスワードを記憶する」が選択されましたがパスワードが入力されていません。");
    Press(dialog, kCommandCancel);
  });
  EXPECT_EQ(All(), before);
}

TEST_F(QuickConnect, AnOpenConnectionIsLeftOnlyWhenTheUserAgrees) {
  StartConnected();
  const std::string question = std::string(kSite) + "にannaとして接続されています。\n切断してもよろしいですか？";
  for (const auto& [answer, current] : {std::pair("キャンセル", kSite), {"切断", "クイック接続"}}) {
    alerts.Expect(question, answer);
    OpenQuick([&](platform::Window* dialog) {
      FillServer(dialog);
      Press(dialog, kCommandOk);
    });
    EXPECT_EQ(Setting("Current"), current);
    EXPECT_TRUE(Main().remotePane.bConnected);
  }
}

TEST_F(QuickConnect, AnonymousStartsInTheFolderOfThePathBox) {
  StartProgram();
  ScriptedServer scripted;
  scripted.Greet("220 Ready");
  scripted.Expect("USER anonymous").Reply("530 Nobody");
  scripted.AllowUnusedSteps();
  const std::string address = scripted.Address();
  alerts.Expect("サーバーにログインできません。", "続行");
  alerts.Expect("サーバーにログインできません。", "続行");
  Steps steps;
  steps
      .In(kQuick,
          [&](platform::Window* dialog) {
            Fill(dialog, Q::kServer, address.substr(0, address.find(':')));
            Fill(dialog, Q::kPort, address.substr(address.find(':') + 1));
            Press(dialog, kCommandOk);
          })
      .In("ユーザーログイン", [&](platform::Window* dialog) {
        EXPECT_EQ(ui::Text(dialog, 107), "anonymous");
        Press(dialog, kCommandCancel);
      });
  PressTool(platform::kMainToolBar, kCommandQuickConnect);
  EXPECT_THAT(scripted.Commands(), ElementsAre("USER anonymous"));
  EXPECT_FALSE(Main().remotePane.bConnected);
  EXPECT_EQ(Setting("Current"), kAbsent);
  (void)scripted.TakeProblems();  // The second try met a script that was over.
}

TEST_F(QuickConnect, AWrongPasswordIsAskedForAgain) {
  StartWithServer();
  alerts.Expect("サーバーにログインできません。", "続行");
  Steps steps;
  steps
      .In(kQuick,
          [&](platform::Window* dialog) {
            FillServer(dialog, "wrong");
            Press(dialog, kCommandOk);
          })
      .In("ユーザーログイン", [&](platform::Window* dialog) {
        EXPECT_TRUE(dialog->Control(109)->hasFocus());
        ui::TypeAndReturn(dialog, 109, PaneServer::Password());
      });
  PressTool(platform::kMainToolBar, kCommandQuickConnect);
  EXPECT_TRUE(Main().remotePane.bConnected);
  ExpectUsable();
  EXPECT_THAT(Sites(), IsEmpty()) << "the new password has no site to be kept with";
}

}  // namespace
