// Dialogs that the user may resize, and that come back in the size they had. Main thread only.
#pragma once

#include "support/window/dialog.h"

/// A mix-in for windows that lay their controls out anew for each size.
class LResizable {
 public:
  virtual ~LResizable() = default;
  /// Places the controls in a client area of that many pixels.
  virtual void LayoutControls(int width, int height) = 0;
  /// Calls LayoutControls for the present size; not from within it, and not without a window.
  void RelayoutControls(const LMacWindow& window);
  /// In pixels of the client area.
  void SetMinSizePixels(LMacWindow& window, int width, int height);
  void GetMinSizePixels(int& width, int& height) const;

 private:
  int iMinWidth = 0;
  int iMinHeight = 0;
  bool bInLayout = false;
};

class LResizableDialog : public LDialog, public LResizable {
 public:
  /// Runs the dialog modally in the size kept under the section `key`, else in the one given. Sizes in dialog units.
  /// True for OK; false, with nothing run, for one that is open already, which is shown.
  bool Open(LMacWindow* parent, const char* key, int width, int height, int minWidth, int minHeight);
  /// The same, filled by a generator; sizes in pixels.
  bool Open(LMacWindow* parent, const char* key, const LDialogGenData& data, int minWidth, int minHeight);

  using LDialog::LayoutControls;
  /// Lays out between the window's bars.
  void LayoutControls(int width, int height) override;

 protected:
  void OnResized() override { RelayoutControls(*this); }

 private:
  bool OpenFilled(LMacWindow* parent, const char* key, const LDialogGenData& data, int minWidth, int minHeight);
};
