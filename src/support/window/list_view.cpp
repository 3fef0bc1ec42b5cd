#include "support/window/list_view.h"

#include "support/parsing.h"
#include "support/window/window_state.h"

// What LMacWindow keeps about its lists

LMacWindow::ListHooks* LMacWindow::FindHooks(int list) {
  for (ListHooks& hook : hooks) {
    if (hook.id == list) return &hook;
  }
  return nullptr;
}

LMacWindow::ListHooks& LMacWindow::HooksOf(int list) {
  if (ListHooks* found = FindHooks(list)) return *found;
  ListHooks* free = FindHooks(0);
  if (!free) free = &hooks[kMaxLists - 1];
  *free = ListHooks();
  free->id = list;
  return *free;
}

int LMacWindow::OnCompareRows(int list, const char* first, const char* second, intptr_t firstData, intptr_t secondData,
                              int column, bool ascending) {
  ListHooks* hook = FindHooks(list);
  if (!hook || !hook->sorter) return 0;
  LListViewSorter& sorter = *hook->sorter;
  sorter.iSortColumn = column;
  sorter.bAscending = ascending;
  sorter.iData1 = firstData;
  sorter.iData2 = secondData;
  return sorter.LVCompareFunc(&sorter, first, second);
}

void LMacWindow::OnSortRequested(int list) {
  ListHooks* hook = FindHooks(list);
  if (hook && hook->sorter) hook->sorter->EvSortChosen();
}

void LMacWindow::OnLabelEditBegin(int list, int row) {
  ListHooks* hook = FindHooks(list);
  if (hook && hook->labels) hook->labels->EvLVLabelEditBegin(row);
}

void LMacWindow::OnLabelEditFinish(int list, int row, const char* text) {
  ListHooks* hook = FindHooks(list);
  if (hook && hook->labels) hook->labels->EvLVLabelEditFinish(row, text);
}

// Rows and columns

void LMacWindow::LVInit(int id, const LVColDynamicGlobal* columns) {
  if (!pNative) return;
  constexpr size_t kMaxColumns = 16;
  platform::ListColumn native[kMaxColumns];
  size_t count = 0;
  for (; columns[count].heading && count < kMaxColumns; ++count) {
    native[count] = {columns[count].heading, columns[count].width, columns[count].alignment};
  }
  HooksOf(id);
  platform::ListSetColumns(pNative, id, native, count);
}

int LMacWindow::LVAddString(int id, const char* text, int image, intptr_t data) {
  if (!pNative) return -1;
  const ListHooks* hook = FindHooks(id);
  const platform::Icon icon = hook && hook->images ? hook->images->IconAt(image) : 0;
  return platform::ListAddRow(pNative, id, text, icon, data);
}

void LMacWindow::LVSetColumnString(int id, int row, int column, const char* text) {
  if (pNative) platform::ListSetCell(pNative, id, row, column, text);
}

void LMacWindow::LVGetColumnString(int id, int row, int column, char (&text)[kTextSize]) const {
  text[0] = 0;
  if (pNative) platform::ListGetCell(pNative, id, row, column, text);
}

intptr_t LMacWindow::LVGetItemData(int id, int row) const {
  return pNative ? platform::ListGetData(pNative, id, row) : 0;
}

int LMacWindow::LVGetCount(int id) const { return pNative ? platform::ListCount(pNative, id) : 0; }

void LMacWindow::LVClear(int id) {
  if (pNative) platform::ListClear(pNative, id);
}

void LMacWindow::LVHoldDrawing(int id, bool hold) {
  if (pNative) platform::ListHoldDrawing(pNative, id, hold);
}

// Selection

int LMacWindow::LVGetCurSel(int id) const { return pNative ? platform::ListCurrent(pNative, id) : -1; }

void LMacWindow::LVSetCurSel(int id, int row) {
  if (pNative) platform::ListSetCurrent(pNative, id, row);
}

bool LMacWindow::LVGetSel(int id, int row) const { return pNative && platform::ListIsSelected(pNative, id, row); }

void LMacWindow::LVSetSel(int id, int row, bool select) {
  if (pNative) platform::ListSelect(pNative, id, row, select);
}

int LMacWindow::LVGetSelCount(int id) const { return pNative ? platform::ListSelectedCount(pNative, id) : 0; }

void LMacWindow::LVSelectAll(int id) {
  if (pNative) platform::ListSelectAll(pNative, id, true);
}

void LMacWindow::LVSelectNone(int id) {
  if (pNative) platform::ListSelectAll(pNative, id, false);
}

int LMacWindow::LVFindColumnString(int id, int column, const char* text) const {
  const int count = LVGetCount(id);
  char cell[kTextSize];
  for (int row = 0; row < count; ++row) {
    LVGetColumnString(id, row, column, cell);
    if (strcmp(cell, text) == 0) return row;
  }
  return -1;
}

// The rest

void LMacWindow::LVEnsureVisible(int id, int row) {
  if (pNative) platform::ListEnsureVisible(pNative, id, row);
}

int LMacWindow::LVHitTest(int id, int x, int y) const {
  return pNative ? platform::ListHitTest(pNative, id, x, y) : -1;
}

void LMacWindow::LVDrawInsertBar(int id, int y) {
  if (pNative && y >= 0) platform::ListSetInsertBar(pNative, id, y);
}

void LMacWindow::LVClearInsertBar(int id) {
  if (pNative) platform::ListSetInsertBar(pNative, id, -1);
}

void LMacWindow::LVEditCurLabel(int id) {
  if (pNative) platform::ListEditLabel(pNative, id, LVGetCurSel(id));
}

void LMacWindow::LVSetImages(int id, const LLVImageList* images) { HooksOf(id).images = images; }

void LMacWindow::LVSetStyleDefaultText(int id, const char* text) { EditPromptSet(id, text); }

void LMacWindow::LVShowColumn(int id, int column, bool show) {
  if (pNative) platform::ListShowColumn(pNative, id, column, show);
}

bool LMacWindow::LVIsColumnHidden(int id, int column) const {
  return pNative && !platform::ListIsColumnShown(pNative, id, column);
}

void LMacWindow::LVSetColumnEditable(int id, int column, bool editable) {
  if (pNative) platform::ListSetColumnEditable(pNative, id, column, editable);
}

// LListViewSorter

int LListViewSorter::LVCompareFunc(LListViewSorter* sorter, const char* a, const char* b) {
  const int order = LStringCompareLogical(a, b);
  return sorter->IsAscending() ? order : -order;
}

void LListViewSorter::LVSorterInit(LMacWindow& window, int control, const char* key) {
  pSortWindow = &window;
  iSortControl = control;
  window.HooksOf(control).sorter = this;
  TextFormat(szSortSection, "ListSort/%s", key);
  iSortColumn = WindowStateGet(szSortSection, "Column", iSortColumn);
  bAscending = WindowStateGet(szSortSection, "Ascending", 1) != 0;
  bSortChosen = WindowStateGet(szSortSection, "Column", -1) >= 0;
  if (window.Native()) platform::ListSetSort(window.Native(), control, iSortColumn, bAscending);
}

void LListViewSorter::LVSorterSort() {
  if (!pSortWindow || !pSortWindow->Native()) return;
  SortStarting();
  platform::ListSort(pSortWindow->Native(), iSortControl);
  SortCompleted();
}

void LListViewSorter::EvSortChosen() {
  if (!pSortWindow || !pSortWindow->Native()) return;
  iSortColumn = platform::ListSortColumn(pSortWindow->Native(), iSortControl);
  bAscending = platform::ListSortAscending(pSortWindow->Native(), iSortControl);
  bSortChosen = true;
  WindowStateSet(szSortSection, "Column", iSortColumn);
  WindowStateSet(szSortSection, "Ascending", bAscending);
  WindowStateSynchronize();
  LVSorterSort();
}

// LListViewLabelEditHandler

void LListViewLabelEditHandler::LVLabelEditInit(LMacWindow& window, int control) {
  window.HooksOf(control).labels = this;
}

// LVSelectedIterator

LVSelectedIterator::LVSelectedIterator(const LMacWindow& window, int control) {
  const int selected = window.LVGetSelCount(control);
  if (selected <= 0) return;
  uCount = static_cast<size_t>(selected);
  pRows = new int[uCount];
  platform::ListSelectedRows(window.Native(), control, pRows, uCount);
}
