// Verbs for tests of the dialogs of sites.
#pragma once

#include "sites/dialogs/quick_connect.h"
#include "sites/dialogs/site_manager.h"
#include "sites/dialogs/site_properties.h"
#include "ui/steps.h"
#include "ui/window_fixture.h"

class SiteTest : public WindowTest {
 protected:
  static constexpr const char* kManager = "サイト管理...";
  static constexpr const char* kNewSheet = "新規サイトを追加する";
  static constexpr const char* kSheet = "サイトのプロパティー";
  static constexpr const char* kQuick = "クイック接続";
  /// A name that no resolver knows, so that a test of it ends at once.
  static constexpr const char* kNowhere = "no.such.host.invalid";

  static void Press(platform::Window* dialog, int id) { EXPECT_TRUE(ui::Press(dialog, id)) << "control " << id; }
  static void Fill(platform::Window* dialog, int id, const std::string& text) {
    EXPECT_TRUE(ui::Fill(dialog, id, text)) << "control " << id;
  }
  static platform::Window* General(platform::Window* sheet) { return ui::Page(sheet, 0); }
  static platform::Window* Advanced(platform::Window* sheet) {
    EXPECT_TRUE(ui::PressTab(sheet, 1));
    return ui::Page(sheet, 1);
  }
  /// Opens the list of sites, which the action closes.
  void OpenManager(Steps::Action action) {
    Steps steps;
    steps.In(kManager, std::move(action));
    PressTool(platform::kMainToolBar, kCommandSites);
  }
  /// The sheet of a site or, without a label, of a new one. Gives the label that was stored, or null.
  const char* OpenSheet(Steps::Action action, const char* label = "", const char* address = kNowhere,
                        const char* user = "anna") {
    Steps steps;
    steps.In(label[0] ? kSheet : kNewSheet, std::move(action));
    return SitePropertiesDlg(&Main(), label, address, user);
  }
  /// Fills the first page.
  static void FillSite(platform::Window* sheet, const std::string& host, const std::string& port,
                       const std::string& user, const std::string& password) {
    Fill(General(sheet), LSPGeneralPage::kServer, host);
    Fill(General(sheet), LSPGeneralPage::kPort, port);
    Fill(General(sheet), LSPGeneralPage::kUser, user);
    Fill(General(sheet), LSPGeneralPage::kPassword, password);
  }
  /// OK on a sheet whose server cannot be found: the outcome of the test is read and closed.
  void PressOkToNowhere(platform::Window* sheet) {
    alerts.Expect("サーバーに接続できません。", "OK");
    Press(sheet, kCommandOk);
  }
  std::string Host() const { return server->Address().substr(0, server->Address().find(':')); }
  std::string Port() const { return server->Address().substr(server->Address().find(':') + 1); }

  void KeepRecord(const char* label, const char* address, const char* user, const char* key = "0") {
    const LSharedSettingsRecord record = OpenSite(label, address, key);
    record.SetString("Server", address);
    record.SetString("UserName", user);
    record.SetString("Directory", "/pub");
    record.SetString("LocalDirectory", Local().c_str());
  }
  /// The keys of all sites.
  static Texts Sites() {
    Texts all = All();
    std::erase_if(all, [](const std::string& one) {
      return one.rfind("FTPAccounts/", 0) != 0 || one.rfind("FTPAccounts/=", 0) == 0;
    });
    return all;
  }
};
