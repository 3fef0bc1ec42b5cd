// Dialogs: a window that runs modally, filled by a generator. Main thread only.
#pragma once

#include "support/window/window.h"

class LDialog;

/// The description of a generated dialog; sizes in pixels of the client area.
struct LDialogGenData {
  using Generator = void (*)(LDialog& dialog, int x, int y, bool withButtons);
  int width;
  int height;
  const char* title;
  bool bFlag;
  Generator generator;
};

class LDialog : public LMacWindow {
 public:
  static LDialogGenData OpenGenData(const char* title, int width, int height, LDialogGenData::Generator generator,
                                    bool flag = false) {
    return {width, height, title, flag, generator};
  }
  /// Makes the window from the description and runs it modally on `parentView` (may be null). True for OK.
  bool Open(LMacWindow* parentView, const LDialogGenData& data);
  virtual bool Run(LMacWindow* parent, int centerMode);
  virtual void LayoutControls(int /*x*/, int /*y*/, int /*width*/, int /*height*/) {}
  virtual int GetBottomLayoutInset() { return 0; }

 protected:
  bool CreateFromLXA(LMacWindow* parent, const LDialogGenData& data);
};
