#include "app/folder_history.h"

LExplorerFolderHistory::LExplorerFolderHistory() {
  for (size_t i = 0; i < kSize; ++i) entries.Add(LStringLongTemplate<char>());
}

void LExplorerFolderHistory::Add(const char* path) {
  if (!path[0] || strcmp(entries[present].Text(), path) == 0) return;
  const size_t next = After(present);
  if (next == start) start = After(start);
  if (!entries[present].IsEmpty()) present = next;
  entries[present] = path;
  for (size_t i = After(present); i != start; i = After(i)) entries[i] = "";
}

bool LExplorerFolderHistory::IsBackAccessible() const {
  return present != start && !entries[Before(present)].IsEmpty();
}

bool LExplorerFolderHistory::IsForwardAccessible() const { return !entries[After(present)].IsEmpty(); }

const char* LExplorerFolderHistory::Back() {
  if (!IsBackAccessible()) return nullptr;
  present = Before(present);
  return entries[present].Text();
}

const char* LExplorerFolderHistory::Forward() {
  const size_t next = After(present);
  if (entries[next].IsEmpty()) return nullptr;
  if (next != start) present = next;
  return entries[present].Text();
}
