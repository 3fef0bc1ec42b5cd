// The local pane: the left-hand list, which shows one folder of this machine. Main thread only.
#pragma once

#include "app/folder_history.h"
#include "support/containers.h"
#include "support/strings.h"
#include "support/window/list_view.h"

/// One entry of a folder; lives only while the folder is loaded.
struct LExpListItem {
  LExpListItem* next;
  bool isFolder;  ///< Follows links.
  char name[kTextSize];
  char extension[kTextSize];  ///< Dot included.
  uint64_t size;              ///< Bytes; 0 if it cannot be read.
  int64_t modified;           ///< Seconds since 1970; 0 if it cannot be read.
};
template <>
int LListArrayComparePtr<LExpListItem>(const LExpListItem* a, const LExpListItem* b);

class LExplorerFolderControl : public LListViewSorter {
 public:
  enum Column { kName, kSize, kKind, kModified };
  // What the list sends to its window
  static constexpr int kRightClick = 400;
  static constexpr int kSelectionChanged = 401;
  static constexpr int kOpen = 1005;

  /// Makes the list control and opens the user's documents folder.
  void Init(LMacWindow& window, int control);
  void InitTreePanel();

  void ListView_OpenFolderPath(const char* path);
  /// A negative row reloads; a folder's row opens it.
  void ListView_Expand(int row);
  void CmRefresh();
  void CmUp();
  void CmBack();
  void CmForward();
  bool IsBackAccessible() const { return history.IsBackAccessible(); }
  bool IsForwardAccessible() const { return history.IsForwardAccessible(); }
  /// A folder that does not exist is ignored in silence; always 1.
  int CmOpenFolder(const char* path);
  void EvDoubleClick();
  void EvSelectionChanged();
  void CmClearSelection();

  /// Full paths of the selected rows.
  void GetFilesFromList(LVector<LStringLongTemplate<char>>& files) const;

  int LVCompareFunc(LListViewSorter* sorter, const char* a, const char* b) override;

  const char* Folder() const { return szFolder; }
  bool HasSelection() const { return bHasSelection; }

  char szNameFilter[kTextSize] = {};  ///< Lower case; empty for none.

 private:
  void LoadItems(const char* path, LList<LExpListItem>& items) const;
  void ShowItem(const LExpListItem& item);
  int ImageOf(const LExpListItem& item);

  LMacWindow* pWindow = nullptr;
  int iControl = 0;
  char szFolder[kTextSize] = {};
  LExplorerFolderHistory history;
  bool bKeepHistory = true;  ///< False only while going back.
  bool bHasSelection = false;
  LLVImageList ImageList;
  int iFolderIcon = -1;
};

/// The order of two size texts of this pane; equal lengths are not ordered against each other.
int LocalCompareFileSizes(const char* a, const char* b, bool ascending);
