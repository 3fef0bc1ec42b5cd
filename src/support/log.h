// The history log: one line for each thing the user and the FTP engine did, in a file for each day and in the
// pane at the foot of the main window.
//
// Any thread may log. All functions do nothing while `gLLog` is not there (before main, after exit) and for
// an empty text. A line that cannot be written to the file still reaches the pane.
#pragma once

#include <atomic>
#include <mutex>

#include "support/text.h"

// Levels: they decide only the colour in the pane.
constexpr unsigned char kLogPlain = 0;
constexpr unsigned char kLogError = 1;
constexpr unsigned char kLogWarning = 2;
constexpr unsigned char kLogInformation = 3;
constexpr unsigned char kLogCommand = 4;
constexpr unsigned char kLogResponse = 5;

/// What shows each line as it is logged: the pane of the main window. Called on the thread that logs, one
/// line at a time, and without the lock that guards the file.
class LLogPane {
 public:
  /// `time` is "14:03:22".
  virtual void DisplayStatus(const char* time, const char* text, unsigned char level) = 0;

 protected:
  ~LLogPane() = default;
};

class LLog {
 public:
  LLog();
  ~LLog();
  LLog(const LLog&) = delete;
  LLog& operator=(const LLog&) = delete;

  /// Logs the two texts with nothing between them.
  void Log(const char* first, const char* second, unsigned char level);
  /// The one writer.
  void LogWithoutEmailing(const char* text, unsigned char level);

  bool IsEnabled() const { return bEnabled; }
  /// The pane that gets each line too; null for none. Not owned. Main thread.
  /// When it returns, no thread is in the former pane any more.
  void SetPane(LLogPane* pane);
  LLogPane* Pane() const { return pPane; }
  /// The folder of the daily files. Tests and the demo set another one before the first line.
  const char* Folder() const { return szFolder; }
  void SetFolder(const char* folder);

 private:
  /// Closes the file of another day; true if there is none open now.
  bool IsFileNeeded(int day);
  void OpenFile(int year, int month, int day);
  void CloseFile();
  void WriteLine(const char* time, const char* text);

  /// Outlives the object's other fields in effect: who logs while the process ends still reads it.
  std::atomic<bool> bEnabled = false;
  char szFolder[kTextSize] = {};
  int iFile = -1;                  ///< -1 when no file is open. The file stays locked for this process while it is.
  std::recursive_mutex paneMutex;  ///< Guards the pane, also while it is called. `mutex` is free by then.
  LLogPane* pPane = nullptr;
  std::recursive_mutex mutex;  ///< Guards the descriptor and the day.
  int iDay = 0;                ///< Day of the month of the last line; 0 before the first.
};

extern LLog gLLog;

void LOG(const char* text);
void LOG(const char* first, const char* second);
void LOGERROR(const char* text);
void LOGWARN(const char* text);
void LOGINFO(const char* text);
// Formatted by the C library's rules, cut at 511 bytes.
void LOGF(const char* format, ...) __attribute__((format(printf, 1, 2)));
void LOGERRORF(const char* format, ...) __attribute__((format(printf, 1, 2)));
void LOGWARNF(const char* format, ...) __attribute__((format(printf, 1, 2)));
/// A command as it is sent, line end included; a password shows as one asterisk for each byte.
void LOGFTPCOMMAND(const char* command);
void LOGFTPRESPONSE(const char* reply);
