#include "support/window/property_sheet.h"

#include <algorithm>

namespace {

constexpr int kMargin = 8;
constexpr int kButtonRow = 48;
constexpr int kButtonHeight = 28;
constexpr int kButtonWidth = 112;

}  // namespace

// LPropertyPage

bool LPropertyPage::CreatePage(LPropertySheet& sheet, const LDialogGenData& data) {
  if (!sheet.IsWindowValid() || !Create(platform::WindowKind::kPage, &sheet, data.title)) return false;
  pSheet = &sheet;
  SetClientSize(data.width, data.height);
  if (data.generator) data.generator(*this, 0, 0, false);
  return true;
}

void LPropertyPage::BringPageToFront() {
  if (pSheet) pSheet->Select(*this);
}

// LPropertySheet

void LPropertySheet::AddPage(LPropertyPage& page, const LDialogGenData& data, const char* title) {
  if (uCount == kMaxPages) return;
  entries[uCount++] = {&page, data, title ? title : data.title};
  iPageWidth = std::max(iPageWidth, data.width);
  iPageHeight = std::max(iPageHeight, data.height);
}

bool LPropertySheet::Open(LMacWindow* parent, const char* title, int startPage, const char* okText) {
  if (!Create(platform::WindowKind::kDialog, parent, title)) return false;
  if (!CreatePages(okText)) {
    DestroyCommon();
    return false;
  }
  platform::TabsSelect(Native(), kTabs, startPage);
  pFront = Front();
  InitDialog();
  EnableControls();
  if (pFront) ResizeAndRelayout(*pFront);
  const bool ok = Run(parent, 2);
  DestroyCommon();
  return ok;
}

/// The controls are made in the order in which the eye, and the Tab key, meet them.
bool LPropertySheet::CreatePages(const char* okText) {
  platform::ControlCreate(Native(), kTabs, platform::ControlKind::kTabs, "ページ", {0, 0, 0, 0});
  for (size_t i = 0; i < uCount; ++i) {
    if (!entries[i].page->CreatePage(*this, entries[i].data)) return false;
    platform::TabsAddPage(Native(), kTabs, entries[i].page->Native(), entries[i].title);
  }
  platform::ControlBindEvent(Native(), kTabs, platform::ControlEvent::kSelectionChange, kPageChosen);
  AddHelp("ヘルプ", 0, 0, kButtonWidth, kButtonHeight);
  AddCancel("キャンセル", 0, 0, kButtonWidth, kButtonHeight);
  AddOk(okText, 0, 0, kButtonWidth, kButtonHeight);
  return true;
}

void LPropertySheet::ResizeAndRelayout(const LPropertyPage& page) {
  for (size_t i = 0; i < uCount; ++i) {
    if (entries[i].page != &page) continue;
    iPageWidth = std::max(iPageWidth, entries[i].data.width);
    iPageHeight = std::max(iPageHeight, entries[i].data.height);
  }
  int frameWidth = 0, frameHeight = 0;
  platform::TabsFrameSize(Native(), kTabs, frameWidth, frameHeight);
  const int width = iPageWidth + frameWidth;
  const int height = iPageHeight + frameHeight;
  SetClientSize(width + 2 * kMargin, height + kMargin + kButtonRow);
  MoveControlPixels(kTabs, kMargin, kMargin, width, height);
  const int y = height + kMargin + (kButtonRow - kButtonHeight) / 2;
  const int right = kMargin + width;
  MoveControlPixels(kCommandShowHelp, kMargin, y, kButtonWidth, kButtonHeight);
  MoveControlPixels(kCommandCancel, right - 2 * kButtonWidth - kMargin, y, kButtonWidth, kButtonHeight);
  MoveControlPixels(kCommandOk, right - kButtonWidth, y, kButtonWidth, kButtonHeight);
}

LPropertyPage* LPropertySheet::Front() const {
  const int selected = Native() ? platform::TabsSelected(Native(), kTabs) : -1;
  return selected >= 0 && static_cast<size_t>(selected) < uCount ? entries[selected].page : nullptr;
}

void LPropertySheet::Select(const LPropertyPage& page) {
  for (size_t i = 0; i < uCount && Native(); ++i) {
    if (entries[i].page == &page) platform::TabsSelect(Native(), kTabs, static_cast<int>(i));
  }
}

void LPropertySheet::EvPageChosen() {
  LPropertyPage* front = Front();
  if (!front || front == pFront) return;
  if (pFront) pFront->Deactivate();
  pFront = front;
  ResizeAndRelayout(*front);
  front->Activate();
}

void LPropertySheet::Command(int id, intptr_t data) {
  if (id == kPageChosen) {
    EvPageChosen();
  } else {
    LDialog::Command(id, data);
  }
}

bool LPropertySheet::CmOk() {
  for (size_t i = 0; i < uCount; ++i) {
    LPropertyPage* page = entries[i].page;
    if (!page->IsWindowValid() || page->CmOk()) continue;
    Select(*page->PageAtFault());
    return false;
  }
  return true;
}

void LPropertySheet::CmHelp() {
  if (LPropertyPage* front = Front()) front->CmHelp();
}

void LPropertySheet::InitDialog() {
  for (size_t i = 0; i < uCount; ++i) entries[i].page->InitDialog();
}

void LPropertySheet::EvWindowReady() {
  for (size_t i = 0; i < uCount; ++i) entries[i].page->EvWindowReady();
}

void LPropertySheet::DestroyDialog() {
  for (size_t i = 0; i < uCount; ++i) entries[i].page->DestroyCommon();
}

void LPropertySheet::EnableControls() {
  for (size_t i = 0; i < uCount; ++i) entries[i].page->EnableControls();
}
