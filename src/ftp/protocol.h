// One FTP session: the control connection and what has been learned about the server, and the exchanges of a
// command and its reply on which everything else is built.
//
// One command, one reply, on the caller's stack: no queue, no pipelining. Commands are text with "\r\n" at the end,
// built by the caller. A session is used by one process at a time, on the main thread; a re-entrant command during
// a pump would interleave replies. The control connection is never read beyond the end of a line, so that nothing
// sent before TLS is taken for something sent under it.
#pragma once

#include <cstdint>

#include "core/process.h"
#include "core/sockets.h"
#include "support/strings.h"

/// The session is its control socket; it is secure exactly when that has a TLS context. Owned by its user.
/// The object survives any failure: a new logon closes what is open and forgets what was learned.
class LFileTransferProtocol : public LSSLSocketTCP {
 public:
  /// What FEAT, SYST and refusals have taught; all cleared at each logon.
  enum Capability : uint32_t {
    bFeaturesKnown = 0x0001,  ///< A FEAT exchange has succeeded. While clear, FEAT is tried again.
    bHasSize = 0x0002,        ///< FEAT lists SIZE; also assumed when FEAT fails.
    bHasMdtm = 0x0004,
    bMlstTypeFailed = 0x0008,  ///< MLST failed once for a type question: not asked again.
    bMlstModify = 0x0010,      ///< The MLST feature line holds "modify*"; likewise size and type.
    bMlstSize = 0x0020,
    bMlstType = 0x0040,
    bMlsdFailed = 0x0080,  ///< MLSD failed once for a type question.
    bHasMlsd = 0x0100,
    bSystKnown = 0x0200,  ///< SYST has been asked, whatever came back.
    bSystWindowsNT = 0x0400,
    bHasMfmt = 0x0800,
    bHasUtf8 = 0x1000,
    bSystUnixL8 = 0x2000,
  };
  bool Has(Capability bit) const { return (uCapabilities & bit) != 0; }
  void Set(Capability bit) { uCapabilities |= bit; }

  // Quick exchanges without a pump and without a stop.
  [[nodiscard]] bool SetCurrentDirectory(const char* path);
  [[nodiscard]] bool GetCurrentDirectory(char (&path)[kTextSize]);
  /// True also for a folder that exists already.
  [[nodiscard]] bool CreateDirectory(const char* path);
  /// Seconds on the wall-clock scale of listings; now on that scale if the server gives no answer. Closes the session
  /// of one that has fallen silent: nobody can stop this, and each further file would take as long.
  int64_t GetFileDate(const char* name);
  /// 0 if the server gives no answer.
  uint64_t GetFileSizeBytes64(const char* name);
  /// Whether the current directory holds an entry of exactly that name, of any type.
  [[nodiscard]] bool ContainDirectory(const char* name);

  class DirIterator;
  class DirIteratorAllFiles;

  uint32_t uCapabilities = 0;
};

// What the code of a reply says.
constexpr bool FtpReplyIsPreliminary(unsigned code) { return code >= 100 && code <= 199; }
constexpr bool FtpReplyIsPositive(unsigned code) { return code >= 200 && code <= 399; }

/// Reads one reply: skips blank, indented and continuation lines; the first other line ends the reply, whatever its
/// code. `code` is 0 and `text` empty if nothing came. `ms` counts for each line.
[[nodiscard]] LProcessResult ProcessFtpWaitForReplyTimeout(LProcessInterface&, LFileTransferProtocol&,
                                                           unsigned short& code, char (&text)[kTextSize],
                                                           unsigned int ms);

/// Sends and reads the reply. 0 for 2xx, 3xx, 125 and 150, otherwise 2. `code` and `text` may be null.
/// After a stop the reply is still taken off the connection, without a pump; `code` is then the one it had.
[[nodiscard]] LProcessResult ProcessFtpSendAndWaitForReply(LProcessInterface&, LFileTransferProtocol&,
                                                           const char* command, unsigned short* code,
                                                           char (*text)[kTextSize]);
/// 0 for 2xx and 3xx; a failure code is written to the history. Logs the command like every other.
[[nodiscard]] LProcessResult ProcessFtpSendAndWaitForReplyNoTrace(LProcessInterface&, LFileTransferProtocol&,
                                                                  const char* command, unsigned short* code,
                                                                  char (*text)[kTextSize]);
/// All lines of a multi-line reply but its closing line; of a failed one the one error line, with result 2.
[[nodiscard]] LProcessResult ProcessFtpSendAndWaitForReply(LProcessInterface&, LFileTransferProtocol&,
                                                           const char* command, LStringListTemplate<char>& lines);
/// Runs a command whose answer comes over a data connection, as lines of at most 259 bytes.
[[nodiscard]] LProcessResult ProcessFtpSendAndWaitForDataReply(LProcessInterface&, LFileTransferProtocol&,
                                                               const char* command, LStringListTemplate<char>& lines);
/// PASV: `address` gets "a.b.c.d:port" as the server gave it.
[[nodiscard]] LProcessResult ProcessFtpPassive(LProcessInterface&, LFileTransferProtocol&, char (&address)[kTextSize]);
/// On a secure session PBSZ 0 and PROT P; nothing on a plain one. A refusal of PROT P with 534 goes to SetError.
[[nodiscard]] LProcessResult ProcessFtpProtectData(LProcessInterface&, LFileTransferProtocol&);
