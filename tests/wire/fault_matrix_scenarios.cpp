#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "ftp/commands.h"
#include "ftp/dir_iterator.h"
#include "ftp/queries.h"
#include "ftp/transfer.h"
#include "support/test_files.h"
#include "wire/fault_matrix.h"

namespace {

using Pace = ServerManner::Pace;

constexpr int64_t kTime = 1579084200;  ///< 2020-01-15 10:30:00, the date of every entry.
/// More than the kernel holds for both ends of a connection.
constexpr size_t kMoreThanBuffers = 2u << 20;
constexpr char kReceiving[] = "ファイルをダウンロードしています...";

/// A server that fell silent, or whose replies came out of step, did something else than it said.
bool IsHonest(ServerFault fault) {
  switch (fault) {
    case ServerFault::kStall:
    case ServerFault::kGarbage:
    case ServerFault::kHalfLine:
    case ServerFault::kHalfLineAndClose:
    case ServerFault::kLongLine:
    case ServerFault::kLongLineAndClose:
    case ServerFault::kLateReply:
    case ServerFault::kWrongSuccess:
    case ServerFault::kWrongPreliminary:
    case ServerFault::kExtraReply:
    case ServerFault::kReplyAndClose:
    case ServerFault::kPassiveDeaf: return false;
    default: return fault < ServerFault::kDataCutAtOnce;
  }
}

bool EndsTheControlConnection(ServerFault fault) {
  return fault == ServerFault::kClose || fault == ServerFault::kReset || fault == ServerFault::kStall ||
         fault == ServerFault::kLongLine || fault == ServerFault::kNotAvailable;
}

bool IsInTime(ServerFault fault) { return fault != ServerFault::kLateReply && fault != ServerFault::kDataStall; }

// Logon

LProcessResult RunNothing(FaultCell&) { return LProcessResultOk; }

void CheckLogon(FaultCell& cell, LProcessResult result) {
  if (cell.fault == ServerFault::kNone) cell.Require(result == LProcessResultOk, "the logon failed");
  if (EndsTheControlConnection(cell.fault)) cell.Require(result == LProcessResultFailed, "logged on to nobody");
  if (IsHonest(cell.fault) && result == LProcessResultOk) cell.Require(cell.server.IsLoggedOn(), "not logged on");
}

// Listing

LProcessResult RunListing(FaultCell& cell) { return FaultList(cell.process, cell.session, cell.names); }

void CheckListing(FaultCell& cell, LProcessResult result) {
  const std::vector<std::string> expected = FaultServer::Listed();
  if (cell.fault == ServerFault::kNone) cell.Require(cell.names == expected, "not the listing");
  if (cell.fault == ServerFault::kNone) cell.Require(result == LProcessResultOk, "the listing failed");
  cell.Require(cell.names.size() <= expected.size(), "more than there is");
  // The last line may have been cut off, and is a line all the same.
  if (cell.fault >= ServerFault::kDataCutAtOnce && !cell.names.empty()) cell.names.pop_back();
  for (size_t i = 0; i < cell.names.size() && i < expected.size(); ++i) {
    cell.Require(cell.names[i] == expected[i], "an entry that is not there: " + cell.names[i]);
  }
}

// Queries

/// A failed question leaves nothing behind that could be taken for its answer.
void CheckNumber(FaultCell& cell, LProcessResult result, uint64_t right, uint64_t unknown) {
  if (cell.fault == ServerFault::kNone) cell.Require(cell.number == right, "wrong: " + std::to_string(cell.number));
  if (cell.fault == ServerFault::kNone) cell.Require(result == LProcessResultOk, "no answer");
  if (result != LProcessResultOk) cell.Require(cell.number == unknown, "left: " + std::to_string(cell.number));
  if (IsHonest(cell.fault)) cell.Require(cell.number == right || cell.number == unknown, "neither right nor unknown");
}

LProcessResult RunSize(FaultCell& cell) {
  return ProcessFtpGetFileSize(cell.process, cell.session, FaultServer::kFile, cell.number);
}
void CheckSize(FaultCell& cell, LProcessResult result) { CheckNumber(cell, result, FaultServer::Content().size(), 0); }

LProcessResult RunTime(FaultCell& cell) {
  int64_t time = 0;
  const LProcessResult result = ProcessFtpGetFileModifiedTime(cell.process, cell.session, FaultServer::kFile, time);
  cell.number = static_cast<uint64_t>(time);
  return result;
}
/// The listing gives the day, the other ways the minute.
void CheckTime(FaultCell& cell, LProcessResult result) {
  const int64_t time = static_cast<int64_t>(cell.number);
  const bool isRight = time == kTime || time == kTime - kTime % 86400;
  if (cell.fault == ServerFault::kNone) cell.Require(isRight && result == LProcessResultOk, "not the date");
  if (IsHonest(cell.fault)) cell.Require(isRight || time > kTime + 86400, "a date of nowhere");
}

LProcessResult RunKind(FaultCell& cell) {
  signed char kind = 99;
  const LProcessResult result = ProcessFtpIsDirectory(cell.process, cell.session, FaultServer::kFile, kind);
  cell.number = static_cast<uint64_t>(kind);
  return result;
}
void CheckKind(FaultCell& cell, LProcessResult result) {
  CheckNumber(cell, result, kFtpKindFile, static_cast<uint64_t>(kFtpKindUnknown));
}

template <auto kQuery>
LProcessResult RunText(FaultCell& cell) {
  char text[kTextSize] = {};
  const LProcessResult result = kQuery(cell.process, cell.session, FaultServer::kFile, text);
  cell.text = text;
  return result;
}
void CheckText(FaultCell& cell, LProcessResult result) {
  if (cell.fault == ServerFault::kNone) cell.Require(result == LProcessResultOk, "no answer");
}

LProcessResult RunMakeFolder(FaultCell& cell) { return ProcessFtpCreateDirectory(cell.process, cell.session, "made"); }
void CheckDone(FaultCell& cell, LProcessResult result) {
  if (cell.fault == ServerFault::kNone) cell.Require(result == LProcessResultOk, "not done");
  if (EndsTheControlConnection(cell.fault)) cell.Require(result == LProcessResultFailed, "done by nobody");
}

LProcessResult RunChangeFolder(FaultCell& cell) {
  char folder[kTextSize] = "sub";
  LProcessSecureFtpChangeDirectory change = {&cell.session, &folder};
  const LProcessResult result = Process(cell.process, change);
  cell.text = folder;
  return result;
}
void CheckChangeFolder(FaultCell& cell, LProcessResult result) {
  CheckDone(cell, result);
  if (result != LProcessResultOk) cell.Require(cell.text == "sub", "the folder was touched: " + cell.text);
}

LProcessResult RunDeleteTree(FaultCell& cell) {
  return ProcessFtpDeleteDirectoryAndFiles(cell.process, cell.session, "sub");
}
/// A folder that cannot be entered counts as deleted.
void CheckDeleteTree(FaultCell& cell, LProcessResult result) {
  if (cell.fault == ServerFault::kNone) cell.Require(result == LProcessResultOk, "not deleted");
  const std::vector<std::string> commands = cell.server.Commands();
  const bool hasRemoved = std::find(commands.begin(), commands.end(), "RMD sub") != commands.end();
  const bool hasEntered = std::find(commands.begin(), commands.end(), "FEAT") != commands.end();
  // An earlier reply that is taken for this one comes before the server has even heard.
  const bool isInStep = IsHonest(cell.fault) || cell.fault == ServerFault::kReplyAndClose;
  if (result == LProcessResultOk && hasEntered && isInStep) cell.Require(hasRemoved, "deleted without a word");
}

LProcessResult RunQuit(FaultCell& cell) {
  return ProcessFtpSendAndWaitForReply(cell.process, cell.session, "QUIT\r\n", nullptr, nullptr);
}

// Transfers

bool WasShown(const FaultCell& cell, const char* status) {
  for (const auto& [level, text] : cell.process.Statuses()) {
    if (text == status) return true;
  }
  return false;
}

LProcessResult RunDownload(FaultCell& cell) {
  char error[kTextSize];
  return ProcessFtpDownload(cell.process, cell.session, FaultServer::kFile, cell.local_path.c_str(), &error);
}

/// The local file is whole, or empty when nothing began, or gone: never a part that could be taken for the file.
void CheckDownload(FaultCell& cell, LProcessResult result) {
  const bool exists = std::filesystem::exists(cell.local_path);
  const std::string content = ReadFile(cell.local_path);
  if (cell.fault == ServerFault::kNone) {
    cell.Require(result == LProcessResultOk && content == FaultServer::Content(), "not the file");
  }
  if (result == LProcessResultOk) {
    // One that held its breath so long that the client gave up may still call the transfer complete.
    const std::string moved = cell.server.Moved();
    const std::string sent = IsInTime(cell.fault) ? moved : moved.substr(0, content.size());
    cell.Require(exists && content == sent, "not what the server sent");
  } else if (WasShown(cell, kReceiving)) {
    cell.Require(!exists, "a part of the file was left");
  } else {
    cell.Require(exists && content.empty(), "the local file is not empty");
  }
  if (EndsTheControlConnection(cell.fault)) cell.Require(result == LProcessResultFailed, "got from nobody");
}

LProcessResult StopWhileMoving(FaultCell& cell, LProcessResult (*run)(FaultCell&)) {
  cell.process.OnQuestion([&cell] {
    if (cell.server.IsMoving()) cell.process.StopNow();
  });
  const LProcessResult result = run(cell);
  cell.process.OnQuestion(nullptr);
  cell.process.StopAt(0);
  return result;
}

LProcessResult RunStoppedDownload(FaultCell& cell) { return StopWhileMoving(cell, RunDownload); }

/// The closing reply decides: what is left behind is either kept with a success or gone.
void CheckStoppedDownload(FaultCell& cell, LProcessResult result) {
  const bool exists = std::filesystem::exists(cell.local_path);
  const std::string content = ReadFile(cell.local_path);
  if (cell.fault == ServerFault::kNone) cell.Require(result == LProcessResultOk, "the abort was not taken");
  if (result == LProcessResultOk) cell.Require(exists, "the part is gone");
  if (result == LProcessResultFailed) cell.Require(!exists || content.empty(), "a part of the file was left");
}

template <bool kAppend>
LProcessResult RunUpload(FaultCell& cell) {
  char error[kTextSize];
  return ProcessFtpUpload(cell.process, cell.session, FaultServer::kFile, cell.local_path.c_str(), &error, kAppend);
}

void CheckUpload(FaultCell& cell, LProcessResult result) {
  if (cell.fault == ServerFault::kNone) cell.Require(result == LProcessResultOk, "the upload failed");
  cell.Require(ReadFile(cell.local_path) == cell.local_content, "the local file was touched");
  if (IsHonest(cell.fault) && result == LProcessResultOk) {
    cell.Require(cell.server.Moved() == cell.local_content, "the server has not got the file");
  }
}

/// The server has a part already, and it was the start of this file.
void CheckAppend(FaultCell& cell, LProcessResult result) {
  if (cell.fault == ServerFault::kNone) cell.Require(result == LProcessResultOk, "the upload failed");
  cell.Require(ReadFile(cell.local_path) == cell.local_content, "the local file was touched");
  if (IsHonest(cell.fault) && result == LProcessResultOk) {
    const std::string moved = cell.server.Moved();
    cell.Require(moved == cell.local_content || moved == cell.local_content.substr(FaultServer::Content().size()),
                 "the server has not got the rest");
  }
}

LProcessResult RunStoppedUpload(FaultCell& cell) { return StopWhileMoving(cell, RunUpload<false>); }
void CheckStoppedUpload(FaultCell& cell, LProcessResult result) {
  if (cell.fault == ServerFault::kNone) cell.Require(result == LProcessResultStopped, "not stopped");
  cell.Require(ReadFile(cell.local_path) == cell.local_content, "the local file was touched");
}

// The table

ServerManner Modern() {
  ServerManner manner;
  manner.features = {"MDTM", "MFMT", "SIZE", "UTF8", "MLST type*;size*;modify*;", "MLSD"};
  return manner;
}
ServerManner Middling(Pace pace = Pace::kFast) {
  ServerManner manner;
  manner.features = {"SIZE", "MDTM"};
  manner.pace = pace;
  return manner;
}
ServerManner Windows() {
  ServerManner manner;
  manner.system = "Windows_NT";
  return manner;
}
ServerManner WithoutMlsd() {
  ServerManner manner = Modern();
  manner.refuses_mlsd = true;
  return manner;
}
ServerManner Busy() {
  ServerManner manner = Middling();
  manner.busy = true;
  return manner;
}

struct Conversation {
  const char* name;
  ServerManner manner;
  LProcessResult (*run)(FaultCell&);
  void (*check)(FaultCell&, LProcessResult);
};

std::vector<Conversation> Conversations() {
  const ServerManner old;
  return {
      {"listing, facts", Modern(), RunListing, CheckListing},
      {"listing, plain", old, RunListing, CheckListing},
      {"listing, facts refused", WithoutMlsd(), RunListing, CheckListing},
      {"size by MLST", Modern(), RunSize, CheckSize},
      {"size by SIZE", Middling(), RunSize, CheckSize},
      {"size by LIST", old, RunSize, CheckSize},
      {"time by MDTM", Middling(), RunTime, CheckTime},
      {"time by LIST", old, RunTime, CheckTime},
      {"time from Windows", Windows(), RunTime, CheckTime},
      {"kind by MLST", Modern(), RunKind, CheckKind},
      {"kind by LIST", old, RunKind, CheckKind},
      {"mode by MLSD", Modern(), RunText<&ProcessFtpGetFileAttribute>, CheckText},
      {"owner by LIST", old, RunText<&ProcessFtpGetFileOwner>, CheckText},
      {"make folder", old, RunMakeFolder, CheckDone},
      {"change folder", old, RunChangeFolder, CheckChangeFolder},
      {"delete tree", Modern(), RunDeleteTree, CheckDeleteTree},
      {"quit", old, RunQuit, CheckDone},
      {"download", Modern(), RunDownload, CheckDownload},
      {"download, size by SIZE", Middling(), RunDownload, CheckDownload},
      {"download, slow", Middling(Pace::kSlow), RunDownload, CheckDownload},
      {"download, stopped", Middling(Pace::kStanding), RunStoppedDownload, CheckStoppedDownload},
      {"upload", Modern(), RunUpload<false>, CheckUpload},
      {"upload, tried again", Busy(), RunUpload<false>, CheckUpload},
      {"upload, appended", Middling(), RunUpload<true>, CheckAppend},
      {"upload, slow", Middling(Pace::kSlow), RunUpload<false>, CheckUpload},
      {"upload, stopped", Middling(Pace::kStanding), RunStoppedUpload, CheckStoppedUpload},
  };
}

std::vector<FaultScenario> MakeScenarios() {
  constexpr FaultSecurity kPlain = FaultSecurity::kPlain;
  std::vector<FaultScenario> all;
  const auto addLogon = [&all](const std::string& name, FaultSecurity security, bool tls, int proxy) {
    ServerManner manner = Middling();
    manner.tls = tls;
    manner.implicit = security == FaultSecurity::kImplicit;
    manner.proxy = proxy != 0;
    all.push_back({"logon, " + name, security, manner, proxy, true, RunNothing, CheckLogon});
  };
  addLogon("plain", kPlain, false, 0);
  addLogon("explicit", FaultSecurity::kExplicit, true, 0);
  addLogon("explicit declined", FaultSecurity::kExplicit, false, 0);
  addLogon("implicit", FaultSecurity::kImplicit, false, 0);
  for (int proxy = 1; proxy <= 4; ++proxy) addLogon("proxy " + std::to_string(proxy), kPlain, false, proxy);
  for (const FaultSecurity security : {kPlain, FaultSecurity::kExplicit}) {
    for (Conversation& one : Conversations()) {
      one.manner.tls = security == FaultSecurity::kExplicit;
      const char* const end = one.manner.tls ? ", secure" : "";
      all.push_back({one.name + std::string(end), security, one.manner, 0, false, one.run, one.check});
    }
  }
  return all;
}

}  // namespace

const std::vector<FaultScenario>& FaultScenarios() {
  static const std::vector<FaultScenario> scenarios = MakeScenarios();
  return scenarios;
}

size_t FaultLocalSize(const FaultScenario& scenario) {
  return scenario.manner.pace == Pace::kFast ? FaultServer::Content().size() + 2000 : kMoreThanBuffers;
}

LProcessResult FaultLogOn(LProcessInterface& process, LFileTransferProtocol& session, const FaultServer& server,
                          FaultSecurity security) {
  return ProcessFtpLogOnServer(process, session, server.Address().c_str(), "anna", "open sesame",
                               security != FaultSecurity::kPlain, security == FaultSecurity::kImplicit);
}

LProcessResult FaultList(LProcessInterface& process, LFileTransferProtocol& session, std::vector<std::string>& names) {
  LFileTransferProtocol::DirIterator iterator;
  const LProcessResult result = iterator._LoadList(process, session, "*");
  for (; iterator.Current(); iterator.Next()) names.emplace_back(iterator.Name());
  return result;
}
