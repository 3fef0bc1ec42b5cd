// Message boxes. Main thread only; any event may run while one is open.
#pragma once

#include "support/strings.h"
#include "support/window/window.h"

/// A message with up to three buttons and a check box. Holds the box's state for one run: keeping it is the
/// caller's business.
class LAlert {
 public:
  enum Style { kInformation = 1, kError = 2 };
  explicit LAlert(LMacWindow* parentView) : pParentView(parentView) {}
  /// 1, 2 or 3 by the button's place, anything unknown 2. All menu items are off meanwhile.
  int _Run();

  LMacWindow* pParentView;
  Style iStyle = kInformation;
  bool bShowCheckBox = false;
  char szCheckBox[kTextSize] = {};
  bool bChecked = false;
  LStringLongTemplate<char> strMessage;
  char szTitle[kTextSize] = {};
  char szButton1[kTextSize] = "OK";
  char szButton2[kTextSize] = {};
  char szButton3[kTextSize] = {};
};

class LAlertWithButtonText {
 public:
  using View = LMacWindow*;
  static bool DisplayOkCancel(View, const char* text, const char* title, const char* ok, const char* cancel);
  /// The cancel button is first, so it is the default.
  static bool DisplayOkCancelDefaultCancel(View, const char* text, const char* title, const char* ok,
                                           const char* cancel);
  static bool DisplayYesNo(View, const char* text, const char* title, const char* yes, const char* no);
  /// 1 yes, 2 cancel, 3 no.
  static int DisplayYesNoCancel(View, const char* text, const char* title, const char* yes, const char* no,
                                const char* cancel);
  static void DisplayOkInfo(View, const char* text, const char* title, const char* ok);
  static void DisplayOkError(View, const char* text, const char* title, const char* ok);
};

class LAlertWithButtonTextAndCheckBox {
 public:
  /// 1 yes, 2 cancel, 3 no; `checked` is in and out, also when cancelled.
  static int DisplayYesNoCancel(LMacWindow*, const char* text, const char* title, const char* checkText, bool& checked,
                                const char* yes, const char* no, const char* cancel);
};
