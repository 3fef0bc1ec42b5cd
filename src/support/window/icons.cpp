#include "support/window/icons.h"

#include "support/strings.h"

LLVImageList::~LLVImageList() {
  while (pHead) {
    LLVIconListable* next = pHead->next;
    delete pHead;
    pHead = next;
  }
}

int LLVImageList::AddIcon(const LGuiIcon& icon) {
  if (icon.IsEmpty()) return -1;
  pHead = new LLVIconListable{pHead, {}, icon.handle, iCount};
  return iCount++;
}

int LLVImageList::FindIndex(const char* key) const {
  char lower[kTextSize];
  TextCopy(lower, key);
  TextLowerAscii(lower);
  for (const LLVIconListable* record = pHead; record; record = record->next) {
    if (record->key[0] && strcmp(record->key, lower) == 0) return record->index;
  }
  return -1;
}

int LLVImageList::GetIndex(const LGuiIcon& icon, const char* key) {
  const int found = FindIndex(key);
  if (found >= 0) return found;
  const int index = AddIcon(icon);
  if (index < 0) return -1;
  TextCopy(pHead->key, key);
  TextLowerAscii(pHead->key);
  return index;
}

platform::Icon LLVImageList::IconAt(int index) const {
  for (const LLVIconListable* record = pHead; record; record = record->next) {
    if (record->index == index) return record->icon;
  }
  return 0;
}
