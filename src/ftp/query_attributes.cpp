// Permissions, owner and group of an entry.
#include <cstring>

#include "ftp/commands.h"
#include "ftp/list_parser.h"
#include "ftp/queries.h"

namespace {

using Info = LFTPListInfoParser::FTPNativeFileInfo;

constexpr size_t kPathCommand = 520;  ///< Bytes of a command that names a whole path.

/// All lines of the answer as one text, with nothing between them.
LProcessResult AskJoined(LProcessInterface& process, LFileTransferProtocol& session, const char* command,
                         LStringLongTemplate<char>& joined) {
  LStringListTemplate<char> lines;
  const LProcessResult result = ProcessFtpSendAndWaitForDataReply(process, session, command, lines);
  for (size_t i = 0; result == LProcessResultOk && i < lines.count; ++i) joined.Append(lines.strings[i]);
  return result;
}

/// A joined listing has no line ends left, so that the name is found in a listing of one line only.
LProcessResult AskListing(LProcessInterface& process, LFileTransferProtocol& session, const char* name,
                          char (Info::*field)[kTextSize], char (&text)[kTextSize]) {
  LStringLongTemplate<char> joined;
  const LProcessResult result = AskJoined(process, session, "LIST\r\n", joined);
  if (result != LProcessResultOk) return result;
  char line[kTextSize];
  TextCopy(line, joined.Text());
  Info info;
  if (LFTPListInfoParser::GetFileInfo(line, info) && strcmp(info.name, name) == 0) TextCopy(text, info.*field);
  return LProcessResultOk;
}

LProcessResult AskOwner(LProcessInterface& process, LFileTransferProtocol& session, const char* name,
                        char (Info::*field)[kTextSize], char (&text)[kTextSize]) {
  if (process.IsToStop()) return LProcessResultStopped;
  ProcessFtpCheckFeatures(process, session);
  return AskListing(process, session, name, field, text);
}

}  // namespace

LProcessResult ProcessFtpGetFileAttribute(LProcessInterface& process, LFileTransferProtocol& session, const char* name,
                                          char (&text)[kTextSize]) {
  text[0] = 0;
  if (process.IsToStop()) return LProcessResultStopped;
  ProcessFtpCheckFeatures(process, session);
  if (!session.Has(LFileTransferProtocol::bHasMlsd)) {
    return AskListing(process, session, name, &Info::attributes, text);
  }
  char command[kPathCommand];
  FtpFormatCommand(command, "MLSD %s\r\n", name);
  LStringLongTemplate<char> joined;
  const LProcessResult result = AskJoined(process, session, command, joined);
  if (result != LProcessResultOk) return result;
  // Without the fact the text stays empty.
  (void)LFTPGetMLSDAttributesFromLine(joined.Text(), text);
  return LProcessResultOk;
}

LProcessResult ProcessFtpGetFileOwner(LProcessInterface& process, LFileTransferProtocol& session, const char* name,
                                      char (&text)[kTextSize]) {
  return AskOwner(process, session, name, &Info::owner, text);
}

LProcessResult ProcessFtpGetFileOwnerGroup(LProcessInterface& process, LFileTransferProtocol& session, const char* name,
                                           char (&text)[kTextSize]) {
  return AskOwner(process, session, name, &Info::group, text);
}
