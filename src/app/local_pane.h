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

class LExplorerFolderControl : public LListViewSorter, public LListViewLabelEditHandler {
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
  /// Opens the field for the new name of the one selected row.
  void CmRename();
  /// Asks, and deletes the selected rows; the list is not reloaded. 1 if it deleted.
  int CmDelete();
  void EvDoubleClick();
  void EvRightClick();
  /// What the list sends; false for a command that is not its own.
  bool Command(int id);

  // Selection
  void EvSelectionChanged();
  /// Deselects the first selected row only.
  void CmClearSelection();
  /// Selects the row of that name beside those that are selected; nothing for a name that is not shown.
  void CmSetSelection(const char* name);
  /// Full paths of the selected rows, and of all.
  void GetFilesFromList(LVector<LStringLongTemplate<char>>& files) const;
  void GetFiles(LVector<LStringLongTemplate<char>>& files) const;

  int LVCompareFunc(LListViewSorter* sorter, const char* a, const char* b) override;
  void EvLVLabelEditBegin(int row) override;
  void EvLVLabelEditFinish(int row, const char* newName) override;

  const char* Folder() const { return szFolder; }
  bool HasSelection() const { return bHasSelection; }

  char szNameFilter[kTextSize] = {};  ///< Lower case; empty for none.

 private:
  void LoadItems(const char* path, LList<LExpListItem>& items) const;
  bool PassesFilter(const char* name) const;
  void ShowItem(const LExpListItem& item);
  int ImageOf(const LExpListItem& item);
  void AddPathOf(int row, LVector<LStringLongTemplate<char>>& files) const;
  bool PathOfName(const char* name, char (&path)[kTextSize]) const;
  void RenameOnDisk(const char* from, const char* to);

  LMacWindow* pWindow = nullptr;
  int iControl = 0;
  char szFolder[kTextSize] = {};
  char szOldName[kTextSize] = {};  ///< Filled while a rename runs; empty for a new folder's row.
  LExplorerFolderHistory history;
  bool bKeepHistory = true;  ///< False only while going back.
  bool bHasSelection = false;
  LLVImageList ImageList;
  int iFolderIcon = -1;
};

/// The order of two size texts of this pane; equal lengths are not ordered against each other.
int LocalCompareFileSizes(const char* a, const char* b, bool ascending);
