// Icons by resource number or file name, and the image list of a list view. Main thread only.
#pragma once

#include "platform/window_system.h"
#include "support/text.h"

/// An icon by value; the image itself stays with the window system.
class LGuiIcon {
 public:
  LGuiIcon() = default;
  static LGuiIcon FromResource(int number) { return LGuiIcon(platform::IconFromResource(number)); }
  /// The desktop's icon for a file of that name.
  static LGuiIcon LoadFromFileInfo(const char* name) { return LGuiIcon(platform::IconForFileName(name)); }
  bool IsEmpty() const { return handle == 0; }

  platform::Icon handle = 0;

 private:
  explicit LGuiIcon(platform::Icon icon) : handle(icon) {}
};

/// The image cache of one list: index to icon, and key to index.
class LLVImageList {
 public:
  LLVImageList() = default;
  LLVImageList(const LLVImageList&) = delete;
  LLVImageList& operator=(const LLVImageList&) = delete;
  ~LLVImageList();

  /// The index of a new image; -1 for an empty icon.
  int AddIcon(const LGuiIcon& icon);
  /// The index stored under the lower-cased key, or -1.
  int FindIndex(const char* key) const;
  /// The index under `key`, adding `icon` if the key is new; -1 for an empty icon.
  int GetIndex(const LGuiIcon& icon, const char* key);
  platform::Icon IconAt(int index) const;

 private:
  struct LLVIconListable {
    LLVIconListable* next;
    char key[kTextSize];  ///< Lower case; empty for an icon added without one.
    platform::Icon icon;
    int index;
  };
  LLVIconListable* pHead = nullptr;
  int iCount = 0;
};

class LGuiCursor {
 public:
  static void SetWaiting() { platform::CursorSetWaiting(true); }
  static void Restore() { platform::CursorSetWaiting(false); }
};

/// The wait cursor for as long as one lives.
struct WaitCursor {
  WaitCursor() { LGuiCursor::SetWaiting(); }
  WaitCursor(const WaitCursor&) = delete;
  WaitCursor& operator=(const WaitCursor&) = delete;
  ~WaitCursor() { LGuiCursor::Restore(); }
};
