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

}  // namespace

LMainWindow::LMainWindow() { pInstance = this; }

LMainWindow::~LMainWindow() {
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
  if (iDontQuitCounter != 0 || platform::WindowTopModal() != nullptr) return false;
  CloseMainWindow();
  return true;
}

void LMainWindow::CloseMainWindow() {
  mainToolBar.StoreState();
  if (iDontQuitCounter != 0) return;
  if (auto* top = dynamic_cast<LMacWindow*>(platform::WindowTopModal())) {
    top->Command(kCommandCancel, 0);
    platform::EventLoopPost([] {
      if (pInstance) pInstance->Command(kCommandCloseAgain, 0);
    });
    return;
  }
  MainWindowDestroy();
  soApplicationEventLoopFinished.Signal();
  platform::ApplicationQuit(0);
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
