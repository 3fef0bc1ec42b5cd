#include "support/window/window.h"

#include <algorithm>
#include <cmath>

#include "platform/clock.h"
#include "platform/event_loop.h"
#include "platform/power.h"
#include "support/strings.h"
#include "support/window/menus.h"
#include "support/window/window_state.h"

void LWindow::Command(int /*id*/, intptr_t /*data*/) {}

LMacWindow::~LMacWindow() {
  // A derived DestroyDialog is out of reach here: owners that need it call DestroyCommon themselves.
  if (pNative) platform::WindowDestroy(pNative);
}

bool LMacWindow::Create(platform::WindowKind kind, LMacWindow* parent, const char* title) {
  if (pNative) return true;
  pNative = platform::WindowCreate(*this, kind, parent ? parent->Native() : nullptr);
  if (!pNative) return false;
  SetCaption(title);
  OnWindowHandleSet();
  return true;
}

void LMacWindow::DestroyCommon() {
  if (!pNative) return;
  if (iSuspendCommand || iResumeCommand) platform::PowerOnSleep({});
  DestroyDialog();
  platform::Window* native = pNative;
  pNative = nullptr;
  for (ListHooks& hook : hooks) hook = ListHooks();
  pDropHandler = nullptr;
  platform::WindowDestroy(native);
}

bool LMacWindow::RunModal(LMacWindow* parent, int centerMode) {
  if (!pNative) return false;
  if (centerMode == 2) CenterDialog(parent);
  LMainMenu::DisableMenus();
  bRunningModal = true;
  EvWindowReady();
  const int code = platform::WindowRunModal(pNative);
  bRunningModal = false;
  LMainMenu::EnableMenus();
  return code == kCommandOk;
}

void LMacWindow::Close(int code) {
  if (pNative && bRunningModal) platform::WindowEndModal(pNative, code);
}

void LMacWindow::Command(int id, intptr_t data) {
  if (id == kCommandOk) {
    if (CmOk()) Close(kCommandOk);
  } else if (id == kCommandCancel) {
    if (CmCancel()) Close();
  } else if (id == kCommandShowHelp) {
    CmHelp();
  } else {
    LWindow::Command(id, data);
  }
}

// Events of the native window

void LMacWindow::OnCommand(int id, intptr_t data) { Command(id, data); }

void LMacWindow::OnCloseRequested() { Command(kCommandCancel, 0); }

void LMacWindow::OnShownOrHidden(bool shown) { shown ? EvShow() : EvHide(); }

void LMacWindow::OnActivated(bool active) { active ? EvActivate() : EvDeactivate(); }

// The window

void LMacWindow::SetCaption(const char* title) {
  if (pNative) platform::WindowSetTitle(pNative, title);
}

void LMacWindow::ShowWindow(bool show) {
  if (pNative) platform::WindowShow(pNative, show);
}

bool LMacWindow::IsWindowVisible() const { return pNative && platform::WindowIsVisible(pNative); }

void LMacWindow::BringToFront() {
  if (pNative) platform::WindowRaise(pNative);
}

void LMacWindow::Wait(unsigned milliseconds) {
  while (milliseconds > 0) {
    const unsigned slice = std::min(milliseconds, platform::kEventLoopDrawMs);
    platform::ClockSleepMs(slice);
    platform::EventLoopDraw();
    milliseconds -= slice;
  }
}

void LMacWindow::CenterDialog(LMacWindow* parent) {
  if (pNative) platform::WindowCenter(pNative, parent ? parent->Native() : nullptr);
}

void LMacWindow::SetClientSize(int width, int height) {
  if (pNative) platform::WindowSetClientSize(pNative, width, height);
}

void LMacWindow::GetClientSize(int& width, int& height) const {
  width = height = 0;
  if (pNative) platform::WindowGetClientSize(pNative, width, height);
}

double LMacWindow::GetBackingScaleFactor() const { return pNative ? platform::WindowScaleFactor(pNative) : 1.0; }

double LMacWindow::HorizontalUnit() const {
  double horizontal = 0, vertical = 0;
  if (pNative) platform::WindowDialogUnits(pNative, horizontal, vertical);
  return horizontal;
}

double LMacWindow::VerticalUnit() const {
  double horizontal = 0, vertical = 0;
  if (pNative) platform::WindowDialogUnits(pNative, horizontal, vertical);
  return vertical;
}

int LMacWindow::UnitsToPixelsX(double units) const {
  return static_cast<int>(std::floor(units * HorizontalUnit() + 0.5));
}

int LMacWindow::UnitsToPixelsY(double units) const {
  return static_cast<int>(std::floor(units * VerticalUnit() + 0.5));
}

void LMacWindow::WindowSizeSettingsStore(const char* key) {
  if (!pNative) return;
  const bool maximized = platform::WindowIsMaximized(pNative);
  WindowStateSet(key, "Maximized", maximized);
  // The frame of a zoomed window is the screen's: the size to come back to stays as it was stored.
  if (!maximized) {
    const platform::Rect frame = platform::WindowGetFrame(pNative);
    WindowStateSet(key, "X", frame.x);
    WindowStateSet(key, "Y", frame.y);
    WindowStateSet(key, "Width", frame.width);
    WindowStateSet(key, "Height", frame.height);
  }
  WindowStateSynchronize();
}

void LMacWindow::WindowSizeSettingsRestore(const char* key, int defaultWidth, int defaultHeight) {
  if (!pNative) return;
  const int width = WindowStateGet(key, "Width", 0);
  const int height = WindowStateGet(key, "Height", 0);
  if (width > 0 && height > 0) {
    platform::WindowSetFrame(pNative, {WindowStateGet(key, "X", 0), WindowStateGet(key, "Y", 0), width, height});
  } else {
    SetClientSize(UnitsToPixelsX(defaultWidth), UnitsToPixelsY(defaultHeight));
    platform::WindowCenter(pNative, nullptr);
  }
  if (WindowStateGet(key, "Maximized", 0) != 0) platform::WindowMaximize(pNative, true);
}

// Power

void LMacWindow::HearPower() {
  platform::PowerOnSleep([this](bool begins) {
    if (const int command = begins ? iSuspendCommand : iResumeCommand) Command(command, 0);
  });
}

void LMacWindow::HandlePowerSuspendStandBy(int command) {
  iSuspendCommand = command;
  HearPower();
}

void LMacWindow::HandlePowerResume(int command) {
  iResumeCommand = command;
  HearPower();
}

void LMacWindow::SetPowerDownDeny() { platform::IdleSleepDeny(); }
void LMacWindow::SetPowerDownAllow() { platform::IdleSleepAllow(); }
