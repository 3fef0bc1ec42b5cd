// The sheet of a site: what it refuses, what it asks, and what it stores.
#include <QAbstractButton>
#include <QFileDialog>
#include <QLineEdit>
#include <QRegularExpression>

#include "ui/screens.h"
#include "ui/site_fixture.h"

namespace {

using testing::HasSubstr;
using testing::IsEmpty;

using G = LSPGeneralPage;
using A = LSPAdvancedPage;

constexpr const char* kServerMissing =
    "転送先のFTPサーバーを入力してください。ドメイン形式（例：ftp.example.com）またはIP形式（例：192.168.0.32.）"
    "で入力してください。";
constexpr const char* kServerWrong =
    "FTPサーバーを入力してください。ドメイン形式（例：ftp.example.com）またはIP形式（例：192.168.0.32.）で入力して"
    "ください。";
constexpr const char* kFolderWrong = "正しいフォルダを選択してください。";
constexpr const char* kSlash = "サイト名にスラッシュ（/）は使えません。";

class SiteSheet : public SiteTest {
 protected:
  /// A field of either page, which comes to the front.
  static platform::Window* PageOf(platform::Window* sheet, int field) {
    const int page = field > 13000 ? 1 : 0;
    ui::PressTab(sheet, page);
    return ui::Page(sheet, page);
  }
  static void FillField(platform::Window* sheet, int field, const std::string& text) {
    platform::Window* page = PageOf(sheet, field);
    if (field == A::kRemoteStart) Press(page, A::kRemoteFixed);
    if (field == A::kLocalStart) Press(page, A::kLocalFixed);
    Fill(page, field, text);
  }
  /// OK is refused with a tip, the field's page is in front, and the field has the keyboard.
  static void ExpectRefused(platform::Window* sheet, int field, const std::string& tip) {
    Press(sheet, kCommandOk);
    EXPECT_EQ(ui::ModalWindow(), sheet) << "the sheet closed";
    EXPECT_THAT(ui::BubbleTip(), HasSubstr(tip)) << field;
    platform::Window* page = ui::Page(sheet, field > 13000 ? 1 : 0);
    EXPECT_TRUE(page->isVisible() && page->Control(field)->hasFocus()) << field;
  }
  static std::string Long() { return std::string(10000, 'a'); }
};

TEST_F(SiteSheet, RefusalsOfANewSiteStoreNothing) {
  KeepRecord("会社", "b.example.jp", "ben");
  StartProgram();
  const Texts before = Sites();
  const struct {
    int field;
    std::string text;
    const char* tip;
  } rows[] = {
      {G::kServer, "   ", kServerMissing},
      {G::kServer, "localhost", kServerWrong},
      {A::kLabel, "a/b", kSlash},
      {A::kLabel, "a\\b", kSlash},
      {A::kLabel, "会社", "未使用のサイト名を入力してください。"},
      {A::kLabel, Long(), "サイト名とサーバー名が長すぎます。"},
      {A::kLocalStart, "", kFolderWrong},
      {A::kLocalStart, "/no/such/folder", kFolderWrong},
  };
  OpenSheet([&](platform::Window* sheet) {
    Fill(General(sheet), G::kUser, "anna");
    for (const auto& row : rows) {
      Fill(PageOf(sheet, G::kServer), G::kServer, kNowhere);
      FillField(sheet, A::kLabel, "");
      FillField(sheet, A::kLocalStart, Local());
      FillField(sheet, row.field, row.text);
      ExpectRefused(sheet, row.field, row.tip);
      EXPECT_EQ(Sites(), before) << row.text.substr(0, 40);
    }
    Press(sheet, kCommandCancel);
  });
}

TEST_F(SiteSheet, TakesWhatItDoesNotJudge) {
  StartProgram();
  const std::string cut = Long().substr(0, kTextSize - 1);
  const struct {
    int field;
    std::string text;
    const char* stored;
    std::string value;  ///< Of a port, what stands behind the server.
  } rows[] = {
      {G::kUser, Long(), "UserName", cut},
      {G::kUser, "an\r\nna\n", "UserName", "an\r\nna"},
      {G::kUser, "", "UserName", "anonymous"},
      {G::kPassword, Long(), "Password", cut},
      {G::kPassword, " 秘密\n", "Password", "秘密"},
      {G::kPassword, "😀\u202E", "Password", "😀\u202E"},
      {G::kPassword, "", "Password", ""},
      {G::kPort, "65536", "Server", ":65536"},
      {G::kPort, "-1", "Server", ":-1"},
      {G::kPort, "", "Server", ""},
      {G::kPort, "😀", "Server", ":"},
      {G::kPort, " 21\n", "Server", ":21"},
      {G::kPort, "2121212", "Server", ":21212"},
      {G::kPort, "2 1", "Server", ":2"},
      {A::kLabel, "  ", "Server", "サイト1"},
      {A::kLabel, "行\n末\n", "Server", "行\n末"},
      {A::kLabel, "\u202Ecba😀", "Server", "\u202Ecba😀"},
      {A::kRemoteStart, "", "Directory", ""},
      {A::kRemoteStart, Long(), "Directory", cut},
      {A::kRemoteStart, "/a\r\nDELE b", "Directory", "/a\r\nDELE b"},
      {A::kRemoteStart, "/\u202E資料😀", "Directory", "/\u202E資料😀"},
      {A::kLocalStart, " " + Local() + "\n", "LocalDirectory", Local()},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.stored + (" " + row.text.substr(0, 20)));
    LUserSettingDeleteSection(kAccountsSection);
    const char* label = OpenSheet([&](platform::Window* sheet) {
      Fill(General(sheet), G::kServer, kNowhere);
      FillField(sheet, row.field, row.text);
      PressOkToNowhere(sheet);
    });
    ASSERT_STREQ(label, row.field == A::kLabel ? row.value.c_str() : "サイト1");
    const std::string address = kNowhere + (row.field == G::kPort ? row.value : "");
    const LSharedSettingsRecord site = OpenSite(label, address.c_str(), "0");
    EXPECT_EQ(Field(site, row.stored), strcmp(row.stored, "Server") == 0 ? address : row.value);
    const bool hasPassword = row.field == G::kPassword && !row.text.empty();
    EXPECT_EQ(Field(site, "RemP"), hasPassword ? "1" : "0");
  }
}

TEST_F(SiteSheet, AnAddressLosesSchemeAndPortAndItsPathBecomesTheFolder) {
  StartProgram();
  OpenSheet([&](platform::Window* sheet) {
    Fill(General(sheet), G::kServer, std::string("ftp://") + kNowhere + ":2121/pub");
    PressOkToNowhere(sheet);
  });
  const LSharedSettingsRecord site = OpenSite("サイト1", kNowhere, "0");
  EXPECT_EQ(Field(site, "Server"), kNowhere);
  EXPECT_EQ(Field(site, "Directory"), "/pub");
  EXPECT_EQ(Field(site, "UseRecentRemote"), "0");

  OpenSheet([&](platform::Window* sheet) {
    Fill(General(sheet), G::kServer, std::string(kNowhere) + "/pub");
    FillField(sheet, A::kRemoteStart, "/other");
    ExpectRefused(sheet, A::kRemoteStart,
                  "サーバーアドレスで指定したディレクトリがリモートディレクトリのパスと異なっています");
    Fill(ui::Page(sheet, 1), A::kRemoteStart, "/PUB");
    PressOkToNowhere(sheet);
  });
  EXPECT_EQ(Field(OpenSite("サイト2", kNowhere, "0"), "Directory"), "/pub");
}

TEST_F(SiteSheet, ARefusedFolderOfAnOldSiteHasAlreadyClearedIt) {
  KeepRecord("会社", kNowhere, "anna");
  StartProgram();
  OpenSheet(
      [&](platform::Window* sheet) {
        FillField(sheet, A::kLocalStart, "/no/such/folder");
        ExpectRefused(sheet, A::kLocalStart, kFolderWrong);
        EXPECT_EQ(Field(OpenSite("会社", kNowhere, "0"), "Server"), kAbsent);
        Fill(ui::Page(sheet, 1), A::kLocalStart, Local());
        PressOkToNowhere(sheet);
      },
      "会社");
  EXPECT_EQ(Field(OpenSite("会社", kNowhere, "0"), "UserName"), "anna");
}

TEST_F(SiteSheet, ShowsAnOldSite) {
  KeepRecord("会社", kNowhere, "anna");
  StartProgram();
  const struct {
    const char *field, *value;
    int protection;
    const char* prompt;
  } rows[] = {
      {"UseSFTP", "1", 3, "デフォルト：22"},
      {"UseImplicitSSL", "1", 2, "デフォルト：990"},
      {"UseExplicitSSL", "1", 1, "デフォルト：21"},
  };
  for (const auto& row : rows) {
    OpenSite("会社", kNowhere, "0").SetString(row.field, row.value);
    OpenSheet(
        [&](platform::Window* sheet) {
          EXPECT_EQ(platform::ComboSelected(General(sheet), G::kProtection), row.protection);
          EXPECT_EQ(General(sheet)->ControlAs<QLineEdit>(G::kPort)->placeholderText().toStdString(), row.prompt);
          EXPECT_FALSE(platform::ControlGetCheck(General(sheet), G::kRemember));
          platform::Window* advanced = Advanced(sheet);
          EXPECT_TRUE(platform::ControlGetCheck(advanced, A::kRemoteRecent));
          EXPECT_FALSE(platform::ControlIsEnabled(advanced, A::kRemoteStart));
          Press(advanced, A::kRemoteFixed);
          EXPECT_TRUE(platform::ControlIsEnabled(advanced, A::kRemoteStart));
          EXPECT_TRUE(platform::ControlGetCheck(advanced, A::kLocalRecent)) << "the other pair stays as it is";
          Press(sheet, kCommandCancel);
        },
        "会社");
  }
}

// Ports

TEST_F(SiteSheet, AChangedProtectionAsksAboutThePort) {
  StartProgram();
  const struct {
    const char* port;
    int protection;
    const char* question;  // Null for none.
    const char* button;
    const char* after;
  } rows[] = {
      {"990", 1, "明示的SSL/TSLのFTPを使う用のデフォルトのポートは21です。デフォルトのポートを使いますか？",
       "デフォルトの21を使う", "21"},
      {"990", 0, "標準FTPを使う用のデフォルトのポートは21です。デフォルトのポートを使いますか？", "990を使う", "990"},
      {"21", 2, "暗黙のSSL/TLS用のデフォルトのポートは990です。デフォルトのポートを使いますか？",
       "デフォルトの990を使う", "990"},
      {"21", 2, "暗黙のSSL/TLS用のデフォルトのポートは990です。", "21を使う", "21"},
      {"990", 2, nullptr, nullptr, "990"},
      {"21", 1, nullptr, nullptr, "21"},
      {"", 2, nullptr, nullptr, ""},
      {"2121", 3, nullptr, nullptr, "2121"},
  };
  OpenSheet([&](platform::Window* sheet) {
    platform::Window* page = General(sheet);
    for (const auto& row : rows) {
      platform::ControlSetText(page, G::kPort, row.port);
      platform::ComboSelect(page, G::kProtection, row.protection == 3 ? 0 : 3);
      if (row.question) alerts.Expect(row.question, row.button);
      EXPECT_TRUE(ui::ChooseRow(page, G::kProtection, row.protection));
      EXPECT_EQ(ui::Text(page, G::kPort), row.after) << row.port << " " << row.protection;
      EXPECT_EQ(alerts.Complaints(), "");
    }
    Press(sheet, kCommandCancel);
  });
}

TEST_F(SiteSheet, Port990AsksWhenItIsLeft) {
  StartProgram();
  const struct {
    const char* port;
    int protection;
    const char* button;  // Null for no question.
    int after;
  } rows[] = {
      {"990", 0, "暗黙のSSL/TLSを使う", 2},
      {"990", 1, "変更しない", 1},
      {"990", 2, nullptr, 2},
      {"21", 0, nullptr, 0},
      {"", 0, nullptr, 0},
  };
  OpenSheet([&](platform::Window* sheet) {
    platform::Window* page = General(sheet);
    for (const auto& row : rows) {
      platform::ComboSelect(page, G::kProtection, row.protection);
      Fill(page, G::kPort, row.port);
      if (row.button) {
        alerts.Expect("ポート990は通常、暗黙のSSLに使われています。990を使いますか？", row.button);
      }
      ui::Key(sheet, Qt::Key_Tab);
      EXPECT_TRUE(ui::WaitUntil([&] { return sheet->isActiveWindow(); }, 2000)) << "the sheet has the keyboard again";
      EXPECT_EQ(platform::ComboSelected(page, G::kProtection), row.after) << row.port << " " << row.protection;
      EXPECT_EQ(alerts.Complaints(), "");
      EXPECT_TRUE(page->Control(G::kUser)->hasFocus()) << "the question came between";
    }
    // A click on a button asks nothing.
    Fill(page, G::kPort, "990");
    Press(sheet, kCommandCancel);
  });
  EXPECT_THAT(Sites(), IsEmpty());
}

// The test of the connection

TEST_F(SiteSheet, OkTestsTheConnectionAndStoresWhateverComesOfIt) {
  StartProgram();
  server = std::make_unique<PaneServer>(Remote());
  const struct {
    const char *password, *outcome;
  } rows[] = {
      {"wrong", "入力したユーザー名（anna）またはパスワードではログインできません。"},
      {PaneServer::Password(), "ファイルのアップロードが完了しました。"},
  };
  for (const auto& row : rows) {
    LUserSettingDeleteSection(kAccountsSection);
    alerts.Expect(row.outcome, "OK");
    OpenSheet([&](platform::Window* sheet) {
      FillSite(sheet, Host(), Port(), PaneServer::User(), row.password);
      ui::Key(sheet, Qt::Key_Return);
    });
    EXPECT_EQ(Field(OpenSite("サイト1", server->Address().c_str(), "0"), "Password"), row.password);
    EXPECT_EQ(alerts.Complaints(), "");
  }
  EXPECT_FALSE(std::filesystem::exists(Remote("_ftptest")));
  EXPECT_FALSE(Main().remotePane.bConnected) << "the test has a session of its own";
}

TEST_F(SiteSheet, ALocalFolderIsChosenInThePanelWhichSpeaksJapanese) {
  StartProgram();
  OpenSheet([&](platform::Window* sheet) {
    platform::Window* page = Advanced(sheet);
    Press(page, A::kLocalFixed);
    Fill(page, A::kLocalStart, Local());
    const auto look = InFilePanel([](QFileDialog* panel) {
      ui::Pump(200);
      SavePicture(panel, "folder-panel");
      for (const QAbstractButton* button : panel->findChildren<QAbstractButton*>()) {
        EXPECT_FALSE(button->text().contains(QRegularExpression("[A-Za-z]{3}"))) << button->text().toStdString();
      }
      panel->close();
    });
    Press(page, A::kLocalBrowse);
    EXPECT_TRUE(look->Acted());
    EXPECT_EQ(ui::Text(page, A::kLocalStart), Local());
    Press(sheet, kCommandCancel);
  });
}

}  // namespace
