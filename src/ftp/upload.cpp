// STOR and APPE: one file to the server.
#include <algorithm>
#include <ctime>
#include <fcntl.h>
#include <sys/stat.h>

#include "ftp/commands.h"
#include "ftp/file_transfer.h"
#include "ftp/queries.h"
#include "ftp/timeouts.h"
#include "ftp/transfer.h"
#include "platform/clock.h"
#include "platform/file_io.h"
#include "support/files.h"
#include "support/log.h"

namespace {

constexpr size_t kReadSize = 131072;   ///< What is read is still in the processor's cache when it is sent.
constexpr size_t kDatedCommand = 285;  ///< Bytes of a command with a date and a name.

class FileUpload : public FtpFileTransfer {
 public:
  FileUpload(LProcessInterface& process, LFileTransferProtocol& session, const char* remote, const char* local,
             char (*errorText)[kTextSize], bool append)
      : FtpFileTransfer(process, session, errorText), szRemote(remote), szLocal(local), bAppend(append) {
    LFile::_GetFileFromPath(szName, local);
  }

  LProcessResult Run();

 private:
  /// How sending came to its end.
  enum class End {
    kOfFile,
    kStopped,        ///< While a block was sent.
    kStoppedInNoop,  ///< While a NOOP was exchanged.
    kFailed,         ///< The connection broke or the server can store no more.
  };

  bool OpenLocalFile();
  LProcessResult Request();
  LProcessResult SendRequest(const char* verb, unsigned short& code);
  LProcessResult RequestAgain();
  LProcessResult ChooseStart();
  End SendData();
  End SendPiece(const char* bytes, size_t size);
  End KeepAlive();
  unsigned BlockTimeLeft() const;
  void CountSent(size_t bytes);
  void CountBlocks(uint64_t bytes);
  LProcessResult AbortTransfer();
  LProcessResult Finish(bool isStopped);
  LProcessResult JudgeClosingReply(unsigned short code, const char* text);
  LProcessResult CompareSizes();
  void SetRemoteDate();

  const char* szRemote;
  const char* szLocal;
  bool bAppend;
  uint64_t iLocalSize = 0;
  uint64_t iSent = 0;       ///< Bytes handed to the connection.
  uint64_t iCounted = 0;    ///< Of these, counted in whole blocks.
  int64_t iBlockStart = 0;  ///< When the present block began, in milliseconds.
  bool bShown = false;      ///< The first block is shown whatever the rule says.
};

/// Not what else has a name in a folder: to open a pipe would wait for its other end, and a device may never end.
bool FileUpload::OpenLocalFile() {
  iFile = platform::FileOpen(szLocal, O_RDONLY | O_NONBLOCK | O_CLOEXEC, 0);
  struct stat status = {};
  return iFile != -1 && platform::FileStatus(iFile, status) == 0 && S_ISREG(status.st_mode);
}

/// 0 with the reply's code; a text for the user is kept.
LProcessResult FileUpload::SendRequest(const char* verb, unsigned short& code) {
  code = 0;
  char command[kFtpLongCommand];
  FtpFormatCommand(command, "%s %s\r\n", verb, szRemote);
  if (!FtpCommandIsSendable(command)) {
    return ProcessFtpSendCommand(*pProcess, *pSession, command, gFtpTimeouts.sendDirectMs);
  }
  const LProcessResult sent = ProcessFtpSendCommand(*pProcess, *pSession, command, gFtpTimeouts.sendDirectMs);
  // Another failure shows in the reply that does not come.
  if (sent == LProcessResultStopped) return sent;
  char text[kTextSize];
  const LProcessResult read = ReadReply(code, text);
  if (read == LProcessResultOk && code >= 300) KeepError(text);
  return read;
}

LProcessResult FileUpload::Request() {
  unsigned short code;
  const LProcessResult result = SendRequest(bAppend ? "APPE" : "STOR", code);
  if (result != LProcessResultOk || FtpReplyIsPreliminary(code)) return result;
  if (code != kFtpFileUnavailable && !bAppend) return LProcessResultFailed;
  return RequestAgain();
}

/// Plainly, over a new connection: a server may refuse to append, or have lost the first connection.
LProcessResult FileUpload::RequestAgain() {
  char address[kTextSize];
  LProcessResult result = ProcessFtpPassive(*pProcess, *pSession, address);
  if (result != LProcessResultOk) return result;
  result = data.Open(*pProcess, address);
  if (result != LProcessResultOk) return result;
  unsigned short code;
  result = SendRequest("STOR", code);
  bAppend = false;
  if (result != LProcessResultOk) return result;
  return FtpReplyIsPreliminary(code) ? LProcessResultOk : LProcessResultFailed;
}

/// Where to begin in the local file, and at which progress.
LProcessResult FileUpload::ChooseStart() {
  struct stat status = {};
  if (platform::FileStatus(iFile, status) == 0) iLocalSize = static_cast<uint64_t>(status.st_size);
  pProcess->SetProgress(0);
  double start = 0;
  if (bAppend) {
    uint64_t remoteSize = 0;
    const LProcessResult asked = ProcessFtpGetFileSize(*pProcess, *pSession, szRemote, remoteSize);
    if (asked == LProcessResultStopped) return asked;
    if (asked == LProcessResultOk) {
      const uint64_t offset = std::min(remoteSize, iLocalSize);
      if (platform::FileSeek(iFile, static_cast<off_t>(offset), SEEK_SET) < 0) return LProcessResultFailed;
      if (offset < iLocalSize) start = static_cast<double>(offset) / static_cast<double>(iLocalSize);
    }
  }
  progress = FtpTransferProgress(FtpTransferProgress::kUpload, iLocalSize, start);
  return LProcessResultOk;
}

FileUpload::End FileUpload::KeepAlive() {
  if (!IsNoopDue()) return End::kOfFile;
  unsigned short code;
  if (ExchangeNoop(code) == LProcessResultStopped) return End::kStoppedInNoop;
  return code == kFtpLocalError ? End::kFailed : End::kOfFile;
}

/// Each block has the whole time-out, however slow the line: a piece may take minutes.
unsigned FileUpload::BlockTimeLeft() const {
  const int64_t left = iBlockStart + gFtpTimeouts.sendBlockMs - platform::ClockMonotonicMs();
  return static_cast<unsigned>(std::max<int64_t>(left, 0));
}

void FileUpload::CountBlocks(uint64_t bytes) {
  iCounted += bytes;
  while (bytes > 0) {
    const size_t block = std::min<uint64_t>(bytes, FtpTransferProgress::kBlockSize);
    if (progress.CountBlock(block) || !bShown) ShowProgress();
    bShown = true;
    bytes -= block;
  }
}

void FileUpload::CountSent(size_t bytes) {
  iSent += bytes;
  const uint64_t fresh = iSent - iCounted;
  if (fresh < FtpTransferProgress::kBlockSize) return;
  CountBlocks(fresh - fresh % FtpTransferProgress::kBlockSize);
  iBlockStart = platform::ClockMonotonicMs();
}

FileUpload::End FileUpload::SendPiece(const char* bytes, size_t size) {
  iBlockStart = platform::ClockMonotonicMs();
  while (size > 0) {
    const End kept = KeepAlive();
    if (kept != End::kOfFile) return kept;
    size_t moved = 0;
    const LProcessResult result = data.Send(*pProcess, bytes, size, moved, BlockTimeLeft());
    if (result == LProcessResultStopped) return End::kStopped;
    if (result != LProcessResultOk) return End::kFailed;
    bytes += moved;
    size -= moved;
    CountSent(moved);
  }
  return End::kOfFile;
}

FileUpload::End FileUpload::SendData() {
  StartNoopClock();
  End end = End::kOfFile;
  char* const piece = data.Piece();
  while (end == End::kOfFile) {
    static_assert(kReadSize <= FtpDataConnection::kPieceSize);
    const ssize_t size = platform::FileRead(iFile, piece, kReadSize);
    if (size < 1) break;
    end = SendPiece(piece, static_cast<size_t>(size));
  }
  CountBlocks(iSent - iCounted);
  return end;
}

/// 1 when the server took the stop, 2 when it said something else.
LProcessResult FileUpload::AbortTransfer() {
  unsigned short code;
  char text[kTextSize];
  const LProcessResult read = Abort(gFtpTimeouts.aborSendUploadMs, code, text);
  if (read == LProcessResultOk && FtpReplyEndsTransfer(code)) return LProcessResultStopped;
  KeepError(text);
  if (read != LProcessResultOk) return LProcessResultStopped;
  // The reply to the transfer itself comes behind a 425; it is only taken off the connection.
  if (code == kFtpCannotOpenData) (void)ReadClosingReply(gFtpTimeouts.aborExtraReplyMs, code, text);
  return LProcessResultFailed;
}

/// Some servers break the transfer off although they have the whole file.
LProcessResult FileUpload::CompareSizes() {
  uint64_t remoteSize = 0;
  const LProcessResult asked = ProcessFtpGetFileSize(*pProcess, *pSession, szRemote, remoteSize);
  if (asked != LProcessResultOk) return asked;
  return remoteSize == iLocalSize ? LProcessResultOk : LProcessResultFailed;
}

LProcessResult FileUpload::JudgeClosingReply(unsigned short code, const char* text) {
  if (code >= 200 && code <= 399) return LProcessResultOk;
  if (code == kFtpFileUnavailable || code == kFtpLocalError) {
    LOGERRORF("サーバーへのアップロード中にエラーが発生しました：%s", text);
    return LProcessResultFailed;
  }
  return code == kFtpTransferAborted ? CompareSizes() : LProcessResultFailed;
}

/// A server may refuse the date, or not know it: the file is there all the same.
void FileUpload::SetRemoteDate() {
  // Always 0; what it found stands in the session.
  (void)ProcessFtpCheckFeatures(*pProcess, *pSession);
  if (!pSession->Has(LFileTransferProtocol::bHasMfmt)) return;
  struct stat status = {};
  struct tm utc = {};
  if (platform::FileStatus(iFile, status) != 0 || !gmtime_r(&status.st_mtime, &utc)) return;
  char command[kDatedCommand];
  FtpFormatCommand(command, "MFMT %04d%02d%02d%02d%02d%02d %s\r\n", utc.tm_year + 1900, utc.tm_mon + 1, utc.tm_mday,
                   utc.tm_hour, utc.tm_min, utc.tm_sec, szRemote);
  (void)ProcessFtpSendAndWaitForReply(*pProcess, *pSession, command, nullptr, nullptr);
}

LProcessResult FileUpload::Finish(bool isStopped) {
  unsigned short code;
  char text[kTextSize];
  const LProcessResult read = iLateReplies != 0
                                  ? ReadLateReplies(gFtpTimeouts.lateReplyUploadMs, kFtpLocalError, code, text)
                                  : ReadClosingReply(gFtpTimeouts.closingReplyMs, code, text);
  if (isStopped) return LProcessResultStopped;
  // All data went out and the connection was closed in order: a server that says nothing more has the file.
  const LProcessResult result = read == LProcessResultOk ? JudgeClosingReply(code, text) : LProcessResultOk;
  if (result == LProcessResultOk) SetRemoteDate();
  return result;
}

LProcessResult FileUpload::Run() {
  pProcess->SetStatus("ファイルをアップロードしています...", 0);
  pProcess->SetStatus(szName, 1);
  if (!OpenLocalFile()) return LProcessResultFailed;
  LProcessResult result = PrepareDataConnection();
  if (result == LProcessResultOk) result = Request();
  if (result != LProcessResultOk) return result;
  result = ChooseStart();
  if (result != LProcessResultOk) {
    TakeRepliesOff(1);  // The server has begun to receive.
    return result;
  }
  if (pSession->IsSecure()) data.FinishTls(*pProcess);

  const End end = SendData();
  if (end == End::kStoppedInNoop) return LProcessResultStopped;
  if (end == End::kFailed) return LProcessResultFailed;
  result = end == End::kStopped ? AbortTransfer() : LProcessResultOk;
  data.Close(*pProcess);
  if (result == LProcessResultFailed) return result;
  return Finish(result == LProcessResultStopped);
}

}  // namespace

LProcessResult ProcessFtpUpload(LProcessInterface& process, LFileTransferProtocol& session, const char* remote,
                                const char* local, char (*errorText)[kTextSize], bool append) {
  return FileUpload(process, session, remote, local, errorText, append).Run();
}
