// The list of sites, and the way from it to a connection.
#include <QApplication>
#include <QContextMenuEvent>

#include "platform/qt/list_control.h"
#include "ui/site_fixture.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

using Dlg = SiteManagerDlg;

class SiteManager : public SiteTest {
 protected:
  static void SelectRow(platform::Window* dialog, int row) { platform::ListSetCurrent(dialog, Dlg::kList, row); }
  static Texts Cells(platform::Window* dialog, int column) { return ui::Column(dialog, Dlg::kList, column); }
  static std::vector<int> Enabled(platform::Window* dialog) {
    std::vector<int> on;
    for (const int id : {int(Dlg::kAdd), int(Dlg::kProperties), int(Dlg::kDelete), int(Dlg::kDisconnect), kCommandOk}) {
      if (platform::ControlIsEnabled(dialog, id)) on.push_back(id);
    }
    return on;
  }
};

TEST_F(SiteManager, ListsEverySiteWithTheLabelOnItsFirstRow) {
  StartConnected({"a.txt"});
  KeepRecord("会社", "b.example.jp", "ben");
  KeepRecord("会社", "b.example.jp", "cleo", "1");
  OpenSite("会社", "b.example.jp", "1").SetString("UseRecentRemote", "1");
  OpenSite("会社", "b.example.jp", "1").SetString("Domain", "TOKYO");
  OpenManager([&](platform::Window* dialog) {
    EXPECT_THAT(Cells(dialog, Dlg::kLabel), ElementsAre(kSite, "会社", ""));
    EXPECT_THAT(Cells(dialog, Dlg::kServer), ElementsAre(server->Address(), "b.example.jp", "b.example.jp"));
    EXPECT_THAT(Cells(dialog, Dlg::kUser), ElementsAre("anna", "ben", "TOKYO/cleo"));
    EXPECT_THAT(Cells(dialog, Dlg::kDirectory), ElementsAre("/", "/pub", ""));
    EXPECT_THAT(Cells(dialog, Dlg::kState), ElementsAre("接続", "切断", "切断"));
    Press(dialog, kCommandCancel);
  });
}

TEST_F(SiteManager, ButtonsFollowTheSelection) {
  StartConnected();
  KeepRecord("会社", "b.example.jp", "ben");
  OpenManager([&](platform::Window* dialog) {
    EXPECT_THAT(Enabled(dialog), ElementsAre(Dlg::kAdd));
    ui::Key(dialog, Qt::Key_Down);
    EXPECT_TRUE(platform::ListIsSelected(dialog, Dlg::kList, 0)) << "the list has the keyboard";
    EXPECT_THAT(Enabled(dialog), ElementsAre(Dlg::kAdd, Dlg::kProperties, Dlg::kDisconnect, kCommandOk));
    EXPECT_EQ(ui::Text(dialog, kCommandOk), "再接続");
    ui::Key(dialog, Qt::Key_Down);
    EXPECT_THAT(Enabled(dialog), ElementsAre(Dlg::kAdd, Dlg::kProperties, Dlg::kDelete, kCommandOk));
    EXPECT_EQ(ui::Text(dialog, kCommandOk), "接続");
    ui::Key(dialog, Qt::Key_Escape);
  });
  EXPECT_EQ(ui::ModalWindow(), nullptr);
}

TEST_F(SiteManager, ReturnConnectsTheRow) {
  MakeRemote("a.txt", "x");
  Serve();
  Put("Settings/Current", "");
  StartProgram();
  OpenManager([&](platform::Window* dialog) {
    ui::Key(dialog, Qt::Key_Down);
    ui::Key(dialog, Qt::Key_Return);
  });
  EXPECT_TRUE(Main().remotePane.bConnected);
  EXPECT_THAT(Names(kRemoteList), Contains("a.txt"));
  EXPECT_EQ(Setting("Current"), kSite);
}

TEST_F(SiteManager, ReconnectAsksFirstAndDisconnectLeavesTheDialogOpen) {
  StartConnected();
  alerts.Expect(std::string("現在") + kSite + "に接続されています。再接続しますか？", "再接続する");
  OpenManager([&](platform::Window* dialog) {
    SelectRow(dialog, 0);
    Press(dialog, kCommandOk);
  });
  EXPECT_TRUE(Main().remotePane.bConnected);
  ExpectUsable();
  OpenManager([&](platform::Window* dialog) {
    SelectRow(dialog, 0);
    Press(dialog, Dlg::kDisconnect);
    EXPECT_FALSE(Main().remotePane.bConnected);
    EXPECT_THAT(Cells(dialog, Dlg::kState), ElementsAre("切断"));
    EXPECT_TRUE(dialog->Control(Dlg::kList)->hasFocus());
    Press(dialog, kCommandCancel);
  });
  EXPECT_EQ(Setting("Current"), kAbsent);
}

TEST_F(SiteManager, AddsASiteAndEditsIt) {
  StartProgram();
  Steps steps;
  steps
      .In(kManager,
          [&](platform::Window* dialog) {
            EXPECT_THAT(Cells(dialog, Dlg::kLabel), IsEmpty());
            Press(dialog, Dlg::kAdd);
          })
      .In(kNewSheet,
          [&](platform::Window* sheet) {
            FillSite(sheet, kNowhere, "2121", "anna", "secret");
            Fill(Advanced(sheet), LSPAdvancedPage::kLabel, "会社");
            PressOkToNowhere(sheet);
          })
      .In(kManager,
          [&](platform::Window* dialog) {
            EXPECT_THAT(Cells(dialog, Dlg::kLabel), ElementsAre("会社"));
            EXPECT_THAT(Cells(dialog, Dlg::kServer), ElementsAre(std::string(kNowhere) + ":2121"));
            EXPECT_THAT(Cells(dialog, Dlg::kDirectory), ElementsAre(""));
            SelectRow(dialog, 0);
            Press(dialog, Dlg::kProperties);
          })
      .In(kSheet,
          [&](platform::Window* sheet) {
            platform::Window* page = General(sheet);
            EXPECT_EQ(ui::Text(page, LSPGeneralPage::kServer), kNowhere);
            EXPECT_EQ(ui::Text(page, LSPGeneralPage::kPort), "2121");
            EXPECT_EQ(ui::Text(page, LSPGeneralPage::kUser), "anna");
            EXPECT_EQ(ui::Text(page, LSPGeneralPage::kPassword), "secret");
            EXPECT_EQ(ui::Text(sheet, kCommandOk), "サイトを保存 ");
            EXPECT_EQ(ui::Text(Advanced(sheet), LSPAdvancedPage::kLabel), "会社");
            Fill(ui::Page(sheet, 1), LSPAdvancedPage::kLabel, "学校");
            ui::PressTab(sheet, 0);
            Fill(page, LSPGeneralPage::kUser, "ben");
            PressOkToNowhere(sheet);
          })
      .In(kManager, [&](platform::Window* dialog) {
        EXPECT_THAT(Cells(dialog, Dlg::kLabel), ElementsAre("学校"));
        EXPECT_THAT(Cells(dialog, Dlg::kUser), ElementsAre("ben"));
        EXPECT_TRUE(platform::ListIsSelected(dialog, Dlg::kList, 0));
        Press(dialog, kCommandCancel);
      });
  PressTool(platform::kMainToolBar, kCommandSites);
  EXPECT_EQ(AccountsNumSites(), 1);
}

TEST_F(SiteManager, PropertiesOfAFurtherRowTakeTheLabelOfTheFirst) {
  KeepRecord("会社", kNowhere, "anna");
  KeepRecord("会社", kNowhere, "ben", "1");
  StartProgram();
  Steps sheet;
  OpenManager([&](platform::Window* dialog) {
    SelectRow(dialog, 1);
    sheet.In(kSheet, [&](platform::Window* properties) {
      EXPECT_EQ(ui::Text(General(properties), LSPGeneralPage::kUser), "ben");
      EXPECT_EQ(ui::Text(Advanced(properties), LSPAdvancedPage::kLabel), "会社");
      EXPECT_EQ(ui::Text(ui::Page(properties, 1), LSPAdvancedPage::kRemoteStart), "/pub");
      Press(properties, kCommandCancel);
    });
    Press(dialog, Dlg::kProperties);
    Press(dialog, kCommandCancel);
  });
}

TEST_F(SiteManager, DeletesTheSelectionButNotTheConnectedSite) {
  StartConnected();
  KeepRecord("会社", "b.example.jp", "ben");
  KeepRecord("会社", "b.example.jp", "cleo", "1");
  KeepRecord("学校", "c.example.jp", "dora");
  OpenSite("学校", "c.example.jp", "0").SetString("Domain", "TOKYO");  // No part of the user that is deleted.
  const Texts before = Sites();
  OpenManager([&](platform::Window* dialog) {
    SelectRow(dialog, 1);
    alerts.Expect("選択したサイトを削除します。よろしいですか？", "キャンセル");
    Press(dialog, Dlg::kDelete);
    EXPECT_EQ(Sites(), before);

    for (const int row : {0, 2}) platform::ListSelect(dialog, Dlg::kList, row, true);
    alerts.Expect("選択したサイトを削除します。よろしいですか？", "削除");
    alerts.Expect(std::string("以下の接続サイトを削除できません：Cannot delete connected site \"") + kSite + "\\" +
                      server->Address() + "\\anna\"。サイトの切断を行ってください。",
                  "OK");
    Press(dialog, Dlg::kDelete);
    EXPECT_THAT(Cells(dialog, Dlg::kLabel), ElementsAre(kSite, "学校"));
    EXPECT_TRUE(platform::ListIsSelected(dialog, Dlg::kList, 1));

    alerts.Expect("選択したサイトを削除します。よろしいですか？", "削除");
    Press(dialog, Dlg::kDelete);
    EXPECT_THAT(Cells(dialog, Dlg::kLabel), ElementsAre(kSite));
    EXPECT_TRUE(platform::ListIsSelected(dialog, Dlg::kList, 0)) << "the last row, for the list is shorter";
    Press(dialog, kCommandCancel);
  });
  EXPECT_EQ(AccountsNumSites(), 1);
  for (const std::string& key : Sites()) EXPECT_THAT(key, testing::StartsWith(std::string("FTPAccounts/") + kSite));
}

TEST_F(SiteManager, TheContextMenuDoesWhatTheButtonsDo) {
  StartConnected();
  KeepRecord("会社", "b.example.jp", "ben");
  OpenManager([&](platform::Window* dialog) {
    SelectRow(dialog, 1);
    alerts.Expect("選択したサイトを削除します。", "削除");
    ui::ChooseFromNextMenu("サイトを削除する");
    auto* list = dialog->List(Dlg::kList);
    QContextMenuEvent menu(QContextMenuEvent::Keyboard, QPoint(20, 30), list->mapToGlobal(QPoint(20, 30)));
    QApplication::sendEvent(list, &menu);
    EXPECT_TRUE(ui::WaitUntil([&] { return Cells(dialog, Dlg::kLabel).size() == 1; }, 2000));
    SelectRow(dialog, 0);
    ui::ChooseFromNextMenu("切断");
    QApplication::sendEvent(list, &menu);
    EXPECT_TRUE(ui::WaitUntil([&] { return !Main().remotePane.bConnected; }, 2000));
    Press(dialog, kCommandCancel);
  });
}

TEST_F(SiteManager, ComesBackInTheSizeItHad) {
  StartProgram();
  OpenManager([&](platform::Window* dialog) {
    EXPECT_EQ(dialog->size(), QSize(960, 449));
    dialog->resize(1100, 600);
    ui::Pump(20);
    Press(dialog, kCommandCancel);
  });
  OpenManager([&](platform::Window* dialog) {
    EXPECT_EQ(dialog->size(), QSize(1100, 600));
    dialog->resize(10, 10);
    ui::Pump(20);
    EXPECT_EQ(dialog->size(), dialog->minimumSize());
    Press(dialog, kCommandCancel);
  });
}

TEST_F(SiteManager, TheProgramEndsWithTheSheetOpen) {
  StartProgram();
  Steps steps;
  steps.In(kManager, [&](platform::Window* dialog) { Press(dialog, Dlg::kAdd); }).In(kNewSheet, [&](platform::Window*) {
    Main().CloseMainWindow();
  });
  PressTool(platform::kMainToolBar, kCommandSites);
  ASSERT_TRUE(steps.AreDone());
  EXPECT_EQ(platform::ApplicationRun(), 0);
  delegate.reset();
}

// The menus of sites

TEST_F(SiteManager, TheMenusOfSitesOpenTheSheet) {
  StartConnected();
  Steps steps;
  steps.In(kSheet, [&](platform::Window* sheet) {
    EXPECT_EQ(ui::Text(General(sheet), LSPGeneralPage::kUser), "anna");
    Press(sheet, kCommandCancel);
  });
  Main().Command(kCommandSitePropertiesBase + 1, 0);
  EXPECT_TRUE(steps.AreDone());
  steps.In(kNewSheet, [&](platform::Window* sheet) { Press(sheet, kCommandCancel); });
  ui::ChooseFromNextMenu("新規サイト ...");
  Main().Command(kCommandConnectMenu, 0);
  EXPECT_TRUE(ui::WaitUntil([&] { return steps.AreDone() && !ui::ModalWindow(); }));
  EXPECT_TRUE(Main().remotePane.bConnected) << "a cancelled sheet leaves the connection";
}

TEST_F(SiteManager, ANewSiteOfTheMenuIsConnected) {
  StartConnected({"a.txt"});
  Steps steps;
  steps.In(kNewSheet, [&](platform::Window* sheet) {
    FillSite(sheet, Host(), Port(), PaneServer::User(), PaneServer::Password());
    Fill(Advanced(sheet), LSPAdvancedPage::kLabel, "あたらしい");
    alerts.Expect("ログイン詳細に問題はありません。", "OK");
    alerts.Expect(std::string(kSite) + "にannaとして接続されています。\n切断してもよろしいですか？", "切断");
    Press(sheet, kCommandOk);
  });
  Main().Command(kCommandNewSite, 0);
  EXPECT_TRUE(Main().remotePane.bConnected);
  EXPECT_EQ(Setting("Current"), "あたらしい");
  EXPECT_THAT(Names(kRemoteList), ElementsAre("a.txt"));
}

// The first start

TEST_F(SiteManager, TheFirstStartAsksForASiteAndConnectsToIt) {
  MakeRemote("a.txt", "x");
  server = std::make_unique<PaneServer>(Remote());
  Steps steps;
  steps.In(kNewSheet, [&](platform::Window* sheet) {
    EXPECT_EQ(ui::Text(sheet, kCommandOk), "サイトを追加");
    EXPECT_TRUE(platform::ControlGetCheck(General(sheet), LSPGeneralPage::kRemember));
    EXPECT_TRUE(General(sheet)->Control(LSPGeneralPage::kServer)->hasFocus());
    FillSite(sheet, Host(), Port(), PaneServer::User(), PaneServer::Password());
    alerts.Expect("ファイルを削除しました。", "OK");
    Press(sheet, kCommandOk);
  });
  OpenProgram();
  ASSERT_TRUE(WaitForTheStart());
  EXPECT_TRUE(Main().remotePane.bConnected);
  EXPECT_EQ(Setting("Current"), "サイト1");
  EXPECT_THAT(Names(kRemoteList), ElementsAre("a.txt"));
  const LSharedSettingsRecord site = OpenSite("サイト1", server->Address().c_str(), "0");
  EXPECT_EQ(Field(site, "UserName"), "anna");
  EXPECT_EQ(Field(site, "Password"), PaneServer::Password());
  EXPECT_EQ(Field(site, "RemP"), "1");
  EXPECT_EQ(Field(site, "LocalDirectory"), Documents());
  EXPECT_THAT(Messages(), Contains("接続ボタンをクリックしてサイトに接続する"));
}

}  // namespace
