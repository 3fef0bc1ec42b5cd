// Dragging in the contract of windows: files of this machine that are dropped on a window, what is dragged over the
// rows of a list, and rows that are dragged out as files. Main thread only.
#pragma once

#include <cstddef>

#include "support/strings.h"
#include "support/window/window.h"

/// A point of a list's rows, in pixels from their upper left corner.
struct LPoint {
  int x;
  int y;
};

/// The paths of a drop. They are the window system's: good for as long as the handler of the drop runs.
class LDroppedFileData {
 public:
  LDroppedFileData(const char* const* paths, size_t count) : pPaths(paths), uCount(count) {}

 private:
  friend class LDroppedFilesIterator;
  const char* const* pPaths;
  size_t uCount;
};

/// Walks the paths in the order of the drop.
class LDroppedFilesIterator {
 public:
  explicit LDroppedFilesIterator(const LDroppedFileData& files) : data(files) {}
  bool IsValid() const { return uPosition < data.uCount; }
  void Next() { ++uPosition; }
  const char* Path() const { return data.pPaths[uPosition]; }

 private:
  const LDroppedFileData& data;
  size_t uPosition = 0;
};

/// A mix-in for whoever takes what is dropped on a window. Outlives the window.
class LDragDropHandler {
 public:
  virtual ~LDragDropHandler() = default;
  /// Runs in the window system's drop callback, while the source of the drag keeps the files for us.
  virtual void EvDropFiles(LDroppedFileData& files) = 0;
  /// One handler for a window.
  void DragDropInit(LMacWindow& window);
};

/// A mix-in for a list that looks at each step of a drag over its rows. Outlives the window's list. All run in the
/// window system's callbacks. `effect` is what a drop would do, 0 nothing and 1 a copy; a step may change it. All
/// return true.
class LListViewDropTarget {
 public:
  virtual ~LListViewDropTarget() = default;
  virtual bool EvDragEnter(unsigned int& effect) = 0;
  virtual bool EvDragOver(const LPoint& point, unsigned int& effect) = 0;
  /// The drag went on, or was given up.
  virtual bool EvDragLeave() = 0;
  /// In place of EvDragLeave.
  virtual bool EvDrop(const LPoint& point, unsigned int& effect, const LDroppedFileData& files) = 0;
  void LVDropTargetInit(LMacWindow& window, int control);
};

/// A mix-in for a list whose selected rows are dragged out as files. At most one drag session runs at a time. Outlives
/// the window's list.
class LListViewDragHandler {
 public:
  virtual ~LListViewDragHandler();
  /// A drag begins. False if there is nothing to drag.
  virtual bool EvDragHandlerBegin() = 0;
  /// Adds the paths at which the dragged rows are files of this machine. With `fetch` they are brought there first, as
  /// far as that goes.
  virtual void EvDragHandlerNeedsFiles(LStringListTemplate<char>& paths, bool fetch) = 0;
  void LVDragInit(LMacWindow& window, int control);
  /// Clears the session, the present handler and the dragged list.
  static void DragSessionFinished();

 private:
  friend class LMacWindow;
  static bool bDragSession;
  static LListViewDragHandler* pPresentHandler;  ///< Null without a session; likewise the list.
  static int iDraggedList;
};
