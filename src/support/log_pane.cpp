#include "support/log_pane.h"

#include <algorithm>

#include "platform/desktop.h"
#include "platform/event_loop.h"
#include "support/log.h"

namespace {

constexpr size_t kLineLimit = 260;
constexpr size_t kDropFrom = 2048;
constexpr unsigned kBackground = 0x005295;

unsigned ColorOfLevel(unsigned char level) {
  switch (level) {
    case kLogError: return 0xF62850;
    case kLogCommand: return 0x9696FF;
    case kLogResponse: return 0x96FF96;
    default: return 0xF0F0F0;
  }
}

}  // namespace

void LStatusWindow::Init(LMacWindow& window, int control) {
  pWindow = &window;
  iControl = control;
  SetTextColor(0x000000);
  SetBackgroundColor(kBackground);
}

void LStatusWindow::SetTextColor(unsigned color) { SetColor(uTextColor, color); }

void LStatusWindow::SetBackgroundColor(unsigned color) { SetColor(uBackgroundColor, color); }

void LStatusWindow::SetColor(unsigned& which, unsigned color) {
  {
    const std::lock_guard lock(mutex);
    which = color;
  }
  ShowColors();
}

void LStatusWindow::ShowColors() const {
  if (!Native()) return;
  unsigned text, background;
  {
    const std::lock_guard lock(mutex);
    text = uTextColor;
    background = uBackgroundColor;
  }
  platform::ControlSetColors(Native(), iControl, text, background);
}

void LStatusWindow::DropOldestHalf() {
  size_t from = std::min(kDropFrom, uLength);
  while (from < uLength && (static_cast<unsigned char>(szText[from]) & 0xC0) == 0x80) ++from;
  uLength -= from;
  memmove(szText, szText + from, uLength);
  szText[uLength] = 0;
}

void LStatusWindow::DisplayStatus(const char* time, const char* text, unsigned char level) {
  {
    const std::lock_guard lock(mutex);
    if (uLength >= kBufferSize - kLineLimit) DropOldestHalf();
    char line[kLineLimit];
    TextFormat(line, "%s\t%s\n", time, text);
    const size_t length = strlen(line);
    memcpy(szText + uLength, line, length + 1);
    uLength += length;
    uTextColor = ColorOfLevel(level);
  }
  if (platform::IsMainThread()) {
    EvNotify();
  } else {
    Notify();
  }
}

void LStatusWindow::EvNotify() {
  if (!Native()) return;
  ShowColors();
  const std::lock_guard lock(mutex);
  platform::LogSetText(Native(), iControl, szText);
}

void LLogViewLogs(LMacWindow& /*view*/) { platform::DesktopShowFolder(gLLog.Folder()); }

LLogWindow::LLogWindow() { gLLog.SetPane(this); }

LLogWindow::~LLogWindow() { gLLog.SetPane(nullptr); }
