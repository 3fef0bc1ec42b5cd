// Deletes a directory of the server with all that is in it.
#include <cstring>

#include "ftp/commands.h"
#include "ftp/dir_iterator.h"
#include "ftp/queries.h"
#include "support/files.h"

namespace {

using Iterator = LFileTransferProtocol::DirIteratorAllFiles;

/// A path of 259 bytes has no more folders than half of that; deeper is a server that makes folders up as it
/// goes.
constexpr int kMostDepth = 200;

LProcessResult DeleteDirectory(LProcessInterface& process, LFileTransferProtocol& session, const char* directory,
                               int depth);

LProcessResult DeleteFile(LProcessInterface& process, LFileTransferProtocol& session, const char* name) {
  char command[kFtpLongCommand];
  FtpFormatCommand(command, "DELE %s\r\n", name);
  return ProcessFtpSendAndWaitForReply(process, session, command, nullptr, nullptr);
}

LProcessResult SettleType(LProcessInterface& process, LFileTransferProtocol& session, Iterator::Item& item) {
  if (item.typeKnown) return LProcessResultOk;
  signed char kind = kFtpKindUnknown;
  const LProcessResult asked = ProcessFtpIsDirectory(process, session, item.name, kind);
  if (asked == LProcessResultStopped) return asked;
  item.isDirectory = kind == kFtpKindDirectory;
  item.isSymbolicLink = kind == kFtpKindSymbolicLink;
  item.typeKnown = true;
  return LProcessResultOk;
}

/// All that is in the session's current directory, which is `directory` as seen from `parent`.
LProcessResult DeleteContents(LProcessInterface& process, LFileTransferProtocol& session, const char* parent,
                              const char* directory, int depth) {
  Iterator iterator(process, session);
  const double count = static_cast<double>(iterator.Count());
  int index = 0;
  for (; iterator.Current(); iterator.Next()) {
    Iterator::Item& item = *iterator.Current();
    if (iterator.IsStopped() || process.IsToStop()) return LProcessResultStopped;
    LProcessResult result = SettleType(process, session, item);
    if (result != LProcessResultOk) return result;
    if (item.isDirectory) {
      if (LIsDotName(item.name)) continue;
      process.SetStatus("サブフォルダを確認中...", 1);
      LProcessInterfaceRecursiveSubProcess part(process, index / count, 1 / count);
      result = DeleteDirectory(part, session, item.name, depth + 1);
    } else {
      process.SetStatusF(1, "%s/%s/%sを削除中", parent, directory, item.name);
      result = DeleteFile(process, session, item.name);
    }
    if (result != LProcessResultOk) return result;
    ++index;
    process.SetProgress(index / count);
  }
  return LProcessResultOk;
}

LProcessResult DeleteDirectory(LProcessInterface& process, LFileTransferProtocol& session, const char* directory,
                               int depth) {
  if (depth > kMostDepth) return LProcessResultFailed;
  char parent[kTextSize];
  // An empty text without an answer: the way back then fails, and so does the removal.
  (void)session.GetCurrentDirectory(parent);
  if (!session.SetCurrentDirectory(directory)) return LProcessResultOk;
  const LProcessResult result = DeleteContents(process, session, parent, directory, depth);
  if (result != LProcessResultOk) return result;
  // Where the session is shows in the answer to the removal.
  (void)session.SetCurrentDirectory(parent);
  char command[kFtpLongCommand];
  FtpFormatCommand(command, "RMD %s\r\n", directory);
  return ProcessFtpSendAndWaitForReply(process, session, command, nullptr, nullptr);
}

}  // namespace

LProcessResult ProcessFtpDeleteDirectoryAndFiles(LProcessInterface& process, LFileTransferProtocol& session,
                                                 const char* directory) {
  return DeleteDirectory(process, session, directory, 0);
}
