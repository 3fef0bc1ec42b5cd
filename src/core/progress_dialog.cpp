#include "core/progress_dialog.h"

#include <algorithm>

#include "platform/clock.h"
#include "platform/event_loop.h"
#include "platform/net.h"
#include "support/window/alert.h"
#include "support/window/menus.h"

namespace {

constexpr int kIcon = 110;
constexpr int kActionLine = 101;
constexpr int kItemLine = 102;
constexpr int kBar = 104;
constexpr int kExtraLine = 106;
constexpr int kCredit = 107;
constexpr int kIconResource = 336;
constexpr int kIconSize = 64;
constexpr int kLevels = 2;

/// What is left of `ms` since `start`; a wait for ever stays one.
unsigned TimeLeft(int64_t start, unsigned ms) {
  if (ms == kWaitForever) return ms;
  const int64_t left = start + ms - platform::ClockMonotonicMs();
  return left > 0 ? static_cast<unsigned>(left) : 0;
}

}  // namespace

// LMacProcessInterfaceModal

LMacProcessInterfaceModal::~LMacProcessInterfaceModal() { ModalSessionStop(); }

void LMacProcessInterfaceModal::ModalSessionBegin() {
  bStop = false;
  if (!pSessionWindow->IsWindowValid()) {
    bStop = true;
    return;
  }
  if (!bHasSession) {
    platform::WindowBeginSession(pSessionWindow->Native());
    bHasSession = true;
    LMainMenu::DisableMenus();
  }
  platform::EventLoopPump();
}

void LMacProcessInterfaceModal::ModalSessionStop() {
  bStop = true;
  if (!bHasSession) return;
  bHasSession = false;
  if (pSessionWindow->IsWindowValid()) platform::WindowEndSession(pSessionWindow->Native());
  LMainMenu::EnableMenus();
}

bool LMacProcessInterfaceModal::IsToStop() {
  if (!bStop) platform::EventLoopPumpOften();
  return bStop;
}

LProcessResult LMacProcessInterfaceModal::ProcessWait(unsigned int ms) {
  const int64_t start = platform::ClockMonotonicMs();
  while (true) {
    if (bStop) return LProcessResultStopped;
    platform::EventLoopPump();
    const unsigned left = TimeLeft(start, ms);
    if (left == 0) return LProcessResultOk;
    if (!platform::EventLoopWait(nullptr, 0, left) && !bStop) return LProcessResultOk;
  }
}

LProcessResult LMacProcessInterfaceModal::ProcessWaitSignal(LSignalObjectRef signal, unsigned int ms) {
  LSignalObjectGroup group;
  group.Add(signal);
  return ProcessWaitSignalObjectGroup(group, ms);
}

LProcessResult LMacProcessInterfaceModal::ProcessWaitSignalObjectGroup(LSignalObjectGroup& group, unsigned int ms) {
  int descriptors[LSignalObjectGroup::kCapacity];
  for (size_t i = 0; i < group.count; ++i) descriptors[i] = group.entries[i].fd;
  const int64_t start = platform::ClockMonotonicMs();
  while (true) {
    if (bStop) return LProcessResultStopped;
    platform::EventLoopPump();
    if (group.count != 0 && platform::NetPoll(group.entries, group.count, 0) > 0) return LProcessResultOk;
    const unsigned left = TimeLeft(start, ms);
    if (left == 0) return LProcessResultFailed;
    if (!platform::EventLoopWait(descriptors, group.count, left) && !bStop) return LProcessResultFailed;
  }
}

// LProgressDialog

bool LProgressDialog::_Open(LMacWindow* parent, bool extended) {
  bExtended = extended;
  pParent = parent;
  if (!pParent) pParent = dynamic_cast<LMacWindow*>(platform::WindowTopModal());
  if (pParent && !pParent->IsWindowValid()) return false;
  return CreateProgressDialog();
}

bool LProgressDialog::CreateProgressDialog() {
  if (!Create(platform::WindowKind::kProgress, pParent, szCaption)) return false;
  const int line = UnitsToPixelsY(1.23);
  const int gap = UnitsToPixelsY(0.59);
  const int top = UnitsToPixelsY(0.94);
  const int left = UnitsToPixelsX(2);
  const int width = UnitsToPixelsX(55);
  const int height = UnitsToPixelsY(7.5) + (bExtended ? gap + line : 0);
  SetClientSize(width, height);

  AddIcon(kIcon, kIconResource, kIconSize, "転送");
  MoveControlPixels(kIcon, left, top, kIconSize, kIconSize);
  const int column = left + kIconSize + UnitsToPixelsX(1.25);
  const int room = width - left - column;
  int y = top;
  AddStatic(kActionLine, "", column, y, room, line);
  AddStatic(kItemLine, "", column, y + line, room, line);
  y += 2 * line + gap;
  AddProgressBar(kBar, "進行状況", column, y, room, std::max(UnitsToPixelsY(0.35), 6));
  if (bExtended) AddStatic(kExtraLine, "", column, y + UnitsToPixelsY(0.35) + gap, room, line);

  constexpr int kButtonWidth = 110;
  const int buttonHeight = line + 6;
  AddCancel("キャンセル", width - left - kButtonWidth, height - top - buttonHeight, kButtonWidth, buttonHeight);
  AddStatic(kCredit, "Orvane FTP 5.01 - Tessaly Soft", column, height - top - line, room - kButtonWidth - gap, line);
  EnableControl(kCredit, false);
  CenterDialog(pParent);
  return true;
}

bool LProgressDialog::Open(LMacWindow* parent) {
  if (!_Open(parent, false)) return false;
  OpenModalWindow();
  const bool result = MainFunction();
  CloseModalWindow();
  return result;
}

void LProgressDialog::OpenModalWindow() {
  if (pParent && !pParent->IsWindowVisible()) pParent->ShowWindow(true);
  ModalSessionBegin();
}

void LProgressDialog::CloseModalWindow() {
  if (!IsWindowValid()) return;
  ModalSessionStop();
  DestroyCommon();
  pParent = nullptr;
  SetStopFlag();
}

void LProgressDialog::Close() {
  EnableControl(kCommandCancel, false);
  SetStopFlag();
}

void LProgressDialog::Close(int /*code*/) { Close(); }

void LProgressDialog::Command(int id, intptr_t data) {
  if (id == kCommandCancel) {
    Close();
  } else {
    LDialog::Command(id, data);
  }
}

void LProgressDialog::SetError(const char* text) {
  LAlertWithButtonText::DisplayOkError(View(), text, szCaption, "続行");
}

void LProgressDialog::SetStatus(const char* text, int level) {
  if (level < 0 || level >= kLevels) return;
  SetText(kActionLine + level, text);
  EnableControl(kActionLine + level, true);
}

void LProgressDialog::SetProgress(double fraction) { PBSetProgress(kBar, fraction); }
void LProgressDialog::SetProgressIndeterminateOn() { LMacWindow::PBSetProgressIndeterminateOn(kBar); }
void LProgressDialog::SetProgressIndeterminateOff() { LMacWindow::PBSetProgressIndeterminateOff(kBar); }
