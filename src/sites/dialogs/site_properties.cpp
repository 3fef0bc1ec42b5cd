#include "sites/dialogs/site_properties.h"

char szFinishLabel[kTextSize];

namespace {

using General = LSPGeneralPage;
using Advanced = LSPAdvancedPage;

// Rows of both pages: a label and its field have one height, so that their texts stand on one line.
constexpr int kField = 28;
constexpr int kButtonWidth = 104;

void DlgGendlgSITEPROP(LDialog& dialog, int x, int y, bool /*withButtons*/) {
  const auto row = [&](int number) { return y + 72 + number * 36; };
  constexpr int kLabelWidth = 128;
  constexpr int kFieldX = 168;
  dialog.AddGroup(General::kGroup, "FTPサーバーアカウント設定", x + 16, y + 8, 620, 280);
  dialog.AddStatic(General::kPrompt,
                   "FTPサーバーのアカウント設定を入力（不明な場合はサーバー管理者にお問い合わせください）。", x + 32,
                   y + 36, 588, kField);
  dialog.AddStatic(General::kServerLabel, "FTP サーバー：", x + 32, row(0), kLabelWidth, kField);
  dialog.AddInput(General::kServer, "FTP サーバー", x + kFieldX, row(0), 236, kField);
  dialog.AddStatic(General::kPortLabel, "         ポート：", x + 408, row(0), 84, kField);
  dialog.AddInput(General::kPort, "ポート", x + 496, row(0), 124, kField);
  dialog.SetTextLimit(General::kPort, 5);
  dialog.AddStatic(General::kUserLabel, "ユーザー名：", x + 32, row(1), kLabelWidth, kField);
  dialog.AddInput(General::kUser, "ユーザー名", x + kFieldX, row(1), 452, kField);
  dialog.AddStatic(General::kPasswordLabel, "パスワード：", x + 32, row(2), kLabelWidth, kField);
  dialog.AddPasswordInput(General::kPassword, "パスワード", x + kFieldX, row(2), 452, kField);
  dialog.AddCheckBox(General::kRemember, "パスワードを記憶する", x + kFieldX, row(3), 452, kField);
  dialog.AddStatic(General::kProtectionLabel, "FTPの保護：", x + 32, row(4), kLabelWidth, kField);
  dialog.AddPullDownList(General::kProtection, "FTPの保護", x + kFieldX, row(4), 452, kField);
}

/// One of the two groups of folders, whose ids follow each other alike.
void AddFolderGroup(LDialog& dialog, int group, int x, int y, const char* title, const char* recent, const char* label,
                    const char* name) {
  dialog.AddGroup(group, title, x + 16, y, 620, 124);
  dialog.AddRadioButton(group + 1, recent, x + 32, y + 24, 588, 24);
  dialog.AddRadioButton(group + 2, "このディレクトリをいつも使う", x + 32, y + 52, 588, 24);
  dialog.AddStatic(group + 6, label, x + 52, y + 84, 192, kField);
  dialog.AddInput(group + 5, name, x + 248, y + 84, 260, kField);
  dialog.AddButton(group + 7, "参照...", x + 516, y + 84, kButtonWidth, kField);
  char browse[kTextSize];
  TextFormat(browse, "%s：参照...", name);
  dialog.SetAccessibleName(group + 7, browse);
}

void DlgGendlgADVPROP(LDialog& dialog, int x, int y, bool /*withButtons*/) {
  static_assert(Advanced::kRemoteStart == Advanced::kRemoteGroup + 5 &&
                Advanced::kLocalStart == Advanced::kLocalGroup + 5);
  dialog.AddStatic(Advanced::kLabelLabel, "サイト名：", x + 16, y + 16, 128, kField);
  dialog.AddInput(Advanced::kLabel, "サイト名", x + 168, y + 16, 468, kField);
  AddFolderGroup(dialog, Advanced::kRemoteGroup, x, y + 56, "接続時の初期リモートディレクトリ",
                 "前回使ったリモートディレクトリを使う", "リモートディレクトリのパス：", "リモートディレクトリのパス");
  AddFolderGroup(dialog, Advanced::kLocalGroup, x, y + 192, "接続時の初期ローカルディレクトリ",
                 "前回使ったローカルディレクトリを使う", "ローカルディレクトリのパス：", "ローカルディレクトリのパス");
}

}  // namespace

const char* SitePropertiesDlg(LMacWindow* view, const char* label, const char* server, const char* user) {
  TextCopy(General::szPrimaryKey, label);
  TextCopy(General::szServer, server);
  TextCopy(General::szUserName, user);
  General general;
  Advanced advanced;
  general.pAdvanced = &advanced;
  advanced.pGeneral = &general;
  LPropertySheet sheet;
  sheet.AddPage(general, LDialog::OpenGenData("FTPサイトのプロパティー", 652, 296, &DlgGendlgSITEPROP), nullptr);
  sheet.AddPage(advanced, LDialog::OpenGenData("詳細プロパティ", 652, 326, &DlgGendlgADVPROP), nullptr);
  const bool isNew = !label[0];
  const bool ok = sheet.Open(view, isNew ? "新規サイトを追加する" : "サイトのプロパティー", 0,
                             isNew ? "サイトを追加" : "サイトを保存 ");
  return ok ? szFinishLabel : nullptr;
}
