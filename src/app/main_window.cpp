#include "app/main_window.h"

#include "app/command_ids.h"
#include "app/menu_tables.h"
#include "platform/event_loop.h"
#include "sites/store/settings.h"
#include "support/containers.h"
#include "support/program.h"
#include "support/window/alert.h"

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
  LMainMenu::SetWindow(this);
  SetMenu(nullptr, 0, nullptr, 0);  // The sizes below count the menu bar.
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
  ShowToolBarState();
  RelayoutControls();
  if (IsShownAtStartup()) ShowWindow(true);
}

bool LMainWindow::IsShownAtStartup() {
  char shown[kTextSize];
  _LUserSettingGetString("Settings", "MainWindowShownAtStartup", "", shown);
  return LSettingIsOnOrAbsent(shown);
}

void LMainWindow::MainWindowDestroy() {
  if (bDestroyed) return;
  bDestroyed = true;
  WindowSizeSettingsStore(kStateKey);
  ShowWindow(false);
  bLaidOut = false;
  DestroyCommon();
  LMainMenu::SetWindow(nullptr);
}

bool LMainWindow::CmExit() {
  if (iDontQuitCounter != 0 || platform::WindowTopModal() != nullptr || platform::AlertIsOpen()) return false;
  if (!CmCancel()) return false;
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

// Menus and keys

void LMainWindow::SetMenu(const LMenuItem* items, size_t count, const LKeyToCommandMap* keyMap, size_t keyCount) {
  size_t before = 0, behind = 0;
  const LMenuItem* application = ApplicationMenuItems(before);
  const LMenuItem* windowAndHelp = WindowAndHelpMenuItems(behind);
  LVector<LMenuItem> all;
  for (size_t i = 0; i < before; ++i) all.Add(application[i]);
  for (size_t i = 0; i < count; ++i) all.Add(items[i]);
  for (size_t i = 0; i < behind; ++i) all.Add(windowAndHelp[i]);
  pKeyMap = keyMap;
  uKeyCount = keyCount;
  LMainMenu::SetItems(&all[0], all.size, keyMap, keyCount);
  // The desktop has no services, hides no other programs, and the pages have no address.
  for (const int id : {kCommandServices, kCommandHideOthers, kCommandHomePage, kCommandSupportPage, kCommandFeedback,
                       kCommandBugReport, kCommandCheckVersion, kCommandSettings}) {
    LMainMenu::EnableMenuItem(id, false);
  }
}

void LMainWindow::OnMenuOpening() { Command(kCommandMenuOpens, 0); }

bool LMainWindow::OnKey(const platform::KeyPress& press) {
  const int key = LKey::FromKeyPress(press).Value();
  return key != 0 && LKeyHandler::MapKeyToCommand(*this, key, pKeyMap, uKeyCount);
}

void LMainWindow::Reopen() {
  ShowWindow(true);
  BringToFront();
}

void LMainWindow::CmAbout() {
  LAlertWithButtonText::DisplayOkInfo(this, "Orvane FTPファイル転送ソフト v 5.01", "Orvane FTP 情報", "OK");
}

void LMainWindow::ShowToolBarState() {
  LMainMenu::SetMenuTitle(kCommandShowToolBar, mainToolBar.IsShown() ? kHideToolBar : kShowToolBar);
}

void LMainWindow::ToggleToolBar() {
  mainToolBar.Show(!mainToolBar.IsShown());
  ShowToolBarState();
  RelayoutControls();
}

void LMainWindow::Command(int id, intptr_t data) {
  switch (id) {
    case kCommandPostInit: Command(kCommandWindowReady, 0); break;
    case kCommandWindowReady: EvWindowReady(); break;
    case kCommandShowToolBar: ToggleToolBar(); break;
    case kCommandCloseAgain: CloseMainWindow(); break;
    case kCommandAbout: CmAbout(); break;
    case kCommandHelp: CmHelp(); break;
    case kCommandHideWindow:
    case kCommandHide:
    case kCommandCancel: ShowWindow(false); break;
    case kCommandShowAll:
    case kCommandBringToFront:
    case kCommandArrangeInFront: Reopen(); break;
    case kCommandMaximise: platform::WindowMaximize(Native(), !platform::WindowIsMaximized(Native())); break;
    case kCommandMinimise:
    case kCommandMinimiseAll: platform::WindowMinimize(Native()); break;
    case kCommandSettings: CmSettings(); break;
    case kCommandQuit: CmExit(); break;
    default: LMacWindow::Command(id, data);
  }
}
