// The list operations of platform/window_system.h.
#include <QHeaderView>
#include <algorithm>

#include "platform/qt/list_control.h"
#include "platform/qt/native_window.h"
#include "platform/qt/text.h"

namespace platform {

namespace {

QModelIndex IndexOf(const ListControl& list, int row) { return list.model()->index(row, 0); }

constexpr auto kSelectRow = QItemSelectionModel::Select | QItemSelectionModel::Rows;
constexpr auto kOnlyRow = QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows;

}  // namespace

void ListSetColumns(Window* window, int id, const ListColumn* columns, size_t count) {
  ListControl* list = window->List(id);
  if (!list) return;
  list->Rows().SetColumns(columns, count);
  list->ApplyColumnWidths();
}

int ListAddRow(Window* window, int id, const char* text, Icon icon, intptr_t data) {
  ListControl* list = window->List(id);
  return list ? list->Rows().AddRow(text, icon, data) : -1;
}

void ListSetCell(Window* window, int id, int row, int column, const char* text) {
  if (ListControl* list = window->List(id)) list->Rows().SetCell(row, column, text);
}

void ListGetCell(const Window* window, int id, int row, int column, char (&text)[kFixedText]) {
  text[0] = 0;
  const ListControl* list = window->List(id);
  const ListRow* found = list ? list->Rows().RowAt(row) : nullptr;
  if (!found || column < 0 || static_cast<size_t>(column) >= found->cells.size()) return;
  CopyToFixed(found->cells[static_cast<size_t>(column)], text);
}

intptr_t ListGetData(const Window* window, int id, int row) {
  const ListControl* list = window->List(id);
  const ListRow* found = list ? list->Rows().RowAt(row) : nullptr;
  return found ? found->data : 0;
}

int ListCount(const Window* window, int id) {
  const ListControl* list = window->List(id);
  return list ? static_cast<int>(list->Rows().rows.size()) : 0;
}

void ListClear(Window* window, int id) {
  ListControl* list = window->List(id);
  if (!list) return;
  const bool hadSelection = list->selectionModel()->hasSelection();
  list->Rows().Clear();
  // A reset of the model drops the selection without a signal of its own.
  if (hadSelection) window->SendBound(id, ControlEvent::kSelectionChange);
}

void ListHoldDrawing(Window* window, int id, bool hold) {
  ListControl* list = window->List(id);
  if (!list) return;
  list->Rows().Hold(hold);
  if (!hold) list->ApplyColumnWidths();
}

int ListCurrent(const Window* window, int id) {
  const ListControl* list = window->List(id);
  if (!list) return -1;
  const QItemSelectionModel& selection = *list->selectionModel();
  if (selection.currentIndex().isValid() && selection.isRowSelected(selection.currentIndex().row(), {})) {
    return selection.currentIndex().row();
  }
  int first = -1;
  ListSelectedRows(window, id, &first, 1);
  return first;
}

void ListSetCurrent(Window* window, int id, int row) {
  ListControl* list = window->List(id);
  if (!list) return;
  if (row < 0 || row >= list->model()->rowCount()) {
    list->selectionModel()->clear();
  } else {
    list->selectionModel()->setCurrentIndex(IndexOf(*list, row), kOnlyRow);
  }
}

bool ListIsSelected(const Window* window, int id, int row) {
  const ListControl* list = window->List(id);
  return list && row >= 0 && row < list->model()->rowCount() && list->selectionModel()->isRowSelected(row, {});
}

void ListSelect(Window* window, int id, int row, bool select) {
  ListControl* list = window->List(id);
  if (!list || row < 0 || row >= list->model()->rowCount()) return;
  list->selectionModel()->select(IndexOf(*list, row),
                                 select ? kSelectRow : QItemSelectionModel::Deselect | QItemSelectionModel::Rows);
}

void ListSelectAll(Window* window, int id, bool select) {
  ListControl* list = window->List(id);
  if (!list) return;
  if (select) {
    list->selectAll();
  } else {
    list->clearSelection();
  }
}

int ListSelectedCount(const Window* window, int id) {
  const ListControl* list = window->List(id);
  if (!list) return 0;
  int count = 0;
  for (const QItemSelectionRange& range : list->selectionModel()->selection()) count += range.height();
  return count;
}

size_t ListSelectedRows(const Window* window, int id, int* rows, size_t room) {
  const ListControl* list = window->List(id);
  if (!list) return 0;
  std::vector<int> selected;
  for (const QItemSelectionRange& range : list->selectionModel()->selection()) {
    for (int row = range.top(); row <= range.bottom(); ++row) selected.push_back(row);
  }
  std::sort(selected.begin(), selected.end());
  for (size_t i = 0; i < selected.size() && i < room; ++i) rows[i] = selected[i];
  return selected.size();
}

void ListEnsureVisible(Window* window, int id, int row) {
  if (ListControl* list = window->List(id)) list->scrollTo(IndexOf(*list, row));
}

int ListHitTest(const Window* window, int id, int x, int y) {
  const ListControl* list = window->List(id);
  return list ? list->indexAt(QPoint(x, y)).row() : -1;
}

void ListSetInsertBar(Window* window, int id, int y) {
  if (ListControl* list = window->List(id)) list->SetInsertBar(y);
}

void ListTakeDrops(Window* window, int id) {
  if (ListControl* list = window->List(id)) list->setAcceptDrops(true);
}

void ListDragOut(Window* window, int id) {
  if (ListControl* list = window->List(id)) list->AllowDragOut();
}

void ListEditLabel(Window* window, int id, int row) {
  ListControl* list = window->List(id);
  if (!list || row < 0) return;
  list->setFocus();
  list->edit(IndexOf(*list, row));
}

void WindowFinishEditing(Window* window) { window->FinishEditing(); }

void ListSetColumnEditable(Window* window, int id, int column, bool editable) {
  ListControl* list = window->List(id);
  if (!list || column < 0 || column >= list->model()->columnCount()) return;
  list->Rows().columns[static_cast<size_t>(column)].editable = editable;
}

void ListShowColumn(Window* window, int id, int column, bool show) {
  ListControl* list = window->List(id);
  if (!list) return;
  list->setColumnHidden(column, !show);
  list->ApplyColumnWidths();
}

bool ListIsColumnShown(const Window* window, int id, int column) {
  const ListControl* list = window->List(id);
  return list && !list->isColumnHidden(column);
}

void ListSetSort(Window* window, int id, int column, bool ascending) {
  ListControl* list = window->List(id);
  if (!list) return;
  list->header()->setSortIndicatorShown(true);
  list->sortColumn = column;
  list->sortAscending = ascending;
  list->header()->setSortIndicator(column, ascending ? Qt::AscendingOrder : Qt::DescendingOrder);
}

int ListSortColumn(const Window* window, int id) {
  const ListControl* list = window->List(id);
  return list ? list->sortColumn : 0;
}

bool ListSortAscending(const Window* window, int id) {
  const ListControl* list = window->List(id);
  return !list || list->sortAscending;
}

void ListSort(Window* window, int id) {
  if (ListControl* list = window->List(id)) list->SortRows();
}

}  // namespace platform
