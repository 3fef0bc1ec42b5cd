#include "support/window/drag_drop.h"

void LDragDropHandler::DragDropInit(LMacWindow& window) {
  window.pDropHandler = this;
  if (window.Native()) platform::WindowTakeDrops(window.Native());
}

void LMacWindow::OnDropFiles(const char* const* paths, size_t count) {
  if (!pDropHandler) return;
  LDroppedFileData files(paths, count);
  pDropHandler->EvDropFiles(files);
}

// LListViewDropTarget

void LListViewDropTarget::LVDropTargetInit(LMacWindow& window, int control) {
  window.HooksOf(control).drops = this;
  if (window.Native()) platform::ListTakeDrops(window.Native(), control);
}

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

// LListViewDragHandler

bool LListViewDragHandler::bDragSession;
LListViewDragHandler* LListViewDragHandler::pPresentHandler;
int LListViewDragHandler::iDraggedList;

LListViewDragHandler::~LListViewDragHandler() {
  if (pPresentHandler == this) DragSessionFinished();
}

void LListViewDragHandler::LVDragInit(LMacWindow& window, int control) {
  window.HooksOf(control).drags = this;
  if (window.Native()) platform::ListDragOut(window.Native(), control);
}

void LListViewDragHandler::DragSessionFinished() {
  bDragSession = false;
  pPresentHandler = nullptr;
  iDraggedList = 0;
}

bool LMacWindow::OnListDragBegin(int list) {
  ListHooks* hook = FindHooks(list);
  if (LListViewDragHandler::bDragSession || !hook || !hook->drags || !hook->drags->EvDragHandlerBegin()) return false;
  LListViewDragHandler::bDragSession = true;
  LListViewDragHandler::pPresentHandler = hook->drags;
  LListViewDragHandler::iDraggedList = list;
  return true;
}

bool LMacWindow::OnListDragNeedsFiles(int list, bool fetch, const std::function<void(const char*)>& add) {
  if (!LListViewDragHandler::bDragSession || LListViewDragHandler::iDraggedList != list) return false;
  LStringListTemplate<char> paths;
  LListViewDragHandler::pPresentHandler->EvDragHandlerNeedsFiles(paths, fetch);
  for (size_t i = 0; i < paths.count; ++i) add(paths.strings[i]);
  return true;
}

void LMacWindow::OnListDragFinished(int /*list*/) { LListViewDragHandler::DragSessionFinished(); }
