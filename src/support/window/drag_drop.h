// Dragging in the contract of windows: files of this machine that are dropped on a window. Main thread only.
#pragma once

#include <cstddef>

#include "support/window/window.h"

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
