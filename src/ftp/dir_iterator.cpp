// One listing: MLSD where the server has it, LIST otherwise or when MLSD is refused.
#include "ftp/dir_iterator.h"

#include <cstring>
#include <memory>

#include "ftp/commands.h"
#include "ftp/data_connection.h"
#include "ftp/line_pieces.h"
#include "ftp/queries.h"
#include "ftp/timeouts.h"

using Session = LFileTransferProtocol;

/// The exchange of one _LoadList.
class LFileTransferProtocol::DirIterator::Reader {
 public:
  Reader(LProcessInterface& process, Session& session, DirIterator& iterator, const char* pattern)
      : pProcess(&process), pSession(&session), pIterator(&iterator), szPattern(pattern) {}

  LProcessResult Run();

 private:
  using LineRule = bool (*)(const char* line, const char* pattern, Item& item);

  LProcessResult Prepare();
  LProcessResult Connect();
  LProcessResult List();
  LProcessResult SendMlsd(unsigned short& code);
  void ReadLines(LineRule rule);

  LProcessInterface* pProcess;
  Session* pSession;
  DirIterator* pIterator;
  const char* szPattern;
  FtpDataConnection data;
};

LProcessResult Session::DirIterator::Reader::Prepare() {
  const LProcessResult features = ProcessFtpCheckFeatures(*pProcess, *pSession);
  if (features == LProcessResultStopped) return features;
  ProcessFtpChooseUtf8(*pProcess, *pSession);
  const LProcessResult result = ProcessFtpProtectData(*pProcess, *pSession);
  if (result != LProcessResultOk) return result;
  return ProcessFtpSendAndWaitForReply(*pProcess, *pSession, "TYPE A\r\n", nullptr, nullptr);
}

LProcessResult Session::DirIterator::Reader::Connect() {
  char address[kTextSize];
  LProcessResult result = ProcessFtpPassive(*pProcess, *pSession, address);
  if (result != LProcessResultOk) return result;
  result = data.OpenInTwoTries(*pProcess, address);
  pIterator->bPassiveFailure = result == LProcessResultFailed;
  return result;
}

/// On a secure session TLS begins before the command, but a server may begin its side only behind its answer:
/// the handshake goes on while the answer is awaited, whichever comes first.
LProcessResult Session::DirIterator::Reader::SendMlsd(unsigned short& code) {
  constexpr char kCommand[] = "MLSD\r\n";
  if (!pSession->IsSecure()) return ProcessFtpSendAndWaitForReply(*pProcess, *pSession, kCommand, &code, nullptr);
  data.BeginTls();
  LProcessResult result = ProcessFtpSendCommand(*pProcess, *pSession, kCommand, gFtpTimeouts.sendMs);
  if (result != LProcessResultOk) return result;
  data.ContinueTlsUntilReply(*pProcess, *pSession);
  char text[kTextSize];
  result = ProcessFtpTakeReply(*pProcess, *pSession, code, text, gFtpTimeouts.replyMs);
  if (result == LProcessResultOk && FtpReplyIsPreliminary(code)) data.FinishTls(*pProcess);
  return result;
}

/// Ends with the stream, with a silence of the line's time-out, or with a stop; what came counts. Closes the
/// connection.
void Session::DirIterator::Reader::ReadLines(LineRule rule) {
  Item** tail = &pIterator->items.first;
  LStringLongTemplate<char> line;
  LProcessResult result;
  while ((result = data.ReceiveLine(*pProcess, line, gFtpTimeouts.listingLineMs)) == LProcessResultOk) {
    FtpLinePieces pieces(line.data, line.length);
    char piece[kTextSize];
    while (pieces.Next(piece)) {
      if (piece[0] == 0) continue;
      auto item = std::make_unique<Item>();
      if (!rule(piece, szPattern, *item)) continue;
      *tail = item.release();
      tail = &(*tail)->next;
      ++pIterator->iCount;
    }
  }
  // Whoever stops a listing that never ends does not want to see its end first.
  if (result == LProcessResultStopped) data.Drop();
  data.Close(*pProcess);
}

LProcessResult Session::DirIterator::Reader::List() {
  unsigned short code = 0;
  LineRule rule = &FtpItemFromFactsLine;
  if (pSession->Has(bHasMlsd) && !pSession->Has(bMlsdFailed)) {
    const LProcessResult typed = ProcessFtpSendAndWaitForReply(*pProcess, *pSession, "TYPE A\r\n", nullptr, nullptr);
    if (typed != LProcessResultOk) return typed;
    // Only the code counts.
    (void)SendMlsd(code);
  }
  if (!FtpReplyIsPreliminary(code)) {
    rule = &FtpItemFromListingLine;
    const LProcessResult asked = ProcessFtpSendAndWaitForReply(*pProcess, *pSession, "LIST\r\n", &code, nullptr);
    // Without an answer there is no listing; what is in the directory is not known.
    if (code == 0) return asked;
    // TLS runs already if MLSD was refused.
    if (pSession->IsSecure()) data.FinishTlsBehindReply(*pProcess, code);
  }
  // A refused listing is an empty one.
  if (!FtpReplyIsPreliminary(code)) return LProcessResultOk;
  ReadLines(rule);
  char text[kTextSize];
  return ProcessFtpTakeReply(*pProcess, *pSession, code, text, gFtpTimeouts.closingReplyMs);
}

LProcessResult Session::DirIterator::Reader::Run() {
  LProcessResult result = Prepare();
  if (result == LProcessResultOk) result = Connect();
  if (result != LProcessResultOk) return result;
  pIterator->items.Clear();
  pIterator->pCurrent = nullptr;
  result = List();
  pIterator->First();
  return result;
}

LProcessResult Session::DirIterator::_LoadList(LProcessInterface& process, LFileTransferProtocol& session,
                                               const char* pattern) {
  pSession = &session;
  iCount = 0;
  bPassiveFailure = false;
  return Reader(process, session, *this, pattern).Run();
}

/// -1 without an item, and when nothing answers.
signed char Session::DirIterator::AskKind() {
  signed char kind = kFtpKindUnknown;
  const LProcessResult asked = ProcessFtpIsDirectory(Interface(), *pSession, pCurrent->name, kind);
  if (asked == LProcessResultStopped) NoteStop();
  return kind;
}

bool Session::DirIterator::IsDirectory() {
  if (!pCurrent) return false;
  if (!pCurrent->typeKnown) {
    pCurrent->isDirectory = AskKind() >= kFtpKindDirectory;
    pCurrent->typeKnown = true;
  }
  return pCurrent->isDirectory;
}

bool Session::DirIterator::IsSymbolicLink() {
  if (!pCurrent) return false;
  if (!pCurrent->typeKnown) {
    pCurrent->isSymbolicLink = AskKind() == kFtpKindSymbolicLink;
    pCurrent->typeKnown = true;
  }
  return pCurrent->isSymbolicLink;
}

Session::DirIteratorAllFiles::DirIteratorAllFiles(LProcessInterface& process, LFileTransferProtocol& session)
    : pProcess(&process) {
  const LProcessResult result = _LoadList(process, session, "*");
  bStopped = result == LProcessResultStopped;
  bLoaded = result == LProcessResultOk;
}

bool LFileTransferProtocol::ContainDirectory(const char* name) {
  if (!name || name[0] == 0) return false;
  LProcessInterfaceVoid process;
  DirIterator iterator;
  // A listing that broke off is searched as far as it came.
  (void)iterator._LoadList(process, *this, "*");
  for (; iterator.Current(); iterator.Next()) {
    if (strcmp(iterator.Name(), name) == 0) return true;
  }
  return false;
}
