#include "client/permissions_dialog.h"

namespace {

/// A class of users: three boxes side by side, behind their heading.
struct Row {
  int heading;
  const char* title;
  int firstBox;  ///< Read; write and execute follow.
  unsigned char PermissionDigits::*digit;
};
constexpr Row kRows[] = {
    {107, "所有者", 109, &PermissionDigits::owner},
    {112, "グループ", 114, &PermissionDigits::group},
    {117, "その他", 119, &PermissionDigits::others},
};
constexpr const char* kRights[] = {"読み取り", "書き込み", "実行"};
constexpr unsigned char kBits[] = {4, 2, 1};
constexpr int kLine = 9501;

void DlgGendlgCHANGEFILEPERMS(LDialog& dialog, int x, int y, bool withButtons) {
  for (int row = 0; row < 3; ++row) {
    const int top = y + 14 + row * 32;
    dialog.AddStatic(kRows[row].heading, kRows[row].title, x + 18, top, 102, 25);
    for (int box = 0; box < 3; ++box) {
      const int id = kRows[row].firstBox + box;
      dialog.AddCheckBox(id, kRights[box], x + 132 + box * 112, top, 104, 25);
      char name[kTextSize];
      TextFormat(name, "%s：%s", kRows[row].title, kRights[box]);
      dialog.SetAccessibleName(id, name);
    }
  }
  dialog.AddHLine(kLine, x + 18, y + 116, 444);
  if (!withButtons) return;
  dialog.AddCancel("キャンセル", x + 248, y + 130, 104, 28);
  dialog.AddOk("OK", x + 358, y + 130, 104, 28);
}

}  // namespace

bool LChangeFilePermissionsDlg::Ask(LMacWindow* view, PermissionDigits& digits) {
  LChangeFilePermissionsDlg dialog;
  dialog.values = digits;
  if (!dialog.Open(view, OpenGenData("ファイルのパーミッションを変更する", 480, 171, &DlgGendlgCHANGEFILEPERMS))) {
    return false;
  }
  digits = dialog.values;
  return true;
}

void LChangeFilePermissionsDlg::InitDialog() {
  for (const Row& row : kRows) {
    for (int box = 0; box < 3; ++box) SetCheck(row.firstBox + box, (values.*row.digit & kBits[box]) != 0);
  }
}

bool LChangeFilePermissionsDlg::CmOk() {
  for (const Row& row : kRows) {
    values.*row.digit = 0;
    for (int box = 0; box < 3; ++box) {
      if (GetCheck(row.firstBox + box)) values.*row.digit |= kBits[box];
    }
  }
  return true;
}
