#include "support/log.h"

#include <algorithm>
#include <fcntl.h>
#include <sys/file.h>
#include <time.h>

#include "platform/clock.h"
#include "platform/file_io.h"
#include "support/files.h"
#include "support/strings.h"

// Nothing that its constructor calls needs another object of static storage.
LLog gLLog;

namespace {

constexpr unsigned kLockMs = 500;
constexpr size_t kFormattedSize = 512;
constexpr size_t kWireSize = 520;  ///< A line of the conversation with the server.

constexpr char kCommandLabel[] = "コマンド: ";
constexpr char kPasswordCommand[] = "PASS";
constexpr size_t kPasswordAt = 5;  ///< Where the password begins in the command.

}  // namespace

LLog::LLog() {
  LFile::GetUserDataFolderAppSubFolder("Logs", szFolder);
  bEnabled = true;
}

LLog::~LLog() {
  bEnabled = false;
  CloseFile();
}

void LLog::SetFolder(const char* folder) {
  CloseFile();
  TextCopy(szFolder, folder);
}

void LLog::SetPane(LLogPane* pane) {
  const std::lock_guard lock(paneMutex);
  pPane = pane;
}

void LLog::CloseFile() {
  const std::lock_guard lock(mutex);
  if (iFile != -1) platform::FileClose(iFile);
  iFile = -1;
}

bool LLog::IsFileNeeded(int day) {
  const std::lock_guard lock(mutex);
  if (day != iDay) {
    CloseFile();
    iDay = day;
  }
  return iFile == -1;
}

void LLog::OpenFile(int year, int month, int day) {
  char name[kTextSize];
  char path[kTextSize];
  TextFormat(name, "%.4d-%.2d-%.2d Orvane FTP%s履歴.txt", year, month, day, "");
  LFile::_MakeFilePath(path, szFolder, name, "");
  if (!LFile::TestFileExists(szFolder)) LFile::CreateFolderTree(szFolder);

  const std::lock_guard lock(mutex);
  CloseFile();
  const int file = platform::FileOpen(path, O_RDWR | O_CREAT, 0666);
  // Another running copy holds the file of the day. What was opened here stays so until exit.
  if (flocktimed(file, LOCK_EX | LOCK_NB, kLockMs) != 0) return;
  platform::FileSeek(file, 0, SEEK_END);
  iFile = file;
}

void LLog::WriteLine(const char* time, const char* text) {
  const auto piece = [](const char* part) { return iovec{const_cast<char*>(part), strlen(part)}; };
  const iovec line[] = {piece(time), piece(" "), piece(text), piece("\r\n")};
  const std::lock_guard lock(mutex);
  // One write for each line, so that lines of several threads do not mix. The history must not hold up the
  // work: what cannot be written is lost.
  if (iFile != -1) platform::FileWritePieces(iFile, line, 4);
}

void LLog::LogWithoutEmailing(const char* text, unsigned char level) {
  if (!bEnabled || !text[0]) return;
  const time_t now = platform::ClockWallSeconds();
  tm local{};
  localtime_r(&now, &local);
  if (IsFileNeeded(local.tm_mday)) OpenFile(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday);
  char time[kTextSize];
  TextFormat(time, "%.2d:%.2d:%.2d", local.tm_hour, local.tm_min, local.tm_sec);
  WriteLine(time, text);
  const std::lock_guard lock(paneMutex);
  if (pPane) pPane->DisplayStatus(time, text, level);
}

void LLog::Log(const char* first, const char* second, unsigned char level) {
  if (!bEnabled) return;
  LStringLongTemplate<char> text(first);
  text.Append(second);
  LogWithoutEmailing(text, level);
}

void LOG(const char* text) { gLLog.LogWithoutEmailing(text, kLogPlain); }

void LOG(const char* first, const char* second) { gLLog.Log(first, second, kLogPlain); }

void LOGERROR(const char* text) { gLLog.LogWithoutEmailing(text, kLogError); }

void LOGWARN(const char* text) { gLLog.LogWithoutEmailing(text, kLogWarning); }

void LOGINFO(const char* text) { gLLog.LogWithoutEmailing(text, kLogInformation); }

__attribute__((format(printf, 1, 0))) static void LOGVF(const char* format, unsigned char level, va_list arguments) {
  if (!gLLog.IsEnabled()) return;
  char text[kFormattedSize];
  TextFormatBounded(text, sizeof text, format, arguments);
  gLLog.LogWithoutEmailing(text, level);
}

void LOGF(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  LOGVF(format, kLogPlain, arguments);
  va_end(arguments);
}

void LOGERRORF(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  LOGVF(format, kLogError, arguments);
  va_end(arguments);
}

void LOGWARNF(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  LOGVF(format, kLogWarning, arguments);
  va_end(arguments);
}

/// The label and an asterisk for each byte of the password; the command's own word is left out.
static void MaskPassword(char (&out)[kWireSize], const char* command) {
  const size_t asterisks = strlen(command) > kPasswordAt ? strcspn(command + kPasswordAt, "\r\n") : 0;
  char stars[kWireSize];
  memset(stars, '*', sizeof stars);
  TextFormat(out, "%s%.*s", kCommandLabel, static_cast<int>(std::min(asterisks, sizeof stars)), stars);
}

void LOGFTPCOMMAND(const char* command) {
  char text[kWireSize];
  if (strncmp(command, kPasswordCommand, sizeof kPasswordCommand - 1) == 0) {
    MaskPassword(text, command);
  } else {
    TextFormat(text, "%s%s", kCommandLabel, command);
    LStringTrimWhiteSpace(text);
  }
  gLLog.LogWithoutEmailing(text, kLogCommand);
}

void LOGFTPRESPONSE(const char* reply) {
  char text[kWireSize];
  TextFormat(text, "応答:  %s", reply);
  LStringTrimWhiteSpace(text);
  gLLog.LogWithoutEmailing(text, kLogResponse);
}
