// The stages that change nothing on the server.
#include "ftp/connection_test.h"

#include "ftp/commands.h"
#include "ftp/dir_iterator.h"
#include "ftp/logon.h"
#include "support/files.h"

namespace {

/// So many names of the listing go into the report.
constexpr int kReportedNames = 20;

/// Where the user reads what to do when passive connections fail.
constexpr char kPassiveHelp[] = "https://www.orvane.example/ftp/help/passive.html";

/// One run. Each stage gives 0 to go on, 1 for a stop, and 2 when it has failed and said so.
class ReadOnlyTest {
 public:
  ReadOnlyTest(LProcessInterface& process, LFileTransferProtocol& session, ProcessSecureFtpTestReadOnly& test)
      : pProcess(&process), pSession(&session), pTest(&test) {}

  LProcessResult Run();

 private:
  using Stage = LProcessResult (ReadOnlyTest::*)();

  void Clear();
  LProcessResult Fail(int& state, int outcome);
  LProcessResult FindServer();
  LProcessResult LogOn();
  LProcessResult ChangeDirectory();
  LProcessResult ReadDirectory();
  LProcessResult List();
  LProcessResult ReportNames(LFileTransferProtocol::DirIteratorAllFiles& iterator);

  LProcessInterface* pProcess;
  LFileTransferProtocol* pSession;
  ProcessSecureFtpTestReadOnly* pTest;
};

void ReadOnlyTest::Clear() {
  ProcessSecureFtpTestReadOnly& test = *pTest;
  test.outcome = kFtpTestNotFinished;
  test.report = "";
  test.serverState = test.logonState = test.changeDirectoryState = test.currentDirectoryState = kFtpStageNotReached;
  test.listState = test.uploadState = test.deleteState = kFtpStageNotReached;
  test.currentDirectory[0] = 0;
  test.folders.Clear();
  test.files.Clear();
}

LProcessResult ReadOnlyTest::Fail(int& state, int outcome) {
  state = kFtpStageFailed;
  pTest->outcome = outcome;
  return LProcessResultFailed;
}

LProcessResult ReadOnlyTest::FindServer() {
  pProcess->SetProgress(0.01);
  pProcess->SetStatus("FTPをテスト中...", 0);
  pProcess->SetProgress(0.1);
  pProcess->SetStatus("サーバーをテスト中...", 1);
  if (!FtpServerHasAddress(pTest->server, pTest->secure, pTest->implicit)) {
    pTest->report.tsprintfappend("「%s」サーバーに接続できません。", pTest->server);
    return Fail(pTest->serverState, kFtpTestServerNotFound);
  }
  pTest->report.tsprintfappend("サーバー「%s」は問題ありません。\r\n", pTest->server);
  pTest->serverState = kFtpStagePassed;
  pProcess->SetProgress(0.2);
  return LProcessResultOk;
}

LProcessResult ReadOnlyTest::LogOn() {
  pProcess->SetStatus("ログイン...", 1);
  const LProcessResult result = ProcessFtpLogOnServer(*pProcess, *pSession, pTest->server, pTest->user, pTest->password,
                                                      pTest->secure, pTest->implicit);
  if (result == LProcessResultStopped) return result;
  if (result == LProcessResultFailed) {
    pTest->report.tsprintfappend("入力したユーザー名（%s）またはパスワードではログインできません。", pTest->user);
    return Fail(pTest->logonState, kFtpTestLogonFailed);
  }
  pTest->report.Append("ログイン詳細に問題はありません。\r\n");
  pTest->logonState = kFtpStagePassed;
  pProcess->SetProgress(0.3);
  return LProcessResultOk;
}

LProcessResult ReadOnlyTest::ChangeDirectory() {
  if (pTest->directory[0]) {
    pProcess->SetStatus("デイレクトリを変更...", 1);
    char command[kFtpLongCommand];
    FtpFormatCommand(command, "CWD %s\r\n", pTest->directory);
    const LProcessResult result = ProcessFtpSendAndWaitForReply(*pProcess, *pSession, command, nullptr, nullptr);
    if (result == LProcessResultStopped) return result;
    if (result == LProcessResultFailed) {
      pTest->report.tsprintfappend("ディレクトリを「%s」に変更できません。", pTest->directory);
      return Fail(pTest->changeDirectoryState, kFtpTestDirectoryNotChanged);
    }
    pTest->report.Append("ディレクトリを変更できました。\r\n");
  }
  pTest->changeDirectoryState = kFtpStagePassed;
  return LProcessResultOk;
}

LProcessResult ReadOnlyTest::ReadDirectory() {
  pProcess->SetProgress(0.4);
  pProcess->SetStatus("ディレクトリを入手...", 1);
  const LProcessResult result = ProcessFtpPrintDirectory(*pProcess, *pSession, pTest->currentDirectory);
  if (result == LProcessResultStopped) return result;
  if (result == LProcessResultFailed) {
    pTest->report.Append("現在のディレクトリを入手できません。\r\n");
    return Fail(pTest->currentDirectoryState, kFtpTestDirectoryNotRead);
  }
  pTest->report.tsprintfappend("現在のディレクトリ: %s\r\n", pTest->currentDirectory);
  pTest->currentDirectoryState = kFtpStagePassed;
  return LProcessResultOk;
}

/// 1 for a stop, otherwise 0.
LProcessResult ReadOnlyTest::ReportNames(LFileTransferProtocol::DirIteratorAllFiles& iterator) {
  int names = 0;
  for (; iterator.Current(); iterator.Next()) {
    if (pProcess->IsToStop()) return LProcessResultStopped;
    if (LIsDotName(iterator.Name())) continue;
    if (names == kReportedNames) {
      pTest->files.Add("[その他...]");
      break;
    }
    const bool isDirectory = iterator.IsDirectory();
    if (iterator.IsStopped()) return LProcessResultStopped;
    (isDirectory ? pTest->folders : pTest->files).Add(iterator.Name());
    pTest->report.tsprintfappend(" %s", iterator.Name());
    ++names;
  }
  if (names == 0) pTest->report.Append("[ファイル無し]");
  return LProcessResultOk;
}

LProcessResult ReadOnlyTest::List() {
  pProcess->SetProgress(0.5);
  pProcess->SetStatus("リストを入手...", 1);
  pTest->report.Append("含まれるファイル数：");
  LFileTransferProtocol::DirIteratorAllFiles iterator(*pProcess, *pSession);
  // A stop while the answer was awaited leaves an empty list and no flag.
  if (iterator.IsStopped() || pProcess->IsToStop()) return LProcessResultStopped;
  if (ReportNames(iterator) == LProcessResultStopped) return LProcessResultStopped;
  pTest->report.Append("\r\n");
  pTest->listState = kFtpStagePassed;
  if (iterator.IsPassiveFailure()) {
    pTest->report.tsprintfappend("パッシブ接続に失敗しました！\r\n%s\r\n", kPassiveHelp);
    pTest->listState = kFtpStageFailed;
  }
  pTest->outcome = kFtpTestPassed;
  return LProcessResultOk;
}

LProcessResult ReadOnlyTest::Run() {
  constexpr Stage kStages[] = {&ReadOnlyTest::FindServer, &ReadOnlyTest::LogOn, &ReadOnlyTest::ChangeDirectory,
                               &ReadOnlyTest::ReadDirectory, &ReadOnlyTest::List};
  Clear();
  for (const Stage stage : kStages) {
    const LProcessResult result = (this->*stage)();
    if (result == LProcessResultStopped) return result;
    if (result == LProcessResultFailed) break;  // A verdict like any other.
  }
  return LProcessResultOk;
}

}  // namespace

LProcessResult ProcessTestReadOnly(LProcessInterface& process, LFileTransferProtocol& session,
                                   ProcessSecureFtpTestReadOnly& test) {
  return ReadOnlyTest(process, session, test).Run();
}
