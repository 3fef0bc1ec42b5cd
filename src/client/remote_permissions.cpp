// Changing the permissions of the selected remote items.
#include "client/permission_rules.h"
#include "client/permissions_dialog.h"
#include "client/remote_pane.h"
#include "core/progress_dialog.h"
#include "ftp/commands.h"
#include "ftp/permissions.h"
#include "support/log.h"

namespace {

constexpr const char* kWorking = "ファイルのパーミッションを変更中";
constexpr unsigned kNotImplementedForThat = 504;

/// Sends a command that changes rights and keeps the server's answer.
struct ChangePermissionsData {
  LFileTransferProtocol* protocol;
  char command[2 * kTextSize];
  char reply[kTextSize];
  unsigned short code;
};

LProcessResult Process(LProcessInterface& process, ChangePermissionsData& data) {
  process.SetStatus("パーミッションを変更中", 0);
  process.SetStatus("データを設定中", 1);
  process.SetStatus("コマンドを送信中", 1);
  return ProcessFtpSendAndWaitForReply(process, *data.protocol, data.command, &data.code, &data.reply);
}

}  // namespace

void LFtpList::ConvertRemoteFileAttributesToValues(const char* text, unsigned char& owner, unsigned char& group,
                                                   unsigned char& others) {
  FtpPermissionDigits(text, owner, group, others);
}

void LFtpList::ConvertValuesToRemoteFileAttributes(char (&out)[kTextSize], unsigned char owner, unsigned char group,
                                                   unsigned char others, char first, bool numeric) {
  PermissionTextOfValues(out, owner, group, others, first, numeric);
}

LFtpExpListItem* LFtpList::FindItem(const char* name) {
  for (LFtpExpListItem* item = Items.first; item; item = item->next) {
    if (strcmp(item->name, name) == 0) return item;
  }
  return nullptr;
}

void LFtpList::CmChangePermissions() {
  if (!pWindow) return;
  LOG("パーミッションを変更中...");
  const int row = pWindow->LVGetCurSel(nListId);
  char name[kTextSize];
  pWindow->LVGetString(nListId, row, name);
  PermissionDigits digits = {0, 0, 0};
  if (const LFtpExpListItem* item = FindItem(name)) {
    FtpPermissionDigits(item->attributes, digits.owner, digits.group, digits.others);
  }
  if (!LChangeFilePermissionsDlg::Ask(pWindow, digits)) return;
  LVector<SelectedItem> items;
  GetSelectedItems(items);
  for (const SelectedItem& item : items) {
    if (!ChangePermissionsOf(item.name, digits, row)) return;
  }
}

/// False ends the run: the server knows no permissions.
bool LFtpList::ChangePermissionsOf(const char* name, const PermissionDigits& digits, int row) {
  ChangePermissionsData change = {};
  change.protocol = &Ftp;
  FtpFormatCommand(change.command, "SITE chmod %i%i%i %s\r\n", digits.owner, digits.group, digits.others, name);
  // The reply's code decides, whatever the result.
  (void)ProcessRunAsDialog(pWindow, kWorking, change);
  if (change.code < 200 || change.code > 299) {
    if (change.code == kNotImplementedForThat) {
      LOGERROR("このサーバーはパーミッションの変更に対応していません。");
      return false;
    }
    LOGERRORF("以下のファイルのパーミッション変更に失敗しました：%s", name);
    return true;
  }
  LOGF("以下のファイルのパーミッションが設定されました：%s", name);
  ShowNewPermissions(name, digits, row);
  return true;
}

void LFtpList::ShowNewPermissions(const char* name, const PermissionDigits& wanted, int row) {
  GetPermissionsData read = {};
  read.pSession = &Ftp;
  TextCopy(read.name, name);
  (void)ProcessRunAsDialog(pWindow, kWorking, read);
  PermissionDigits now;
  FtpPermissionDigits(read.attributes, now.owner, now.group, now.others);
  if (now.owner != wanted.owner || now.group != wanted.group || now.others != wanted.others) {
    LOGWARNF("サーバーが%s用の許可をいくつか上書きしました。", name);
  }
  LFtpExpListItem* item = FindItem(name);
  if (!item) return;
  const char first = item->attributes[0] ? item->attributes[0] : '-';
  const bool numeric = strlen(item->attributes) < 10;
  PermissionTextOfValues(item->attributes, now.owner, now.group, now.others, first, numeric);
  pWindow->LVSetColumnString(nListId, row, kAttributes, item->attributes);
}
