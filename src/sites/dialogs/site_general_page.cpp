// The first page of a site's sheet: its controls, and the questions about the port.
#include "sites/dialogs/host_name.h"
#include "sites/dialogs/site_properties.h"
#include "support/window/alert.h"

char LSPGeneralPage::szPrimaryKey[kTextSize];
char LSPGeneralPage::szServer[kTextSize];
char LSPGeneralPage::szUserName[kTextSize];
LSharedSettingsRecord LSPGeneralPage::srUser;

namespace {

constexpr const char* kProtectionNames[] = {"標準FTPを使う", "明示的SSL/TSLのFTPを使う", "暗黙のSSL/TSLのFTPを使う",
                                            "SFTPを使用中"};

bool IsOn(const LSharedSettingsRecord& record, const char* field) {
  char value[kTextSize];
  record.GetString(field, value);
  return value[0] && value[0] != '0';
}

int ProtectionOf(const LSharedSettingsRecord& record) {
  if (IsOn(record, "UseExplicitSSL")) return kProtectionExplicit;
  if (IsOn(record, "UseImplicitSSL")) return kProtectionImplicit;
  return IsOn(record, "UseSFTP") ? kProtectionSFTP : kProtectionNone;
}

}  // namespace

void LSPGeneralPage::InitDialog() {
  EditPromptSet(kServer, kExampleHost);
  EditPromptSet(kUser, "例：anonymous");
  SetToolTip(kServer, "接続先のFTPサーバーの名前またはIPアドレスです（例：ftp.example.com）。");
  SetToolTip(kPort, "サーバーのポート番号です。空欄の場合はデフォルトのポートを使います。");
  SetToolTip(kUser, "FTPサーバーのアカウントのユーザー名です。空欄の場合はanonymousで接続します。");
  SetToolTip(kPassword, "FTPサーバーのアカウントのパスワードです。");
  SetToolTip(kRemember, "パスワードをこのコンピュータに保存し、次回から自動的に使います。");
  SetToolTip(kProtection, "FTPサーバーとの通信を保護する方法です。");
  for (const char* name : kProtectionNames) PDLAddString(kProtection, name);
  HandleEditTextFocusLost(kServer, kServerLeft);
  HandleEditTextFocusLost(kPort, kPortLeft);
  HandlePDLSelChange(kProtection, kProtectionChosen);
  SetCheck(kRemember, true);
  PDLSetCurSel(kProtection, kProtectionNone);
  srUser = LSharedSettingsRecord();
  if (szPrimaryKey[0]) LoadSite();
  ShowDefaultPort();
  SetFocus(kServer);
}

void LSPGeneralPage::LoadSite() {
  FindSite(srUser, szPrimaryKey, szServer, szUserName);
  char host[kTextSize], port[kTextSize] = {}, text[kTextSize];
  srUser.GetString("Server", host);
  if (char* colon = strchr(host, ':')) {
    TextCopy(port, colon + 1);
    *colon = 0;
  }
  LStringTrimWhiteSpace(host);
  LStringTrimWhiteSpace(port);
  SetText(kServer, host);
  SetText(kPort, port);
  srUser.GetString("UserName", text);
  SetText(kUser, text);
  srUser.GetPassword("Password", "", text);
  SetPasswordText(kPassword, text);
  SetCheck(kRemember, IsOn(srUser, "RemP"));
  PDLSetCurSel(kProtection, ProtectionOf(srUser));
}

void LSPGeneralPage::ShowDefaultPort() {
  const int protection = PDLGetCurSel(kProtection);
  EditPromptSet(kPort, protection == kProtectionImplicit ? "デフォルト：990"
                       : protection == kProtectionSFTP   ? "デフォルト：22"
                                                         : "デフォルト：21");
}

/// The first button writes the default into the box.
bool LSPGeneralPage::AskForDefaultPort(const char* question, const char* defaultPort) {
  char port[kTextSize], useDefault[kTextSize], keep[kTextSize];
  GetTextAndTrim(kPort, port);
  if (!port[0] || strcmp(port, defaultPort) == 0) return false;
  TextFormat(useDefault, "デフォルトの%sを使う", defaultPort);
  TextFormat(keep, "%sを使う", port);
  if (!LAlertWithButtonText::DisplayOkCancel(Sheet(), question, "ポートを指定する", useDefault, keep)) return false;
  SetText(kPort, defaultPort);
  return true;
}

void LSPGeneralPage::EvProtectionChosen() {
  ShowDefaultPort();
  const int protection = PDLGetCurSel(kProtection);
  if (protection == kProtectionNone || protection == kProtectionExplicit) {
    LStringLongTemplate<char> question;
    question.sprintf("%s用のデフォルトのポートは21です。デフォルトのポートを使いますか？",
                     kProtectionNames[protection]);
    AskForDefaultPort(question, "21");
  } else if (protection == kProtectionImplicit) {
    AskForDefaultPort("暗黙のSSL/TLS用のデフォルトのポートは990です。デフォルトのポートを使いますか？", "990");
  }
}

void LSPGeneralPage::EvPortLeft() {
  char port[kTextSize];
  GetTextAndTrim(kPort, port);
  if (strcmp(port, "990") != 0 || PDLGetCurSel(kProtection) == kProtectionImplicit) return;
  const bool change =
      LAlertWithButtonText::DisplayOkCancel(Sheet(), "ポート990は通常、暗黙のSSLに使われています。990を使いますか？",
                                            "FTPの方法を指定する", "暗黙のSSL/TLSを使う", "変更しない");
  if (!change) return;
  PDLSetCurSel(kProtection, kProtectionImplicit);
  ShowDefaultPort();
}

void LSPGeneralPage::Command(int id, intptr_t data) {
  switch (id) {
    case kServerLeft: break;  // The address stays as typed until the sheet is stored.
    case kProtectionChosen: EvProtectionChosen(); break;
    case kPortLeft: EvPortLeft(); break;
    default: LPropertyPage::Command(id, data);
  }
}

void LSPGeneralPage::CmHelp() {
  LAlertWithButtonText::DisplayOkInfo(
      Sheet(),
      "FTPサーバーの名前またはIPアドレス、ユーザー名、パスワードを入力します。\nポートを空欄にすると、選択した保護の"
      "方法のデフォルトのポートを使います。\n保存すると、入力した設定で接続をテストします。",
      "FTPサイトのプロパティー", "OK");
}
