// RETR: one file from the server.
#include <algorithm>
#include <fcntl.h>
#include <sys/file.h>

#include "ftp/commands.h"
#include "ftp/file_transfer.h"
#include "ftp/queries.h"
#include "ftp/timeouts.h"
#include "ftp/transfer.h"
#include "platform/file_io.h"
#include "support/files.h"
#include "support/log.h"

namespace {

constexpr mode_t kNewFileMode = 0666;

/// Bytes of one write: a kernel that waits for a slow disk holds a large one for half a second.
constexpr size_t kWriteSize = 65536;

class FileDownload : public FtpFileTransfer {
 public:
  FileDownload(LProcessInterface& process, LFileTransferProtocol& session, const char* remote, const char* local,
               char (*errorText)[kTextSize])
      : FtpFileTransfer(process, session, errorText), szRemote(remote), szLocal(local) {
    TextCopy(szName, remote);
  }

  LProcessResult Run();

 private:
  /// How the flow of data came to its end.
  enum class End {
    kOfStream,       ///< Or a failure: the closing reply tells the two apart.
    kStopped,        ///< While data were awaited.
    kStoppedInNoop,  ///< While a NOOP was exchanged.
  };

  bool OpenLocalFile();
  LProcessResult Request();
  End ReceiveData();
  LProcessResult ReceivePiece();
  LProcessResult ReceiveThroughPipe(size_t& received);
  void CountPiece(size_t size);
  void WritePiece(const char* bytes, size_t size);
  void AbortTransfer();
  LProcessResult Finish();

  const char* szRemote;
  const char* szLocal;
  platform::NetPipe pipe;
  bool bThroughPipe = false;  ///< The system moves the bytes, which it cannot do for encrypted ones.
};

/// Emptied only under the lock: another copy of the program may be writing to it. A pipe of that name takes what fits
/// into it and then waits for a reader.
bool FileDownload::OpenLocalFile() {
  iFile = platform::FileOpen(szLocal, O_RDWR | O_CREAT | O_NONBLOCK | O_CLOEXEC, kNewFileMode);
  struct stat status = {};
  if (iFile != -1 && platform::FileStatus(iFile, status) == 0 && !S_ISREG(status.st_mode)) return false;
  if (flocktimed(iFile, LOCK_EX | LOCK_NB, gFtpTimeouts.fileLockMs) != 0) return false;
  // Whatever is left behind the new end shows in a size that differs; the transfer does not look at it.
  (void)platform::FileTruncate(iFile, 0);
  return true;
}

LProcessResult FileDownload::Request() {
  char command[kFtpLongCommand];
  FtpFormatCommand(command, "RETR %s\r\n", szRemote);
  const LProcessResult sent = ProcessFtpSendCommand(*pProcess, *pSession, command, gFtpTimeouts.sendDirectMs);
  if (sent != LProcessResultOk) return sent;
  unsigned short code;
  char text[kTextSize];
  const LProcessResult read = ReadReply(code, text);
  if (read == LProcessResultOk && FtpReplyIsPreliminary(code)) return LProcessResultOk;
  KeepError(text);
  return read == LProcessResultOk ? LProcessResultFailed : read;
}

void FileDownload::WritePiece(const char* bytes, size_t size) {
  while (size > 0) {
    const ssize_t written = platform::FileWrite(iFile, bytes, std::min(size, kWriteSize));
    // A full disk goes unnoticed here, as the transfer's result is the server's word alone.
    if (written <= 0) return;
    bytes += written;
    size -= static_cast<size_t>(written);
    // Only for the window's sake: a stop is taken where the next piece is received.
    if (size > 0) (void)pProcess->IsToStop();
  }
}

void FileDownload::CountPiece(size_t size) {
  while (size > 0) {
    const size_t block = std::min(size, FtpTransferProgress::kBlockSize);
    if (progress.CountBlock(block)) ShowProgress();
    size -= block;
  }
}

FileDownload::End FileDownload::ReceiveData() {
  StartNoopClock();
  ShowProgress();
  bThroughPipe = !pSession->IsSecure() && pipe.Open();
  for (;;) {
    unsigned short code;
    if (IsNoopDue() && ExchangeNoop(code) == LProcessResultStopped) return End::kStoppedInNoop;
    const LProcessResult result = ReceivePiece();
    if (result == LProcessResultStopped) return End::kStopped;
    if (result != LProcessResultOk) return End::kOfStream;
  }
}

LProcessResult FileDownload::ReceivePiece() {
  size_t received = 0;
  if (bThroughPipe) {
    const LProcessResult result = ReceiveThroughPipe(received);
    bThroughPipe = result != LProcessResultOk || received > 0;
    if (bThroughPipe) return result;
  }
  char* const piece = data.Piece();
  const LProcessResult result =
      data.Receive(*pProcess, piece, FtpDataConnection::kPieceSize, received, gFtpTimeouts.receiveBlockMs);
  if (result != LProcessResultOk) return result;
  WritePiece(piece, received);
  CountPiece(received);
  return LProcessResultOk;
}

/// 0 with nothing received where the system does not do it.
LProcessResult FileDownload::ReceiveThroughPipe(size_t& received) {
  const LProcessResult result = data.ReceiveInto(*pProcess, pipe, received, gFtpTimeouts.receiveBlockMs);
  if (result != LProcessResultOk || received == 0) return result;
  for (size_t left = received; left > 0;) {
    const size_t moved = pipe.PutInto(iFile, std::min(left, kWriteSize));
    if (moved == 0) break;
    left -= moved;
    // Only for the window's sake: a stop is taken where the next piece is received.
    if (left > 0) (void)pProcess->IsToStop();
  }
  CountPiece(received);
  return LProcessResultOk;
}

void FileDownload::AbortTransfer() {
  unsigned short code;
  char text[kTextSize];
  const LProcessResult read = Abort(gFtpTimeouts.aborSendDownloadMs, code, text);
  if (read != LProcessResultOk || !FtpReplyEndsTransfer(code)) KeepError(text);
}

/// The closing reply decides, also after a stop.
LProcessResult FileDownload::Finish() {
  unsigned short code;
  char text[kTextSize];
  const LProcessResult read = iLateReplies != 0 ? ReadLateReplies(gFtpTimeouts.lateReplyDownloadMs, 0, code, text)
                                                : ReadClosingReply(gFtpTimeouts.closingReplyMs, code, text);
  if (read == LProcessResultOk && FtpReplyIsPositive(code)) return LProcessResultOk;
  KeepError(text);
  // What came is not to be taken for the file. There may be nothing to remove.
  (void)platform::FileUnlink(szLocal);
  return LProcessResultFailed;
}

LProcessResult FileDownload::Run() {
  pProcess->SetStatus("ダウンロードの準備をしています...", 0);
  pProcess->SetStatus(szRemote, 1);
  if (!OpenLocalFile()) return LProcessResultFailed;
  LProcessResult result = PrepareDataConnection();
  if (result != LProcessResultOk) return result;

  LProcessInterfaceVoid unstoppable;
  uint64_t size = 0;
  // Without a size there is just no percentage.
  if (ProcessFtpGetFileSize(unstoppable, *pSession, szRemote, size) != LProcessResultOk) size = 0;
  progress = FtpTransferProgress(FtpTransferProgress::kDownload, size);
  result = Request();
  if (result != LProcessResultOk) return result;
  if (pSession->IsSecure()) data.FinishTls(*pProcess);

  pProcess->SetStatus("ファイルをダウンロードしています...", 0);
  const End end = ReceiveData();
  if (end == End::kStopped) AbortTransfer();
  CloseLocalFile();
  if (end == End::kOfStream && data.WasCutOff()) {
    LOGWARNF("データ接続がTLSの終了通知なしに閉じられました。ファイルが途中で切れている可能性があります：%s", szRemote);
  }
  data.Close(*pProcess);
  if (end == End::kStoppedInNoop) return LProcessResultStopped;
  return Finish();
}

}  // namespace

LProcessResult ProcessFtpDownload(LProcessInterface& process, LFileTransferProtocol& session, const char* remote,
                                  const char* local, char (*errorText)[kTextSize]) {
  return FileDownload(process, session, remote, local, errorText).Run();
}
