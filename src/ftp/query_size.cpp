// The size of a file.
#include <cstring>

#include "ftp/commands.h"
#include "ftp/list_parser.h"
#include "ftp/queries.h"
#include "ftp/query_steps.h"
#include "support/files.h"

namespace {

using Session = LFileTransferProtocol;

/// What a rung's number means: -1 is no answer, any other negative number an error that ends the ladder.
enum class Verdict { kSize, kNextRung, kError };

Verdict JudgeSize(int64_t number, uint64_t& size) {
  if (number == -1) return Verdict::kNextRung;
  if (number < 0) return Verdict::kError;
  size = static_cast<uint64_t>(number);
  return Verdict::kSize;
}

/// SIZE counts the bytes that a binary transfer has, so the session is set to that first and stays there.
FtpRung AskSize(LProcessInterface& process, LFileTransferProtocol& session, const char* name, int64_t& number) {
  unsigned short code = 0;
  if (ProcessFtpSendAndWaitForReply(process, session, "TYPE I\r\n", &code, nullptr) == LProcessResultStopped) {
    return FtpRung::kStopped;
  }
  if (code != 200) return FtpRung::kNoAnswer;
  char command[kFtpLongCommand];
  FtpFormatCommand(command, "SIZE %s\r\n", name);
  char text[kTextSize];
  const LProcessResult result = ProcessFtpSendAndWaitForReply(process, session, command, &code, &text);
  if (result == LProcessResultStopped) return FtpRung::kStopped;
  if (code != 213) return FtpRung::kNoAnswer;
  number = FtpNumber(text);
  return FtpRung::kAnswered;
}

bool IsSameName(const char* name, const char* listed) {
  char pattern[kTextSize];
  char candidate[kTextSize];
  TextCopy(pattern, name);
  TextCopy(candidate, listed);
  TextLowerAscii(pattern);
  TextLowerAscii(candidate);
  return LFile::IsMatch(pattern, candidate);
}

/// The last rung. Only the first entry is looked at: the listing of one file has no other.
LProcessResult AskListing(LProcessInterface& process, LFileTransferProtocol& session, const char* name,
                          uint64_t& size) {
  char command[kFtpLongCommand];
  FtpFormatCommand(command, "LIST %s\r\n", name);
  LStringListTemplate<char> lines;
  const LProcessResult result = ProcessFtpSendAndWaitForDataReply(process, session, command, lines);
  if (result == LProcessResultStopped) return result;
  if (result != LProcessResultOk || lines.count == 0 || process.IsToStop()) return LProcessResultFailed;
  LFTPListInfoParser::FTPNativeFileInfo info;
  if (!LFTPListInfoParser::GetFileInfo(lines.strings[0], info)) return LProcessResultFailed;
  if (!IsSameName(name, info.name) || static_cast<int64_t>(info.size) < 0) return LProcessResultFailed;
  size = info.size;
  return LProcessResultOk;
}

/// The rungs above the listing, from the top.
constexpr Session::Capability kRungs[] = {Session::bMlstSize, Session::bHasSize, Session::bHasMlsd};

FtpRung AskNumber(LProcessInterface& process, LFileTransferProtocol& session, const char* name,
                  Session::Capability rung, int64_t& number) {
  if (!session.Has(rung)) return FtpRung::kNoAnswer;
  if (process.IsToStop()) return FtpRung::kStopped;
  if (rung == Session::bHasSize) return AskSize(process, session, name, number);
  char value[kTextSize];
  // Some servers write "sizd", and mean the same.
  const FtpRung answer = rung == Session::bMlstSize ? FtpAskMlst(process, session, name, "size=", "sizd=", value)
                                                    : FtpAskMlsdOfFolder(process, session, name, "size=", value);
  if (answer == FtpRung::kAnswered) number = FtpNumber(value);
  return answer;
}

}  // namespace

LProcessResult ProcessFtpGetFileSize(LProcessInterface& process, LFileTransferProtocol& session, const char* name,
                                     uint64_t& size) {
  size = 0;
  if (process.IsToStop()) return LProcessResultStopped;
  ProcessFtpCheckFeatures(process, session);
  for (const Session::Capability rung : kRungs) {
    int64_t number = 0;
    switch (AskNumber(process, session, name, rung, number)) {
      case FtpRung::kStopped: return LProcessResultStopped;
      case FtpRung::kAbsent: return LProcessResultOk;
      case FtpRung::kNoAnswer: break;
      case FtpRung::kAnswered: {
        const Verdict verdict = JudgeSize(number, size);
        if (verdict != Verdict::kNextRung) return verdict == Verdict::kSize ? LProcessResultOk : LProcessResultFailed;
        break;
      }
    }
  }
  if (process.IsToStop()) return LProcessResultStopped;
  return AskListing(process, session, name, size);
}

uint64_t LFileTransferProtocol::GetFileSizeBytes64(const char* name) {
  LProcessInterfaceVoid process;
  uint64_t size = 0;
  // A failure leaves it at 0.
  (void)ProcessFtpGetFileSize(process, *this, name, size);
  return size;
}
