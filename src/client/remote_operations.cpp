// Operations on single remote items: rename, new folder, delete.
#include "client/remote_pane.h"
#include "client/remote_paths.h"
#include "core/progress_dialog.h"
#include "ftp/commands.h"
#include "support/log.h"
#include "support/program.h"
#include "support/window/alert.h"

namespace {

void PopupBoxError(LMacWindow* window, const char* text) {
  LAlertWithButtonText::DisplayOkError(window, text, kProgramName, "OK");
}

}  // namespace

// Names edited in the list

void LFtpList::CmRename() {
  if (!pWindow) return;
  pWindow->LVEditCurLabel(nListId);
  bRenaming = true;
  LOG("名前を変更中… ");
}

void LFtpList::EvListEditStart() { pWindow->LVGetString(nListId, pWindow->LVGetCurSel(nListId), szEditName); }

void LFtpList::EvListEditComplete(int row, const char* text) {
  if (row < 0 || !pWindow) return;
  char name[kTextSize];
  TextCopy(name, text);
  LStringTrimWhiteSpace(name);
  if (!name[0]) {
    LAlertWithButtonText::DisplayOkError(pWindow, "ファイル名を入力してください", "名前が正しくありません", "OK");
    return;
  }
  const WaitCursor cursor;
  LProcessInterfaceVoid quiet;
  if (szEditName[0]) {
    // A change of case alone is not sent: servers that ignore case would refuse it.
    if (strcasecmp(szEditName, name) != 0 && ProcessFtpRename(quiet, Ftp, szEditName, name) == LProcessResultFailed) {
      PopupBoxError(pWindow,
                    "ファイル名の変更ができません。このフォルダへの書き込みが許可されているかにつき、システム管理者に"
                    "確認してください。");
    }
  } else if (ProcessFtpCreateDirectory(quiet, Ftp, name) == LProcessResultFailed) {
    PopupBoxError(
        pWindow,
        "ディレクトリの作成に失敗しました。\r\n\r\nこのディレクトリが既に存在するか、このFTPユーザーアカウント"
        "でディレクトリを作成する権限が無い可能性があります。");
  }
  bRenaming = false;
  ApplyDirectory();
  PaneUtils::LVSetCurSelVisible(*pWindow, nListId, name);
}

// New folder

void LFtpList::CmNewFolder(const char* name) {
  if (!pWindow || !name[0]) return;
  const int rowsBefore = pWindow->LVGetCount(nListId);
  if (Ftp.ContainDirectory(name)) {
    LAlertWithButtonText::DisplayOkError(pWindow, "同名のフィルタまたはディレクトリが存在します",
                                         "既に同じものが存在します", "OK");
    return;
  }
  _CreateDirectoryFTP(name);
  const int row = pWindow->LVAddString(nListId, name, iFolderIcon, 0);
  PaneUtils::LVSetCurSelVisible(*pWindow, nListId, row);
  CmRefresh();
  // The list decides, whatever the server said.
  if (pWindow->LVGetCount(nListId) == rowsBefore) {
    LStringLongTemplate<char> text;
    text.sprintf(
        "以下のフォルダの作成に失敗しました： %s "
        "このサーバー上でフォルダを作成する権限があることを確認してください。 ",
        name);
    LAlertWithButtonText::DisplayOkError(pWindow, text, "フォルダ作成失敗", "OK");
    LOGERRORF("以下のフォルダの作成に失敗しました： %s ", name);
    return;
  }
  LOGF("新規フォルダ「%s」が作成されました ", name);
}

// Delete

namespace {

struct FtpDelete {
  LFtpList* list;
};

LProcessResult Process(LProcessInterface& process, FtpDelete& data) { return data.list->CmDelete(process); }

}  // namespace

bool LFtpList::CmDelete() {
  if (!pWindow) return false;
  const int selected = pWindow->LVGetSelCount(nListId);
  if (selected == 0) return true;
  LStringLongTemplate<char> question;
  if (selected >= 2) {
    question = "選択したファイルまたはディレクトリを削除してよろしいですか？";
  } else {
    char name[kTextSize], word[kTextSize];
    const int row = pWindow->LVGetCurSel(nListId);
    pWindow->LVGetString(nListId, row, name);
    if (!name[0]) {
      CmRefresh();
      return false;
    }
    const bool isFile = strcasecmp(RowKindWord(row, word), kWordFile) == 0;
    question.sprintf("選択した%s：\n\"%s\"を削除してよろしいですか？", isFile ? kWordFile : kWordFolder, name);
  }
  if (!LAlertWithButtonText::DisplayOkCancel(pWindow, question, "削除する", "削除", "キャンセル")) return false;
  FtpDelete job = {this};
  ProcessRunAsDialog(pWindow, "削除中", job);
  const int current = pWindow->LVGetCurSel(nListId);
  ApplyDirectory();
  const int count = pWindow->LVGetCount(nListId);
  PaneUtils::LVSetCurSelVisible(*pWindow, nListId, current < count ? current : count - 1);
  return true;
}

LProcessResult LFtpList::CmDelete(LProcessInterface& process) {
  process.SetStatus("削除中...", 0);
  if (!pWindow) return LProcessResultFailed;
  // The names are taken first: a reconnect on the way fills the list anew.
  LVector<SelectedItem> items;
  GetSelectedItems(items);
  const auto count = static_cast<double>(items.size);
  for (size_t i = 0; i < items.size; ++i) {
    if (process.IsToStop()) return LProcessResultStopped;
    const SelectedItem& item = items[i];
    process.SetStatusF(0, "%sを削除しています", item.name);
    LProcessResult result;
    if (item.isFile) {
      result = DeleteFile(process, item.name);
    } else {
      LProcessInterfaceRecursiveSubProcess share(process, static_cast<double>(i) / count, 1 / count);
      result = DeleteFolder(process, share, item.name);
    }
    if (result != LProcessResultOk) return result;
    process.SetProgress(static_cast<double>(i + 1) / count);
  }
  return LProcessResultOk;
}

LProcessResult LFtpList::DeleteFolder(LProcessInterface& process, LProcessInterface& share, const char* name) {
  LOGF("%sフォルダを削除しています", name);
  LProcessResult result = LProcessResultFailed;
  for (int tries = 0; tries < 2 && result == LProcessResultFailed; ++tries) {
    result = ProcessFtpDeleteDirectoryAndFiles(share, Ftp, name);
    if (result == LProcessResultFailed) ReconnectFromLast();
  }
  if (result != LProcessResultFailed) return result;
  char text[2 * kTextSize];
  TextFormat(text, "ディレクトリ「%s」を削除できません。", name);
  process.SetError(text);
  LOGERROR(text);
  return result;
}

LProcessResult LFtpList::DeleteFile(LProcessInterface& process, const char* name) {
  LOGF("%sファイルを削除しています", name);
  char command[kFtpShortCommand];
  FtpFormatCommand(command, "DELE %s\r\n", name);
  const LProcessResult result = ProcessFtpSendAndWaitForReply(process, Ftp, command, nullptr, nullptr);
  if (result != LProcessResultFailed) return result;
  char text[2 * kTextSize];
  TextFormat(text, "ファイル「%s」を削除できません。", name);
  process.SetError(text);
  LOGERROR(text);
  return result;
}

void LFtpList::GetSelectedItems(LVector<SelectedItem>& items) const {
  for (LVSelectedIterator selected(*pWindow, nListId); selected.IsValid(); selected.Next()) {
    SelectedItem item;
    char word[kTextSize];
    pWindow->LVGetString(nListId, selected.Row(), item.name);
    item.isFile = strcasecmp(RowKindWord(selected.Row(), word), kWordFile) == 0;
    items.Add(item);
  }
}
