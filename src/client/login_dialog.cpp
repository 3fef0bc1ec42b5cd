// The dialog that asks for a password when a server refuses the one that is stored.
#include "client/remote_pane.h"
#include "sites/store/settings.h"
#include "support/window/dialog.h"

namespace {

enum : int {
  kPrompt = 102,
  kServer = 104,
  kServerLabel = 105,
  kUser = 107,
  kUserLabel = 108,
  kPassword = 109,
  kPasswordLabel = 110,
};

void DlgGendlgUSERLOGIN(LDialog& dialog, int x, int y, bool withButtons) {
  dialog.AddStatic(kPrompt, "パスワードを入力してください", x + 18, y + 14, 444, 21);
  dialog.AddStatic(kServerLabel, "FTPサイト： ", x + 18, y + 47, 110, 23);
  dialog.AddInput(kServer, "FTPサイト", x + 132, y + 46, 330, 25);
  dialog.AddStatic(kUserLabel, "ユーザー名：", x + 18, y + 79, 110, 23);
  dialog.AddInput(kUser, "ユーザー名", x + 132, y + 78, 330, 25);
  dialog.AddStatic(kPasswordLabel, "パスワード：", x + 18, y + 111, 110, 23);
  dialog.AddPasswordInput(kPassword, "パスワード", x + 132, y + 110, 330, 25);
  if (!withButtons) return;
  dialog.AddCancel("キャンセル", x + 248, y + 150, 104, 28);
  dialog.AddOk("OK", x + 358, y + 150, 104, 28);
}

class UserLoginDlg : public LDialog {
 public:
  UserLoginDlg(const char* serverName, const char* userName) : szServer(serverName), szUser(userName) {}

  void InitDialog() override {
    SetText(kServer, szServer);
    SetText(kUser, szUser);
    EnableControl(kServer, false);
    EnableControl(kUser, false);
    SetFocus(kPassword);
  }
  bool CmOk() override {
    GetTextAndTrim(kPassword, szPassword);
    return true;
  }

  char szPassword[kTextSize] = {};

 private:
  const char* szServer;
  const char* szUser;
};

}  // namespace

bool OpenUserLoginDlg(LMacWindow* view, const char* server, const char* user, char (&passwordOut)[kTextSize]) {
  UserLoginDlg dialog(server, user);
  if (!dialog.Open(view, LDialog::OpenGenData("ユーザーログイン", 480, 189, &DlgGendlgUSERLOGIN))) return false;
  TextCopy(passwordOut, dialog.szPassword);
  return true;
}
