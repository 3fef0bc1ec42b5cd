// Whether an entry is a file, a directory or a link.
#include <cstring>

#include "ftp/commands.h"
#include "ftp/list_parser.h"
#include "ftp/queries.h"
#include "ftp/query_steps.h"

namespace {

using Session = LFileTransferProtocol;

signed char KindOfType(const char* type) {
  if (strncmp(type, "file", 4) == 0) return kFtpKindFile;
  return FtpTypeIsLink(type) ? kFtpKindSymbolicLink : kFtpKindDirectory;
}

/// A refusal is remembered; a reply without the fact is not.
FtpRung AskType(LProcessInterface& process, LFileTransferProtocol& session, const char* name, signed char& kind) {
  char command[kFtpLongCommand];
  FtpFormatCommand(command, "MLST %s\r\n", name);
  LStringListTemplate<char> lines;
  const LProcessResult result = ProcessFtpSendAndWaitForReply(process, session, command, lines);
  if (result == LProcessResultStopped) return FtpRung::kStopped;
  if (result != LProcessResultOk || lines.count == 0) {
    session.Set(Session::bMlstTypeFailed);
    return FtpRung::kNoAnswer;
  }
  for (size_t i = 0; i < lines.count; ++i) {
    char lower[kTextSize];
    char type[kTextSize];
    TextCopy(lower, lines.strings[i]);
    TextLowerAscii(lower);
    if (!FtpFactValue(lower, "type=", type)) continue;
    kind = KindOfType(type);
    return FtpRung::kAnswered;
  }
  return FtpRung::kNoAnswer;
}

/// Only a directory can be listed so.
FtpRung AskMlsd(LProcessInterface& process, LFileTransferProtocol& session, const char* name, signed char& kind) {
  char command[kFtpLongCommand];
  FtpFormatCommand(command, "MLSD %s\r\n", name);
  LStringListTemplate<char> lines;
  const LProcessResult result = ProcessFtpSendAndWaitForReply(process, session, command, lines);
  if (result == LProcessResultStopped) return FtpRung::kStopped;
  if (result != LProcessResultOk) {
    session.Set(Session::bMlsdFailed);
    return FtpRung::kNoAnswer;
  }
  kind = kFtpKindDirectory;
  return FtpRung::kAnswered;
}

LProcessResult ListCurrentDirectory(LProcessInterface& process, LFileTransferProtocol& session,
                                    LStringListTemplate<char>& lines) {
  const LProcessResult result = ProcessFtpSendAndWaitForDataReply(process, session, "LIST .\r\n", lines);
  if (result != LProcessResultOk || lines.count != 0) return result;
  return ProcessFtpSendAndWaitForDataReply(process, session, "LIST \r\n", lines);
}

/// The last entry of that name decides.
LProcessResult AskListing(LProcessInterface& process, LFileTransferProtocol& session, const char* name,
                          signed char& kind) {
  LStringListTemplate<char> lines;
  const LProcessResult listed = ListCurrentDirectory(process, session, lines);
  if (listed != LProcessResultOk) return listed;
  for (size_t i = 0; i < lines.count; ++i) {
    // Most lines are other entries' and need not be taken apart.
    if (!strstr(lines.strings[i], name)) continue;
    LFTPListInfoParser::FTPNativeFileInfo info;
    if (!LFTPListInfoParser::GetFileInfo(lines.strings[i], info) || strcmp(info.name, name) != 0) continue;
    kind = info.isSymbolicLink ? kFtpKindSymbolicLink : info.isDirectory ? kFtpKindDirectory : kFtpKindFile;
  }
  return kind == kFtpKindUnknown ? LProcessResultFailed : LProcessResultOk;
}

}  // namespace

LProcessResult ProcessFtpIsDirectory(LProcessInterface& process, LFileTransferProtocol& session, const char* name,
                                     signed char& kind) {
  kind = kFtpKindUnknown;
  if (!name) return LProcessResultFailed;
  if (process.IsToStop()) return LProcessResultStopped;
  ProcessFtpCheckFeatures(process, session);
  FtpRung answer = FtpRung::kNoAnswer;
  if (session.Has(Session::bMlstType) && !session.Has(Session::bMlstTypeFailed)) {
    answer = AskType(process, session, name, kind);
  }
  if (answer == FtpRung::kNoAnswer && session.Has(Session::bHasMlsd) && !session.Has(Session::bMlsdFailed)) {
    answer = AskMlsd(process, session, name, kind);
  }
  if (answer == FtpRung::kStopped) return LProcessResultStopped;
  if (answer == FtpRung::kAnswered) return LProcessResultOk;
  if (process.IsToStop()) return LProcessResultFailed;
  return AskListing(process, session, name, kind);
}
