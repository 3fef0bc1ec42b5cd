#include "sites/dialogs/quick_connect.h"

#include "sites/dialogs/host_name.h"
#include "sites/dialogs/site_record.h"
#include "sites/dialogs/site_walk.h"
#include "sites/store/settings.h"
#include "support/window/alert.h"

namespace {

using Dlg = LQuickConnectDlg;

void DlgGendlgQUICKCONNECT(LDialog& dialog, int x, int y, bool withButtons) {
  constexpr int kField = 28;
  constexpr int kLabelX = 16;
  constexpr int kLabelWidth = 120;
  constexpr int kFieldX = 144;
  constexpr int kFieldWidth = 320;
  const auto row = [&](int number) { return y + 12 + number * 32; };
  dialog.AddStatic(Dlg::kServerLabel, "FTP サーバー：", x + kLabelX, row(0), kLabelWidth, kField);
  dialog.AddInput(Dlg::kServer, "FTP サーバー", x + kFieldX, row(0), kFieldWidth, kField);
  dialog.AddStatic(Dlg::kPortLabel, "ポート：", x + kLabelX, row(1), kLabelWidth, kField);
  dialog.AddInput(Dlg::kPort, "ポート", x + kFieldX, row(1), kFieldWidth, kField);
  dialog.SetTextLimit(Dlg::kPort, 5);
  dialog.AddStatic(Dlg::kUserLabel, "ユーザー名：", x + kLabelX, row(2), kLabelWidth, kField);
  dialog.AddInput(Dlg::kUser, "ユーザー名", x + kFieldX, row(2), kFieldWidth, kField);
  dialog.AddStatic(Dlg::kPasswordLabel, "パスワード： ", x + kLabelX, row(3), kLabelWidth, kField);
  dialog.AddPasswordInput(Dlg::kPassword, "パスワード", x + kFieldX, row(3), kFieldWidth, kField);
  dialog.AddCheckBox(Dlg::kSave, "接続を保存する", x + kFieldX, row(4), kFieldWidth, 24);
  dialog.AddCheckBox(Dlg::kSavePassword, "パスワードを保存する", x + kFieldX + 24, row(4) + 24, kFieldWidth - 24, 24);
  dialog.AddStatic(Dlg::kProtectionLabel, "FTPの保護：", x + kLabelX, row(6) - 8, kLabelWidth, kField);
  dialog.AddPullDownList(Dlg::kProtection, "FTPの保護", x + kFieldX, row(6) - 8, kFieldWidth, kField);
  if (!withButtons) return;
  dialog.AddHelp("ヘルプ", x + kLabelX, y + 237, 104, 28);
  dialog.AddCancel("キャンセル", x + 248, y + 237, 104, 28);
  dialog.AddOk("接続", x + 360, y + 237, 104, 28);
}

/// The first numbered label that no site has, case and all.
void FreeLabel(char (&label)[kTextSize]) {
  for (int number = 1;; ++number) {
    TextFormat(label, "クイック接続 %i", number);
    const bool isTaken = [&] {
      const LUserSettingsListTemplate<LSharedSettingsRecord> labels(kAccountsSection);
      for (AccountIterator it(labels); !it.IsAtEnd(); it.Advance()) {
        if (strcmp(it.szName, label) == 0) return true;
      }
      return false;
    }();
    if (!isTaken) return;
  }
}

}  // namespace

bool LQuickConnectDlg::Open(LMacWindow* view) {
  return LDialog::Open(view, OpenGenData("クイック接続", 480, 277, &DlgGendlgQUICKCONNECT));
}

void LQuickConnectDlg::InitDialog() {
  EditPromptSet(kServer, kExampleHost);
  EditPromptSet(kPort, "例：21または990（黙示的SSL）");
  PDLAddString(kProtection, "標準FTPを使う");
  PDLAddString(kProtection, "明示的SSL/TSLのFTPを使う");
  PDLAddString(kProtection, "暗黙のSSL/TSLのFTPを使う");
  PDLSetCurSel(kProtection, kProtectionNone);
  SetFocus(kServer);
}

void LQuickConnectDlg::EnableControls() { EnableControl(kSavePassword, GetCheck(kSave)); }

void LQuickConnectDlg::Command(int id, intptr_t data) {
  if (id == kSave) {
    EnableControls();
  } else {
    LDialog::Command(id, data);
  }
}

/// A tip at the control; false.
bool LQuickConnectDlg::Refuse(int control, const char* tip) {
  SetFocus(control);
  BubbleTipShow(control, tip);
  return false;
}

bool LQuickConnectDlg::CmOk() {
  char host[kTextSize], port[kTextSize];
  GetTextAndTrim(kServer, host);
  GetTextAndTrim(kUser, szUser);
  GetPasswordTextAndTrim(kPassword, szPassword);
  if (!szUser[0]) TextCopy(szUser, "anonymous");
  FreeLabel(szLabel);
  if (!ScrubIpOrHostName(host) || !SiteFitsStore(szLabel, host)) return Refuse(kServer, kServerIsWrong);
  GetTextAndTrim(kPort, port);
  if (port[0]) {
    TextFormat(szServer, "%s:%s", host, port);
  } else {
    TextCopy(szServer, host);
  }
  if (GetCheck(kSavePassword) && !szPassword[0]) {
    return Refuse(kPassword,
                  "「パスワードを記憶する」が選択されましたがパスワードが入力されていません。FTPアカウントの正しい"
                  "パスワードを入力してください。不明な場合はFTPサーバーの管理者にお問い合わせください。");
  }
  const int protection = PDLGetCurSel(kProtection);
  bSaved = GetCheck(kSave);
  if (bSaved) {
    SaveSite(protection);
  } else {
    TextCopy(szLabel, kQuickConnectLabel);
  }
  bUseSSL = protection != kProtectionNone;
  bImplicit = protection == kProtectionImplicit;
  return true;
}

/// The folders stay absent, so that the site starts in the recent ones.
void LQuickConnectDlg::SaveSite(int protection) {
  const LSettingsBatch batch;
  const bool remember = GetCheck(kSavePassword);
  LSharedSettingsRecord record;
  AccountsOpenServer(szLabel, szServer).Open(record, "0");
  record.SetPrimaryKey("0");
  record.SetString("Server", szServer);
  record.SetString("UserName", szUser);
  record.SetString("UseExplicitSSL", LSettingFromBool(protection == kProtectionExplicit));
  record.SetString("UseImplicitSSL", LSettingFromBool(protection == kProtectionImplicit));
  record.SetString("UseSFTP", LSettingFromBool(false));
  record.SetString("RemP", LSettingFromBool(remember));
  record.SetPassword("Password", remember ? szPassword : "");
}

void LQuickConnectDlg::CmHelp() {
  LAlertWithButtonText::DisplayOkInfo(this,
                                      "FTPサーバーの名前またはIPアドレス、ユーザー名、パスワードを入力して接続します。"
                                      "\n「接続を保存する」を選択すると、"
                                      "サイトの一覧に加わります。",
                                      "クイック接続", "OK");
}
