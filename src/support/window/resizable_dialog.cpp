#include "support/window/resizable_dialog.h"

#include "support/window/window_state.h"

// LResizable

void LResizable::RelayoutControls(const LMacWindow& window) {
  if (bInLayout || !window.IsWindowValid()) return;
  bInLayout = true;
  int width = 0, height = 0;
  window.GetClientSize(width, height);
  LayoutControls(width, height);
  bInLayout = false;
}

void LResizable::SetMinSizePixels(LMacWindow& window, int width, int height) {
  iMinWidth = width;
  iMinHeight = height;
  if (window.Native()) platform::WindowSetMinimumClientSize(window.Native(), width, height);
}

void LResizable::GetMinSizePixels(int& width, int& height) const {
  width = iMinWidth;
  height = iMinHeight;
}

// LResizableDialog

bool LResizableDialog::Open(LMacWindow* parent, const char* key, int width, int height, int minWidth, int minHeight) {
  if (IsWindowValid()) {
    BringToFront();
    return false;
  }
  if (!Create(platform::WindowKind::kResizable, parent, "")) return false;
  const LDialogGenData data = OpenGenData("", UnitsToPixelsX(width), UnitsToPixelsY(height), nullptr);
  return OpenFilled(parent, key, data, UnitsToPixelsX(minWidth), UnitsToPixelsY(minHeight));
}

bool LResizableDialog::Open(LMacWindow* parent, const char* key, const LDialogGenData& data, int minWidth,
                            int minHeight) {
  if (IsWindowValid()) {
    BringToFront();
    return false;
  }
  if (!Create(platform::WindowKind::kResizable, parent, data.title)) return false;
  return OpenFilled(parent, key, data, minWidth, minHeight);
}

bool LResizableDialog::OpenFilled(LMacWindow* parent, const char* key, const LDialogGenData& data, int minWidth,
                                  int minHeight) {
  if (data.generator) data.generator(*this, 0, 0, true);
  SetMinSizePixels(*this, minWidth, minHeight);
  SetClientSize(data.width, data.height);
  if (WindowStateGet(key, "Width", 0) > 0) WindowSizeSettingsRestore(key, 0, 0);
  InitDialog();
  EnableControls();
  RelayoutControls(*this);
  const bool ok = Run(parent, 2);
  WindowSizeSettingsStore(key);
  DestroyCommon();
  return ok;
}

void LResizableDialog::LayoutControls(int width, int height) {
  const int top = platform::ToolBarHeight(Native(), platform::kMainToolBar);
  LDialog::LayoutControls(0, top, width, height - top - platform::StatusBarHeight(Native()));
}
