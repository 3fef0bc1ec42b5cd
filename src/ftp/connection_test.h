// The test of a site's settings: goes through what a user's connection needs, one thing after the other, on a session
// of its own, and stops at the first that fails. What it finds stands in a report for the user and in a verdict for
// each stage; errors and boxes are its caller's.
//
// Main thread. Results: 0 when the test ran to a verdict, good or bad, and 1 when it was stopped.
#pragma once

#include "core/process.h"
#include "ftp/protocol.h"
#include "support/strings.h"

class LMacWindow;

// The verdict on one stage.
constexpr int kFtpStageNotReached = 0;
constexpr int kFtpStageFailed = 1;
constexpr int kFtpStagePassed = 2;

// The outcome of a whole test.
constexpr int kFtpTestNotFinished = 0;  ///< Also after a stop.
constexpr int kFtpTestPassed = 1;
constexpr int kFtpTestServerNotFound = 2;
constexpr int kFtpTestLogonFailed = 3;
constexpr int kFtpTestDirectoryNotChanged = 4;
constexpr int kFtpTestDirectoryNotRead = 5;
constexpr int kFtpTestUploadFailed = 6;
constexpr int kFtpTestDeleteFailed = 7;

/// What a test is given and what it finds. The texts given are not owned.
struct ProcessSecureFtpTestReadOnly {
  const char* server = "";  ///< `host` or `host:port`.
  const char* user = "";
  const char* password = "";
  const char* directory = "";  ///< Empty to stay where the logon leads.
  bool secure = false;         ///< Both as in ftp/logon.h.
  bool implicit = false;

  int outcome = kFtpTestNotFinished;
  LStringLongTemplate<char> report;
  int serverState = kFtpStageNotReached;
  int logonState = kFtpStageNotReached;
  int changeDirectoryState = kFtpStageNotReached;  ///< Passed also without a directory.
  int currentDirectoryState = kFtpStageNotReached;
  int listState = kFtpStageNotReached;  ///< Failed if no data connection could be made; the outcome does not tell.
  int uploadState = kFtpStageNotReached;
  int deleteState = kFtpStageNotReached;
  char currentDirectory[kTextSize] = {};  ///< As the server tells it.
  LStringListTemplate<char> folders;      ///< Of the first twenty names.
  LStringListTemplate<char> files;        ///< The same, and an entry that stands for the rest.
};

struct ProcessSecureFtpTestReadWrite : ProcessSecureFtpTestReadOnly {};

/// Server, logon, directory and listing. Whatever the test held before is cleared; the session stays logged on.
[[nodiscard]] LProcessResult ProcessTestReadOnly(LProcessInterface&, LFileTransferProtocol&,
                                                 ProcessSecureFtpTestReadOnly&);

/// The same, and then the upload and the deletion of a scratch file. A file of its name in the directory is lost. The
/// result is that of the first part: a stop in the second shows in the outcome.
[[nodiscard]] LProcessResult Process(LProcessInterface&, ProcessSecureFtpTestReadWrite&);

/// Runs the whole test in a progress dialog and shows its report.
void LFtpTestReadWrite(LMacWindow* parent, const char* server, const char* user, const char* password,
                       const char* directory, bool secure, bool implicit);
