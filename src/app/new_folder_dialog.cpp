#include "app/new_folder_dialog.h"

#include "support/window/dialog.h"

namespace {

enum : int { kName = 101, kPrompt = 102, kLine = 9501 };

void DlgGendlgNEWFOLDER(LDialog& dialog, int x, int y, bool withButtons) {
  dialog.AddStatic(kPrompt, "新規フォルダ名を入力する：", x + 18, y + 16, 228, 21);
  dialog.AddInput(kName, "新規フォルダ名", x + 254, y + 14, 208, 25);
  dialog.AddHLine(kLine, x + 18, y + 46, 444);
  if (!withButtons) return;
  dialog.AddCancel("キャンセル", x + 248, y + 62, 100, 28);
  dialog.AddOk("OK", x + 362, y + 62, 100, 28);
}

class NewFolderDialog : public LDialog {
 public:
  void InitDialog() override { SetFocus(kName); }
  bool CmOk() override {
    GetTextAndTrim(kName, szName);
    return true;
  }

  char szName[kTextSize] = {};
};

}  // namespace

bool NewFolderDlg(LMacWindow* view, char (&name)[kTextSize]) {
  NewFolderDialog dialog;
  if (!dialog.Open(view, LDialog::OpenGenData("新規フォルダ", 480, 99, &DlgGendlgNEWFOLDER))) return false;
  TextCopy(name, dialog.szName);
  return true;
}
