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
  /// Appends one line, cut at 259 bytes; the whole pane takes the colour of the newest line's level.
  void DisplayStatus(const char* time, const char* text, unsigned char level) override;
  void EvNotify() override;
  const char* Text() const { return szText; }

 private:
  void DropOldestHalf();

  LMacWindow* pWindow = nullptr;
  int iControl = 0;
  std::recursive_mutex mutex;  ///< Guards the buffer and the colour.
  char szText[kBufferSize] = {};
  size_t uLength = 0;
  unsigned uTextColor = 0;
};

/// The pane of gLLog for as long as it lives.
class LLogWindow : public LStatusWindow {
 public:
  LLogWindow();
  ~LLogWindow() override;
};
