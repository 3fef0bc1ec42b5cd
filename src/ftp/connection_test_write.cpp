// The stages that write to the server, and the dialog around the whole test.
#include "core/progress_dialog.h"
#include "ftp/commands.h"
#include "ftp/connection_test.h"
#include "ftp/transfer.h"
#include "platform/file_io.h"
#include "support/files.h"
#include "support/window/alert.h"

namespace {

constexpr char kRemoteName[] = "_ftptest";
constexpr char kContent[] = "Test";
constexpr mode_t kScratchMode = 0666;

/// The local file to send. A disk that takes none shows in the upload, which finds no file.
class ScratchFile {
 public:
  ScratchFile() {
    LFile::GetTempFolder(path);
    TextAppend(path, "/0XXXXXX");
    const int file = platform::FileMakeTemporary(path, kScratchMode);
    if (file == -1) return;
    (void)platform::FileWrite(file, kContent, strlen(kContent));
    platform::FileClose(file);
  }
  ScratchFile(const ScratchFile&) = delete;
  ScratchFile& operator=(const ScratchFile&) = delete;
  ~ScratchFile() { (void)platform::FileUnlink(path); }

  char path[kTextSize];
};

/// 0 to go on, 1 for a stop, 2 when the stage has failed and said so.
LProcessResult Upload(LProcessInterface& process, LFileTransferProtocol& session, ProcessSecureFtpTestReadWrite& test) {
  process.SetProgress(0.8);
  process.SetStatus("テストをアップロード中...", 1);
  const ScratchFile file;
  const LProcessResult result = ProcessFtpUpload(process, session, kRemoteName, file.path, nullptr, false);
  if (result == LProcessResultStopped) return result;
  if (result == LProcessResultFailed) {
    test.outcome = kFtpTestUploadFailed;
    test.report.Append(" サーバーにアップロードできません。");
    test.uploadState = kFtpStageFailed;
    return result;
  }
  test.report.Append("ファイルのアップロードが完了しました。\r\n");
  test.uploadState = kFtpStagePassed;
  return LProcessResultOk;
}

LProcessResult Delete(LProcessInterface& process, LFileTransferProtocol& session, ProcessSecureFtpTestReadWrite& test) {
  process.SetProgress(0.9);
  process.SetStatus("ファイルを削除しています ...", 1);
  char command[kFtpLongCommand];
  FtpFormatCommand(command, "DELE %s\r\n", kRemoteName);
  const LProcessResult result = ProcessFtpSendAndWaitForReply(process, session, command, nullptr, nullptr);
  if (result == LProcessResultStopped) return result;
  if (result == LProcessResultFailed) {
    test.outcome = kFtpTestDeleteFailed;
    test.report.Append("サーバーから削除できません。");
    test.deleteState = kFtpStageFailed;
    return result;
  }
  test.report.Append("ファイルを削除しました。\r\n");
  test.deleteState = kFtpStagePassed;
  process.SetProgress(1.0);
  return LProcessResultOk;
}

}  // namespace

LProcessResult Process(LProcessInterface& process, ProcessSecureFtpTestReadWrite& test) {
  // Closed without a QUIT when it goes.
  LFileTransferProtocol session;
  const LProcessResult tested = ProcessTestReadOnly(process, session, test);
  if (tested != LProcessResultOk || test.outcome != kFtpTestPassed) return tested;
  LProcessResult result = Upload(process, session, test);
  if (result == LProcessResultOk) result = Delete(process, session, test);
  if (result == LProcessResultStopped) test.outcome = kFtpTestNotFinished;
  return tested;
}

void LFtpTestReadWrite(LMacWindow* parent, const char* server, const char* user, const char* password,
                       const char* directory, bool secure, bool implicit) {
  ProcessSecureFtpTestReadWrite test;
  test.server = server;
  test.user = user;
  test.password = password;
  test.directory = directory;
  test.secure = secure;
  test.implicit = implicit;
  // The report says what there is to say, also of a test that was stopped.
  (void)ProcessRunAsDialog(parent, "FTP接続テスト", test);
  LAlertWithButtonText::DisplayOkInfo(parent, test.report, "FTP接続テストの結果", "OK");
}
