#include "support/window/dialog.h"

bool LDialog::CreateFromLXA(LMacWindow* parent, const LDialogGenData& data) {
  if (!Create(platform::WindowKind::kDialog, parent, data.title)) return false;
  SetClientSize(data.width, data.height);
  if (data.generator) data.generator(*this, 0, 0, true);
  InitDialog();
  EnableControls();
  return true;
}

bool LDialog::Open(LMacWindow* parentView, const LDialogGenData& data) {
  if (!CreateFromLXA(parentView, data)) return false;
  const bool ok = Run(parentView, 2);
  DestroyCommon();
  return ok;
}

bool LDialog::Run(LMacWindow* parent, int centerMode) { return RunModal(parent, centerMode); }
