// How the dialogs of sites look, at each scale factor: nothing is cut or overlaps, each control has its name and its
// place in the order of the Tab key. Each leaves a picture of itself in build/screens.
#include <QApplication>
#include <QLabel>
#include <QPainter>

#include "platform/qt/list_control.h"
#include "ui/layout_checks.h"
#include "ui/screens.h"
#include "ui/site_fixture.h"

namespace {

using A = LSPAdvancedPage;

class SiteScreens : public SiteTest {
 protected:
  static void Save(platform::Window* window, const std::string& name) {
    ui::Pump(30);
    SaveScreen(window, name);
  }
  /// A picture of the window with the tip that stands above it.
  static void SaveWithTips(platform::Window* window, const std::string& name) {
    ui::Pump(50);
    QLabel picture;
    for (QWidget* tip : QApplication::topLevelWidgets()) {
      if (!tip->inherits("QTipLabel") || !tip->isVisible()) continue;
      const QRect around = window->geometry() | tip->geometry();
      QPixmap both(around.size() * window->devicePixelRatioF());
      both.setDevicePixelRatio(window->devicePixelRatioF());
      both.fill(Qt::white);
      QPainter painter(&both);
      painter.drawPixmap(window->pos() - around.topLeft(), window->grab());
      painter.drawPixmap(tip->pos() - around.topLeft(), tip->grab());
      picture.setPixmap(both);
    }
    EXPECT_FALSE(picture.pixmap().isNull()) << "no tip";
    SavePicture(&picture, name);
  }
  static void ExpectReady(platform::Window* window) {
    ui::Pump(30);
    ExpectGood(window);
  }
};

TEST_F(SiteScreens, TheSiteManager) {
  StartConnected();
  KeepRecord("会社", "ftp.example.jp:990", "ben");
  KeepRecord("会社", "ftp.example.jp:990", "クレオ", "1");
  KeepRecord("とても長い名前のサイトですからここでは全部見えません", "archive.download.example.com", "anonymous");
  OpenManager([&](platform::Window* dialog) {
    platform::ListSetCurrent(dialog, SiteManagerDlg::kList, 1);
    ExpectReady(dialog);
    Save(dialog, "site-manager");
    ExpectTabOrder(dialog);
    platform::ListSetCurrent(dialog, SiteManagerDlg::kList, 0);
    const Meanwhile look([] { return QApplication::activePopupWidget() != nullptr; },
                         [&] {
                           SaveScreen(QApplication::activePopupWidget(), "site-manager-menu");
                           QApplication::activePopupWidget()->close();
                         });
    dialog->Send(10001);
    EXPECT_TRUE(look.Acted());
    dialog->resize(dialog->minimumSize());
    ExpectReady(dialog);
    Save(dialog, "site-manager-small");
    Press(dialog, kCommandCancel);
  });
}

TEST_F(SiteScreens, TheSiteManagerWithoutASite) {
  StartProgram();
  OpenManager([&](platform::Window* dialog) {
    ExpectReady(dialog);
    Save(dialog, "site-manager-empty");
    Press(dialog, kCommandCancel);
  });
}

TEST_F(SiteScreens, TheSheet) {
  KeepRecord("会社", "ftp.example.jp:990", "ben");
  StartProgram();
  OpenSheet([&](platform::Window* sheet) {
    ExpectReady(General(sheet));
    Save(sheet, "site-sheet-new");
    ExpectTabOrder(sheet);
    Press(sheet, kCommandOk);
    SaveWithTips(sheet, "site-sheet-refused");
    ExpectReady(Advanced(sheet));
    Save(sheet, "site-sheet-new-advanced");
    Press(sheet, kCommandCancel);
  });
  OpenSheet(
      [&](platform::Window* sheet) {
        ExpectTextsWhole(sheet);
        Save(sheet, "site-sheet");
        platform::Window* page = Advanced(sheet);
        Press(page, A::kRemoteFixed);
        Press(page, A::kLocalFixed);
        page->Control(A::kLabel)->setFocus();
        Save(sheet, "site-sheet-advanced");
        ExpectTabOrder(sheet);
        Press(sheet, kCommandCancel);
      },
      "会社", "ftp.example.jp:990", "ben");
}

TEST_F(SiteScreens, QuickConnect) {
  StartProgram();
  Steps steps;
  steps.In(kQuick, [&](platform::Window* dialog) {
    ExpectReady(dialog);
    Save(dialog, "quick-connect");
    Press(dialog, LQuickConnectDlg::kSave);
    Press(dialog, LQuickConnectDlg::kSavePassword);
    ExpectTabOrder(dialog);
    Fill(dialog, LQuickConnectDlg::kServer, "ftp.example.com");
    Press(dialog, kCommandOk);
    SaveWithTips(dialog, "quick-connect-refused");
    Press(dialog, kCommandCancel);
  });
  PressTool(platform::kMainToolBar, kCommandQuickConnect);
}

TEST_F(SiteScreens, TheLoginDialog) {
  StartProgram();
  Steps steps;
  steps.In("ユーザーログイン", [&](platform::Window* dialog) {
    ExpectReady(dialog);
    for (const int field : {104, 107, 109}) {
      EXPECT_GE(dialog->Control(field)->height(), dialog->Control(field)->sizeHint().height() - 2);
    }
    Save(dialog, "login");
    ExpectTabOrder(dialog);
    Press(dialog, kCommandCancel);
  });
  char password[kTextSize];
  EXPECT_FALSE(OpenUserLoginDlg(&Main(), "ftp.example.jp", "anna", password));
}

TEST_F(SiteScreens, TheHelpOfEachDialog) {
  StartProgram();
  Steps steps;
  steps
      .In(kManager,
          [&](platform::Window* dialog) {
            alerts.Expect("サイトの追加、編集、削除は下のボタンで行います。", "OK");
            Press(dialog, kCommandShowHelp);
            Press(dialog, SiteManagerDlg::kAdd);
            Press(dialog, kCommandCancel);
          })
      .In(kNewSheet, [&](platform::Window* sheet) {
        alerts.Expect("入力した設定で接続をテストします。", "OK");
        Press(sheet, kCommandShowHelp);
        ui::PressTab(sheet, 1);
        alerts.Expect("サイト名は、サイトの一覧に表示する名前です。", "OK");
        Press(sheet, kCommandShowHelp);
        Press(sheet, kCommandCancel);
      });
  PressTool(platform::kMainToolBar, kCommandSites);
}

}  // namespace
