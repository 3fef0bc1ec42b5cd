// The history pane at the foot of the main window: the newest lines of the log.
#pragma once

#include <mutex>

#include "support/log.h"
#include "support/text.h"
#include "support/window/timers.h"
#include "support/window/window.h"

/// Keeps the last lines in a buffer of 4096 bytes and shows them in a log control. Any thread may display; the
/// control changes on the main thread only.
class LStatusWindow : public LThreadQueuedNotify, public LLogPane {
 public:
  static constexpr size_t kBufferSize = 4096;

  /// Attaches to a control and sets its colours. Main thread.
  void Init(LMacWindow& window, int control);
  void Detach() { pWindow = nullptr; }
  // Colours of the whole text, 0xRRGGBB. Main thread. The next line brings the text colour of its level.
  void SetTextColor(unsigned color);
  void SetBackgroundColor(unsigned color);
  /// Appends one line, cut at 259 bytes; the whole pane takes the colour of the newest line's level.
  void DisplayStatus(const char* time, const char* text, unsigned char level) override;
  void EvNotify() override;
  const char* Text() const { return szText; }

 private:
  void DropOldestHalf();
  /// Null while there is nothing to show in.
  platform::Window* Native() const { return pWindow ? pWindow->Native() : nullptr; }
  void SetColor(unsigned& which, unsigned color);
  void ShowColors() const;

  LMacWindow* pWindow = nullptr;
  int iControl = 0;
  mutable std::recursive_mutex mutex;  ///< Guards the buffer and the colours.
  char szText[kBufferSize] = {};
  size_t uLength = 0;
  unsigned uTextColor = 0;
  unsigned uBackgroundColor = 0;
};

/// Shows the folder of the daily files in the file manager. Main thread.
void LLogViewLogs(LMacWindow& view);

/// The pane of gLLog for as long as it lives.
class LLogWindow : public LStatusWindow {
 public:
  LLogWindow();
  ~LLogWindow() override;
};
