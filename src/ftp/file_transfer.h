// What a download and an upload have in common. For the two only; see ftp/transfer.h.
#pragma once

#include "ftp/data_connection.h"
#include "ftp/protocol.h"
#include "ftp/transfer_progress.h"

/// One transfer of one file, on the stack of the function that does it. Closes the local file.
class FtpFileTransfer {
 public:
  FtpFileTransfer(const FtpFileTransfer&) = delete;
  FtpFileTransfer& operator=(const FtpFileTransfer&) = delete;

 protected:
  /// `errorText` may be null; it is emptied.
  FtpFileTransfer(LProcessInterface& process, LFileTransferProtocol& session, char (*errorText)[kTextSize]);
  ~FtpFileTransfer();

  void KeepError(const char* text);
  void CloseLocalFile();

  /// Protection on a secure session, the binary type, and the connection.
  LProcessResult PrepareDataConnection();
  /// The reply to the transfer command. After a stop the data connection is closed, and what the server still says to
  /// the command is taken off.
  LProcessResult ReadReply(unsigned short& code, char (&text)[kTextSize]);

  /// Closes the data connection and takes off what the server has to say to that, and to NOOPs: `owed` replies.
  void TakeRepliesOff(int owed);

  /// Starts the time to the first NOOP.
  void StartNoopClock();
  bool IsNoopDue() const;
  /// Keeps the control connection from falling idle. 1 stopped, with the replies taken off, otherwise 0: a reply that
  /// does not come in time may come behind the transfer's own and is gathered there. `code` is 0 without a reply.
  LProcessResult ExchangeNoop(unsigned short& code);
  /// ABOR and its reply, whatever the user does meanwhile. 2 if none came.
  LProcessResult Abort(unsigned sendMs, unsigned short& code, char (&text)[kTextSize]);
  /// The replies that have gathered; the last that closes a transfer decides: 0 for 226 and 426, with code
  /// and text. A code of `failing` (0 for none) takes the result back to 2.
  LProcessResult ReadLateReplies(unsigned ms, unsigned short failing, unsigned short& code, char (&text)[kTextSize]);
  LProcessResult ReadClosingReply(unsigned ms, unsigned short& code, char (&text)[kTextSize]);

  void ShowProgress();

  LProcessInterface* pProcess;
  LFileTransferProtocol* pSession;
  char (*pErrorText)[kTextSize];  ///< Null if nobody wants it.
  FtpDataConnection data;
  FtpTransferProgress progress;
  int iFile = -1;          ///< The local file; -1 when closed.
  char szName[kTextSize];  ///< What the label shows.
  int iLateReplies = 0;    ///< To NOOPs and ABOR, still to come.
  int64_t iNoopClock = 0;  ///< When the last NOOP was exchanged, in milliseconds.
};

constexpr unsigned kFtpTransferComplete = 226;
constexpr unsigned kFtpCannotOpenData = 425;
constexpr unsigned kFtpTransferAborted = 426;
constexpr unsigned kFtpLocalError = 451;
constexpr unsigned kFtpFileUnavailable = 550;

constexpr bool FtpReplyEndsTransfer(unsigned code) {
  return code == kFtpTransferComplete || code == kFtpTransferAborted;
}
