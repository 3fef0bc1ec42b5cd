// The operations of LMacWindow on single controls: adding them, their state, their texts, their events.
#include "support/strings.h"
#include "support/window/window.h"

using platform::ControlEvent;
using platform::ControlKind;

void LMacWindow::Add(int id, ControlKind kind, const char* text, int x, int y, int width, int height) {
  if (pNative) platform::ControlCreate(pNative, id, kind, text, {x, y, width, height});
}

void LMacWindow::AddStatic(int id, const char* text, int x, int y, int width, int height) {
  Add(id, ControlKind::kStatic, text, x, y, width, height);
}

void LMacWindow::AddInput(int id, const char* name, int x, int y, int width, int height) {
  Add(id, ControlKind::kInput, name, x, y, width, height);
}

void LMacWindow::AddPasswordInput(int id, const char* name, int x, int y, int width, int height) {
  Add(id, ControlKind::kPassword, name, x, y, width, height);
}

void LMacWindow::AddButton(int id, const char* text, int x, int y, int width, int height) {
  Add(id, ControlKind::kButton, text, x, y, width, height);
}

void LMacWindow::AddOk(const char* text, int x, int y, int width, int height) {
  Add(kCommandOk, ControlKind::kDefaultButton, text, x, y, width, height);
}

void LMacWindow::AddCancel(const char* text, int x, int y, int width, int height) {
  Add(kCommandCancel, ControlKind::kButton, text, x, y, width, height);
}

void LMacWindow::AddHelp(const char* text, int x, int y, int width, int height) {
  Add(kCommandShowHelp, ControlKind::kButton, text, x, y, width, height);
}

void LMacWindow::AddGroup(int id, const char* text, int x, int y, int width, int height) {
  Add(id, ControlKind::kGroup, text, x, y, width, height);
}

void LMacWindow::AddRadioButton(int id, const char* text, int x, int y, int width, int height) {
  Add(id, ControlKind::kRadioButton, text, x, y, width, height);
}

void LMacWindow::AddPullDownList(int id, const char* name, int x, int y, int width, int height) {
  Add(id, ControlKind::kPullDownList, name, x, y, width, height);
}

void LMacWindow::AddCheckBox(int id, const char* text, int x, int y, int width, int height) {
  Add(id, ControlKind::kCheckBox, text, x, y, width, height);
}

void LMacWindow::AddHLine(int id, int x, int y, int width) { Add(id, ControlKind::kLine, nullptr, x, y, width, 2); }

void LMacWindow::AddIcon(int id, int resource, int size, const char* name) {
  Add(id, ControlKind::kIcon, name, 0, 0, size, size);
  SetIconIcon(id, LGuiIcon::FromResource(resource), size);
}

void LMacWindow::AddComboBoxExtend(int id, const char* name) { Add(id, ControlKind::kComboBox, name, 0, 0, 0, 0); }

void LMacWindow::AddCoolButtonIconOnly(int id, const char* name, int image, int iconSize) {
  Add(id, ControlKind::kIconButton, name, 0, 0, 0, 0);
  SetIconIcon(id, LGuiIcon::FromResource(image), iconSize);
}

void LMacWindow::AddCoolButtonIconText(int id, const char* text, int image) {
  Add(id, ControlKind::kIconTextButton, text, 0, 0, 0, 0);
  SetIconIcon(id, LGuiIcon::FromResource(image), 16);
}

void LMacWindow::AddCoolButtonTextOnly(int id, const char* text) { Add(id, ControlKind::kButton, text, 0, 0, 0, 0); }

void LMacWindow::AddList(int id, const char* name) { Add(id, ControlKind::kList, name, 0, 0, 0, 0); }

void LMacWindow::AddTools(int id, const char* name) { Add(id, ControlKind::kToolBar, name, 0, 0, 0, 0); }

void LMacWindow::AddStatusWindow(int id, const char* name) { Add(id, ControlKind::kLog, name, 0, 0, 0, 0); }

void LMacWindow::AddPaintControl(int id, const char* name) { Add(id, ControlKind::kDivider, name, 0, 0, 0, 0); }

void LMacWindow::AddProgressBar(int id, const char* name, int x, int y, int width, int height) {
  Add(id, ControlKind::kProgressBar, name, x, y, width, height);
}

// Any control

void LMacWindow::EnableControl(int id, bool enable) {
  if (pNative) platform::ControlEnable(pNative, id, enable);
}

void LMacWindow::ShowControl(int id, bool show) {
  if (pNative) platform::ControlShow(pNative, id, show);
}

void LMacWindow::SetFocus(int id) {
  if (pNative) platform::ControlFocus(pNative, id);
}

void LMacWindow::MoveControlPixels(int id, int x, int y, int width, int height) {
  if (pNative) platform::ControlMove(pNative, id, {x, y, width, height});
}

void LMacWindow::SetToolTip(int id, const char* text) {
  if (pNative) platform::ControlSetToolTip(pNative, id, text);
}

void LMacWindow::SetAccessibleName(int id, const char* name) {
  if (pNative) platform::ControlSetName(pNative, id, name);
}

void LMacWindow::SetTabOrder(const int* ids, size_t count) {
  if (pNative) platform::WindowSetTabOrder(pNative, ids, count);
}

void LMacWindow::SetIconIcon(int id, const LGuiIcon& icon, int size) {
  if (pNative) platform::ControlSetIcon(pNative, id, icon.handle, size);
}

void LMacWindow::BubbleTipShow(int id, const char* text) {
  if (pNative) platform::ControlBubbleTip(pNative, id, text);
}

// Texts

void LMacWindow::GetText(int id, char (&text)[kTextSize]) const {
  text[0] = 0;
  if (pNative) platform::ControlGetText(pNative, id, text);
}

void LMacWindow::GetTextAndTrim(int id, char (&text)[kTextSize]) const {
  GetText(id, text);
  LStringTrimWhiteSpace(text);
}

void LMacWindow::SetText(int id, const char* text) {
  if (pNative) platform::ControlSetText(pNative, id, text);
}

void LMacWindow::SetTextLimit(int id, int characters) {
  if (pNative) platform::ControlSetTextLimit(pNative, id, characters);
}

void LMacWindow::EditPromptSet(int id, const char* text) {
  if (pNative) platform::ControlSetPrompt(pNative, id, text);
}

bool LMacWindow::GetCheck(int id) const { return pNative && platform::ControlGetCheck(pNative, id); }

void LMacWindow::SetCheck(int id, bool check) {
  if (pNative) platform::ControlSetCheck(pNative, id, check);
}

// Combo boxes

void LMacWindow::CBAddString(int id, const char* text) { CBInsertString(id, CBGetCount(id), text); }

void LMacWindow::CBInsertString(int id, int row, const char* text) {
  if (pNative) platform::ComboInsert(pNative, id, row, text);
}

void LMacWindow::CBDeleteItem(int id, int row) {
  if (pNative) platform::ComboDelete(pNative, id, row);
}

void LMacWindow::CBClear(int id) {
  if (pNative) platform::ComboClear(pNative, id);
}

int LMacWindow::CBFindString(int id, const char* text) const {
  return pNative ? platform::ComboFind(pNative, id, text) : -1;
}

int LMacWindow::CBGetCount(int id) const { return pNative ? platform::ComboCount(pNative, id) : 0; }

void LMacWindow::CBSetCurSel(int id, int row) {
  if (pNative) platform::ComboSelect(pNative, id, row);
}

void LMacWindow::CBPromptSet(int id, const char* text) { EditPromptSet(id, text); }

// Pull-down lists

void LMacWindow::PDLAddString(int id, const char* text) { CBInsertString(id, CBGetCount(id), text); }

int LMacWindow::PDLGetCurSel(int id) const { return pNative ? platform::ComboSelected(pNative, id) : -1; }

void LMacWindow::PDLSetCurSel(int id, int row) { CBSetCurSel(id, row); }

// Progress bars

void LMacWindow::PBSetProgress(int id, double fraction) {
  if (pNative) platform::ControlSetProgress(pNative, id, fraction < 0 ? 0 : fraction);
}

void LMacWindow::PBSetProgressIndeterminateOn(int id) {
  if (pNative) platform::ControlSetProgress(pNative, id, -1);
}

void LMacWindow::PBSetProgressIndeterminateOff(int id) { PBSetProgress(id, 0); }

// Events into commands

namespace {

void Bind(platform::Window* window, int id, ControlEvent event, int command) {
  if (window) platform::ControlBindEvent(window, id, event, command);
}

}  // namespace

void LMacWindow::HandleCBSelChange(int id, int command) { Bind(pNative, id, ControlEvent::kSelectionChange, command); }
void LMacWindow::HandleCBReturn(int id, int command) { Bind(pNative, id, ControlEvent::kReturn, command); }
void LMacWindow::HandleCBEdited(int id, int command) { Bind(pNative, id, ControlEvent::kTextEdited, command); }
void LMacWindow::HandlePDLSelChange(int id, int command) { HandleCBSelChange(id, command); }
void LMacWindow::HandleEditTextFocusLost(int id, int command) { Bind(pNative, id, ControlEvent::kFocusLost, command); }
void LMacWindow::HandleLVClick(int id, int command) { Bind(pNative, id, ControlEvent::kClick, command); }
void LMacWindow::HandleLVDoubleClick(int id, int command) { Bind(pNative, id, ControlEvent::kDoubleClick, command); }
void LMacWindow::HandleLVRightClick(int id, int command) { Bind(pNative, id, ControlEvent::kRightClick, command); }
void LMacWindow::HandleLVSelChange(int id, int command) { Bind(pNative, id, ControlEvent::kSelectionChange, command); }
void LMacWindow::HandleLVFocusLost(int id, int command) { Bind(pNative, id, ControlEvent::kFocusLost, command); }
void LMacWindow::HandleLVHeaderRightClick(int id, int command) {
  Bind(pNative, id, ControlEvent::kHeaderRightClick, command);
}
