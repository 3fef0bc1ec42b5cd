// The dialog of nine check boxes for the rights of a remote file. Main thread only.
#pragma once

#include "support/window/dialog.h"

/// Each a sum of 4 to read, 2 to write and 1 to execute.
struct PermissionDigits {
  unsigned char owner, group, others;
};

class LChangeFilePermissionsDlg : public LDialog {
 public:
  /// Shows `digits` and takes what the user made of them. False, with nothing changed, when cancelled.
  static bool Ask(LMacWindow* view, PermissionDigits& digits);

  void InitDialog() override;
  bool CmOk() override;

 private:
  PermissionDigits values = {0, 0, 0};
};
