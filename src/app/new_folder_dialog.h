// The dialog that asks for the name of a new folder, for both panes. Main thread only.
#pragma once

#include "support/text.h"

class LMacWindow;

/// The trimmed name; false when cancelled.
bool NewFolderDlg(LMacWindow* view, char (&name)[kTextSize]);
