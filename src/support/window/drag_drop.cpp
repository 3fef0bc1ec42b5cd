#include "support/window/drag_drop.h"

void LDragDropHandler::DragDropInit(LMacWindow& window) { window.pDropHandler = this; }

void LMacWindow::OnDropFiles(const char* const* paths, size_t count) {
  if (!pDropHandler) return;
  LDroppedFileData files(paths, count);
  pDropHandler->EvDropFiles(files);
}
