// The machine's panels that LFile opens on a window.
#include "support/files.h"
#include "support/window/menus.h"
#include "support/window/window.h"

bool LFile::BrowseFolder(LMacWindow* parent, const char* title, char (&path)[kTextSize]) {
  LMainMenu::DisableMenus();
  const bool chosen = platform::FolderChoose(parent ? parent->Native() : nullptr, title, path);
  LMainMenu::EnableMenus();
  return chosen;
}
