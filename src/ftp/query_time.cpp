// The modification time of a file.
#include <cstring>
#include <strings.h>

#include "ftp/commands.h"
#include "ftp/list_parser.h"
#include "ftp/queries.h"
#include "ftp/query_steps.h"
#include "ftp/timeouts.h"
#include "platform/clock.h"
#include "support/date_time.h"

namespace {

using Session = LFileTransferProtocol;

FtpRung AskMdtm(LProcessInterface& process, LFileTransferProtocol& session, const char* name,
                char (&stamp)[kTextSize]) {
  char command[kFtpLongCommand];
  FtpFormatCommand(command, "MDTM %s\r\n", name);
  const LProcessResult result = ProcessFtpSendAndWaitForReply(process, session, command, nullptr, &stamp);
  if (result == LProcessResultStopped) return FtpRung::kStopped;
  return result == LProcessResultOk && stamp[0] ? FtpRung::kAnswered : FtpRung::kNoAnswer;
}

FtpRung AskStamp(LProcessInterface& process, LFileTransferProtocol& session, const char* name,
                 char (&stamp)[kTextSize]) {
  FtpRung answer = FtpRung::kNoAnswer;
  if (session.Has(Session::bHasMdtm)) answer = AskMdtm(process, session, name, stamp);
  // An absent file is just no answer here: the listing has the last word.
  if (answer == FtpRung::kNoAnswer && session.Has(Session::bMlstModify)) {
    answer = FtpAskMlst(process, session, name, "modify=", nullptr, stamp);
    if (answer == FtpRung::kAbsent) answer = FtpRung::kNoAnswer;
  }
  if (answer == FtpRung::kNoAnswer && session.Has(Session::bHasMlsd)) {
    answer = FtpAskMlsdOfFolder(process, session, name, "modify=", stamp);
  }
  return answer;
}

/// SYST, once for each session.
LProcessResult LearnSystem(LProcessInterface& process, LFileTransferProtocol& session) {
  if (session.Has(Session::bSystKnown)) return LProcessResultOk;
  constexpr char kUnix[] = "UNIX Type: L8";
  unsigned short code = 0;
  char text[kTextSize];
  const LProcessResult result = ProcessFtpSendAndWaitForReply(process, session, "SYST\r\n", &code, &text);
  if (result == LProcessResultStopped) return result;
  if (code == 215 && strcasecmp(text, "Windows_NT") == 0) session.Set(Session::bSystWindowsNT);
  if (code == 215 && strncasecmp(text, kUnix, strlen(kUnix)) == 0) session.Set(Session::bSystUnixL8);
  session.Set(Session::bSystKnown);
  return LProcessResultOk;
}

/// The command is a toggle, and only its answer tells where it stands: the server ends up in its MS-DOS
/// style.
LProcessResult ChooseDosStyle(LProcessInterface& process, LFileTransferProtocol& session) {
  constexpr char kToggle[] = "site dirstyle\r\n";
  char text[kTextSize] = {};
  LProcessResult result = ProcessFtpSendAndWaitForReply(process, session, kToggle, nullptr, &text);
  if (result != LProcessResultStopped && strcasecmp(text, "MSDOS-like directory output is off") == 0) {
    result = ProcessFtpSendAndWaitForReply(process, session, kToggle, nullptr, nullptr);
  }
  // A server without the command lists in the one style it has.
  return result == LProcessResultStopped ? result : LProcessResultOk;
}

/// `time` stays as it is when the listing does not show the name; 2 when it shows it without a date.
LProcessResult AskListing(LProcessInterface& process, LFileTransferProtocol& session, const char* name, int64_t& time) {
  char command[kFtpLongCommand];
  const bool isExact = session.Has(Session::bSystUnixL8);
  FtpFormatCommand(command, isExact ? "LIST %s\r\n" : "LIST %s*\r\n", name);
  LStringListTemplate<char> lines;
  const LProcessResult result = ProcessFtpSendAndWaitForDataReply(process, session, command, lines);
  if (result != LProcessResultOk || lines.count == 0) return result;
  LFTPListInfoParser::FTPNativeFileInfo info;
  if (!LFTPListInfoParser::GetFileInfo(lines.strings[0], info) || strcmp(info.name, name) != 0) return result;
  const auto& date = info.lastModified;
  if (!date.dateKnown) return LProcessResultFailed;
  // A date that the calendar does not have leaves the time at now.
  (void)LDateTime::SetDateTime(time, date.year, date.month, date.day, date.hour, date.minute, 0);
  return LProcessResultOk;
}

int64_t NowOnTheScaleOfListings() { return platform::ClockWallSeconds() - LDateTime::GetTimeZoneOffset(); }

}  // namespace

LProcessResult ProcessFtpGetFileModifiedTime(LProcessInterface& process, LFileTransferProtocol& session,
                                             const char* name, int64_t& time) {
  time = NowOnTheScaleOfListings();
  if (process.IsToStop()) return LProcessResultStopped;
  ProcessFtpCheckFeatures(process, session);
  char stamp[kTextSize];
  const FtpRung answer = AskStamp(process, session, name, stamp);
  if (answer == FtpRung::kStopped) return LProcessResultStopped;
  if (answer == FtpRung::kAnswered) {
    FtpTimeFromStamp(stamp, time);
    return LProcessResultOk;
  }
  if (LearnSystem(process, session) == LProcessResultStopped) return LProcessResultStopped;
  if (session.Has(Session::bSystWindowsNT) && ChooseDosStyle(process, session) == LProcessResultStopped) {
    return LProcessResultStopped;
  }
  return AskListing(process, session, name, time);
}

int64_t LFileTransferProtocol::GetFileDate(const char* name) {
  if (!IsValid()) return NowOnTheScaleOfListings();
  const int64_t asked = platform::ClockMonotonicMs();
  LProcessInterfaceVoid unstoppable;
  int64_t time = 0;
  // A failure leaves it at now.
  const LProcessResult result = ProcessFtpGetFileModifiedTime(unstoppable, *this, name, time);
  const bool isSilent = result != LProcessResultOk && platform::ClockMonotonicMs() - asked >= gFtpTimeouts.replyMs;
  if (isSilent) CloseSocket();
  return time;
}
