#include "ftp/query_steps.h"

#include <cstring>

#include "ftp/commands.h"
#include "support/files.h"

namespace {

bool FactOfLine(const char* line, const char* fact, char (&value)[kTextSize]) {
  char lower[kTextSize];
  TextCopy(lower, line);
  TextLowerAscii(lower);
  return FtpFactValue(lower, fact, value);
}

bool HasLineWithError550(const LStringListTemplate<char>& lines) {
  for (size_t i = 0; i < lines.count; ++i) {
    if (strncmp(lines.strings[i], "550 ", 4) == 0) return true;
  }
  return false;
}

}  // namespace

FtpRung FtpAskMlst(LProcessInterface& process, LFileTransferProtocol& session, const char* name, const char* fact,
                   const char* spelling, char (&value)[kTextSize]) {
  char command[kFtpLongCommand];
  FtpFormatCommand(command, "MLST %s\r\n", name);
  LStringListTemplate<char> lines;
  const LProcessResult result = ProcessFtpSendAndWaitForReply(process, session, command, lines);
  if (result == LProcessResultStopped) return FtpRung::kStopped;
  if (result != LProcessResultOk) return HasLineWithError550(lines) ? FtpRung::kAbsent : FtpRung::kNoAnswer;
  for (size_t i = 0; i < lines.count; ++i) {
    const char* line = lines.strings[i];
    if (FactOfLine(line, fact, value) || (spelling && FactOfLine(line, spelling, value))) return FtpRung::kAnswered;
  }
  return FtpRung::kNoAnswer;
}

FtpRung FtpAskMlsdOfFolder(LProcessInterface& process, LFileTransferProtocol& session, const char* name,
                           const char* fact, char (&value)[kTextSize]) {
  char folder[kTextSize];
  char base[kTextSize];
  LFile::_GetFolderFromPath(folder, name);
  LFile::_GetFileFromPath(base, name);
  char command[kFtpLongCommand];
  FtpFormatCommand(command, "MLSD %s\r\n", folder);
  LStringListTemplate<char> lines;
  const LProcessResult result = ProcessFtpSendAndWaitForReply(process, session, command, lines);
  if (result == LProcessResultStopped) return FtpRung::kStopped;
  if (result != LProcessResultOk) return FtpRung::kNoAnswer;
  for (size_t i = 0; i < lines.count; ++i) {
    const char* line = lines.strings[i];
    if (strstr(line, base) && FactOfLine(line, fact, value)) return FtpRung::kAnswered;
  }
  return FtpRung::kNoAnswer;
}
