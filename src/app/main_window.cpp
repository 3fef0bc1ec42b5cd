#include "app/main_window.h"

#include "app/command_ids.h"
#include "platform/event_loop.h"
#include "support/program.h"

LSignalObject soApplicationEventLoopFinished;
LMainWindow* LMainWindow::pInstance;
int LMainWindow::iDontQuitCounter;

namespace {

constexpr const char* kStateKey = "MainWindow";
constexpr int kDefaultWidth = 150;  // Dialog units.
constexpr int kDefaultHeight = 35;
constexpr int kMinimumWidth = 100;
constexpr int kMinimumHeight = 20;
constexpr unsigned kCloseAgainMs = 10;

}  // namespace

LMainWindow::LMainWindow() { pInstance = this; }

LMainWindow::~LMainWindow() {
  platform::TimerDestroy(pCloseTimer);
  if (pInstance == this) pInstance = nullptr;
}

void LMainWindow::MainWindowInitCommon() {
  Create(platform::WindowKind::kMain, nullptr, kProgramName);
  statusBar.StatusBarInit(*this);
  mainToolBar.Init(*this, platform::kMainToolBar, "Main");
  platform::EventLoopPost([] {
    if (pInstance) pInstance->Command(kCommandPostInit, 0);
  });
  platform::WindowSetMinimumClientSize(Native(), UnitsToPixelsX(kMinimumWidth), UnitsToPixelsY(kMinimumHeight));
  WindowSizeSettingsRestore(kStateKey, kDefaultWidth, kDefaultHeight);
  InitDialog();
  EnableControls();
  mainToolBar.RestoreState();
  RelayoutControls();
  ShowWindow(true);
}

void LMainWindow::MainWindowDestroy() {
  if (bDestroyed) return;
  bDestroyed = true;
  WindowSizeSettingsStore(kStateKey);
  ShowWindow(false);
  bLaidOut = false;
  DestroyCommon();
}

bool LMainWindow::CmExit() {
  if (iDontQuitCounter != 0 || platform::WindowTopModal() != nullptr || platform::AlertIsOpen()) return false;
  CloseMainWindow();
  return true;
}

void LMainWindow::CloseMainWindow() {
  mainToolBar.StoreState();
  if (iDontQuitCounter != 0) return;
  // An alert may stand above a dialog, and its code is on the stack below this call: it goes first.
  if (platform::AlertDismiss()) return CloseOnNextTurn();
  if (auto* top = dynamic_cast<LMacWindow*>(platform::WindowTopModal())) {
    top->Command(kCommandCancel, 0);
    return CloseOnNextTurn();
  }
  MainWindowDestroy();
  soApplicationEventLoopFinished.Signal();
  platform::ApplicationQuit(0);
}

/// By a timer: a call posted from a posted call is served in the same turn, and a job that pumps would never
/// get on to see that it was cancelled.
void LMainWindow::CloseOnNextTurn() {
  if (!pCloseTimer) {
    pCloseTimer = platform::TimerCreate([this] { Command(kCommandCloseAgain, 0); });
  }
  platform::TimerArm(pCloseTimer, kCloseAgainMs);
}

void LMainWindow::RelayoutControls() {
  if (!bLaidOut || bInLayout || !IsWindowValid()) return;
  bInLayout = true;
  int width = 0, height = 0;
  GetClientSize(width, height);
  LayoutControls(width, height);
  bInLayout = false;
}

void LMainWindow::Command(int id, intptr_t data) {
  switch (id) {
    case kCommandPostInit: Command(kCommandWindowReady, 0); break;
    case kCommandWindowReady: EvWindowReady(); break;
    case kCommandCloseAgain: CloseMainWindow(); break;
    case kCommandHideWindow:
    case kCommandCancel: ShowWindow(false); break;
    case kCommandQuit: CmExit(); break;
    default: LMacWindow::Command(id, data);
  }
}
