#include "support/window/drag_drop.h"

void LDragDropHandler::DragDropInit(LMacWindow& window) { window.pDropHandler = this; }

void LMacWindow::OnDropFiles(const char* const* paths, size_t count) {
  if (!pDropHandler) return;
  LDroppedFileData files(paths, count);
  pDropHandler->EvDropFiles(files);
}

// LListViewDropTarget

void LListViewDropTarget::LVDropTargetInit(LMacWindow& window, int control) { window.HooksOf(control).drops = this; }

void LMacWindow::OnListDragEnter(int list, unsigned int& effect) {
  ListHooks* hook = FindHooks(list);
  if (hook && hook->drops) hook->drops->EvDragEnter(effect);
}

void LMacWindow::OnListDragOver(int list, int x, int y, unsigned int& effect) {
  ListHooks* hook = FindHooks(list);
  if (hook && hook->drops) hook->drops->EvDragOver({x, y}, effect);
}

void LMacWindow::OnListDragLeave(int list) {
  ListHooks* hook = FindHooks(list);
  if (hook && hook->drops) hook->drops->EvDragLeave();
}

void LMacWindow::OnListDrop(int list, int x, int y, unsigned int& effect, const char* const* paths, size_t count) {
  ListHooks* hook = FindHooks(list);
  if (hook && hook->drops) hook->drops->EvDrop({x, y}, effect, LDroppedFileData(paths, count));
}
