// Where the local pane has been: a ring of ten folders.
#pragma once

#include "support/containers.h"
#include "support/strings.h"

/// An empty slot is a free slot.
class LExplorerFolderHistory {
 public:
  static constexpr size_t kSize = 10;
  LExplorerFolderHistory();

  /// Drops the forward part; the oldest entry goes when the ring is full. A repeated path changes nothing.
  void Add(const char* path);
  bool IsBackAccessible() const;
  bool IsForwardAccessible() const;
  /// Moves to the entry before and returns it; null if there is none.
  const char* Back();
  /// Moves to the entry behind where there is one, and returns the present entry; null if there is no next one.
  const char* Forward();

 private:
  static size_t Before(size_t index) { return (index + kSize - 1) % kSize; }
  static size_t After(size_t index) { return (index + 1) % kSize; }

  LVector<LStringLongTemplate<char>> entries;
  size_t present = 0;
  size_t start = 0;
};
