#include "sites/dialogs/site_manager.h"

#include <algorithm>

#include "app/main_dialog.h"
#include "sites/dialogs/site_properties.h"
#include "support/window/alert.h"
#include "support/window/list_view.h"
#include "support/window/menus.h"

namespace {

constexpr int kWidth = 960;
constexpr int kHeight = 449;
constexpr int kMinWidth = 792;
constexpr int kMinHeight = 280;
constexpr int kSiteButton = 184;  // Four of them fit into the smallest window.

constexpr LVColDynamicGlobal kColumns[] = {
    {"サイト名", 15, 0},     {"FTP サーバー", 30, 0}, {"ユーザー名", 15, 0},
    {"ディレクトリ", 30, 0}, {"状況", 10, 0},         {nullptr, -1, 0},
};

/// LayoutControls gives each its place.
void DlgGendlgSITEMANAGER(LDialog& dialog, int /*x*/, int /*y*/, bool withButtons) {
  dialog.AddList(SiteManagerDlg::kList, "サイトの一覧");
  dialog.AddButton(SiteManagerDlg::kAdd, "サイトを追加する...", 0, 0, 0, 0);
  dialog.AddButton(SiteManagerDlg::kProperties, "サイトのプロパティー...", 0, 0, 0, 0);
  dialog.AddButton(SiteManagerDlg::kDelete, "サイトを削除する", 0, 0, 0, 0);
  dialog.AddButton(SiteManagerDlg::kDisconnect, "サイトの接続を切断する", 0, 0, 0, 0);
  if (!withButtons) return;
  dialog.AddHelp("ヘルプ", 0, 0, 0, 0);
  dialog.AddCancel("閉じる", 0, 0, 0, 0);
  dialog.AddOk("接続", 0, 0, 0, 0);
}

}  // namespace

bool SiteManagerDlg::Open(LMacWindow* view) {
  return LResizableDialog::Open(
      view, "SiteManager", OpenGenData("サイト管理...", kWidth, kHeight, &DlgGendlgSITEMANAGER), kMinWidth, kMinHeight);
}

void SiteManagerDlg::LayoutControls(int width, int height) {
  constexpr int kMargin = 16;
  constexpr int kGap = 8;
  constexpr int kButton = 32;
  constexpr int kStandard = 104;
  const int bottom = height - kMargin - kButton;
  const int row = bottom - kMargin - kButton;
  MoveControlPixels(kList, kMargin, kMargin, width - 2 * kMargin, row - kGap - kMargin);
  int x = kMargin;
  for (const int id : {kAdd, kProperties, kDelete, kDisconnect}) {
    MoveControlPixels(id, x, row, kSiteButton, kButton);
    x += kSiteButton + kGap;
  }
  MoveControlPixels(kCommandShowHelp, kMargin, bottom, kStandard, kButton);
  MoveControlPixels(kCommandCancel, width - kMargin - 2 * kStandard - kGap, bottom, kStandard, kButton);
  MoveControlPixels(kCommandOk, width - kMargin - kStandard, bottom, kStandard, kButton);
}

void SiteManagerDlg::InitDialog() {
  LVInit(kList, kColumns);
  iImageDisconnected = Images.AddIcon(LGuiIcon::FromResource(8));
  iImageConnected = Images.AddIcon(LGuiIcon::FromResource(9));
  LVSetImages(kList, &Images);
  LVSetStyleDefaultText(kList, "サイトがありません。「サイトを追加する...」ボタンをクリックして追加します。");
  HandleLVSelChange(kList, kSelectionChanged);
  HandleLVRightClick(kList, kRightClick);
  FillList();
  SetFocus(kList);
}

// The list

void SiteManagerDlg::FillList() {
  LVHoldDrawing(kList, true);
  LVClear(kList);
  iConnected = -1;
  const SiteRecord current = CurrentSite();
  char label[kTextSize] = {};
  int labelRow = 0;
  WalkSites([&](const SiteRecord& site, const LSharedSettingsRecord& record) {
    const bool isFirst = strcmp(site.label, label) != 0;
    if (isFirst) labelRow = LVGetCount(kList);
    TextCopy(label, site.label);
    AddRow(site, record, current, labelRow);
    return false;
  });
  LVHoldDrawing(kList, false);
  EnableControls();
}

/// The first row of a label shows it; further ones have the number of that row with them.
void SiteManagerDlg::AddRow(const SiteRecord& site, const LSharedSettingsRecord& record, const SiteRecord& current,
                            int labelRow) {
  char server[kTextSize], user[kTextSize], directory[kTextSize], domain[kTextSize], recent[kTextSize];
  record.GetString("Server", server);
  record.GetString("Directory", "/", directory);
  record.GetString("Domain", domain);
  record.GetString("UseRecentRemote", recent);
  if (domain[0]) {
    TextFormat(user, "%s/%s", domain, site.user);
  } else {
    TextCopy(user, site.user);
  }
  const int row = LVGetCount(kList);
  const bool isConnected = pMain->remotePane.bConnected && SiteMatches(current, site.label, server, site.user);
  if (isConnected) iConnected = row;
  const bool isFirst = row == labelRow;
  const int image = !isFirst ? -1 : isConnected ? iImageConnected : iImageDisconnected;
  LVAddString(kList, isFirst ? site.label : "", image, labelRow);
  LVSetColumnString(kList, row, kServer, server);
  LVSetColumnString(kList, row, kUser, user);
  const bool showsDirectory = !recent[0] || strcmp(recent, "0") == 0;
  LVSetColumnString(kList, row, kDirectory, showsDirectory ? directory : "");
  LVSetColumnString(kList, row, kState, isConnected ? "接続" : "切断");
}

/// The site as its row shows it, the label from the row that has it.
SiteRecord SiteManagerDlg::RowSite(int row) const {
  SiteRecord site;
  LVGetString(kList, row, site.label);
  if (!site.label[0]) LVGetString(kList, static_cast<int>(LVGetItemData(kList, row)), site.label);
  LVGetColumnString(kList, row, kServer, site.server);
  LVGetColumnString(kList, row, kUser, site.user);
  return site;
}

void SiteManagerDlg::Reselect(int row) { LVSetCurSel(kList, std::min(row, LVGetCount(kList) - 1)); }

void SiteManagerDlg::EnableControls() {
  const int row = LVGetCurSel(kList);
  const bool isAny = LVGetSelCount(kList) > 0;
  const bool isConnected = row >= 0 && row == iConnected;
  EnableControl(kProperties, isAny);
  EnableControl(kDelete, isAny && !isConnected);
  EnableControl(kDisconnect, isConnected);
  EnableControl(kCommandOk, isAny);
  SetButtonText(kCommandOk, isConnected ? "再接続" : "接続");
}

// Commands

bool SiteManagerDlg::CmOk() {
  const int row = LVGetCurSel(kList);
  if (row < 0) return false;
  iSelected = row;
  bSelectedConnected = row == iConnected;
  return true;
}

void SiteManagerDlg::CmSiteAdd() {
  if (SitePropertiesDlg(this, "", "", "")) FillList();
}

void SiteManagerDlg::CmSiteProperties() {
  const int row = LVGetCurSel(kList);
  if (row < 0) return;
  const SiteRecord site = RowSite(row);
  if (!SitePropertiesDlg(this, site.label, site.server, site.user)) return;
  FillList();
  Reselect(row);
}

void SiteManagerDlg::DeleteRow(int row) {
  SiteRecord site = RowSite(row);
  if (SiteMatches(CurrentSite(), site.label, site.server, site.user)) {
    LStringLongTemplate<char> message;
    message.sprintf(
        "以下の接続サイトを削除できません：Cannot delete connected site \"%s\\%s\\%s\"。サイトの切断を行ってください。",
        site.label, site.server, site.user);
    LAlertWithButtonText::DisplayOkError(this, message, "サイトを削除できません", "OK");
    return;
  }
  if (const char* slash = strchr(site.user, '/')) TextCopy(site.user, slash + 1);
  for (AccountIterator key(AccountsOpenServer(site.label, site.server)); !key.IsAtEnd(); key.Advance()) {
    char name[kTextSize];
    key.record.GetString("UserName", name);
    if (strcmp(name, site.user) != 0) continue;
    key.record.DeleteRecord();
    break;
  }
  RemoveEmptySite(site.label, site.server);
}

void SiteManagerDlg::CmSiteDelete() {
  if (LVGetSelCount(kList) == 0) return;
  if (!LAlertWithButtonText::DisplayOkCancel(this, "選択したサイトを削除します。よろしいですか？", "削除する", "削除",
                                             "キャンセル")) {
    return;
  }
  const int row = LVGetCurSel(kList);
  for (LVSelectedIterator it(*this, kList); it.IsValid(); it.Next()) DeleteRow(it.Row());
  FillList();
  Reselect(row);
}

void SiteManagerDlg::CmSiteDisconnect() {
  iConnected = -1;
  pMain->CmDisconnect(true);
  FillList();
}

void SiteManagerDlg::EvRightClick() {
  LPopupMenu menu;
  const int row = LVGetCurSel(kList);
  const bool isAny = LVGetSelCount(kList) > 0;
  const bool isConnected = row >= 0 && row == iConnected;
  menu.AppendMenuItem(kCommandOk, isConnected ? "再接続" : "接続");
  if (isConnected) menu.AppendMenuItem(kDisconnect, "切断");
  menu.AppendMenuSeparator();
  menu.AppendMenuItem(kAdd, "サイトを追加");
  menu.AppendMenuItem(kProperties, "サイトのプロパティー");
  menu.AppendMenuItem(kDelete, "サイトを削除する");
  menu.EnableMenuItem(kCommandOk, isAny);
  menu.EnableMenuItem(kProperties, isAny);
  menu.EnableMenuItem(kDelete, isAny && !isConnected);
  menu.DisplayPopupMenu(*this);
}

void SiteManagerDlg::CmHelp() {
  LAlertWithButtonText::DisplayOkInfo(
      this,
      "サイトを選択して「接続」をクリックすると、そのサイトに接続します。\nサイトの追加、編集、削除は下のボタンで"
      "行います。接続中のサイトは、切断してから削除してください。",
      "サイト管理", "OK");
}

void SiteManagerDlg::Command(int id, intptr_t data) {
  switch (id) {
    case kSelectionChanged: EnableControls(); return;
    case kAdd: CmSiteAdd(); break;
    case kProperties: CmSiteProperties(); break;
    case kDelete: CmSiteDelete(); break;
    case kDisconnect: CmSiteDisconnect(); break;
    case kRightClick: EvRightClick(); break;
    default: LResizableDialog::Command(id, data); return;
  }
  SetFocus(kList);
}
