#include "support/window/alert.h"

#include "support/window/menus.h"

int LAlert::_Run() {
  if (pParentView && !pParentView->IsWindowVisible()) pParentView->ShowWindow(true);
  platform::Alert alert = {szTitle,
                           strMessage.Text(),
                           {szButton1, szButton2, szButton3},
                           iStyle == kError,
                           bShowCheckBox ? szCheckBox : nullptr,
                           bChecked};
  LMainMenu::DisableMenus();
  const int button = platform::AlertRun(pParentView ? pParentView->Native() : nullptr, alert);
  LMainMenu::EnableMenus();
  bChecked = alert.checked;
  return button >= 1 && button <= 3 ? button : 2;
}

namespace {

int RunWith(LMacWindow* view, LAlert::Style style, const char* text, const char* title, const char* first,
            const char* second, const char* third, const char* checkText = nullptr, bool* checked = nullptr) {
  LAlert alert(view);
  alert.iStyle = style;
  alert.strMessage = text;
  TextCopy(alert.szTitle, title);
  TextCopy(alert.szButton1, first);
  TextCopy(alert.szButton2, second);
  TextCopy(alert.szButton3, third);
  if (checkText) {
    alert.bShowCheckBox = true;
    TextCopy(alert.szCheckBox, checkText);
    alert.bChecked = *checked;
  }
  const int button = alert._Run();
  if (checked) *checked = alert.bChecked;
  return button;
}

}  // namespace

bool LAlertWithButtonText::DisplayOkCancel(View view, const char* text, const char* title, const char* ok,
                                           const char* cancel) {
  return RunWith(view, LAlert::kInformation, text, title, ok, cancel, nullptr) == 1;
}

bool LAlertWithButtonText::DisplayOkCancelDefaultCancel(View view, const char* text, const char* title, const char* ok,
                                                        const char* cancel) {
  return RunWith(view, LAlert::kInformation, text, title, cancel, ok, nullptr) == 2;
}

bool LAlertWithButtonText::DisplayYesNo(View view, const char* text, const char* title, const char* yes,
                                        const char* no) {
  return DisplayOkCancel(view, text, title, yes, no);
}

int LAlertWithButtonText::DisplayYesNoCancel(View view, const char* text, const char* title, const char* yes,
                                             const char* no, const char* cancel) {
  return RunWith(view, LAlert::kInformation, text, title, yes, cancel, no);
}

void LAlertWithButtonText::DisplayOkInfo(View view, const char* text, const char* title, const char* ok) {
  RunWith(view, LAlert::kInformation, text, title, ok, nullptr, nullptr);
}

void LAlertWithButtonText::DisplayOkError(View view, const char* text, const char* title, const char* ok) {
  RunWith(view, LAlert::kError, text, title, ok, nullptr, nullptr);
}

int LAlertWithButtonTextAndCheckBox::DisplayYesNoCancel(LMacWindow* view, const char* text, const char* title,
                                                        const char* checkText, bool& checked, const char* yes,
                                                        const char* no, const char* cancel) {
  return RunWith(view, LAlert::kInformation, text, title, yes, cancel, no, checkText, &checked);
}
