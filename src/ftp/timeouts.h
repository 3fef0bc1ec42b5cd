// Every time-out of the FTP engine, in one table, in milliseconds. Main thread. Tests shorten the table.
#pragma once

struct FtpTimeouts {
  // A command and its reply.
  unsigned sendMs = 30000;           ///< To send a command of the plain form.
  unsigned sendNoTraceMs = 15000;    ///< To send one of the tracing form; one more for each byte of the command.
  unsigned sendMultiLineMs = 20000;  ///< To send one whose whole reply is wanted.
  unsigned sendDirectMs = 20000;     ///< To send one outside the forms: logon, PASV, PWD, MKD, RETR, STOR, APPE.
  unsigned replyMs = 60000;          ///< For each line of a reply.
  unsigned drainReplyMs = 60000;     ///< For the reply that is taken off the connection after a stop.
  unsigned extraReplyMs = 60000;     ///< For the second reply that may follow a 500 while FEAT is unanswered.

  // Logon.
  unsigned connectMs = 60000;  ///< For each address of the server or the proxy.
  unsigned greetingMs = 60000;
  unsigned logonHandshakeMs = 60000;  ///< TLS on the control connection.

  // A data connection.
  unsigned dataConnectMs = 20000;
  unsigned dataHandshakeMs = 3000;   ///< TLS on the data connection; a failure shows in the next read or write.
  unsigned dataReplyLineMs = 20000;  ///< For each line of a command whose answer comes as data.
  unsigned listingLineMs = 10000;    ///< For each line of a listing; a longer silence ends the listing.
  unsigned dataCloseMs = 2000;       ///< For the server's end behind ours, before the socket is closed.
  unsigned closingReplyMs = 60000;   ///< For the reply behind the end of the data.

  // Moving a file.
  unsigned receiveBlockMs = 40000;
  unsigned sendBlockMs = 20000;
  unsigned noopPeriodMs = 30000;  ///< Between two NOOPs while data flows.
  unsigned noopSendMs = 20000;
  unsigned noopReplyMs = 5000;          ///< After that the reply is awaited behind the transfer.
  unsigned lateReplyDownloadMs = 1000;  ///< For each of the replies gathered when one to a NOOP is overdue.
  unsigned lateReplyUploadMs = 10000;
  unsigned aborSendDownloadMs = 2000;
  unsigned aborSendUploadMs = 20000;
  unsigned aborReplyMs = 2000;
  unsigned aborExtraReplyMs = 60000;  ///< For the reply that follows a 425 to ABOR.
  unsigned fileLockMs = 500;          ///< To lock the local file of a download.
};

extern FtpTimeouts gFtpTimeouts;
