// What logic attaches to a list view: columns, the order of rows, in-place editing, walks. Main thread only.
#pragma once

#include <cstdint>

#include "support/text.h"
#include "support/window/window.h"

/// A column; a table of them ends with a null heading and width -1.
struct LVColDynamicGlobal {
  const char* heading;
  int width;      ///< Relative to the other columns.
  int alignment;  ///< 0 left, 1 centre, 2 right.
};

/// A mix-in that gives a list its order. Outlives the window's list.
class LListViewSorter {
 public:
  explicit LListViewSorter(int column = 0) : iSortColumn(column) {}
  virtual ~LListViewSorter() = default;

  /// The order of two cell texts of the sort column, like strcmp, the direction applied here.
  virtual int LVCompareFunc(LListViewSorter* sorter, const char* a, const char* b);
  virtual void SortStarting() {}
  virtual void SortCompleted() {}

  /// Attaches to a list; sort column and direction are kept under `key` of the section "ListSort".
  void LVSorterInit(LMacWindow& window, int control, const char* key);
  void LVSorterSort();
  /// Takes the column and direction that the user chose in the heading, and keeps them.
  void EvSortChosen();
  /// The user has chosen an order, now or in an earlier run.
  bool IsSortChosen() const { return bSortChosen; }

  // Valid during a compare
  int GetSortColumn() const { return iSortColumn; }
  bool IsAscending() const { return bAscending; }
  intptr_t GetItemData1() const { return iData1; }
  intptr_t GetItemData2() const { return iData2; }

 private:
  friend class LMacWindow;
  LMacWindow* pSortWindow = nullptr;
  int iSortControl = 0;
  int iSortColumn;
  bool bAscending = true;
  bool bSortChosen = false;
  char szSortSection[kTextSize] = {};  ///< Where the order is kept; empty before LVSorterInit.
  intptr_t iData1 = 0;
  intptr_t iData2 = 0;
};

/// A mix-in for lists whose names are edited in place.
class LListViewLabelEditHandler {
 public:
  virtual ~LListViewLabelEditHandler() = default;
  virtual void EvLVLabelEditBegin(int row) = 0;
  virtual void EvLVLabelEditFinish(int row, const char* text) = 0;
  void LVLabelEditInit(LMacWindow& window, int control);
};

/// Walks the selected rows. Takes a snapshot first, so that the walk stands while rows change.
class LVSelectedIterator {
 public:
  LVSelectedIterator(const LMacWindow& window, int control);
  LVSelectedIterator(const LVSelectedIterator&) = delete;
  LVSelectedIterator& operator=(const LVSelectedIterator&) = delete;
  ~LVSelectedIterator() { delete[] pRows; }
  bool IsValid() const { return uPosition < uCount; }
  void Next() { ++uPosition; }
  int Row() const { return pRows[uPosition]; }
  size_t Count() const { return uCount; }

 private:
  int* pRows = nullptr;
  size_t uCount = 0;
  size_t uPosition = 0;
};
