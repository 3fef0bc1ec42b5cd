// The remote pane: connecting, leaving, watching the connection, and reconnecting inside an operation.
#include "client/remote_pane.h"
#include "core/progress_dialog.h"
#include "ftp/logon.h"
#include "sites/store/accounts.h"
#include "sites/store/settings.h"
#include "support/log.h"
#include "support/window/alert.h"

namespace {

/// Anonymous servers ask for something of the shape of an e-mail address.
constexpr const char* kAnonymousPassword = "anonymous@example.com";
constexpr int kPasswordTipControl = 108;
constexpr int kServerTries = 3;
constexpr unsigned kSettleMs = 100;

}  // namespace

LProcessResult LFtpList::Connect(const char* server, const char* user, const char* password, bool secure,
                                 bool implicitSSL, bool showProgress) {
  LProcessSecureFtpConnect job = {&Ftp, server, user, password, secure, implicitSSL};
  if (showProgress) return ProcessRunAsDialog(pWindow, "FTP接続", job);
  LProcessInterfaceVoid quiet;
  return Process(quiet, job);
}

bool LFtpList::AskForPassword(const char* server, const char* user, char (&password)[kTextSize]) {
  if (!OpenUserLoginDlg(pWindow, server, user, password)) {
    bReconnectArmed = false;
    return false;
  }
  char label[kTextSize];
  _LUserSettingGetString("Settings", "Current", "", label);
  LFTPAccountSettings account(label);
  // A session without a record has no place for its password.
  if (account.Load() && account.szServer[0]) {
    TextCopy(account.szPassword, password);
    account.Save();
  }
  return true;
}

bool LFtpList::CmConnect(const char* server, const char* user, const char* password, const char* directory, bool secure,
                         bool implicitSSL, bool showProgress) {
  CmDisconnect_();
  if (!server[0]) return false;
  // The arguments may be the saved logon itself, which is written below.
  char ownServer[kTextSize], ownUser[kTextSize], ownPassword[kTextSize], ownDirectory[kTextSize];
  TextCopy(ownServer, server);
  TextCopy(ownUser, user);
  TextCopy(ownPassword, password);
  TextCopy(ownDirectory, directory);
  while (true) {
    LOGF("サーバーに接続しています：%s", ownServer);
    TextCopy(szLastServer, ownServer);
    TextCopy(szLastUsername, ownUser);
    TextCopy(szLastPassword, ownPassword);
    bLastSecure = secure;
    bLastImplicitSSL = implicitSSL;
    LProcessResult result = Connect(ownServer, ownUser, ownPassword, secure, implicitSSL, showProgress);
    if (result == LProcessResultOk) {
      pWindow->Wait(kSettleMs);
      break;
    }
    if (result == LProcessResultStopped) return false;
    if (strcasecmp(ownUser, "anonymous") == 0 && !ownPassword[0]) {
      result = Connect(ownServer, ownUser, kAnonymousPassword, secure, implicitSSL, showProgress);
      if (result == LProcessResultOk) break;
      pWindow->BubbleTipShow(kPasswordTipControl,
                             "サーバーはパスワードの入力が必要、または匿名でのログインを許可していません。 ");
    }
    if (LUserSettingGet<int>("Settings", "FtpProxyType", 0) != 0) {
      LAlertWithButtonText::DisplayOkError(
          pWindow, "オプションで、お使いのプロキシ設定を確認するか、オフにして直接接続を行います。", "プロキシエラー",
          "OK");
      return false;
    }
    if (!AskForPassword(ownServer, ownUser, ownPassword)) return false;
  }
  TextCopy(szServer, ownServer);
  LOG("接続済み");
  bConnected = true;
  SetDirectory(ownDirectory);
  if (!EvDirectoryChanged()) {
    SetDirectory("/");
    EvDirectoryChanged();  // A start directory that cannot be entered is no failure of the connection.
  }
  return true;
}

void LFtpList::CmDisconnect_() {
  if (!Ftp.IsValid()) return;
  LOG("サーバーから切断されました。");
  // Whatever the server says to this, the connection ends here.
  (void)ProcessFtpSendAndWaitForReply(*this, Ftp, "QUIT\r\n", nullptr, nullptr);
  if (Ftp.IsValid()) Ftp.CloseSocket();
}

void LFtpList::CmDisconnect() {
  if (!pWindow) return;
  EndRename();
  CmDisconnect_();
  bConnected = false;
  pWindow->LVClear(nListId);
  Items.Clear();
  ClearRecentFileList();
}

void LFtpList::EvCheckConnection() {
  bQuiet = true;
  char path[kTextSize];
  TextCopy(path, szCurrentDirectory);
  LProcessSecureFtpChangeDirectory job = {&Ftp, &path};
  const LProcessResult result = Process(static_cast<LProcessInterface&>(*this), job);
  if (result != LProcessResultOk) {
    bConnected = false;
    LOGERROR("サーバーの接続がタイムアウトしました。");
  }
  bQuiet = false;
}

bool LFtpList::ReconnectFromLast() {
  return CmConnect(szLastServer, szLastUsername, szLastPassword, szLastDirectory, bLastSecure, bLastImplicitSSL, false);
}

/// The last reconnect is made although no try follows it: whoever calls next finds a connection.
template <typename Call>
bool LFtpList::TryWithReconnects(Call call, const char* level) {
  for (int i = 0; i < kServerTries; ++i) {
    if (call()) return true;
    // A new session begins in the pane's directory. Where it cannot leave that, the call fails again.
    if (ReconnectFromLast() && level) (void)Ftp.SetCurrentDirectory(level);
  }
  return false;
}

bool LFtpList::_GetCurrentDirectoryFTP(char (&path)[kTextSize], const char* level) {
  if (TryWithReconnects([&] { return Ftp.GetCurrentDirectory(path); }, level)) return true;
  LOGERROR("現在のディレクトリを入手できませんでした");
  return false;
}

bool LFtpList::_CreateDirectoryFTP(const char* path) {
  if (TryWithReconnects([&] { return Ftp.CreateDirectory(path); }, nullptr)) return true;
  LOGERRORF("ディレクトリを作成できませんでした：%s", path);
  return false;
}

bool LFtpList::_SetCurrentDirectoryFTP(const char* path, const char* level) {
  if (TryWithReconnects([&] { return Ftp.SetCurrentDirectory(path); }, level)) return true;
  LOGERRORF("以下のディレクトリを変更できません： %s", path);
  return false;
}
